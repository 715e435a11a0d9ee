#include "monitor/ShowsInForce.h"

#include <utility>

#include "basic/Error.h"
#include "schedule/Schedule.h"
#include "schedule/YearSchedule.h"
#include "time/TimeRange.h"
#include "time/WeekTimeFunctions.h"

namespace vex {

namespace {

constexpr int64_t DaysOfWeek = 7;

std::shared_ptr<ShowEvent> EventAt(const Schedule& schedule, DateTime dtNow) {
  const auto* node = schedule.GetNodeByTime(WeekTimeFromDate(dtNow));
  return node ? node->Obj() : nullptr;
}

bool NamesShow(const std::shared_ptr<MonitoredShowEvent>& event) {
  return event && !event->Filename().empty();
}

bool StartsWithin(const TimeRange& range, const TimeRange& span) {
  return range.HasStart() && span.Includes(range.StartTime(), false, false);
}

/// The occurrence of a weekly show that starts after the moment.
TimeRange OccurrenceAfter(const ShowEvent& showEvent, DateTime dtNow) {
  TimeRange range = showEvent.Range(dtNow);
  const bool boolBegun = range.HasStart() && range.StartTime() <= dtNow;
  return boolBegun ? showEvent.Range(dtNow.PlusDays(DaysOfWeek)) : range;
}

/// Gathers shows and keeps the one that starts first.
class FirstShow {
 public:
  explicit FirstShow(const TimeRange& span) : m_Span(span) {}

  void Consider(const ShowEvent& showEvent, const TimeRange& range) {
    if (!StartsWithin(range, m_Span)) return;
    if (m_Event && m_Range.StartTime() <= range.StartTime()) return;
    m_Event = &showEvent;
    m_Range = range;
  }

  [[nodiscard]] std::shared_ptr<MonitoredShowEvent> Monitored(int32_t lScheduleType) const {
    if (m_Event == nullptr) return nullptr;
    auto event = std::make_shared<MonitoredShowEvent>();
    event->Filename(m_Event->Filename());
    event->ScheduleType(lScheduleType);
    event->Range(std::make_shared<TimeRange>(m_Range));
    return event;
  }

 private:
  const TimeRange& m_Span;
  const ShowEvent* m_Event = nullptr;
  TimeRange m_Range;
};

/// The first moment after now at which something begins or ends. Some questions count a bound itself and some
/// do not, so the second after it is one too.
class NextMoment {
 public:
  NextMoment(DateTime dtNow, DateTime dtFirst) : m_Now(dtNow), m_First(dtFirst) {}

  void Consider(DateTime dtBound) {
    for (const int64_t after : {0, 1}) {
      const DateTime moment = dtBound.PlusSeconds(after);
      if (moment > m_Now && moment < m_First) m_First = moment;
    }
  }
  /// The bounds that lie on the present day.
  void Consider(const Schedule& schedule) {
    const int32_t lDay = WeekTimeFromDate(m_Now)->Day();
    for (const auto* node = schedule.FirstNode(); node != nullptr; node = node->NextNode()) {
      for (const auto& bound : {node->Obj()->StartTime(), node->Obj()->EndTime()})
        if (bound->Day() == lDay) Consider(m_Now.DatePart().PlusSeconds(bound->DaySecond()));
    }
  }
  [[nodiscard]] DateTime First() const { return m_First; }

 private:
  DateTime m_Now;
  DateTime m_First;
};

template <class Visit>
void ForEachShow(const Schedule& schedule, Visit visit) {
  for (const auto* node = schedule.FirstNode(); node != nullptr; node = node->NextNode()) {
    if (node->Obj()->EventType() == ShowFileEvent) visit(*node->Obj());
  }
}

}  // namespace

ShowsInForce::ShowsInForce(const Schedule* weekly, const YearSchedule* year, EventReference onDemand,
                           bool boolNoSchedule)
    : m_Schedule(weekly),
      m_YearSchedule(year),
      m_OnDemandEvent(std::move(onDemand)),
      m_NoSchedule(boolNoSchedule) {}

ShowsInForce::EventReference ShowsInForce::GetCurrentShowEvent(DateTime dtNow) const {
  EventReference event = GetOnDemandShowEvent(dtNow);
  if (NamesShow(event)) return event;
  if (!m_NoSchedule) {
    event = GetYearShowEvent(dtNow);
    if (NamesShow(event)) return event;
  }
  return GetWeeklyShowEvent(dtNow);
}

ShowsInForce::EventReference ShowsInForce::GetOnDemandShowEvent(DateTime dtNow) const {
  const bool boolInForce = m_OnDemandEvent && m_OnDemandEvent->Range()->Includes(dtNow, true, false);
  return boolInForce ? m_OnDemandEvent : nullptr;
}

ShowsInForce::EventReference ShowsInForce::GetYearShowEvent(DateTime dtNow) const {
  if (m_YearSchedule == nullptr) return nullptr;
  const auto day = m_YearSchedule->DateSchedule(dtNow);
  if (!day) return nullptr;
  return ToMonitoredShowEvent(EventAt(*day, dtNow).get(), YearScheduleType, dtNow);
}

ShowsInForce::EventReference ShowsInForce::GetWeeklyShowEvent(DateTime dtNow) const {
  if (m_NoSchedule) return std::make_shared<MonitoredShowEvent>();
  const Schedule& schedule = Required(m_Schedule);
  const auto showEvent = schedule.AmalgamatedShowEvent(EventAt(schedule, dtNow));
  return ToMonitoredShowEvent(showEvent.get(), WeeklyScheduleType, dtNow);
}

ShowsInForce::EventReference ShowsInForce::GetNextShowEvent(const EventReference& current,
                                                            const EventReference& scheduled,
                                                            DateTime dtNow) const {
  if (!current || current->ShuttingDown()) return scheduled;
  const TimeRange& range = *current->Range();
  if (!range.Includes(dtNow, true, false)) return GetCurrentShowEvent(dtNow);
  if (current->ScheduleType() != OnDemandScheduleType) {
    if (EventReference interrupting = FirstShowWithin(*current, dtNow)) return interrupting;
  }
  return range.HasEnd() ? GetCurrentShowEvent(range.EndTime()) : nullptr;
}

DateTime ShowsInForce::SameUntil(DateTime dtNow) const {
  const DateTime dtToday = dtNow.DatePart();
  NextMoment next(dtNow, dtToday.PlusDays(1));
  next.Consider(dtToday);
  if (m_Schedule != nullptr) next.Consider(*m_Schedule);
  if (m_YearSchedule != nullptr) {
    if (const auto day = m_YearSchedule->DateSchedule(dtNow)) next.Consider(*day);
  }
  if (m_OnDemandEvent) {
    const TimeRange& range = *m_OnDemandEvent->Range();
    if (range.HasStart()) next.Consider(range.StartTime());
    if (range.HasEnd()) next.Consider(range.EndTime());
  }
  return next.First();
}

ShowsInForce::EventReference ShowsInForce::FirstShowWithin(const MonitoredShowEvent& current,
                                                           DateTime dtNow) const {
  if (m_NoSchedule) return nullptr;
  TimeRange span;
  span.StartTime(dtNow);
  if (current.Range()->HasEnd()) span.EndTime(current.Range()->EndTime());
  EventReference dated = FirstYearShowWithin(span);
  if (current.ScheduleType() != WeeklyScheduleType) return dated;
  EventReference weekly = FirstWeeklyShowWithin(span);
  if (!dated || !weekly) return dated ? dated : weekly;
  return weekly->Range()->StartTime() < dated->Range()->StartTime() ? weekly : dated;
}

// The year schedule's own search tells what overlaps a range, shows that have begun already included; here
// only a show that is yet to start counts. It starts on the date under which it stands.
ShowsInForce::EventReference ShowsInForce::FirstYearShowWithin(const TimeRange& span) const {
  if (m_YearSchedule == nullptr) return nullptr;
  const std::string szFirst = YearSchedule::DateToString(span.StartTime());
  const std::string szLast = span.HasEnd() ? YearSchedule::DateToString(span.EndTime()) : "";
  FirstShow first(span);
  for (const std::string& szDate : m_YearSchedule->Keys()) {
    if (szDate < szFirst || (span.HasEnd() && szDate > szLast)) continue;
    const DateTime dtDate = YearSchedule::DateStringToDate(szDate);
    ForEachShow(Required(m_YearSchedule->ScheduleByKey(szDate)), [&](const ShowEvent& showEvent) {
      const TimeRange range = showEvent.Range(dtDate);
      if (range.HasStart() && range.StartTime().DatePart() == dtDate) first.Consider(showEvent, range);
    });
  }
  return first.Monitored(YearScheduleType);
}

ShowsInForce::EventReference ShowsInForce::FirstWeeklyShowWithin(const TimeRange& span) const {
  FirstShow first(span);
  ForEachShow(Required(m_Schedule), [&](const ShowEvent& showEvent) {
    first.Consider(showEvent, OccurrenceAfter(showEvent, span.StartTime()));
  });
  return first.Monitored(WeeklyScheduleType);
}

std::shared_ptr<MonitoredShowEvent> ToMonitoredShowEvent(const ShowEvent* showEvent, int32_t lScheduleType,
                                                         DateTime dtNow) {
  auto event = std::make_shared<MonitoredShowEvent>();
  if (showEvent == nullptr) return event;
  if (showEvent->EventType() == ShowFileEvent) event->Filename(showEvent->Filename());
  event->ScheduleType(lScheduleType);
  event->Range(std::make_shared<TimeRange>(showEvent->Range(dtNow)));
  return event;
}

}  // namespace vex

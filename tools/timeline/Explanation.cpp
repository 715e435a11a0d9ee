#include "tools/timeline/Explanation.h"

#include <array>

#include "basic/Error.h"
#include "schedule/Schedule.h"
#include "schedule/YearSchedule.h"
#include "time/TimeRange.h"
#include "time/WeekTimeFunctions.h"

namespace vex {
namespace {

using EventReference = std::shared_ptr<MonitoredShowEvent>;

constexpr std::array<const char*, 12> Months{"January",   "February", "March",    "April",
                                             "May",       "June",     "July",     "August",
                                             "September", "October",  "November", "December"};

std::string Quoted(const std::string& szName) {
  return "\"" + szName + "\"";
}

std::string DayInWords(DateTime dtTime) {
  return std::to_string(dtTime.Day()) + " " + Months.at(static_cast<size_t>(dtTime.Month() - 1));
}

/// "18:00" on the day that is spoken of, else "18:00 on 23 December".
std::string MomentInWords(DateTime dtTime, DateTime dtDay) {
  std::string szText = TimeInWords(dtTime);
  if (dtTime.DatePart() != dtDay.DatePart()) szText += " on " + DayInWords(dtTime);
  return szText;
}

std::string SpanInWords(const TimeRange& range, DateTime dtDay) {
  std::string szText;
  if (range.HasStart()) szText += " from " + MomentInWords(range.StartTime(), dtDay);
  if (range.HasEnd())
    szText += (range.HasStart() ? " to " : " until ") + MomentInWords(range.EndTime(), dtDay);
  return szText.empty() ? " at all times" : szText;
}

bool NamesShow(const EventReference& event) {
  return event && !event->Filename().empty();
}

/// Asks the rules one after the other and notes what each has to say.
class Reasoning {
 public:
  Reasoning(const Schedule& weekly, const YearSchedule& year, const EventReference& onDemand, DateTime dtTime)
      : m_Shows(&weekly, &year, onDemand, false), m_Year(year), m_OnDemand(onDemand), m_Time(dtTime) {}

  [[nodiscard]] Explanation Explain() {
    m_Result.At = m_Time;
    m_Result.Event = m_Shows.GetCurrentShowEvent(m_Time);
    AskDemand();
    AskYear();
    AskWeek();
    m_Result.Sentence = Sentence();
    return m_Result;
  }

 private:
  [[nodiscard]] bool Decided() const { return !m_Result.Rule.empty(); }

  /// The first rule with a show decides; a later one gives way.
  void Found(const char* szRule, const EventReference& event, const std::string& szKind) {
    if (!Decided()) {
      m_Result.Rule = szRule;
      m_Reason = szKind + " has it" + SpanInWords(*event->Range(), m_Time);
    } else {
      const bool boolToDemand = m_Result.Rule == RuleDemand;
      PassOver(szRule, event,
               "the " + std::string(szRule == std::string(RuleYear) ? "dated" : "weekly") + " show " +
                   Quoted(event->Filename()) + " gives way to " + (boolToDemand ? "it" : "the dated one"));
    }
  }

  void PassOver(const char* szRule, EventReference event, std::string szBecause) {
    m_Result.Others.push_back({szRule, std::move(event), std::move(szBecause)});
  }

  /// "ended at 22:00", "starts at 18:00": how a show misses the moment.
  [[nodiscard]] std::string Misses(const EventReference& event) const {
    const TimeRange& range = *event->Range();
    if (range.HasEnd() && range.EndTime() <= m_Time)
      return "ended at " + MomentInWords(range.EndTime(), m_Time);
    if (range.HasStart()) return "starts at " + MomentInWords(range.StartTime(), m_Time);
    return "is not in force";
  }

  void AskDemand() {
    if (!NamesShow(m_OnDemand)) return;
    if (NamesShow(m_Shows.GetOnDemandShowEvent(m_Time)))
      Found(RuleDemand, m_OnDemand, "a request on demand");
    else
      PassOver(RuleDemand, m_OnDemand,
               "the show on demand " + Quoted(m_OnDemand->Filename()) + " " + Misses(m_OnDemand));
  }

  void AskYear() {
    const EventReference event = m_Shows.GetYearShowEvent(m_Time);
    if (NamesShow(event)) {
      Found(RuleYear, event, "the dated schedule");
    } else if (!Decided()) {
      const EventReference cutOff = RunningFromDayBefore();
      if (NamesShow(cutOff))
        PassOver(
            RuleYear, cutOff,
            "the dated show " + Quoted(cutOff->Filename()) + " of the day before is cut off at midnight");
      else if (event)
        PassOver(RuleYear, NearestDated(),
                 "the dated schedule has none for " + DayInWords(m_Time) + " at " + TimeInWords(m_Time));
      else
        PassOver(RuleYear, nullptr, "no dated schedule stands for " + DayInWords(m_Time));
    }
  }

  void AskWeek() {
    const EventReference event = m_Shows.GetWeeklyShowEvent(m_Time);
    if (NamesShow(event)) {
      Found(RuleWeek, event, "the weekly schedule");
    } else if (!Decided()) {
      m_Result.Rule = RuleNone;
      const EventReference nearest = NearestWeekly(*event->Range());
      PassOver(RuleWeek, nearest,
               nearest ? "the weekly show " + Quoted(nearest->Filename()) + " " + Misses(nearest)
                       : "the weekly schedule holds no shows");
    }
  }

  /// What stands under the date before and would still run, were it not cut off.
  [[nodiscard]] EventReference RunningFromDayBefore() const {
    const auto day = m_Year.DateSchedule(m_Time.PlusDays(-1));
    if (!day) return nullptr;
    const auto* node = day->GetNodeByTime(WeekTimeFromDate(m_Time));
    return node ? ToMonitoredShowEvent(node->Obj().get(), YearScheduleType, m_Time) : nullptr;
  }

  /// The date's show that ended last before the moment, else the first one after it.
  [[nodiscard]] EventReference NearestDated() const {
    EventReference nearest;
    const auto day = m_Year.DateSchedule(m_Time);
    for (const auto* node = day->FirstNode(); node != nullptr; node = node->NextNode()) {
      if (node->Obj()->EventType() != ShowFileEvent) continue;
      const auto event = ToMonitoredShowEvent(node->Obj().get(), YearScheduleType, m_Time.DatePart());
      const bool boolEnded = event->Range()->HasEnd() && event->Range()->EndTime() <= m_Time;
      if (boolEnded || !nearest) nearest = event;
    }
    return nearest;
  }

  /// The show that ended where the gap begins, or, if that was on another day and the next one starts on
  /// this day, the next one.
  [[nodiscard]] EventReference NearestWeekly(const TimeRange& gap) const {
    if (!gap.HasStart() || !gap.HasEnd()) return nullptr;
    const bool boolEndedToday = gap.StartTime().DatePart() == m_Time.DatePart();
    const bool boolStartsToday = gap.EndTime().DatePart() == m_Time.DatePart();
    const DateTime dtWithin =
        boolStartsToday && !boolEndedToday ? gap.EndTime() : gap.StartTime().PlusSeconds(-1);
    return m_Shows.GetWeeklyShowEvent(dtWithin);
  }

  [[nodiscard]] std::string Sentence() const {
    const std::string szMoment = "on " + DateInWords(m_Time) + " at " + TimeInWords(m_Time);
    std::string szText = m_Result.Rule == RuleNone
                             ? "No show " + szMoment
                             : Quoted(m_Result.Event->Filename()) + " plays " + szMoment;
    std::string szJoint = ": ";
    if (!m_Reason.empty()) {
      szText += szJoint + m_Reason;
      szJoint = ", ";
    }
    for (const PassedOver& other : m_Result.Others) {
      szText += szJoint + other.Because;
      szJoint = ", ";
    }
    return szText + ".";
  }

  ShowsInForce m_Shows;
  const YearSchedule& m_Year;
  EventReference m_OnDemand;
  DateTime m_Time;
  std::string m_Reason;
  Explanation m_Result;
};

std::string TwoDigits(int32_t lValue) {
  return (lValue < 10 ? "0" : "") + std::to_string(lValue);
}

}  // namespace

Explanation Explain(const Schedule& weekly, const YearSchedule& year, const EventReference& onDemand,
                    DateTime dtTime) {
  return Reasoning(weekly, year, onDemand, dtTime).Explain();
}

std::string TimeInWords(DateTime dtTime) {
  std::string szText = TwoDigits(dtTime.Hour()) + ":" + TwoDigits(dtTime.Minute());
  if (dtTime.Second() != 0) szText += ":" + TwoDigits(dtTime.Second());
  return szText;
}

std::string DateInWords(DateTime dtTime) {
  return DayInWords(dtTime) + " " + std::to_string(dtTime.Year());
}

}  // namespace vex

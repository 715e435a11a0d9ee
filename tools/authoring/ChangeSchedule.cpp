#include "tools/authoring/ChangeSchedule.h"

#include <optional>
#include <utility>

#include "schedule/ScheduleFunctions.h"
#include "schedule/ShowEventFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "time/WeekTimeFunctions.h"
#include "tools/authoring/DamagePlace.h"
#include "tools/authoring/Moments.h"
#include "tools/authoring/Obstacles.h"

namespace vex {

namespace {

void Understand(const std::string& szText, WeekOutcome& outcome) {
  outcome.Shows = ScheduleFromText(szText);
}
void Understand(const std::string& szText, YearOutcome& outcome) {
  outcome.Shows = YearScheduleFromText(szText);
}

std::string TextOf(const Schedule& schedule) {
  return ScheduleToText(schedule);
}
std::string TextOf(const YearSchedule& year) {
  return YearScheduleToText(year);
}

FileKind KindOf(const WeekOutcome&) {
  return FileKind::Week;
}
FileKind KindOf(const YearOutcome&) {
  return FileKind::Year;
}

template <class Outcome>
Outcome Refused(const Error& error, std::string szWords) {
  Outcome outcome;
  outcome.Failure = error;
  outcome.Words = std::move(szWords);
  return outcome;
}

template <class Outcome>
Outcome Unwritten(const std::string& szReason) {
  const FileOutcome notWritten = NotWritten(szReason);
  return Refused<Outcome>(*notWritten.Failure, notWritten.Words);
}

template <class Outcome>
Outcome ReadSchedule(Files& files, const std::string& szPath) {
  Outcome outcome;
  std::string szText;
  try {
    szText = ReadTextIfThere(files, szPath);
    Understand(szText, outcome);
    outcome.Text = TextOf(*outcome.Shows);
    return outcome;
  } catch (const Error& error) {
    return Refused<Outcome>(error, DamagePlace(KindOf(outcome), szText));
  }
}

/// Events without a length, which a file edited by hand may hold, can leave a text that no reader takes: the
/// player would be left without its schedule.
template <class Outcome>
std::optional<Outcome> CannotBeReadBack(const Outcome& outcome, const std::string& szText) {
  try {
    Outcome again;
    Understand(szText, again);
    return std::nullopt;
  } catch (const Error& error) {
    return Refused<Outcome>(
        error, "what would be written cannot be read back: " + DamagePlace(KindOf(outcome), szText));
  }
}

/// One change from reading to writing, with nobody else's between. `change` gives the words for what it has
/// done, `explain` those for why it failed.
template <class Outcome, class Change, class Explain>
Outcome Changed(Files& files, const std::string& szPath, Change change, Explain explain) {
  std::string szReason;
  // Without a folder there is no lock, nor anything to lose: the schedule is empty and cannot be written.
  const auto lock = files.Lock(szPath, &szReason);
  if (!lock && !MissingFile(szReason)) return Unwritten<Outcome>(szReason);
  Outcome outcome = ReadSchedule<Outcome>(files, szPath);
  if (outcome.Failure) return outcome;
  auto& schedule = *outcome.Shows;
  try {
    outcome.Words = change(schedule);
  } catch (const Error& error) {
    return Refused<Outcome>(error, explain(schedule, error));
  }
  if (auto unreadable = CannotBeReadBack(outcome, TextOf(schedule))) return *unreadable;
  if (!schedule.Save(files, szPath, &szReason)) return Unwritten<Outcome>(szReason);
  outcome.Text = TextOf(schedule);
  return outcome;
}

}  // namespace

WeekOutcome ReadWeek(Files& files, const std::string& szPath) {
  return ReadSchedule<WeekOutcome>(files, szPath);
}

WeekOutcome AddToWeek(Files& files, const std::string& szPath, const WeekTime::Reference& startTime,
                      const WeekTime::Reference& endTime, const std::string& szShow) {
  return Changed<WeekOutcome>(
      files, szPath,
      [&](Schedule& schedule) {
        if (Required(startTime).Equals(endTime))
          throw Error(1, "Schedule.AddShowEvent", "Can't add event -- event conflict");
        const auto event = NewShowEvent(szShow, startTime, endTime);
        schedule.AddShowEvent(event);
        return "added " + ShowToWords(*event);
      },
      [&](const Schedule& schedule, const Error&) { return WeekObstacles(schedule, startTime, endTime); });
}

WeekOutcome RemoveFromWeek(Files& files, const std::string& szPath, const WeekTime::Reference& time) {
  return Changed<WeekOutcome>(
      files, szPath,
      [&](Schedule& schedule) {
        auto* const node = schedule.GetNodeByTime(time);
        std::string szWords = "removed " + ShowToWords(*Required(node).Obj());
        schedule.RemoveShowEvent(node);
        return szWords;
      },
      [&](const Schedule&, const Error&) {
        return "no show is in force at " + WeekTimeToWords(*time) + "; see vexctl week list";
      });
}

YearOutcome ReadYear(Files& files, const std::string& szPath) {
  return ReadSchedule<YearOutcome>(files, szPath);
}

YearOutcome AddToYear(Files& files, const std::string& szPath, DateTime startTime, DateTime endTime,
                      const std::string& szShow) {
  return Changed<YearOutcome>(
      files, szPath,
      [&](YearSchedule& year) {
        year.AddShowEventByFile(szShow, startTime, endTime);
        const bool boolCutOff = endTime > startTime.DatePart().PlusDays(1);
        return "added " + ShowToWords(szShow, startTime, endTime) +
               (boolCutOff ? "; a dated show is cut off at midnight" : "");
      },
      [&](const YearSchedule& year, const Error& error) {
        return YearObstacles(year, startTime, endTime, error);
      });
}

YearOutcome RemoveFromYear(Files& files, const std::string& szPath, DateTime dtTime) {
  return Changed<YearOutcome>(
      files, szPath,
      [&](YearSchedule& year) {
        const auto day = year.DateSchedule(dtTime);
        if (!day) throw Error(1, "Schedule.RemoveShowEvent", "Can not remove non-show event");
        auto* const node = day->GetNodeByTime(WeekTimeFromDate(dtTime));
        std::string szWords = "removed " + ShowToWords(*Required(node).Obj()) + " of " + FormatDate(dtTime);
        year.RemoveShowEvent(dtTime, node);
        return szWords;
      },
      [&](const YearSchedule&, const Error&) {
        return "no dated show is in force at " + MomentToWords(dtTime) + "; see vexctl year list";
      });
}

}  // namespace vex

#include "tools/rehearsal/Narrator.h"

#include <algorithm>
#include <array>
#include <utility>

#include "player/StatusReport.h"

namespace vex {
namespace {

constexpr std::array<const char*, 7> Days{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                          "Thursday", "Friday", "Saturday"};

/// The rest of a text behind its beginning; false where it begins otherwise.
bool Behind(const std::string& szText, const std::string& szBeginning, std::string& szRest) {
  if (!szText.starts_with(szBeginning)) return false;
  szRest = szText.substr(szBeginning.size());
  return true;
}

std::string Counted(int64_t count, const std::string& szOne, const std::string& szSeveral) {
  return std::to_string(count) + " " + (count == 1 ? szOne : szSeveral);
}

std::string Hours(int64_t seconds) {
  const int64_t minutes = seconds / 60;
  const std::string szMinutes = std::to_string(minutes % 60);
  return std::to_string(minutes / 60) + ":" + (szMinutes.size() < 2 ? "0" : "") + szMinutes + " h";
}

}  // namespace

Narrator::Narrator(std::function<DateTime()> now, Teller teller)
    : m_Now(std::move(now)), m_Teller(std::move(teller)) {}

void Narrator::Hear(const RehearsalEvent& event) {
  if (event.Kind == "log") {
    HearLog(event);
  } else if (event.Kind == "box") {
    ++m_Boxes;
    Tell("MESSAGE BOX  " + std::string(event.Text));
  } else if (event.Kind == "fault") {
    ++m_Faults;
    Tell("  FAULT on purpose: " + std::string(event.Call) +
         (event.File.empty() ? "" : " of " + std::string(event.File)));
  }
}

void Narrator::HearLog(const RehearsalEvent& event) {
  if (event.Level >= StatusReport::LevelError) {
    ++m_Errors;
    TellFailure(
        "ERROR  " + std::string(event.Text) +
        (event.File.empty() ? "" : " (" + std::string(event.Play) + ": " + std::string(event.File) + ")"));
  } else if (event.Level == StatusReport::LevelCourse) {
    HearCourse(std::string(event.Text), event);
  }
}

void Narrator::HearCourse(const std::string& szText, const RehearsalEvent& event) {
  std::string szRest;
  const std::string szFile(event.File);
  if (Behind(szText, "Starting show: ", szRest)) {
    ShowBegins();
    Tell("show " + szRest + " begins");
  } else if (Behind(szText, "Finished show: ", szRest)) {
    Tell("show " + szRest + " is over");
    ShowEnds();
  } else if (szText == "Starting" && event.Play == "Musical") {
    ++m_Songs;
    Tell("  song " + szFile);
  } else if (szText == "Starting" && (event.Play == "Startup" || event.Play == "Shutdown")) {
    Tell("  " + std::string(event.Play == "Startup" ? "startup " : "shutdown ") + szFile);
  } else if (szText == "Starting" && event.Play == "Interactive") {
    Tell("  on a trigger, " + szFile);
  } else if (Behind(szText, "Trigger detected: ", szRest) || szText == "Startup trigger detected") {
    ++m_Triggers;
    Tell("  trigger " + (szRest.empty() ? "of the show's start" : "\"" + szRest + "\""));
  } else if (event.File.empty() && szText.find("triggers") == std::string::npos) {
    Tell(szText);
  }
}

void Narrator::ShowBegins() {
  ++m_Shows;
  if (m_ShowPlays) return;
  m_ShowPlays = true;
  ++m_Gaps;  // what was before it
  m_ShowSince = m_Now();
}

void Narrator::ShowEnds() {
  if (!m_ShowPlays) return;
  m_ShowPlays = false;
  m_SecondsOfShows += std::max<int64_t>(m_Now().SecondsSince(m_ShowSince), 0);
}

void Narrator::TellFailure(const std::string& szText) {
  if (!m_Teller) return;
  if (m_ToldFailures.contains(szText)) {
    ++m_Repeats;
    return;
  }
  const auto told = m_Repeats == 0 ? std::exchange(m_ToldFailures, {}) : std::set<std::string>();
  Tell(szText);
  m_ToldFailures = told;
  m_ToldFailures.insert(szText);
}

void Narrator::Finish() {
  if (m_Teller && m_Repeats > 0)
    m_Teller("            the same " + Counted(m_Repeats, "more time", "more times"));
  m_ToldFailures.clear();
  m_Repeats = 0;
}

void Narrator::Tell(const std::string& szText) {
  if (!m_Teller) return;
  Finish();
  const DateTime dtNow = m_Now();
  if (dtNow.DatePart() != m_Day) {
    m_Day = dtNow.DatePart();
    m_Teller(std::string(Days.at(static_cast<size_t>(m_Day.WeekDay() - 1))) + " " + FormatDate(m_Day));
  }
  constexpr size_t timeOfDay = 11;
  m_Teller("  " + FormatDateTime(dtNow).substr(timeOfDay) + "  " + szText);
}

std::string Narrator::Summary(DateTime from, DateTime until) const {
  const int64_t whole = until.SecondsSince(from);
  int64_t playing = m_SecondsOfShows;
  if (m_ShowPlays) playing += std::max<int64_t>(m_Now().SecondsSince(m_ShowSince), 0);
  return Counted(m_Shows, "show", "shows") + " played in " + Hours(playing) + " of " + Hours(whole) + ", " +
         Counted(m_Songs, "song", "songs") + ", " +
         Counted(m_Gaps + (m_ShowPlays ? 0 : 1), "gap without a show", "gaps without a show") + ", " +
         Counted(m_Triggers, "trigger", "triggers") + ", " + Counted(m_Errors, "error", "errors") +
         (m_Faults > 0 ? ", " + Counted(m_Faults, "fault on purpose", "faults on purpose") : "") +
         (m_Boxes > 0 ? ", " + Counted(m_Boxes, "message box", "message boxes") : "");
}

}  // namespace vex

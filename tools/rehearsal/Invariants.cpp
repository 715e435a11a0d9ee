#include "tools/rehearsal/Invariants.h"

#include <array>
#include <charconv>

#include "player/StatusReport.h"
#include "show/InteractiveGroup.h"
#include "show/Playlist.h"
#include "show/Show.h"

namespace vex {
namespace {

/// The rest of a text behind its beginning; false where it begins otherwise.
bool Behind(const std::string& szText, std::string_view szBeginning, std::string& szRest) {
  if (!szText.starts_with(szBeginning)) return false;
  szRest = szText.substr(szBeginning.size());
  return true;
}

/// The first arguments of a "send" line are numbers. Such lines are most of what is heard, so they are not
/// read as JSON.
std::array<double, 5> FirstArguments(const std::string& szLine) {
  constexpr std::string_view szMark = "\"args\":[";
  std::array<double, 5> values{};
  const char* at = szLine.data() + szLine.find(szMark) + szMark.size();
  for (double& value : values) at = std::from_chars(at, szLine.data() + szLine.size(), value).ptr + 1;
  return values;
}

}  // namespace

Invariants::Invariants(const Clock& clock, LightsOffOf lightsOff)
    : m_Clock(clock), m_LightsOffOf(std::move(lightsOff)) {}

void Invariants::Hear(const RehearsalEvent& event, const std::function<std::string()>& lineOf) {
  m_LineOf = &lineOf;
  // The engines of a show's sequences go, and put their lights out, after the line of its end.
  if (m_LookIsDue && m_Clock.Elapsed() > m_FinishedAt) LookForLight();
  if (event.Kind == "log") {
    HearLog(std::string(event.Text), event);
  } else if (event.Kind == "media") {
    HearMedia(event.Call);
  } else if (event.Call == "send") {
    HearSend();
  }
}

void Invariants::Finish() {
  m_LineOf = nullptr;
  if (m_LookIsDue) LookForLight();
}

void Invariants::HearLog(const std::string& szText, const RehearsalEvent& event) {
  std::string szShow;
  if (Behind(szText, "Starting show: ", szShow)) {
    ShowStarts(szShow);
  } else if (Behind(szText, "Finished show: ", szShow)) {
    ShowFinishes(szShow);
  } else if (!event.Play.empty()) {
    Course& course = m_Courses[{std::string(event.Play), std::string(event.File)}];
    const int64_t before = course.Playing;
    HearCourse(szText, course);
    if (event.Play == "Musical") m_MusicalPlaying += course.Playing - before;
    if (m_MusicalPlaying > 1) Broke("two musical sequences play");
    HearHolder(szText, event);
  }
}

// A sequence that is stopped lets go of the media player when it is looked at next; another one may have
// started before.
void Invariants::HearHolder(const std::string& szText, const RehearsalEvent& event) {
  const SequenceName name(event.Play, event.File);
  if (szText == "Starting" && m_HolderComes) {
    m_Holder = name;
    m_HolderComes = false;
  } else if (name == m_Holder && (szText == "Stopping" || szText == "Ending")) {
    m_MediaPlays = false;
  }
}

void Invariants::HearCourse(const std::string& szText, Course& course) {
  if (szText == "Queueing") {
    ++course.Waiting;
    return;
  }
  if (course.Ended && course.Waiting == 0 && course.Playing == 0)
    Broke("a sequence is spoken of that has ended");
  if (szText == "Starting") {
    --course.Waiting;
    ++course.Playing;
  } else if (szText == "Ending") {
    --(course.Playing > 0 ? course.Playing : course.Waiting);
    course.Ended = true;
  } else if (szText.starts_with("ERROR WITH SEQUENCE")) {
    --course.Waiting;
    course.Ended = true;
  }
}

void Invariants::HearMedia(std::string_view szCall) {
  if (szCall == "open") {
    if (m_MediaPlays) Broke("the media player is given something new while it plays");
    m_HolderComes = true;
    m_Holder = {};
  }
  if (szCall == "play") m_MediaPlays = true;
  if (szCall == "stop" || szCall == "ended" || szCall == "error") m_MediaPlays = false;
}

void Invariants::HearSend() {
  const auto [network, unit, circuit, startLevel, endLevel] = FirstArguments((*m_LineOf)());
  const Channel channel{static_cast<int64_t>(network), static_cast<int64_t>(unit),
                        static_cast<int64_t>(circuit)};
  if (endLevel == 0)
    m_Lit.erase(channel);
  else
    m_Lit.insert(channel);
}

void Invariants::ShowStarts(const std::string& szShow) {
  if (m_LookIsDue) LookForLight();
  if (!m_Show.empty()) Broke("a show starts before \"" + m_Show + "\" has finished");
  m_Show = szShow;
  m_LightsOff = m_LightsOffOf(szShow);
  m_MusicalPlaying = 0;
  m_Courses.clear();
}

void Invariants::ShowFinishes(const std::string& szShow) {
  if (m_Show != szShow) Broke("a show finishes that had not started");
  m_Show.clear();
  ++m_Finished;
  m_LookIsDue = true;
  m_FinishedAt = m_Clock.Elapsed();
}

// What a show leaves lit on purpose is not the next one's.
void Invariants::LookForLight() {
  m_LookIsDue = false;
  if (m_LightsOff && !m_Lit.empty()) {
    const auto& [network, unit, circuit] = *m_Lit.begin();
    Broke(std::to_string(m_Lit.size()) + " channels are lit when the show has finished (network " +
          std::to_string(network) + ", unit " + std::to_string(unit) + ", circuit " +
          std::to_string(circuit) + ")");
  }
  m_Lit.clear();
}

void Invariants::Broke(const std::string& szWhat) {
  m_Broken.push_back(szWhat + ": " + (m_LineOf != nullptr ? (*m_LineOf)() : "(the end)"));
}

bool PutsItsLightsOut(const Show& show) {
  for (const auto& list : {show.Background(), show.Startup(), show.Main(), show.Musical(), show.Shutdown()}) {
    if (!list->LightsOffAtEnd()) return false;
  }
  for (const auto& group : show.InteractiveGroups()) {
    if (group->LightsOffAtEnd().IsClear()) return false;
  }
  return true;
}

}  // namespace vex

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "host/Clock.h"
#include "tools/rehearsal/Rehearsal.h"

namespace vex {

class Show;

/// What must hold in every evening, whatever fails in it:
///
/// - the media player is given nothing new while it plays for a sequence that nobody has stopped;
/// - one musical sequence plays at a time;
/// - a show that starts is finished before the next one starts, or is the last;
/// - between a sequence's last "Ending" and its next "Queueing" nothing is said of it;
/// - when a show that puts its lights out has finished, every channel is dark.
///
/// It wants to hear everything that happens, lighting events too.
class Invariants {
 public:
  /// Whether the show of that file puts out all lights that it lights.
  using LightsOffOf = std::function<bool(const std::string& szShow)>;

  Invariants(const Clock& clock, LightsOffOf lightsOff);

  /// What happens, and what makes its line where that is wanted.
  void Hear(const RehearsalEvent& event, const std::function<std::string()>& lineOf);
  /// Nothing more comes.
  void Finish();
  /// What was broken, each with the line at which it was found; empty when all held.
  [[nodiscard]] const std::vector<std::string>& Broken() const { return m_Broken; }
  /// Shows that have finished.
  [[nodiscard]] int64_t Finished() const { return m_Finished; }

 private:
  /// How often a sequence waits in the start queue and plays; the same file may stand in a list twice.
  struct Course {
    int64_t Waiting = 0;
    int64_t Playing = 0;
    bool Ended = false;
  };
  using Channel = std::tuple<int64_t, int64_t, int64_t>;
  using SequenceName = std::pair<std::string, std::string>;  // play word and file

  void HearLog(const std::string& szText, const RehearsalEvent& event);
  void HearCourse(const std::string& szText, Course& course);
  void HearHolder(const std::string& szText, const RehearsalEvent& event);
  void HearMedia(std::string_view szCall);
  void HearSend();
  void ShowStarts(const std::string& szShow);
  void ShowFinishes(const std::string& szShow);
  void LookForLight();
  void Broke(const std::string& szWhat);

  const Clock& m_Clock;
  LightsOffOf m_LightsOffOf;
  const std::function<std::string()>* m_LineOf = nullptr;  // of the event being heard; empty at the end
  std::vector<std::string> m_Broken;
  std::string m_Show;
  bool m_LightsOff = false;
  int64_t m_Finished = 0;
  int64_t m_MusicalPlaying = 0;
  bool m_MediaPlays = false;
  bool m_HolderComes = false;  // the next sequence that starts is the one that the media were opened for
  SequenceName m_Holder;
  std::map<SequenceName, Course> m_Courses;
  std::set<Channel> m_Lit;
  bool m_LookIsDue = false;  // a show has finished, at m_FinishedAt
  Elapsed m_FinishedAt{0};
};

/// True when every list and every group of the show puts its lights out at the end.
[[nodiscard]] bool PutsItsLightsOut(const Show& show);

}  // namespace vex

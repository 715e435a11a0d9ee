#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vex::test {

/// The seams before which a wrapper is put, one at a time.
enum class Seam {
  FileSystem,
  Settings,
  GoneTray,
  LongMessage,
  Programs,
  Instance,
  Loop,
  Network,
  Lights,
  Engine,
  ShellCommands,
  Media,
  Window,
  Log,
};

/// How an evening went in which one call of a seam failed.
struct FaultOutcome {
  std::string Struck;              ///< the call that failed, empty where there were fewer
  int64_t StruckAt = -1;           ///< milliseconds since the start
  int64_t Calls = 0;               ///< how many calls could have failed
  bool Started = false;            ///< the form was loaded and lived on
  std::string Raised;              ///< what left the program's loop, which would have ended it
  bool EndedEarly = false;         ///< the program ended before it was asked to
  bool Unloaded = false;           ///< and did end when it was
  bool Told = false;               ///< a line of level 3, or the last error of the status file
  size_t Boxes = 0;                ///< message boxes
  std::vector<std::string> Two;    ///< all that was seen of the second show
  std::vector<std::string> Three;  ///< and of the third
};

// Milliseconds since the start: a reload of the schedules stands before the second and the third show.
constexpr int64_t BeforeTwo = 15000;
constexpr int64_t BeforeThree = 25000;
constexpr int64_t AskedToEnd = 33000;

/// A whole evening in which the failAt-th call of the seam fails, 0 for none:
///
///     0 start | 6-10 one.shw | 11-13 on demand | 15 reload, link | 17-21 two.shw | 25 reload | 27-31
///     three.shw | 33 asked to end
///
/// Each scheduled show has a background, startup, animations with a shell command, songs with clean-up and
/// delay, one of them a video, an interactive group whose trigger is pressed, and a shutdown sequence.
[[nodiscard]] FaultOutcome PlayFaultEvening(Seam seam, int64_t failAt);

}  // namespace vex::test

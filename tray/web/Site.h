#pragma once

#include <cstdint>
#include <string>

namespace vex {

/// What somebody at the page asks of the player. Show is a name as Site::Shows gives it (UTF-8), Seconds how
/// long it is to play, 0 for as long as it is not cleared; both count for Play alone.
struct Action {
  enum class What { Play, Clear, Reload, LinkOn, LinkOff, Stop };
  What Kind = What::Clear;
  std::string Show;
  int64_t Seconds = 0;
};

/// What came of it: Text is for the person who asked, one sentence, also where it was done.
struct Outcome {
  bool Done = false;
  std::string Text;
};

/// What there is to tell about the player, for the pages and for programs that watch it, and what may be
/// asked of it. The web server asks; whoever keeps the player's log and truth answers. The server has no
/// opinion on the texts: it hands them on as they stand.
///
/// - Every method is called on the threads of the web server, several at once, and returns soon: it waits for
/// no
///   player and no network.
/// - Texts are UTF-8; JSON is one value without line breaks outside its texts.
/// - A throw is answered with status 500 and without its words.
class Site {
 public:
  virtual ~Site() = default;

  /// The object of /api/state; the same as the event "state".
  [[nodiscard]] virtual std::string State() = 0;
  /// Prometheus text, version 0.0.4.
  [[nodiscard]] virtual std::string Metrics() = 0;
  /// Whether a monitor may sleep; where not, szWhy says in one line what is missing.
  [[nodiscard]] virtual bool Healthy(std::string& szWhy) = 0;
  /// The week as a picture: a whole SVG document.
  [[nodiscard]] virtual std::string Week() = 0;
  /// The last lines, at most so many, as an array, newest last: objects with "time", "level", "text",
  /// "count".
  [[nodiscard]] virtual std::string Lines(size_t most) = 0;
  /// The evenings played, as an array, newest last.
  [[nodiscard]] virtual std::string History() = 0;
  /// The show files that may be asked for, as an array of texts.
  [[nodiscard]] virtual std::string Shows() = 0;
  /// Asks it of the player; who may ask has been looked at before. Stop is the graceful one.
  virtual Outcome Do(const Action& action) = 0;
};

}  // namespace vex

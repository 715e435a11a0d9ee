#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "basic/DateTime.h"
#include "host/Files.h"

namespace vex {

/// One show as it was played: from when to when, its songs, what went wrong. Texts are UTF-8.
struct PlayedShow {
  struct Song {
    DateTime Time;
    std::string File;
  };
  struct Failure {
    DateTime Time;
    std::string Text;
    int64_t Count = 1;
  };

  std::string Show;
  DateTime From;
  std::optional<DateTime> To;  ///< none while it plays
  /// The player went before the show's end; To is then when that was noticed.
  bool Broken = false;
  std::vector<Song> Songs;
  std::vector<Failure> Errors;
};

/// What the history is made of: something that happened to a show, as a line of the history file.
struct HistoryEvent {
  enum class What { Begin, Song, Error, End, Broken };
  What Kind = What::Begin;
  DateTime Time;
  std::string Text;  ///< the show, the song's sequence, the error; empty for an end

  friend bool operator==(const HistoryEvent&, const HistoryEvent&) = default;
};

/// {"time":"2026-12-24 18:00:05","what":"song","text":"carol.vexseq"} without a line end.
[[nodiscard]] std::string HistoryEventToJson(const HistoryEvent& event);
/// None for a line that is damaged.
[[nodiscard]] std::optional<HistoryEvent> HistoryEventFromJson(std::string_view szJson);

/// Puts events together to shows, the oldest first. A show that begins while the same one plays goes on:
/// whoever wrote the history had been away. One that begins while another plays ends that one, broken.
class HistoryShelf {
 public:
  void Add(const HistoryEvent& event);
  [[nodiscard]] const std::vector<PlayedShow>& Shows() const { return m_Shows; }
  /// The show that plays; null for none.
  [[nodiscard]] const PlayedShow* Playing() const;
  /// Keeps the newest so many shows, and of each the newest thousand songs and errors at least: one that
  /// plays for a year is not kept whole.
  void Keep(size_t most);

 private:
  void End(DateTime dtTime, bool boolBroken);
  void AddError(const HistoryEvent& event);

  std::vector<PlayedShow> m_Shows;
};

/// The whole history; false when there is none.
bool ReadHistory(Files& files, const std::string& szPath, HistoryShelf& shelf);

/// {"show":"eve.shw","from":...,"to":... or null,"broken":false,"songs":[{"time","file"}],"errors":[{"time",
/// "text","count"}]}
[[nodiscard]] std::string PlayedShowToJson(const PlayedShow& show);

}  // namespace vex

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "basic/DateTime.h"

namespace vex {

class Files;

/// What the running player says about itself to whoever looks, without taking the tray's place. Texts are
/// the system's single-byte ones.
struct PlayerStatus {
  struct PlayingSequence {
    std::string PlayWord;
    std::string Filename;
  };
  struct Failure {
    DateTime Time;
    std::string Text;
  };

  int32_t Pid = 0;
  DateTime Started;
  bool Ready = false;
  bool NoSchedule = false;
  bool ShuttingDown = false;
  bool Link = false;
  std::string Current;  ///< serialised, empty for none
  std::string Next;
  std::vector<PlayingSequence> Playing;
  std::optional<std::string> Media;
  std::optional<Failure> LastError;
};

/// One JSON object and a line end, UTF-8.
[[nodiscard]] std::string PlayerStatusToJson(const PlayerStatus& status);

/// The file status.json: written whole whenever what it says changes, taken away at the end. A file that
/// cannot be written is tried again at the next change; the show goes on without it.
class StatusFile {
 public:
  /// The path as the system writes paths.
  StatusFile(Files& files, std::string szFilename);
  ~StatusFile();
  StatusFile(const StatusFile&) = delete;
  StatusFile& operator=(const StatusFile&) = delete;

  /// True when it was written, or when that was tried.
  bool Update(const PlayerStatus& status);

 private:
  Files& m_Files;
  std::string m_Filename;
  std::string m_Written;
};

}  // namespace vex

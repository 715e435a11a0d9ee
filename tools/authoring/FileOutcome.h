#pragma once

#include <optional>
#include <string>

#include "basic/Error.h"
#include "host/Files.h"

namespace vex {

/// What has come of a file that was read or changed for somebody who makes shows. Where the player goes on
/// with an empty schedule or without a show, whoever writes the files must be told what is wrong and where.
struct FileOutcome {
  /// Empty when all went well.
  std::optional<Error> Failure;
  /// For people: after a failure where and why, or empty; else what has been done.
  std::string Words;
  /// The text that the system writes for what was read or made, without line end.
  std::string Text;
};

/// Raises number 53 with the machine's reason for a file that cannot be read.
[[nodiscard]] std::string ReadText(Files& files, const std::string& szPath);
/// The same, and an empty text for a file that does not exist: one that exists and cannot be read is a
/// failure, since it may hold shows that a change would lose.
[[nodiscard]] std::string ReadTextIfThere(Files& files, const std::string& szPath);

/// Whether the machine's reason says that the file or its folder does not exist.
[[nodiscard]] bool MissingFile(const std::string& szReason);
/// Number 76 where the folder does not exist, 75 with the machine's reason for any other failure to write.
[[nodiscard]] FileOutcome NotWritten(const std::string& szReason);

}  // namespace vex

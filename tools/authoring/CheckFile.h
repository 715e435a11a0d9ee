#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "show/Show.h"
#include "tools/authoring/FileOutcome.h"

namespace vex {

/// What a file is read as.
enum class FileKind { List, Week, Year, Show };

/// Whether a file is sound, told before the show instead of during it: it is read as the player would, and
/// what the system would write for it is what the player understands of it.
struct CheckedFile : FileOutcome {
  /// The raw fields of a list, as they stand; Text is empty for a list.
  std::vector<std::string> Fields;
  /// What the player leaves out of a sound show, a line each.
  std::vector<std::string> LeftOut;
};

/// By the file's name, in either case: weeksched.qsc, yearsched.qsc, else a show.
[[nodiscard]] FileKind KindOfFile(std::string_view szPath);
/// Never raises the system's errors: they are the answer. What can be read but not written fails too.
[[nodiscard]] CheckedFile CheckFile(Files& files, const std::string& szPath, FileKind kind);

/// Raises ErrorObjectNotSet for a text that yields no show.
[[nodiscard]] std::shared_ptr<Show> RequiredShow(std::string_view szText);

}  // namespace vex

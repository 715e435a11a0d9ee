#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "show/Show.h"
#include "tools/authoring/FileOutcome.h"

namespace vex {

/// A show as JSON, for people who write shows by hand and for programs that make them. Everything that a show
/// file keeps of a show stands in it by name, so that a show taken out and brought back writes the same text
/// to the byte. Text is UTF-8 there.
///
///     { "format": "vexshow", "version": 1,
///       "startup": { "sequences": ["carol.vexseq"], "delay": 0, ... }, "main": { ... }, ... }

/// In lines for people, or in one line.
[[nodiscard]] std::string ShowToJson(const Show& show, bool boolLines);

/// What is missing is as in a new show. Raises number 13 with the place and what is wrong there: no JSON
/// (with line and column), another format, a name that is not known or stands twice, a value of another
/// kind, a number beyond 32 bits, text with a character outside the code page, an input without sequences or
/// a group without inputs.
[[nodiscard]] std::shared_ptr<Show> ShowFromJson(std::string_view szJson);

/// Text is the JSON. A show that cannot be written is refused, as it could not be brought back.
[[nodiscard]] FileOutcome ExportShow(Files& files, const std::string& szPath, bool boolLines);

struct ShowImport : FileOutcome {
  /// Whether the JSON was sound; a failure is then the show file's.
  bool JsonRead = false;
};

/// Writes the show file, whole or not at all.
[[nodiscard]] ShowImport ImportShow(Files& files, const std::string& szJsonPath, const std::string& szPath);

}  // namespace vex

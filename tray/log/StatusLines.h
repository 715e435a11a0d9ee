#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tray/log/LogLine.h"

namespace vex {

/// The lines of a status message as they are kept. The player writes them with the time of day alone and
/// sends those that it had to keep in one block; the date, and the seconds of a line that has just been
/// written, are filled in here. What has no time of day in front counts as written now.
///
/// The message is single-byte text. dtNow is when it came: a line whose time of day is still to come today
/// was written yesterday.
[[nodiscard]] std::vector<LogLine> LinesOfStatus(std::string_view szMessage, DateTime dtNow);

/// The level that the player gave a line, which does not travel with it: 3 for the words by which every
/// error line begins, 1 for any other. szText has no time in front.
[[nodiscard]] int32_t LevelOfLine(std::string_view szText);

}  // namespace vex

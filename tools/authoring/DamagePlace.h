#pragma once

#include <string>
#include <string_view>

#include "tools/authoring/CheckFile.h"

namespace vex {

/// Where in a text the damage lies that makes a reader refuse it, and what it is, for people; empty where
/// that cannot be told. Each part is read by its own reader, in the order of the file.
[[nodiscard]] std::string DamagePlace(FileKind kind, std::string_view szText);

/// What the player leaves out of a show without a word: parts that cannot be read, one line each.
[[nodiscard]] std::vector<std::string> LeftOut(std::string_view szShowText);

}  // namespace vex

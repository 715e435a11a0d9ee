#pragma once

#include <memory>
#include <string_view>

#include "show/Show.h"

namespace vex {

/// Reads a show text of the very shape in which shows are written, all fields there and every inner list
/// sound, in one walk: big shows of nested groups are read as fast as their bytes come in. Gives an empty
/// reference for any other text, however little it differs; ShowFromText then reads it by the rules, field
/// by field. What is read here is what those rules give.
[[nodiscard]] std::shared_ptr<Show> PlainShowFromText(std::string_view szText);

}  // namespace vex

#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "show/InteractiveGroup.h"

namespace vex {

/// Raises ErrorSubscript for a group without entries, which cannot be written.
[[nodiscard]] std::string InteractiveGroupToText(const InteractiveGroup& group);
/// Raises the errors of the list and of its entries, ErrorSubscript for fewer than seven fields.
[[nodiscard]] std::shared_ptr<InteractiveGroup> InteractiveGroupFromText(std::string_view szText);

}  // namespace vex

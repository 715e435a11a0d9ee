#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "show/Trigger.h"

namespace vex {

[[nodiscard]] std::shared_ptr<Trigger> NewTrigger(int32_t lNetwork, int32_t lUnitId, int32_t lInputNumber,
                                                  std::string szName);

/// "(3,Front door,1,0)": input, name, unit, network.
[[nodiscard]] std::string TriggerToText(const Trigger& trigger);
/// Raises the list's errors, ErrorSubscript for fewer than four fields and ErrorTypeMismatch for numbers
/// that are none.
[[nodiscard]] std::shared_ptr<Trigger> TriggerFromText(std::string_view szText);

}  // namespace vex

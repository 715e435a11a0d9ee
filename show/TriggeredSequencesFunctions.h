#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "show/TriggeredSequences.h"

namespace vex {

[[nodiscard]] std::shared_ptr<TriggeredSequences> NewTriggeredSequences(std::shared_ptr<Trigger> trigger,
                                                                        std::span<const std::string> names);

/// First name, trigger, second name, third name, ... Raises ErrorSubscript without a sequence and
/// ErrorObjectNotSet without a trigger.
[[nodiscard]] std::string TriggeredSequencesToText(const TriggeredSequences& entry);
/// Names are kept as they stand in the text, escapes and all. Raises the list's and the trigger's errors,
/// ErrorSubscript for fewer than two fields.
[[nodiscard]] std::shared_ptr<TriggeredSequences> TriggeredSequencesFromText(std::string_view szText);

}  // namespace vex

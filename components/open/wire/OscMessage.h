#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "components/open/wire/OscTrigger.h"

namespace vex {

/// One message of Open Sound Control 1.0, as far as a trigger needs it. It is read and written by liblo, or
/// by a reader of our own (plain/) on machines for which that library is not to be had; both give the same.
struct OscMessage {
  std::string Path;
  std::string Types;  ///< without the comma
  /// Its values, where the types are those of a trigger.
  OscTrigger Values;
};

constexpr char OscTriggerPath[] = "/trigger";
constexpr char OscTriggerTypes[] = "iiis";

/// No value for bytes that are no message.
[[nodiscard]] std::optional<OscMessage> ReadOscMessage(std::span<const uint8_t> bytes);

/// The message for one trigger.
[[nodiscard]] std::vector<uint8_t> WriteOscMessage(const OscTrigger& trigger);

}  // namespace vex

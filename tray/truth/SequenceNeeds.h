#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace vex {

class Files;
class Registry;

/// When a sequence, counted from its beginning, first has a light on: from then on there must be packets.
/// None for one that drives no lights, or whose file cannot be read, of which the player has its own word to
/// say. The name is single-byte text, as shows have it.
[[nodiscard]] std::optional<std::chrono::nanoseconds> FirstLight(Files& files, Registry& registry,
                                                                 const std::string& szSequence);

}  // namespace vex

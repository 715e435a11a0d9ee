#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace vex {

using Uuid = std::array<uint8_t, 16>;

/// The UUID of a name (RFC 4122, version 5: SHA-1 of the space's bytes and the name), so that the same name
/// gives the same identity on every run and every machine.
[[nodiscard]] Uuid NameUuid(const Uuid& space, std::string_view szName);

/// The identity of a source of lighting data: one machine and source name always give the same one.
[[nodiscard]] Uuid LightingSourceUuid(std::string_view szMachineId, std::string_view szSourceName);

}  // namespace vex

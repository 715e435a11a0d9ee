#pragma once

#include <string>

#include "host/Registry.h"

namespace vex {

/// The settings that all programs of the suite share: the product subkey "Shared". No reader raises.

/// "Software\Brillara\Shared", or with "\" and the subkey behind it where one is named.
[[nodiscard]] std::string SharedKeyPath(const std::string& szSubkey);

[[nodiscard]] int32_t GetSharedLong(Registry& registry, const std::string& szName,
                                    const std::string& szSubkey, int32_t lDefault);
[[nodiscard]] bool GetSharedBool(Registry& registry, const std::string& szName, const std::string& szSubkey,
                                 bool boolDefault);
[[nodiscard]] std::string GetSharedString(Registry& registry, const std::string& szName,
                                          const std::string& szSubkey, const std::string& szDefault);

}  // namespace vex

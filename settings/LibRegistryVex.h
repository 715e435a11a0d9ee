#pragma once

#include <string>

#include "host/Registry.h"

namespace vex {

/// The product key, below the current user, and what stands in its subkeys. No reader raises.

/// "Software\Brillara", or with "\" and the subkey behind it where one is named.
[[nodiscard]] std::string ProductKeyPath(const std::string& szSubkey);

[[nodiscard]] int32_t GetProductLong(Registry& registry, const std::string& szName,
                                     const std::string& szSubkey, int32_t lDefault);
[[nodiscard]] bool GetProductBool(Registry& registry, const std::string& szName, const std::string& szSubkey,
                                  bool boolDefault);
[[nodiscard]] std::string GetProductString(Registry& registry, const std::string& szName,
                                           const std::string& szSubkey, const std::string& szDefault);

}  // namespace vex

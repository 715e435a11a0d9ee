#pragma once

#include <string>

#include "host/Registry.h"

namespace vex {

/// The layer on which every setting is read: keys are opened with the platform's error codes as error
/// numbers, values are read with a default. The suite's setup program writes the settings; the player reads.
///
/// The three readers never raise: a missing key, a missing value, one of another kind or size and any
/// failure give the default.

/// Opens a key. Asked for KEY_WRITE_ACCESS, a key that does not open is created first. Raises Error with the
/// system's code, source "LibRegistry.OpenKey" and "RegOpenKeyEx failure". The caller closes the key.
[[nodiscard]] RegistryKey OpenKey(Registry& registry, RegistryRoot root, const std::string& szSubkey,
                                  uint32_t access);
/// Creates a key; raises Error with the system's code, source "LibRegistry.CreateKey" and
/// "RegCreateKeyEx failure".
void CreateKey(Registry& registry, RegistryRoot root, const std::string& szSubkey);

[[nodiscard]] int32_t QueryLong(Registry& registry, RegistryRoot root, const std::string& szSubkey,
                                const std::string& szName, int32_t lDefault);
/// True for any stored number but 0.
[[nodiscard]] bool QueryBool(Registry& registry, RegistryRoot root, const std::string& szSubkey,
                             const std::string& szName, bool boolDefault);
/// The text without its terminating zero; a stored empty text is no missing one.
[[nodiscard]] std::string QueryString(Registry& registry, RegistryRoot root, const std::string& szSubkey,
                                      const std::string& szName, const std::string& szDefault);

}  // namespace vex

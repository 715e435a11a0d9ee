#pragma once

#include <string>

#include "host/RegistryText.h"

namespace vex {

/// Copies a key of the current user, with all keys below it, into a settings file's text. Taken over are
/// numbers and texts; values of other kinds are none of the system's, and neither are texts that no settings
/// file can hold, those with a line end or a zero inside. A key that is not there adds nothing, one that may
/// not be read is left out.
void ExportRegistryKey(const std::string& szSubkey, RegistryText& text);

}  // namespace vex

#pragma once

#include <string>

namespace vex {

/// The path (UTF-8) with each part that does not exist as written replaced by the one in its folder that
/// differs in nothing but case by the code page's letters; of several the first by byte value. From the first
/// part on that is not found at all the rest stays as written. A path that exists costs one system call.
[[nodiscard]] std::string FindWithoutCase(const std::string& szHostPath);

}  // namespace vex

#pragma once

#include <unistd.h>

#include <string>

namespace vex {

/// The path itself where it exists, else the folder above it that does: where it would be made.
[[nodiscard]] inline std::string NearestFolder(std::string szPath) {
  while (szPath.size() > 1 && access(szPath.c_str(), F_OK) != 0) {
    const size_t slash = szPath.rfind('/');
    if (slash == std::string::npos) return ".";
    szPath.erase(slash == 0 ? 1 : slash);
  }
  return szPath.empty() ? "." : szPath;
}

}  // namespace vex

#pragma once

#include <string>

namespace vex {

/// Whether a program listens there: at a socket in the file system, or at one that has only a name.
[[nodiscard]] bool LocalSocketAccepts(const std::string& szPath);
[[nodiscard]] bool AbstractSocketAccepts(const std::string& szName);

}  // namespace vex

#pragma once

#include <functional>
#include <string>

namespace vex {

/// The developer's trace of what the schedules do, no part of the program's log. It is silent until a
/// program gives it somewhere to go.
void DebugTraceTo(std::function<void(const std::string&)> sink);
/// True when there is somebody to read it.
[[nodiscard]] bool DebugTraced();
void DebugTrace(const std::string& szLine);

}  // namespace vex

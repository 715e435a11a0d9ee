#pragma once

#include <exception>
#include <string>
#include <utility>

#include "basic/Error.h"
#include "player/StatusReport.h"

namespace vex {

/// The rule for handlers of timers and events: whatever is raised inside is caught, written as the
/// handler's name, " Error: " and the description at level 3, and the show goes on. Handlers themselves
/// contain no try. Returns whether the handler came to its end.
template <class Body>
bool GuardHandler(StatusReport& report, const char* szHandler, Body&& body) {
  try {
    std::forward<Body>(body)();
    return true;
  } catch (const Error& error) {
    report.LogMessage(StatusReport::LevelError, std::string(szHandler) + " Error: " + error.Description,
                      nullptr);
  } catch (const std::exception& error) {
    report.LogMessage(StatusReport::LevelError, std::string(szHandler) + " Error: " + error.what(), nullptr);
  }
  return false;
}

/// Where a failure changes nothing any more and nobody could be told: whatever is raised inside ends there.
template <class Body>
void IgnoreErrors(Body&& body) {
  try {
    std::forward<Body>(body)();
  } catch (const std::exception&) {
    return;
  }
}

}  // namespace vex

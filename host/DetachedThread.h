#pragma once

#include <functional>

namespace vex {

/// Runs work on a thread of its own that nobody waits for: it ends by itself, or with the program. Throws
/// std::system_error where the machine has no room for another thread; the work then does not run.
void StartDetached(std::function<void()> work);

}  // namespace vex

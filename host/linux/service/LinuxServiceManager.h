#pragma once

#include <memory>

#include "host/ServiceManager.h"

namespace vex {

/// The machine's service manager, reached by the socket that NOTIFY_SOCKET names. Without that variable, and
/// in a program that was built without the library for it, nobody is told anything.
[[nodiscard]] std::unique_ptr<ServiceManager> NewLinuxServiceManager();

}  // namespace vex

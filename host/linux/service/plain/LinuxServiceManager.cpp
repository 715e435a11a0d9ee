#include "host/linux/service/LinuxServiceManager.h"

namespace vex {

std::unique_ptr<ServiceManager> NewLinuxServiceManager() {
  return std::make_unique<ServiceManager>();
}

}  // namespace vex

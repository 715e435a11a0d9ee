#include "host/DetachedThread.h"

#include <thread>
#include <utility>

namespace vex {

void StartDetached(std::function<void()> work) {
  std::thread(std::move(work)).detach();
}

}  // namespace vex

#include "host/virtual/VirtualSingleInstance.h"

#include <utility>

namespace vex {

VirtualSingleInstance::VirtualSingleInstance(VirtualPlayerLock lock) : m_Lock(std::move(lock)) {}

VirtualSingleInstance::~VirtualSingleInstance() {
  if (*m_Lock == this) *m_Lock = nullptr;
}

bool VirtualSingleInstance::AlreadyRunning() {
  if (*m_Lock == nullptr) *m_Lock = this;
  return *m_Lock != this;
}

}  // namespace vex

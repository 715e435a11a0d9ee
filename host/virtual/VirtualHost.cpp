#include "host/virtual/VirtualHost.h"

#include <utility>

namespace vex {

VirtualHost::VirtualHost(DateTime dtStart, VirtualPlayerLock lock)
    : m_Clock(dtStart), m_EventLoop(m_Clock), m_Datagrams(m_Clock), m_SingleInstance(std::move(lock)) {}

}  // namespace vex

#pragma once

#include "host/win32/SystemHeaders.h"

namespace vex {

/// The machine's socket library, loaded when a network is first wanted: a program that imports it does not
/// even start where it is missing or broken, and a show without a network needs none. Its functions keep the
/// library's names. It is started once and kept until the program ends, also for threads that outlive
/// everything else.
struct SocketLibrary {
  decltype(&::WSAStartup) Startup = nullptr;
  decltype(&::WSAGetLastError) LastError = nullptr;
  decltype(&::WSAIoctl) Control = nullptr;
  decltype(&::WSAEventSelect) EventSelect = nullptr;
  decltype(&::socket) NewSocket = nullptr;
  decltype(&::closesocket) CloseSocket = nullptr;
  decltype(&::ioctlsocket) ControlSocket = nullptr;
  decltype(&::setsockopt) SetOption = nullptr;
  decltype(&::bind) Bind = nullptr;
  decltype(&::sendto) SendTo = nullptr;
  decltype(&::recvfrom) ReceiveFrom = nullptr;
  decltype(&::getaddrinfo) AddressInfo = nullptr;
  decltype(&::freeaddrinfo) FreeAddressInfo = nullptr;

  /// Raises Error with the system's code where the library cannot be had; the next call tries again.
  [[nodiscard]] static const SocketLibrary& Loaded();
};

}  // namespace vex

#pragma once

#include <utility>

#include "host/win32/SystemHeaders.h"

namespace vex {

/// A handle of the machine that closes itself.
class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : m_Handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  ~Handle() { Close(); }
  Handle(Handle&& other) noexcept : m_Handle(std::exchange(other.m_Handle, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    if (this != &other) {
      Close();
      m_Handle = std::exchange(other.m_Handle, nullptr);
    }
    return *this;
  }

  [[nodiscard]] HANDLE Get() const { return m_Handle; }
  [[nodiscard]] bool Open() const { return m_Handle != nullptr; }
  void Close() {
    if (m_Handle != nullptr) CloseHandle(std::exchange(m_Handle, nullptr));
  }

 private:
  HANDLE m_Handle = nullptr;
};

}  // namespace vex

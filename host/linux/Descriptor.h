#pragma once

#include <unistd.h>

#include <utility>

namespace vex {

/// An open file descriptor that closes itself; -1 is none.
class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : m_Fd(fd) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : m_Fd(std::exchange(other.m_Fd, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      Close();
      m_Fd = std::exchange(other.m_Fd, -1);
    }
    return *this;
  }

  [[nodiscard]] int Get() const { return m_Fd; }
  [[nodiscard]] bool Open() const { return m_Fd >= 0; }
  void Close() {
    if (m_Fd >= 0) ::close(m_Fd);
    m_Fd = -1;
  }

 private:
  int m_Fd;
};

}  // namespace vex

#pragma once

#include <string>

namespace vex {

/// The status lines that wait for the tray to make itself known, oldest first, joined by CR LF. Bounded: an
/// append that brings it to 60000 characters or more leaves the last 30000 at most, beginning with a whole
/// line.
class PendingStatus {
 public:
  static constexpr size_t Limit = 60000;
  static constexpr size_t Kept = 30000;

  void Append(const std::string& szLine);
  [[nodiscard]] const std::string& Text() const { return m_Text; }
  [[nodiscard]] bool Empty() const { return m_Text.empty(); }
  void Clear() { m_Text.clear(); }

 private:
  std::string m_Text;
};

}  // namespace vex

#pragma once

#include <chrono>
#include <ostream>
#include <string>

#include "host/Host.h"

namespace vex {

/// A bar on standard error for a run that takes its time, where standard error is a terminal; elsewhere all
/// of it does nothing. It appears after a moment, moves a few times a second, and Clear takes it away without
/// a trace; so does the destructor. Lines printed to the same terminal go in its place.
///
///     [==============>                         ]  37 %  2026-12-07
class ProgressBar {
 public:
  explicit ProgressBar(Host& machine);
  ~ProgressBar() { Clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  [[nodiscard]] bool Wanted() const { return m_Wanted; }
  /// Part is 0 to 1; the text stands behind the bar.
  void Show(double part, const std::string& szText);
  void Clear();
  /// To be called before a line is printed on standard output.
  void MakeRoom() {
    if (m_SharesTerminal) Clear();
  }

 private:
  bool m_Wanted;
  bool m_SharesTerminal;
  std::chrono::steady_clock::time_point m_NextLook;
  size_t m_Width = 0;  // of what is drawn, 0 for nothing
};

}  // namespace vex

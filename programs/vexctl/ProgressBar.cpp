#include "programs/vexctl/ProgressBar.h"

#include <algorithm>
#include <cmath>
#include <iostream>

namespace vex {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds Patience{400};
constexpr milliseconds BetweenLooks{100};
constexpr int32_t Cells = 40;

}  // namespace

ProgressBar::ProgressBar(Host& machine)
    : m_Wanted(machine.IsTerminal(StandardStream::Error)),
      m_SharesTerminal(m_Wanted && machine.IsTerminal(StandardStream::Output)),
      m_NextLook(steady_clock::now() + Patience) {}

void ProgressBar::Show(double part, const std::string& szText) {
  const auto now = steady_clock::now();
  if (!m_Wanted || now < m_NextLook) return;
  m_NextLook = now + BetweenLooks;
  const auto done = static_cast<size_t>(std::lround(std::clamp(part, 0.0, 1.0) * Cells));
  std::string szBar(done, '=');
  if (done < Cells) szBar += '>';
  szBar.resize(Cells, ' ');
  std::string szPercent = std::to_string(std::lround(std::clamp(part, 0.0, 1.0) * 100));
  szPercent.insert(0, 3 - std::min<size_t>(szPercent.size(), 3), ' ');
  const std::string szLine = "[" + szBar + "] " + szPercent + " %  " + szText;
  std::cout.flush();  // what was printed before it stands before it
  std::cerr << "\r" << szLine << std::string(m_Width - std::min(m_Width, szLine.size()), ' ') << std::flush;
  m_Width = szLine.size();
}

void ProgressBar::Clear() {
  if (m_Width == 0) return;
  std::cerr << "\r" << std::string(m_Width, ' ') << "\r" << std::flush;
  m_Width = 0;
}

}  // namespace vex

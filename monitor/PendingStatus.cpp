#include "monitor/PendingStatus.h"

namespace vex {

namespace {

constexpr char LineEnd[] = "\r\n";

}  // namespace

void PendingStatus::Append(const std::string& szLine) {
  if (!m_Text.empty()) m_Text += LineEnd;
  m_Text += szLine;
  if (m_Text.size() < Limit) return;
  m_Text.erase(0, m_Text.size() - Kept);
  const size_t end = m_Text.find(LineEnd);
  if (end != std::string::npos) m_Text.erase(0, end + 2);  // one endless line is kept as it is
}

}  // namespace vex

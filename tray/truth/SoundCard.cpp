#include "tray/truth/SoundCard.h"

#include <algorithm>
#include <string_view>

namespace vex {

namespace {

/// "07" as "7".
std::string WithoutZeros(std::string_view szNumber) {
  const size_t first = std::min(szNumber.find_first_not_of('0'), szNumber.size() - 1);
  return std::string(szNumber.substr(first));
}

/// What stands behind "hw_ptr" in a device's status; empty while it does not run.
std::string PositionIn(const std::string& szStatus) {
  constexpr std::string_view running = "state: RUNNING";
  constexpr std::string_view name = "hw_ptr";
  const size_t at = szStatus.find(name);
  if (szStatus.find(running) == std::string::npos || at == std::string::npos) return {};
  return szStatus.substr(at, szStatus.find('\n', at) - at);
}

}  // namespace

// A line for each device: "00-03: HDMI 0 : HDMI 0 : playback 1 : capture 1".
SoundCard::SoundCard(Files& files, std::string szFolder) : m_Files(files) {
  constexpr size_t numbers = 5;
  std::string szDevices;
  if (!m_Files.Read(szFolder + "pcm", szDevices)) return;
  for (size_t from = 0; from < szDevices.size();) {
    const size_t end = std::min(szDevices.find('\n', from), szDevices.size());
    const std::string szLine = szDevices.substr(from, end - from);
    from = end + 1;
    if (szLine.size() < numbers || szLine.find(": playback") == std::string::npos) continue;
    m_Status.push_back(szFolder + "card" + WithoutZeros(szLine.substr(0, 2)) + "\\pcm" +
                       WithoutZeros(szLine.substr(3, 2)) + "p\\sub0\\status");
  }
  m_Positions.resize(m_Status.size());
}

bool SoundCard::Moved() {
  bool boolMoved = false;
  std::string szStatus;
  for (size_t i = 0; i < m_Status.size(); ++i) {
    std::string szPosition = m_Files.Read(m_Status[i], szStatus) ? PositionIn(szStatus) : std::string();
    boolMoved = boolMoved || (!szPosition.empty() && szPosition != m_Positions[i]);
    m_Positions[i] = std::move(szPosition);
  }
  return boolMoved;
}

}  // namespace vex

#include "monitor/ServiceReport.h"

#include <algorithm>
#include <chrono>
#include <limits>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "monitor/StatusFile.h"
#include "schedule/MonitoredShowEvent.h"
#include "time/TimeRange.h"

namespace vex {
namespace {

constexpr int64_t SignsOfLifePerWait = 2;

/// False for no event and for one without a show.
bool ReadEvent(const std::string& szSerialised, MonitoredShowEvent& event) {
  if (szSerialised.empty()) return false;
  try {
    event.Deserialize(szSerialised);
  } catch (const Error&) {
    return false;
  }
  return !event.Filename().empty();
}

}  // namespace

ServiceReport::ServiceReport(EventLoop& loop, ServiceManager& manager) : m_Manager(manager) {
  if (m_Manager.WatchdogTime() <= Elapsed(0)) return;
  const auto interval =
      std::chrono::duration_cast<std::chrono::milliseconds>(m_Manager.WatchdogTime() / SignsOfLifePerWait);
  m_Alive = loop.NewTimer(TimerOrder::Component);
  m_Alive->Interval(
      static_cast<int32_t>(std::clamp<int64_t>(interval.count(), 1, std::numeric_limits<int32_t>::max())));
  m_Alive->Tick([this] { m_Manager.Alive(); });
  m_Alive->Enabled(true);
}

void ServiceReport::Update(const PlayerStatus& status) {
  if (status.Ready && !m_Ready) {
    m_Ready = true;
    m_Manager.Ready();
  }
  if (status.ShuttingDown && !m_Stopping) {
    m_Stopping = true;
    m_Manager.Stopping();
  }
  std::string szLine = StatusLine(status);
  if (szLine == m_Line) return;
  m_Line = std::move(szLine);
  m_Manager.Status(m_Line);
}

std::string StatusLine(const PlayerStatus& status) {
  MonitoredShowEvent current;
  MonitoredShowEvent next;
  std::string szLine = "No show";
  if (!status.Ready) {
    szLine = "Starting";
  } else if (ReadEvent(status.Current, current)) {
    szLine = "Playing " + AnsiToUtf8(current.Filename());
    if (current.Range()->HasEnd()) szLine += " until " + FormatDateTime(current.Range()->EndTime());
  } else if (ReadEvent(status.Next, next)) {
    szLine += "; next " + AnsiToUtf8(next.Filename());
    if (next.Range()->HasStart()) szLine += " at " + FormatDateTime(next.Range()->StartTime());
  }
  return szLine + (status.ShuttingDown ? ", shutting down" : "");
}

}  // namespace vex

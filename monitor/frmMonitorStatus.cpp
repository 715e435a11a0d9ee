#include <algorithm>
#include <chrono>
#include <exception>

#include "basic/Error.h"
#include "monitor/frmMonitor.h"
#include "player/Handlers.h"
#include "player/PlayType.h"
#include "player/SequencePlayInfo.h"
#include "player/ShowPlayer.h"
#include "show/Show.h"

// What the form tells: lines and show reports for the tray, and the status file.

namespace vex {

namespace {

constexpr int StatusRestFactor = 50;
constexpr std::chrono::milliseconds LongestStatusRest{100};

std::string SequenceText(const SequencePlayInfo* playInfo) {
  if (playInfo == nullptr) return {};
  return " " + PlayTypeWord(playInfo->PlayType()) + ": " + playInfo->Filename();
}

std::optional<std::string> Serialized(const std::shared_ptr<MonitoredShowEvent>& event) {
  if (!event) return std::nullopt;
  return event->Serialize();
}

}  // namespace

// A line that cannot be told is lost; whoever wrote it goes on.
void frmMonitor::LogMessage(int32_t lLevel, const std::string& szText, const SequencePlayInfo* playInfo) {
  if (szText.empty()) return;
  IgnoreErrors([&] {
    if (m_Surroundings.LogTrace) m_Surroundings.LogTrace(lLevel, szText, playInfo);
    if (lLevel > 0) TellLine(szText + SequenceText(playInfo));
  });
  if (lLevel >= LevelError) IgnoreErrors([&] { NoteFailure(szText + SequenceText(playInfo)); });
  if (lLevel > 0 && playInfo != nullptr) StatusChanged();  // with such lines the list of what plays changes
}

void frmMonitor::TellLine(const std::string& szText) {
  const std::string szLine = m_Clock.ShortTime() + ": " + szText;
  if (m_TrayHwnd != 0) FlushPendingStatus();
  if (m_TrayHwnd == 0 || !SendStatusToVexTray(szLine)) m_PendingStatus.Append(szLine);
}

// A tray whose window is gone counts as unknown again.
bool frmMonitor::SendToTray(int32_t lMessageType, const std::string& szText) {
  if (m_TrayHwnd == 0) return false;
  if (SendVexMessage(m_Surroundings.Desktop, m_hWnd, m_TrayHwnd, lMessageType, szText)) return true;
  m_TrayHwnd = 0;
  return false;
}

bool frmMonitor::SendStatusToVexTray(const std::string& szText) {
  return SendToTray(MessageStatus, szText);
}

void frmMonitor::FlushPendingStatus() {
  if (m_TrayHwnd == 0 || m_PendingStatus.Empty()) return;
  if (SendStatusToVexTray(m_PendingStatus.Text())) m_PendingStatus.Clear();
}

void frmMonitor::SetTrayWindow(WindowHandle hWnd) {
  if (hWnd == m_TrayHwnd) return;
  m_TrayHwnd = hWnd;
  FlushPendingStatus();
  AnnounceToTray();
}

void frmMonitor::AnnounceToTray() {
  if (!m_Initialized || m_AnnouncedToTray) return;
  m_AnnouncedToTray = SendToTray(MessageInitialized, "");
}

// What the player asks for must not disturb the player, so a report that fails is only noted. It asks once
// more while it is released during the unload; the schedules are gone by then, so only a player without
// schedules has something to tell.
void frmMonitor::ReportShowsToTray(bool boolForce) {
  try {
    SendReport(boolForce);
  } catch (const std::exception& error) {
    NoteFailure(std::string("ReportShowsToTray Error: ") + error.what());
  }
}

void frmMonitor::SendReport(bool boolForce) {
  if (m_TrayHwnd == 0 && !m_StatusFile) return;
  Report report = WorkOutReport();
  TakeOver(report);
  if (m_TrayHwnd == 0 || (!boolForce && m_LastReport == report)) return;
  if (!SendToTray(MessageNextShow, m_Status.Next)) return;
  if (!SendToTray(MessageCurrentShow, m_Status.Current)) return;
  m_LastReport = std::move(report);
}

frmMonitor::Report frmMonitor::WorkOutReport() const {
  const DateTime dtNow = m_Clock.Now();
  const EventReference scheduled = GetCurrentShowEvent(dtNow);
  const EventReference current = ShowIsPlaying() ? m_ShowPlayer->CurrentShow()->Monitoring() : scheduled;
  return {Serialized(current), Serialized(GetNextShowEvent(current, scheduled, dtNow))};
}

void frmMonitor::HeartbeatFailed(const std::string& szDescription) {
  NoteFailure("tmNextAction_Timer Error: " + szDescription);
  if (!m_StatusFile || m_Unloaded) return;
  IgnoreErrors([this] { TakeOver(WorkOutReport()); });
}

void frmMonitor::TakeOver(const Report& report) {
  m_Status.Current = report.Current.value_or("");
  m_Status.Next = report.Next.value_or("");
  StatusChanged();
}

void frmMonitor::NoteFailure(const std::string& szText) {
  m_Status.LastError = PlayerStatus::Failure{m_Clock.Now(), szText};
  StatusChanged();
}

// Many changes in one turn of the loop are one writing.
void frmMonitor::StatusChanged() {
  if (m_StatusSignal && !m_Unloaded) m_StatusSignal->Raise();
}

// A busy disk takes its time, and what changes all the while would have it written all the while: after a
// writing the file is left alone for so many times as long as that took.
void frmMonitor::WriteStatusFile() {
  if (!m_StatusFile || m_Unloaded) return;
  m_StatusStale = m_StatusRest->Enabled();
  if (m_StatusStale) return;
  if (m_ServiceReport) m_ServiceReport->Update(CurrentStatus());
  const Elapsed begin = m_Clock.Elapsed();
  if (!m_StatusFile->Update(CurrentStatus())) return;
  const Elapsed took = m_Clock.Elapsed() - begin;
  if (took <= Elapsed(0)) return;
  const auto rest = std::chrono::ceil<std::chrono::milliseconds>(took * StatusRestFactor);
  m_StatusRest->Interval(static_cast<int32_t>(std::min(rest, LongestStatusRest).count()));
  m_StatusRest->Enabled(true);
}

PlayerStatus frmMonitor::CurrentStatus() {
  m_Status.Ready = m_Initialized;
  m_Status.NoSchedule = m_NoSchedule;
  m_Status.ShuttingDown = m_ShuttingDown;
  m_Status.Link = m_LinkEnabled;
  m_Status.Playing.clear();
  m_Status.Media.reset();
  if (!m_ShowPlayer) return m_Status;
  for (const auto& sequence : m_ShowPlayer->Playing()) {
    m_Status.Playing.push_back({PlayTypeWord(sequence->PlayType()), sequence->Filename()});
  }
  if (const auto& holder = m_ShowPlayer->MediaHolder()) {
    try {
      m_Status.Media = holder->MediaFilename();
    } catch (const std::exception&) {
      m_Status.Media = holder->Filename();  // it plays something, and cannot say what
    }
  }
  return m_Status;
}

}  // namespace vex

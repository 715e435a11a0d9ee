#include "player/ShowPlayer.h"

#include <utility>

#include "player/Handlers.h"
#include "schedule/MonitoredShowEvent.h"
#include "settings/LibFile.h"
#include "show/Show.h"
#include "time/TimeRange.h"

namespace vex {

ShowPlayer::ShowPlayer(PlayerSurroundings surroundings)
    : m_Report(surroundings.Report),
      m_Clock(surroundings.Time),
      m_SequenceSurroundings{surroundings.Report, std::move(surroundings.Components.NewSequence),
                             [&settings = surroundings.Settings](const std::string& szName) {
                               return FullSequencePath(settings, szName, true);
                             },
                             surroundings.Programs},
      m_ShellCommands(std::move(surroundings.Components.ShellCommands)),
      m_MediaForm(std::move(surroundings.MediaForm)),
      m_Random(surroundings.Seed) {
  ReadSettings(surroundings.Settings, surroundings.NetworkSettings);
}

ShowPlayer::~ShowPlayer() {
  GuardHandler(m_Report, "ShowPlayer", [this] {
    CurrentShow(nullptr);
    m_ShellCommands.reset();
    m_StartQueue.Clear();
    m_Playing.Clear();
    m_State = ShowState();
    m_MediaHolder.reset();
    if (m_ShowTimer) {
      m_ShowTimer->Enabled(false);
      m_ShowTimer->Tick(nullptr);
    }
    if (m_CIO) {
      m_CIO->TriggerDetected = nullptr;
      m_CIO->Trouble = nullptr;
    }
    if (m_WMP) {
      m_WMP->OpenStateChange = nullptr;
      m_WMP->ErrorEvent = nullptr;
      m_WMP->Changed = nullptr;
      m_WMP->Trouble = nullptr;
      m_WMP->Stop();
    }
  });
}

void ShowPlayer::InitControls(Timer& showTimer, std::shared_ptr<ChannelIO> cio,
                              std::shared_ptr<MediaPlayer> wmp) {
  m_ShowTimer = &showTimer;
  m_CIO = std::move(cio);
  m_WMP = std::move(wmp);
  m_ShowTimer->Interval(1);
  m_ShowTimer->Enabled(false);
  m_ShowTimer->Tick([this] { m_ShowTimer_Timer(); });

  const auto trouble = [this](const std::string& szText) { Log(StatusReport::LevelError, szText); };
  m_CIO->TriggerDetected = [this](const NamedProperties& input) {
    GuardHandler(m_Report, "m_CIO_TriggerDetected", [&] { m_CIO_TriggerDetected(input); });
  };
  m_CIO->Trouble = trouble;
  m_WMP->OpenStateChange = [this](int32_t lNewState) {
    GuardHandler(m_Report, "m_WMP_OpenStateChange", [&] { m_WMP_OpenStateChange(lNewState); });
  };
  m_WMP->ErrorEvent = [this] { GuardHandler(m_Report, "m_WMP_Error", [this] { m_WMP_Error(); }); };
  m_WMP->Changed = [this] { WakeTimer(); };
  m_WMP->Trouble = trouble;

  for (int32_t lNetwork = 0; lNetwork < 4; ++lNetwork) {
    m_CIO->ConfigureValue(lNetwork, m_NetworkValue[static_cast<size_t>(lNetwork)]);
    m_CIO->ConfigureFlag(lNetwork, m_NetworkFlag);
    OpenNetwork(lNetwork, std::nullopt);
  }
  m_CIO->ClearTriggers();
}

void ShowPlayer::ReadSettings(Registry& settings, Networks& networks) {
  for (uint8_t network = 0; network < 4; ++network) {
    m_NetworkValue[network] = static_cast<int16_t>(networks.NetworkSpeed(network));
    m_NetworkPort[network] = networks.NetworkPort(network);
  }
  m_NetworkFlag = !networks.UsesOldMCP();
  m_CourserPort = networks.CourserPort();
  m_X10Port = networks.X10Port();
  m_Video = GetVideoPreferences(settings);
}

void ShowPlayer::OpenNetwork(int32_t lNetwork, std::optional<bool> boolForPlay) {
  m_CIO->OpenNetwork(static_cast<uint8_t>(lNetwork), m_NetworkPort[static_cast<size_t>(lNetwork)],
                     boolForPlay);
}

void ShowPlayer::OpenMainNetworksForPlay() {
  for (int32_t lNetwork = 0; lNetwork < 4; ++lNetwork) OpenNetwork(lNetwork, true);
  m_Opened.Main = true;
}

void ShowPlayer::OpenNetworksUsedBy(SequencePlayInfo& sequence) {
  if (!m_Opened.X10 && sequence.UsesX10()) {
    m_CIO->OpenX10(m_X10Port);
    m_Opened.X10 = true;
  }
  if (!m_Opened.Courser && sequence.UsesCourser()) {
    m_CIO->OpenCourser(m_CourserPort);
    m_Opened.Courser = true;
  }
}

void ShowPlayer::CurrentShow(std::shared_ptr<Show> show) {
  if (m_CurrentShow == show) return;
  m_CurrentShow = std::move(show);
  m_Report.ReportShowsToTray(false);
}

void ShowPlayer::NextShow(std::shared_ptr<Show> show) {
  if (GoesOnWith(show)) return;
  m_NextShow = std::move(show);
  ClearTriggers();
  EnterShutdownMode();
}

// The show being played goes on when the same file comes again from the same schedule with the same
// contents; a range that has changed is taken over.
bool ShowPlayer::GoesOnWith(const std::shared_ptr<Show>& show) {
  if (m_State.ShutdownMode || !m_CurrentShow || !show) return false;
  const MonitoredShowEvent& next = *show->Monitoring();
  MonitoredShowEvent& current = *m_CurrentShow->Monitoring();
  if (!next.Range()->StartsBeforeOtherEnds(current.Range().get())) return false;
  if (next.Filename() != current.Filename() || next.ScheduleType() != current.ScheduleType()) return false;
  if (!show->HasSameContents(m_CurrentShow.get())) {
    Log(StatusReport::LevelCourse, "Current show's contents have changed");
    return false;
  }
  if (!current.Range()->Equals(next.Range().get())) {
    current.Range()->CopyFrom(next.Range().get());
    Log(StatusReport::LevelCourse, "Current show's time range has changed");
  }
  return true;
}

void ShowPlayer::EnterShutdownMode() {
  m_State.ShutdownMode = true;
  if (m_CurrentShow) {
    MonitoredShowEvent& current = *m_CurrentShow->Monitoring();
    if (!current.ShuttingDown()) {
      Log(StatusReport::LevelCourse, "Current show is entering shutdown mode");
      m_Report.ReportShowsToTray(false);
    }
    current.ShuttingDown(true);
  }
  m_ShowTimer->Enabled(true);
  WakeTimer();
}

void ShowPlayer::StartShow() {
  if (m_CurrentShow) return;
  CurrentShow(std::exchange(m_NextShow, nullptr));
  ResetShowState();
  if (!m_CurrentShow) return;
  Log(StatusReport::LevelCourse, "Starting show: " + m_CurrentShow->Monitoring()->Filename());
  BuildLists();
  DecideStartMode();
  RegisterStartupTrigger();
  StartBackground();
}

void ShowPlayer::DecideStartMode() {
  const int32_t lType = m_CurrentShow->StartupTrigger() ? m_CurrentShow->StartupType() : 0;
  m_State.BackgroundEnabled = lType != 1;
  m_State.MainEnabled = lType != 1 && lType != 2;
}

// The media holder and the last musical sequence stay as they are: the holder is let go only when its
// sequence is checked as ended.
void ShowPlayer::ResetShowState() {
  ClearTriggers();
  m_StartQueue.Clear();
  m_Playing.Clear();
  m_State = ShowState();
}

void ShowPlayer::WakeTimer() {
  if (m_ShowTimer) m_ShowTimer->Wake();
}

void ShowPlayer::Log(int32_t lLevel, const std::string& szText, const SequencePlayInfo* sequence) {
  m_Report.LogMessage(lLevel, szText, sequence);
}

}  // namespace vex

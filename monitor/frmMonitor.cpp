#include "monitor/frmMonitor.h"

#include <exception>
#include <utility>

#include "basic/Error.h"
#include "basic/Number.h"
#include "host/MessageBoxes.h"
#include "host/SingleInstance.h"
#include "player/Handlers.h"
#include "player/ShowPlayer.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"

namespace vex {

namespace {

constexpr int32_t CIODelayInterval = 4000;
constexpr int32_t NextActionInterval = 1000;
constexpr int32_t MsgQueueInterval = 1;
constexpr int32_t ShowPlayerInterval = 1;
constexpr int32_t UnloadGracefullyInterval = 100;
constexpr int32_t LastLinesInterval = 10;
constexpr int32_t LastLinesLooks = 50;

constexpr int32_t ErrorCommPortOpen = 8005;
constexpr int32_t ExitNotStarted = 1;

std::unique_ptr<Timer> NewTimer(EventLoop& loop, TimerOrder order, int32_t lInterval,
                                std::function<void()> tick) {
  auto timer = loop.NewTimer(order);
  timer->Interval(lInterval);
  timer->Tick(std::move(tick));
  return timer;
}

/// The failure as the system's own error, whatever was raised.
Error CurrentError() {
  try {
    throw;
  } catch (const Error& error) {
    return error;
  } catch (const std::exception& error) {
    return Error(0, "", error.what());
  }
}

}  // namespace

frmMonitor::frmMonitor(MonitorSurroundings surroundings)
    : m_Surroundings(std::move(surroundings)),
      m_Clock(m_Surroundings.Time),
      m_Installation(m_Surroundings.Settings, m_Surroundings.FileSystem, m_Surroundings.Programs,
                     m_Surroundings.Boxes),
      m_Networks(m_Surroundings.Settings),
      m_HookRecords(m_Surroundings.Desktop) {
  EventLoop& loop = m_Surroundings.Loop;
  tmCIODelay = NewTimer(loop, TimerOrder::tmCIODelay, CIODelayInterval, [this] { tmCIODelay_Timer(); });
  tmNextAction =
      NewTimer(loop, TimerOrder::tmNextAction, NextActionInterval, [this] { tmNextAction_Timer(); });
  tmrVexMsgQueue =
      NewTimer(loop, TimerOrder::tmrVexMsgQueue, MsgQueueInterval, [this] { tmrVexMsgQueue_Timer(); });
  tmrShowPlayer = NewTimer(loop, TimerOrder::tmrShowPlayer, ShowPlayerInterval, nullptr);
  tmrUnloadGracefully = NewTimer(loop, TimerOrder::tmrUnloadGracefully, UnloadGracefullyInterval,
                                 [this] { tmrUnloadGracefully_Timer(); });
}

// A form that is dropped without an unload (a rehearsal ends so) goes in silence.
frmMonitor::~frmMonitor() {
  if (m_Unloaded) return;
  m_Unloaded = true;
  m_Surroundings.LogTrace = nullptr;
  m_TrayHwnd = 0;
  m_StatusFile.reset();
  m_ShowPlayer.reset();
  m_FormHook.reset();
  if (m_hWnd != 0) m_Surroundings.Desktop.DestroyWindow(m_hWnd);
}

int32_t frmMonitor::Run() {
  Form_Initialize();
  if (!m_Unloaded) Form_Load();
  if (!m_Unloaded) m_Surroundings.Loop.Run();
  SendLastLines();
  return m_ExitStatus;
}

// What the tray had no room for waits in this program and would be lost with it; a tray that takes nothing
// any more does not keep the program for long.
void frmMonitor::SendLastLines() {
  if (m_TrayHwnd == 0 || !m_Surroundings.Desktop.Unsent(m_TrayHwnd)) return;
  int32_t lLooksLeft = LastLinesLooks;
  const auto look = NewTimer(m_Surroundings.Loop, TimerOrder::Component, LastLinesInterval, [&] {
    if (--lLooksLeft <= 0 || !m_Surroundings.Desktop.Unsent(m_TrayHwnd)) m_Surroundings.Loop.Quit();
  });
  look->Enabled(true);
  m_Surroundings.Loop.Run();
}

void frmMonitor::Form_Initialize() {
  try {
    m_MsgQueue.Clear();
    if (!m_Surroundings.CheckInstallation || m_Installation.CheckInstallation()) return;
    m_Unloaded = true;  // the program ends here and now: there is nothing yet to unload
    m_ExitStatus = ExitNotStarted;
  } catch (const std::exception&) {
    const Error error = CurrentError();
    m_Surroundings.Boxes.Show(error.Description + "/" + error.Source, "");
  }
}

void frmMonitor::Form_Load() {
  if (m_Unloaded) return;
  try {
    if (m_Surroundings.Instance.AlreadyRunning() || m_ShuttingDown) {
      Unload();
    } else {
      LoadForm();
    }
  } catch (const std::exception&) {
    CloseAfterBox(CurrentError());
  }
}

void frmMonitor::LoadForm() {
  ParseCommandLine();
  m_Status.Pid = m_Surroundings.Pid;
  m_Status.Started = m_Clock.Now();
  if (m_Surroundings.Service != nullptr)
    m_ServiceReport.emplace(m_Surroundings.Loop, *m_Surroundings.Service);
  if (!m_Surroundings.StatusFilename.empty()) {
    m_StatusFile.emplace(m_Surroundings.FileSystem, m_Surroundings.StatusFilename);
    m_StatusSignal = m_Surroundings.Loop.NewSignal([this] { WriteStatusFile(); });
    m_StatusRest = NewTimer(m_Surroundings.Loop, TimerOrder::Component, 1, [this] {
      m_StatusRest->Enabled(false);
      if (m_StatusStale) WriteStatusFile();
    });
  }
  LogMessage(LevelCourse,
             m_NoSchedule ? "Show Player starting (for on demand shows)" : "Show Player starting", nullptr);
  LoadSchedules();
  HookWindow();
  CreatePlayer();
  tmCIODelay->Enabled(true);
  ConfigureNetworkLink();
  EnableNetworkLink(m_Installation.On());
}

void frmMonitor::ParseCommandLine() {
  m_NoSchedule = m_Surroundings.CommandLine == "/noschedule";
}

void frmMonitor::HookWindow() {
  m_hWnd = m_Surroundings.Desktop.NewMainWindow();
  m_FormHook = std::make_unique<MsgHook>(m_HookRecords);
  m_FormHook->AfterMessage = [this](const WindowMessage& message, intptr_t) {
    m_FormHook_AfterMessage(message);
  };
  m_FormHook->StartSubclass(m_hWnd);
  m_Label2 = FormatNumber(m_hWnd);
}

void frmMonitor::CreatePlayer() {
  m_Devices = m_Surroundings.NewDevices();
  m_CIO = m_Devices.Lights;
  m_MediaForm = std::make_shared<frmMediaPlayer>(m_Devices.Window, m_Devices.Media);
  m_ShowPlayer = std::make_unique<ShowPlayer>(
      PlayerSurroundings{*this, m_Clock, m_Surroundings.Programs, m_Surroundings.Settings, m_Networks,
                         m_Devices, m_Surroundings.Seed, m_MediaForm});
  m_ShowPlayer->InitControls(*tmrShowPlayer, m_CIO, m_MediaForm->wmp());
}

void frmMonitor::CloseAfterBox(const Error& error) {
  const std::string szText =
      error.Number == ErrorCommPortOpen
          ? "Shows can not be enabled because the comm port is already open.  "
            "If the Brillara Hardware Utility is running, shut it down and then "
            "enable shows."
          : "Shows cannot be enabled because of an error." + error.Description + "/" + error.Source;
  m_ExitStatus = ExitNotStarted;
  m_Surroundings.Boxes.Show(szText, "");
  Unload();
}

void frmMonitor::LoadSchedules() {
  const std::string szFolder = m_Installation.UserDataPath();
  m_Schedule = LoadSchedule(m_Surroundings.FileSystem, szFolder + "weeksched." + "qsc");
  m_YearSchedule = LoadYearSchedule(m_Surroundings.FileSystem, szFolder + "yearsched." + "qsc");
  LogMessage(LevelCourse, "Schedule loaded", nullptr);
}

void frmMonitor::ConfigureNetworkLink() {
  ChannelIO& cio = Required(m_CIO);
  cio.SetLink(m_Installation.RemoteHost(), m_Installation.LocalPort(), m_Installation.RemotePort());
  cio.SupportsSpecial(m_Installation.SupportsSpecial());
}

void frmMonitor::EnableNetworkLink(bool boolEnabled) {
  Required(m_CIO).LinkEnabled(boolEnabled);
  m_LinkEnabled = boolEnabled;
  StatusChanged();
}

void frmMonitor::Unload() {
  if (m_Unloaded) return;
  m_Unloaded = true;
  if (m_ServiceReport) {
    PlayerStatus status = CurrentStatus();
    status.ShuttingDown = true;
    m_ServiceReport->Update(status);
  }
  Form_Unload();
  DisableTimers();
  m_MsgQueue.Clear();
  m_StatusSignal.reset();
  m_StatusRest.reset();
  m_StatusFile.reset();
  if (m_hWnd != 0) IgnoreErrors([this] { m_Surroundings.Desktop.DestroyWindow(std::exchange(m_hWnd, 0)); });
  m_Surroundings.Loop.Quit();
}

void frmMonitor::Form_Unload() {
  LogMessage(LevelCourse, "Show Player shutting down", nullptr);
  m_Schedule.reset();
  m_YearSchedule.reset();
  m_OnDemandEvent.reset();
  m_ShowPlayer.reset();
  if (m_FormHook) m_FormHook->StopSubclass();
  m_FormHook.reset();
  IgnoreErrors([this] {
    if (m_MediaForm) m_MediaForm->Unload();
  });
  IgnoreErrors([this] {
    m_CIO.reset();
    m_MediaForm.reset();
    m_Devices = Devices();
  });
}

void frmMonitor::DisableTimers() {
  for (const auto& timer :
       {&tmCIODelay, &tmNextAction, &tmrVexMsgQueue, &tmrShowPlayer, &tmrUnloadGracefully}) {
    (*timer)->Enabled(false);
  }
}

bool frmMonitor::ShowIsPlaying() const {
  return m_ShowPlayer && m_ShowPlayer->CurrentShow();
}

void frmMonitor::RequestGracefulShutdown() {
  LogMessage(LevelCourse, "Graceful shutdown requested", nullptr);
  m_ShuttingDown = true;
  StatusChanged();
  if (!ShowIsPlaying()) {
    Unload();
    return;
  }
  tmrUnloadGracefully->Enabled(true);  // first, so that a failure does not leave the form waiting for ever
  m_ShowPlayer->NextShow(nullptr);
  SendReport(false);
}

void frmMonitor::RequestImmediateShutdown() {
  LogMessage(LevelCourse, "Immediate shutdown requested", nullptr);
  Unload();
}

}  // namespace vex

#include "basic/Error.h"
#include "host/Files.h"
#include "monitor/frmMonitor.h"
#include "player/Handlers.h"
#include "player/ShowPlayer.h"
#include "settings/LibFile.h"
#include "show/Show.h"

// The form's own timers: the end of the start-up delay, the heartbeat, and the wait for the last show's end.

namespace vex {

namespace {

/// With a drive or from the root on, in either way of writing.
bool NamesItsPlace(const std::string& szFilename) {
  return szFilename.find(':') != std::string::npos || szFilename.front() == '\\' || szFilename.front() == '/';
}

}  // namespace

void frmMonitor::tmCIODelay_Timer() {
  m_Initialized = true;
  LogMessage(LevelCourse, "Show Player initialized", nullptr);
  tmCIODelay->Enabled(false);
  tmNextAction->Enabled(true);
  StatusChanged();
}

// A tick that fails ends without a line in the log, since the next one is a second away and would most
// likely say the same; the status file tells what happened.
void frmMonitor::tmNextAction_Timer() {
  if (m_ShuttingDown) return;
  tmNextAction->Enabled(false);
  try {
    Heartbeat();
  } catch (const Error& error) {
    HeartbeatFailed(error.Description);
  } catch (const std::exception& error) {
    HeartbeatFailed(error.what());
  }
  if (!m_Unloaded) tmNextAction->Enabled(true);
}

void frmMonitor::Heartbeat() {
  AnnounceToTray();
  PlayShowEvent(GetCurrentShowEvent(m_Clock.Now()));
}

void frmMonitor::PlayShowEvent(const EventReference& event) {
  if (m_ShuttingDown) return;
  ShowPlayer& player = Required(m_ShowPlayer);
  if (!event || event->Filename().empty()) {
    player.NextShow(nullptr);
  } else if (!ReadShowFile(event->Filename())) {
    LogMessage(LevelError, "Cannot read show file: " + event->Filename(), nullptr);
    player.NextShow(nullptr);
  } else {
    std::shared_ptr<Show> show = m_ShowReader.Read(m_ShowFileText);
    auto monitoring = std::make_shared<MonitoredShowEvent>();
    monitoring->CopyFrom(event.get());
    Required(show).Monitoring(std::move(monitoring));
    player.NextShow(std::move(show));
  }
  SendReport(false);
}

// A name that does not say where it lies is looked for in the current folder, then in the user data folder.
bool frmMonitor::ReadShowFile(const std::string& szFilename) {
  Files& files = m_Surroundings.FileSystem;
  if (ReadFile(files, szFilename, m_ShowFileText)) return true;
  if (NamesItsPlace(szFilename) || m_Installation.UserDataPath().empty()) return false;
  return ReadFile(files, m_Installation.UserDataPath() + szFilename, m_ShowFileText);
}

// A show that is still not shutting down missed the request because a device failed; it is asked again.
void frmMonitor::tmrUnloadGracefully_Timer() {
  GuardHandler(*this, "tmrUnloadGracefully_Timer", [this] {
    if (!ShowIsPlaying()) {
      Unload();
    } else if (!m_ShowPlayer->CurrentShow()->Monitoring()->ShuttingDown()) {
      m_ShowPlayer->NextShow(nullptr);
    }
  });
}

}  // namespace vex

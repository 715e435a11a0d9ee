#include "basic/Error.h"
#include "monitor/ShowFile.h"
#include "monitor/frmMonitor.h"
#include "player/Handlers.h"
#include "player/ShowPlayer.h"
#include "show/Show.h"

// The form's own timers: the end of the start-up delay, the heartbeat, and the wait for the last show's end.

namespace vex {

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
  bool boolDone = false;
  try {
    Heartbeat();
    boolDone = true;
  } catch (const Error& error) {
    HeartbeatFailed(error.Description);
  } catch (const std::exception& error) {
    HeartbeatFailed(error.what());
  }
  if (m_Unloaded) return;
  tmNextAction->Enabled(true);
  if (boolDone && m_Surroundings.HeartbeatsRest) IgnoreErrors([this] { RestUntilNextMoment(); });
}

void frmMonitor::Heartbeat() {
  AnnounceToTray();
  PlayShowEvent(GetCurrentShowEvent(m_Clock.Now()));
}

// The present second has begun already, so what is left of the time is up to a second less.
void frmMonitor::RestUntilNextMoment() {
  if (!HeartbeatMayRest()) return;
  const DateTime dtNow = m_Clock.Now();
  const int64_t wait = InForce().SameUntil(dtNow).SecondsSince(dtNow) - 1;
  tmNextAction->QuietUntil(m_Clock.Elapsed() + std::chrono::seconds(wait));
}

// Either nothing plays and nothing should, or what should play does; then the next heartbeat, too, does
// nothing. Everything else is under way, or is told anew at each heartbeat.
bool frmMonitor::HeartbeatMayRest() const {
  const ShowPlayer& player = Required(m_ShowPlayer);
  if (player.NextShow()) return false;
  const bool boolWanted = !Required(GetCurrentShowEvent(m_Clock.Now())).Filename().empty();
  if (!player.CurrentShow()) return !boolWanted;
  return boolWanted && !player.CurrentShow()->Monitoring()->ShuttingDown();
}

void frmMonitor::PlayShowEvent(const EventReference& event) {
  if (m_ShuttingDown) return;
  ShowPlayer& player = Required(m_ShowPlayer);
  if (!event || event->Filename().empty()) {
    player.NextShow(nullptr);
  } else if (!ReadShowFile(m_Surroundings.FileSystem, m_Installation.UserDataPath(), event->Filename(),
                           m_ShowFileText)) {
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

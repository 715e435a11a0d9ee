#include <chrono>

#include "basic/Error.h"
#include "monitor/frmMonitor.h"
#include "player/Handlers.h"

// What other programs ask of the player. The window procedure only copies and queues; the queue is drained
// from a timer, outside the sender's call.
//
// A flood must not delay the show. A tick drains the queue, but where that takes its time it stops after a
// while and rests for half as long; meanwhile, and whenever many messages wait, no more are taken up
// and the senders wait.

namespace vex {

namespace {

constexpr Elapsed LongestTick = std::chrono::microseconds(500);
constexpr int32_t MostWaiting = 64;

}  // namespace

void frmMonitor::m_FormHook_AfterMessage(const WindowMessage& message) {
  GuardHandler(*this, "m_FormHook_AfterMessage", [&] {
    m_Label1 = FormatDateTime(m_Clock.Now());
    if (message.uMsg != WM_COPYDATA) return;
    WakeHeartbeat();
    ReceiveVexMessage(message.wParam, message.Copy, m_MsgQueue);
    tmrVexMsgQueue->Enabled(true);
    if (m_MsgQueue.Count() >= MostWaiting) m_Surroundings.Desktop.TakeMessages(m_hWnd, false);
  });
}

// The message may be there in the very millisecond of a heartbeat, which it precedes, and what it changes is
// changed in the next one: so the heartbeat is woken by both.
//
// A message that fails ends the tick; the timer stays enabled, so the next tick goes on behind it.
void frmMonitor::tmrVexMsgQueue_Timer() {
  const Elapsed begin = m_Clock.Elapsed();
  GuardHandler(*this, "tmrVexMsgQueue_Timer", [&] {
    while (!m_Unloaded && m_MsgQueue.Count() >= 1) {
      if (m_Clock.Elapsed() - begin >= LongestTick) return;
      WakeHeartbeat();
      HandleMessage(m_MsgQueue.Dequeue());
    }
    if (!m_Unloaded) m_Surroundings.Desktop.TakeMessages(m_hWnd, true);
    tmrVexMsgQueue->Enabled(false);
  });
  if (m_MsgQueue.Count() >= 1) RestFromMessages(begin);
}

void frmMonitor::RestFromMessages(Elapsed begin) {
  const Elapsed now = m_Clock.Elapsed();
  m_Surroundings.Desktop.TakeMessages(m_hWnd, false);
  if (now > begin) tmrVexMsgQueue->QuietUntil(now + (now - begin) / 2);
}

void frmMonitor::HandleMessage(const VexMessage& message) {
  switch (message.MessageType()) {
    case MessageShutdown:
      RequestImmediateShutdown();
      break;
    case MessageTrayWindow:
      SetTrayWindow(message.SenderHwnd());
      SendReport(true);
      break;
    case MessageReloadSchedules:
      LoadSchedules();
      break;
    case MessageNetworkLink:
      ConfigureNetworkLink();
      EnableNetworkLink(message.Text() == "ON");
      break;
    case MessageGracefulShutdown:
      RequestGracefulShutdown();
      break;
    case MessageShowOnDemand:
      HandleShowOnDemand(message.Text());
      break;
    case MessageLeaveNoSchedule:
      m_NoSchedule = false;
      StatusChanged();
      break;
    default:
      break;
  }
}

void frmMonitor::HandleShowOnDemand(const std::string& szText) {
  try {
    auto event = std::make_shared<MonitoredShowEvent>();
    if (!szText.empty()) event->Deserialize(szText);
    if (event->Filename().empty()) {
      LogMessage(LevelCourse, "Request to clear show on demand received", nullptr);
      m_OnDemandEvent.reset();
    } else {
      LogMessage(LevelCourse, "Request for show on demand received: " + event->Filename(), nullptr);
      m_OnDemandEvent = std::move(event);
    }
    if (tmNextAction->Enabled()) tmNextAction_Timer();
  } catch (const Error& error) {
    LogMessage(LevelError, "Show on demand error: " + error.Description, nullptr);
  } catch (const std::exception& error) {
    LogMessage(LevelError, std::string("Show on demand error: ") + error.what(), nullptr);
  }
}

ShowsInForce frmMonitor::InForce() const {
  return ShowsInForce(m_Schedule.get(), m_YearSchedule.get(), m_OnDemandEvent, m_NoSchedule);
}

frmMonitor::EventReference frmMonitor::GetCurrentShowEvent(DateTime dtNow) const {
  return InForce().GetCurrentShowEvent(dtNow);
}

frmMonitor::EventReference frmMonitor::GetNextShowEvent(const EventReference& current,
                                                        const EventReference& scheduled,
                                                        DateTime dtNow) const {
  if (m_ShuttingDown) return nullptr;
  return InForce().GetNextShowEvent(current, scheduled, dtNow);
}

}  // namespace vex

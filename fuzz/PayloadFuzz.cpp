#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "basic/Error.h"
#include "monitor/Msg.h"
#include "monitor/ShowsInForce.h"
#include "schedule/MonitoredShowEvent.h"
#include "schedule/Schedule.h"
#include "time/WeekTimeFunctions.h"

namespace {

using namespace vex;

void Expect(bool boolHolds) {
  if (!boolHolds) std::abort();
}

std::unique_ptr<Schedule> NewWeek() {
  auto week = std::make_unique<Schedule>();
  week->AddShowEventByFile("eve.shw", NewWeekTime(4, 18, 0, 0), NewWeekTime(4, 22, 0, 0));
  return week;
}

/// Whatever is asked for on demand, there is one event in force at any moment, and it is the one asked for
/// exactly while that one's range says so.
void Choose(const std::shared_ptr<MonitoredShowEvent>& event) {
  static const std::unique_ptr<Schedule> week = NewWeek();
  const DateTime dtNow = DateTime::FromParts(2026, 12, 24, 19, 0, 0);
  const ShowsInForce shows(week.get(), nullptr, event, false);
  const auto current = shows.GetCurrentShowEvent(dtNow);
  const bool boolOnDemand = !event->Filename().empty() && shows.GetOnDemandShowEvent(dtNow) == event;
  Expect(current != nullptr && (current == event) == boolOnDemand);
  (void)shows.GetNextShowEvent(event, current, dtNow);
}

void AskForShow(const std::string& szText) {
  const auto event = std::make_shared<MonitoredShowEvent>();
  event->Deserialize(szText);
  MonitoredShowEvent copy;
  copy.CopyFrom(event.get());
  Expect(copy.MemberwiseEquals(event.get()));
  Choose(event);
}

}  // namespace

/// The bytes are a payload as another program sends it. It becomes one message whatever it is; its text is
/// taken for a show on demand.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const CopyData copy{VexMessageData, static_cast<uint32_t>(size), reinterpret_cast<const char*>(data)};
  Queue<VexMessage> queue;
  ReceiveVexMessage(7, &copy, queue);
  Expect(queue.Count() == 1);
  const VexMessage message = queue.Dequeue();
  Expect(message.SenderHwnd() == 7);
  Expect(message.MessageType() > -10 && message.MessageType() < 100);
  Expect(message.Text().size() <= size && message.Text().find('\0') == std::string::npos);
  try {
    AskForShow(message.Text());
  } catch (const Error& error) {
    Expect(!error.Description.empty());
  }
  return 0;
}

#include "host/DatagramTurns.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "basic/Error.h"

namespace vex {
namespace {

constexpr int DatagramsATurn = 16;
constexpr size_t BytesATurn = 16384;
constexpr int64_t LongestRestMs = 100;

}  // namespace

DatagramTurns::DatagramTurns(EventLoop& loop, const Clock& clock, int64_t handle, Taker take,
                             DatagramHandler handler)
    : m_Loop(loop),
      m_Clock(clock),
      m_Handle(handle),
      m_Take(std::move(take)),
      m_Handler(std::move(handler)),
      m_Rest(loop.NewTimer(TimerOrder::Component)) {
  m_Rest->Tick([this] { WatchAgain(); });
  StartWatch();
}

void DatagramTurns::StartWatch() {
  m_Watch = m_Loop.WatchReadable(m_Handle, [this] { Take(); });
}

/// The handler may let the receiver go, so it is not looked at afterwards.
void DatagramTurns::Take() {
  const std::weak_ptr<bool> here = m_Here;
  const Elapsed begin = m_Clock.Elapsed();
  if (TakeSome(here) || here.expired()) return;
  // A flood: the thread goes to others for as long as it was here.
  m_Watch.reset();
  const auto worked = std::chrono::ceil<std::chrono::milliseconds>(m_Clock.Elapsed() - begin);
  m_Rest->Interval(static_cast<int32_t>(std::clamp<int64_t>(worked.count(), 1, LongestRestMs)));
  m_Rest->Enabled(true);
}

/// Where the machine refuses for now, the next tick tries again.
void DatagramTurns::WatchAgain() {
  try {
    StartWatch();
  } catch (const Error&) {
    return;
  }
  m_Rest->Enabled(false);
}

/// True once nothing waits any more.
bool DatagramTurns::TakeSome(const std::weak_ptr<bool>& here) {
  size_t bytes = 0;
  for (int taken = 0; taken < DatagramsATurn && bytes < BytesATurn && !here.expired(); ++taken) {
    DatagramAddress from;
    const auto size = m_Take(m_Bytes, from);
    if (!size) return true;
    bytes += *size;
    m_Handler(from, std::span(m_Bytes).first(*size));
  }
  return false;
}

}  // namespace vex

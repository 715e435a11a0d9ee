#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "host/Clock.h"
#include "host/Datagrams.h"
#include "host/EventLoop.h"
#include "host/Timer.h"

namespace vex {

/// How a port of a real machine is emptied: some datagrams a turn of the loop, and where more wait, a rest as
/// long as the work took, since everything else has to get its turns in a flood. Held by a receiver behind
/// its socket, so that it goes first.
class DatagramTurns {
 public:
  /// Takes one datagram that waits into the room and tells its size and sender; nothing where none waits.
  using Taker = std::function<std::optional<size_t>(std::span<uint8_t> room, DatagramAddress& from)>;

  /// The handle is one that the loop can watch. Clock and loop outlive this.
  DatagramTurns(EventLoop& loop, const Clock& clock, int64_t handle, Taker take, DatagramHandler handler);

 private:
  void StartWatch();
  void WatchAgain();
  void Take();
  [[nodiscard]] bool TakeSome(const std::weak_ptr<bool>& here);

  EventLoop& m_Loop;
  const Clock& m_Clock;
  int64_t m_Handle;
  Taker m_Take;
  DatagramHandler m_Handler;
  std::unique_ptr<Timer> m_Rest;
  std::array<uint8_t, 65536> m_Bytes{};
  std::shared_ptr<bool> m_Here = std::make_shared<bool>(true);
  std::unique_ptr<Watch> m_Watch;
};

}  // namespace vex

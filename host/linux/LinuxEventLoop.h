#pragma once

#include <functional>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "host/TimerList.h"
#include "host/linux/Descriptor.h"
#include "host/linux/LinuxClock.h"

struct epoll_event;

namespace vex {

/// The one thread's loop: epoll, with one timerfd armed for whichever timer is due first. While nothing is
/// due the thread sleeps; there is no polling and no tick that does nothing. A turn of the loop takes what
/// the kernel has ready, each source once, and then ticks what is due, each timer once, so that neither a
/// busy sender nor a late timer shuts the others out.
///
/// When somebody sets the wall clock every timer is woken: what waits for a time of day must look again.
/// Timers, watches and signals may be destroyed inside any handler, their own included. Handlers guard
/// themselves; an exception that escapes one leaves through Run or Pump, and the loop can be run again.
class LinuxEventLoop : public EventLoop {
 public:
  /// Raises Error with the system's code where the kernel refuses a descriptor.
  LinuxEventLoop();
  ~LinuxEventLoop() override;

  [[nodiscard]] std::unique_ptr<Timer> NewTimer(TimerOrder order) override;
  [[nodiscard]] std::unique_ptr<Signal> NewSignal(std::function<void()> handler) override;
  [[nodiscard]] std::unique_ptr<Watch> WatchReadable(int64_t handle, std::function<void()> handler) override;
  /// The same for a descriptor that can be written.
  [[nodiscard]] std::unique_ptr<Watch> WatchWritable(int64_t handle, std::function<void()> handler);

  void Run() override;
  void Quit() override { m_Quit = true; }
  void Pump() override;

  /// The handler runs on SIGTERM, SIGINT and, unless it is ignored, SIGHUP, which no longer end the program.
  /// To be called before other threads are made, for they must not get the signals.
  void OnTerminate(std::function<void()> handler);
  /// Asks for real-time priority for this thread (threads and programs started later do not inherit it);
  /// true when granted.
  bool TrySharpTimers();
  /// Wakes every timer; called when the wall clock has been set.
  void ClockWasSet() { m_Timers.WakeAll(); }
  /// Counts the turns, for those who ration what they take in one.
  [[nodiscard]] uint64_t Turns() const { return m_Turns; }

  [[nodiscard]] Elapsed Now() const { return m_Clock.Elapsed(); }

  // For the loop's own watches.
  void Forget(uint64_t id, int fd);

 private:
  struct Source {
    std::function<void()> Handler;
    bool Running = false;
  };
  [[nodiscard]] std::unique_ptr<Watch> NewWatch(int64_t handle, uint32_t events,
                                                std::function<void()> handler);
  void WatchClock();
  void Arm();
  void Turn(bool boolWait);
  void HandleSources(std::span<const epoll_event> events);

  LinuxClock m_Clock;
  Descriptor m_Epoll;
  Descriptor m_TimerFd;
  Descriptor m_ClockFd;
  Descriptor m_SignalFd;
  TimerList m_Timers{m_Clock};
  std::unordered_map<uint64_t, std::shared_ptr<Source>> m_Sources;
  std::unique_ptr<Watch> m_ClockWatch;
  std::unique_ptr<Watch> m_SignalWatch;
  uint64_t m_Created = 0;
  uint64_t m_Turns = 0;
  Elapsed m_Armed{0};  // 0: for nothing, max(): unknown
  bool m_Quit = false;
};

}  // namespace vex

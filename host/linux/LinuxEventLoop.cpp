#include "host/linux/LinuxEventLoop.h"

#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>

#include <array>

#include "host/linux/SystemError.h"

namespace vex {
namespace {

constexpr uint64_t TimerFdId = 0;
constexpr Elapsed Unknown = Elapsed::max();
constexpr int RealTimePriority = 10;

class LinuxWatch : public Watch {
 public:
  LinuxWatch(LinuxEventLoop& loop, uint64_t id, int fd) : m_Loop(loop), m_Id(id), m_Fd(fd) {}
  ~LinuxWatch() override { m_Loop.Forget(m_Id, m_Fd); }

 private:
  LinuxEventLoop& m_Loop;
  uint64_t m_Id;
  int m_Fd;
};

/// An eventfd: its counter makes several raises one.
class LinuxSignal : public Signal {
 public:
  LinuxSignal(LinuxEventLoop& loop, std::function<void()> handler)
      : m_EventFd(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (!m_EventFd.Open()) throw SystemError("EventLoop.NewSignal", "eventfd");
    m_Watch = loop.WatchReadable(m_EventFd.Get(), [fd = m_EventFd.Get(), handler = std::move(handler)] {
      eventfd_t raises = 0;
      if (eventfd_read(fd, &raises) == 0) handler();
    });
  }
  void Raise() override { eventfd_write(m_EventFd.Get(), 1); }

 private:
  Descriptor m_EventFd;
  std::unique_ptr<Watch> m_Watch;
};

/// Keeps a mark set for the time of a handler, however it is left.
class Mark {
 public:
  explicit Mark(bool& mark) : m_Mark(mark) { m_Mark = true; }
  ~Mark() { m_Mark = false; }
  Mark(const Mark&) = delete;
  Mark& operator=(const Mark&) = delete;

 private:
  bool& m_Mark;
};

}  // namespace

LinuxEventLoop::LinuxEventLoop()
    : m_Epoll(epoll_create1(EPOLL_CLOEXEC)),
      m_TimerFd(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      m_ClockFd(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
  if (!m_Epoll.Open() || !m_TimerFd.Open() || !m_ClockFd.Open()) throw SystemError("EventLoop", "");
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.u64 = TimerFdId;
  if (epoll_ctl(m_Epoll.Get(), EPOLL_CTL_ADD, m_TimerFd.Get(), &event) != 0)
    throw SystemError("EventLoop", "");
  m_ClockWatch = WatchReadable(m_ClockFd.Get(), [this] {
    uint64_t expirations = 0;
    const auto count = read(m_ClockFd.Get(), &expirations, sizeof expirations);
    if (count < 0 && errno == EAGAIN) return;
    WatchClock();
    ClockWasSet();
  });
  WatchClock();
}

LinuxEventLoop::~LinuxEventLoop() = default;

std::unique_ptr<Timer> LinuxEventLoop::NewTimer(TimerOrder order) {
  return m_Timers.NewTimer(order);
}

std::unique_ptr<Signal> LinuxEventLoop::NewSignal(std::function<void()> handler) {
  return std::make_unique<LinuxSignal>(*this, std::move(handler));
}

std::unique_ptr<Watch> LinuxEventLoop::WatchReadable(int64_t handle, std::function<void()> handler) {
  return NewWatch(handle, EPOLLIN, std::move(handler));
}

std::unique_ptr<Watch> LinuxEventLoop::WatchWritable(int64_t handle, std::function<void()> handler) {
  return NewWatch(handle, EPOLLOUT, std::move(handler));
}

std::unique_ptr<Watch> LinuxEventLoop::NewWatch(int64_t handle, uint32_t events,
                                                std::function<void()> handler) {
  const auto fd = static_cast<int>(handle);
  const uint64_t id = ++m_Created;
  epoll_event event{};
  event.events = events;
  event.data.u64 = id;
  if (epoll_ctl(m_Epoll.Get(), EPOLL_CTL_ADD, fd, &event) != 0) throw SystemError("EventLoop.Watch", "");
  m_Sources.emplace(id, std::make_shared<Source>(Source{std::move(handler)}));
  return std::make_unique<LinuxWatch>(*this, id, fd);
}

void LinuxEventLoop::Forget(uint64_t id, int fd) {
  epoll_ctl(m_Epoll.Get(), EPOLL_CTL_DEL, fd, nullptr);
  m_Sources.erase(id);
}

void LinuxEventLoop::Run() {
  while (!m_Quit) Turn(true);
  m_Quit = false;
}

void LinuxEventLoop::Pump() {
  if (!m_Quit) Turn(false);
}

void LinuxEventLoop::OnTerminate(std::function<void()> handler) {
  sigset_t signals;
  sigemptyset(&signals);
  // These two also where a shell has started the program in the background with SIGINT ignored.
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  // Who was told to ignore the terminal's going away (nohup) goes on doing so.
  struct sigaction hangUp {};
  sigaction(SIGHUP, nullptr, &hangUp);
  if (hangUp.sa_handler != SIG_IGN) sigaddset(&signals, SIGHUP);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  m_SignalWatch.reset();
  m_SignalFd = Descriptor(signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
  if (!m_SignalFd.Open()) throw SystemError("EventLoop.OnTerminate", "signalfd");
  m_SignalWatch = WatchReadable(m_SignalFd.Get(), [this, handler = std::move(handler)] {
    signalfd_siginfo info{};
    if (read(m_SignalFd.Get(), &info, sizeof info) == sizeof info) handler();
  });
}

bool LinuxEventLoop::TrySharpTimers() {
  sched_param parameters{};
  parameters.sched_priority = RealTimePriority;
  return sched_setscheduler(0, SCHED_FIFO | SCHED_RESET_ON_FORK, &parameters) == 0;
}

/// Arms the wall clock's timer for a moment that never comes, to be told when the clock is set.
void LinuxEventLoop::WatchClock() {
  itimerspec never{};
  never.it_value.tv_sec = 9'000'000'000;
  timerfd_settime(m_ClockFd.Get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
}

void LinuxEventLoop::Arm() {
  const Elapsed first = m_Timers.FirstDue();
  const Elapsed due = first == Elapsed::max() ? Elapsed(0) : first;
  if (due == m_Armed) return;
  // Setting the timer also takes away that it has run out, so it is never read.
  itimerspec when{};
  when.it_value.tv_sec = due.count() / 1'000'000'000;
  when.it_value.tv_nsec = due.count() % 1'000'000'000;
  timerfd_settime(m_TimerFd.Get(), TFD_TIMER_ABSTIME, &when, nullptr);
  m_Armed = due;
}

void LinuxEventLoop::Turn(bool boolWait) {
  ++m_Turns;
  if (boolWait) Arm();
  std::array<epoll_event, 32> events;
  const int count =
      epoll_wait(m_Epoll.Get(), events.data(), static_cast<int>(events.size()), boolWait ? -1 : 0);
  if (count > 0) HandleSources(std::span(events).first(static_cast<size_t>(count)));
  m_Timers.TickDue(m_Quit);
}

void LinuxEventLoop::HandleSources(std::span<const epoll_event> events) {
  const uint64_t turn = m_Turns;
  for (const epoll_event& event : events) {
    // A copy: the kernel's record is packed, and nothing may refer into it.
    const uint64_t id = event.data.u64;
    if (id == TimerFdId) {
      m_Armed = Unknown;
      continue;
    }
    // A handler that pumped may have taken what these events speak of; what is left is reported again.
    if (m_Quit || m_Turns != turn) return;
    const auto found = m_Sources.find(id);
    if (found == m_Sources.end() || found->second->Running) continue;
    const std::shared_ptr<Source> source = found->second;
    const Mark running(source->Running);
    source->Handler();
  }
}

}  // namespace vex

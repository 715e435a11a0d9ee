#include "host/virtual/VirtualEventLoop.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "basic/Error.h"

namespace vex {

namespace {

constexpr int64_t Never = std::numeric_limits<int64_t>::max();

int64_t MillisecondsUp(Elapsed elapsed) {
  return std::chrono::ceil<std::chrono::milliseconds>(elapsed).count();
}

/// The first point of the grid through next that is not before the moment; the grid begins at next.
int64_t GridPoint(int64_t next, int64_t interval, int64_t moment) {
  if (moment <= next) return next;
  return next + (moment - next + interval - 1) / interval * interval;
}

}  // namespace

struct VirtualEventLoop::SignalState {
  std::function<void()> Handler;
  bool Raised = false;  // guarded by the loop's m_SignalsMutex
};

class VirtualSignal final : public Signal {
 public:
  VirtualSignal(VirtualEventLoop& loop, std::function<void()> handler)
      : m_Loop(loop), m_State(std::make_shared<VirtualEventLoop::SignalState>()) {
    m_State->Handler = std::move(handler);
  }
  ~VirtualSignal() override {
    const std::lock_guard lock(m_Loop.m_SignalsMutex);
    std::erase(m_Loop.m_Raised, m_State);
  }
  VirtualSignal(const VirtualSignal&) = delete;
  VirtualSignal& operator=(const VirtualSignal&) = delete;

  void Raise() override {
    const std::lock_guard lock(m_Loop.m_SignalsMutex);
    if (m_State->Raised) return;
    m_State->Raised = true;
    m_Loop.m_Raised.push_back(m_State);
  }

 private:
  VirtualEventLoop& m_Loop;
  std::shared_ptr<VirtualEventLoop::SignalState> m_State;
};

/// Counts how many calls that run handlers stand inside each other: a Quit ends them all, and is done with
/// when the outermost returns.
class VirtualEventLoop::Nesting {
 public:
  explicit Nesting(VirtualEventLoop& loop) : m_Loop(loop) { ++m_Loop.m_Depth; }
  ~Nesting() {
    if (--m_Loop.m_Depth == 0) m_Loop.m_Quit = false;
  }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  VirtualEventLoop& m_Loop;
};

/// Keeps a timer out of the queue while its tick runs, whichever way that ends.
class VirtualEventLoop::Ticking {
 public:
  Ticking(VirtualEventLoop& loop, const TimerReference& timer) : m_Loop(loop), m_Timer(timer) {
    m_Timer->Ticking = true;
  }
  ~Ticking() {
    m_Timer->Ticking = false;
    m_Loop.Queue(m_Timer);
  }
  Ticking(const Ticking&) = delete;
  Ticking& operator=(const Ticking&) = delete;

 private:
  VirtualEventLoop& m_Loop;
  const TimerReference& m_Timer;
};

VirtualEventLoop::VirtualEventLoop(VirtualClock& clock)
    : m_Clock(clock), m_LastTurn{-1, TimerOrder::tmCIODelay, 0} {
  m_Clock.WallClockSet([this] { WakeAll(); });
}

VirtualEventLoop::~VirtualEventLoop() {
  m_Clock.WallClockSet(nullptr);
}

std::unique_ptr<Timer> VirtualEventLoop::NewTimer(TimerOrder order) {
  std::erase_if(m_Timers, [](const auto& timer) { return timer.expired(); });
  auto state = std::make_shared<TimerState>();
  state->Order = order;
  state->Serial = ++m_Serial;
  m_Timers.push_back(state);
  return std::make_unique<VirtualTimer>(*this, std::move(state));
}

std::unique_ptr<Signal> VirtualEventLoop::NewSignal(std::function<void()> handler) {
  return std::make_unique<VirtualSignal>(*this, std::move(handler));
}

std::unique_ptr<Watch> VirtualEventLoop::WatchReadable(int64_t, std::function<void()>) {
  throw PlatformError(ErrorInvalidCall);
}

void VirtualEventLoop::Run() {
  const Nesting nesting(*this);
  MoveThrough(Never - 1);
}

void VirtualEventLoop::Quit() {
  m_Quit = m_HasQuit = true;
}

void VirtualEventLoop::Pump() {
  HandleMoment();
}

bool VirtualEventLoop::AdvanceTo(Elapsed moment) {
  const Nesting nesting(*this);
  if (!MoveThrough(MillisecondsUp(moment))) return false;
  m_Clock.MoveTo(std::chrono::milliseconds(MillisecondsUp(moment)));
  m_LastTurn = std::max(m_LastTurn, LastTurnOf(Now()));
  return true;
}

bool VirtualEventLoop::Advance(int64_t milliseconds) {
  return AdvanceTo(m_Clock.Elapsed() + std::chrono::milliseconds(milliseconds));
}

void VirtualEventLoop::At(Elapsed moment, std::function<void()> handler) {
  m_Calls.emplace(std::max(Now(), MillisecondsUp(moment)), std::move(handler));
}

int64_t VirtualEventLoop::Now() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(m_Clock.Elapsed()).count();
}

int64_t VirtualEventLoop::NextMoment() const {
  const int64_t call = m_Calls.empty() ? Never : m_Calls.begin()->first;
  const int64_t tick = m_Due.empty() ? Never : m_Due.begin()->first.Due;
  return std::min(call, tick);
}

bool VirtualEventLoop::MoveThrough(int64_t last) {
  while (HandleMoment()) {
    m_LastTurn = std::max(m_LastTurn, LastTurnOf(Now()));
    const int64_t next = NextMoment();
    if (next > last) return true;
    m_Clock.MoveTo(std::chrono::milliseconds(next));
  }
  return false;
}

bool VirtualEventLoop::HandleMoment() {
  while (!m_Quit && (RunSignal() || RunCall() || RunTick())) {
  }
  return !m_Quit;
}

bool VirtualEventLoop::RunSignal() {
  std::shared_ptr<SignalState> signal;
  {
    const std::lock_guard lock(m_SignalsMutex);
    if (m_Raised.empty()) return false;
    signal = std::move(m_Raised.front());
    m_Raised.pop_front();
    signal->Raised = false;
  }
  signal->Handler();
  return true;
}

bool VirtualEventLoop::RunCall() {
  if (m_Calls.empty() || m_Calls.begin()->first > Now()) return false;
  const auto call = m_Calls.extract(m_Calls.begin());
  call.mapped()();
  return true;
}

bool VirtualEventLoop::RunTick() {
  if (m_Due.empty() || m_Due.begin()->first.Due > Now()) return false;
  const TimerReference timer = m_Due.begin()->second;
  Unqueue(*timer);
  timer->Quiet = false;
  timer->Next = GridPoint(timer->Next, timer->Interval, Now() + 1);
  m_LastTurn = std::max(m_LastTurn, Turn{Now(), timer->Order, timer->Serial});
  ++m_Ticks;
  const Ticking ticking(*this, timer);
  const auto handler = timer->Handler;
  if (handler && *handler) (*handler)();
  return true;
}

void VirtualEventLoop::StartGrid(const TimerReference& timer) {
  timer->Quiet = false;
  timer->Next = Now() + timer->Interval;
  Queue(timer);
}

void VirtualEventLoop::Quiet(const TimerReference& timer, Elapsed until) {
  if (m_EveryTick || !timer->Enabled) return;
  const bool boolForEver = until > Elapsed::max() - std::chrono::milliseconds(timer->Interval + 1);
  timer->QuietEnd = boolForEver ? Never : GridPoint(timer->Next, timer->Interval, MillisecondsUp(until));
  timer->Quiet = timer->QuietEnd > timer->Next;
  Queue(timer);
}

void VirtualEventLoop::Wake(const TimerReference& timer) {
  if (!timer->Quiet) return;
  timer->Quiet = false;
  timer->Next = GridPoint(timer->Next, timer->Interval, Now());
  if (timer->Next == Now() && TurnHasPassed(*timer)) timer->Next += timer->Interval;
  Queue(timer);
}

void VirtualEventLoop::WakeAll() {
  for (const auto& weak : m_Timers) {
    if (const auto timer = weak.lock()) Wake(timer);
  }
}

VirtualEventLoop::Turn VirtualEventLoop::LastTurnOf(int64_t moment) {
  return {moment, TimerOrder{std::numeric_limits<int32_t>::max()}, std::numeric_limits<uint64_t>::max()};
}

bool VirtualEventLoop::TurnHasPassed(const TimerState& timer) const {
  return Turn{Now(), timer.Order, timer.Serial} <= m_LastTurn;
}

void VirtualEventLoop::Queue(const TimerReference& timer) {
  Unqueue(*timer);
  if (!timer->Enabled || timer->Ticking) return;
  timer->Due = timer->Quiet ? timer->QuietEnd : timer->Next;
  if (timer->Due == Never) return;
  m_Due.emplace(Turn{timer->Due, timer->Order, timer->Serial}, timer);
  timer->Queued = true;
}

void VirtualEventLoop::Unqueue(TimerState& timer) {
  if (!timer.Queued) return;
  m_Due.erase(Turn{timer.Due, timer.Order, timer.Serial});
  timer.Queued = false;
}

}  // namespace vex

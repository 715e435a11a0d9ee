#include "host/win32/Win32EventLoop.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/win32/SystemError.h"

namespace vex {

struct Win32EventLoop::SignalState {
  std::function<void()> Handler;
  std::atomic<bool> Raised = false;
  bool Running = false;
};

struct Win32EventLoop::Source {
  HANDLE Waited = nullptr;
  std::function<void()> Handler;
  bool Running = false;
};

namespace {

constexpr size_t OwnHandles = 2;
constexpr int MessagesATurn = 64;
constexpr int64_t NanosecondsAUnit = 100;

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

class Win32EventLoop::LoopSignal : public Signal {
 public:
  LoopSignal(Win32EventLoop& loop, std::function<void()> handler)
      : m_Loop(loop), m_State(std::make_shared<SignalState>()) {
    m_State->Handler = std::move(handler);
  }
  void Raise() override { m_Loop.Raise(m_State); }

 private:
  Win32EventLoop& m_Loop;
  std::shared_ptr<SignalState> m_State;
};

class Win32EventLoop::LoopWatch : public Watch {
 public:
  LoopWatch(Win32EventLoop& loop, std::shared_ptr<Source> source)
      : m_Loop(loop), m_Source(std::move(source)) {}
  ~LoopWatch() override { std::erase(m_Loop.m_Sources, m_Source); }
  LoopWatch(const LoopWatch&) = delete;
  LoopWatch& operator=(const LoopWatch&) = delete;

 private:
  Win32EventLoop& m_Loop;
  std::shared_ptr<Source> m_Source;
};

Win32EventLoop::Win32EventLoop(const WaitableTimer::Calls& calls)
    : m_WaitableTimer(calls), m_Raised(CreateEventA(nullptr, FALSE, FALSE, nullptr)) {
  if (!m_Raised.Open()) throw SystemError("EventLoop", "");
}

std::unique_ptr<Timer> Win32EventLoop::NewTimer(TimerOrder order) {
  return m_Timers.NewTimer(order);
}

std::unique_ptr<Signal> Win32EventLoop::NewSignal(std::function<void()> handler) {
  return std::make_unique<LoopSignal>(*this, std::move(handler));
}

std::unique_ptr<Watch> Win32EventLoop::WatchReadable(int64_t handle, std::function<void()> handler) {
  if (m_Sources.size() + OwnHandles >= MAXIMUM_WAIT_OBJECTS - 1) throw PlatformError(ErrorInvalidCall);
  auto source = std::make_shared<Source>();
  source->Waited = reinterpret_cast<HANDLE>(static_cast<intptr_t>(handle));
  source->Handler = std::move(handler);
  m_Sources.push_back(source);
  return std::make_unique<LoopWatch>(*this, std::move(source));
}

void Win32EventLoop::Raise(const std::shared_ptr<SignalState>& state) {
  if (state->Raised.exchange(true)) return;
  {
    const std::lock_guard lock(m_SignalsGuard);
    m_Signals.push_back(state);
  }
  SetEvent(m_Raised.Get());
}

void Win32EventLoop::Run() {
  const ModalLoops::Lookout lookout(m_Modal);
  try {
    while (!m_Quit) Turn(true);
  } catch (...) {
    TakeBackEnd();
    throw;
  }
  TakeBackEnd();
  m_Quit = false;
}

void Win32EventLoop::Pump() {
  if (!m_Quit) Turn(false);
}

/// Elapsed time and the waitable timer need not agree to the last digit: after a sleep that ended early the
/// timer is armed again for what is left.
void Win32EventLoop::Arm() {
  const Elapsed first = m_Timers.FirstDue();
  const Elapsed due = first == Elapsed::max() ? Elapsed(0) : first;
  if (due == m_Armed) return;
  m_Armed = due;
  if (due == Elapsed(0)) {
    m_WaitableTimer.Cancel();
    return;
  }
  const int64_t left = std::max<int64_t>((due - m_Clock.Elapsed()).count(), 0);
  m_WaitableTimer.Set((left + NanosecondsAUnit - 1) / NanosecondsAUnit);
}

HANDLE Win32EventLoop::Sleep(bool boolWait) {
  if (boolWait) Arm();
  std::array<HANDLE, MAXIMUM_WAIT_OBJECTS> handles{m_WaitableTimer.Get(), m_Raised.Get()};
  DWORD count = OwnHandles;
  for (const auto& source : m_Sources)
    if (!source->Running) handles[count++] = source->Waited;
  const DWORD index = MsgWaitForMultipleObjectsEx(count, handles.data(), boolWait ? INFINITE : 0, QS_ALLINPUT,
                                                  MWMO_INPUTAVAILABLE);
  if (index == WAIT_OBJECT_0) m_Armed = Elapsed::max();
  return index >= OwnHandles && index < count ? handles[index] : nullptr;
}

void Win32EventLoop::Turn(bool boolWait) {
  m_Modal.EndAll();
  const HANDLE signalled = Sleep(boolWait);
  HandleMessages();
  HandleSignals();
  HandleWatches(signalled);
  m_Timers.TickDue(m_Quit);
}

/// The machine's loop takes the messages. No exception may leave this.
void Win32EventLoop::TurnInsideModalLoop() {
  try {
    if (!m_Quit && !m_Kept) {
      HandleSignals();
      HandleWatches(nullptr);
      m_Timers.TickDue(m_Quit);
    }
  } catch (...) {
    KeepException();
  }
  if (m_Quit || m_Kept) EndModalLoop();
}

/// What the machine's own loops end for, whatever they are.
void Win32EventLoop::EndModalLoop() {
  if (!std::exchange(m_EndPosted, true)) PostQuitMessage(0);
}

/// One that none of the machine's loops has taken would end the next run before it begins.
void Win32EventLoop::TakeBackEnd() {
  MSG message{};
  if (std::exchange(m_EndPosted, false)) PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
}

void Win32EventLoop::HandleMessages() {
  MSG message{};
  for (int taken = 0; taken < MessagesATurn && !m_Quit; ++taken) {
    // What other programs send is handled inside this call.
    const bool boolTaken = PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0;
    Rethrow();
    if (!boolTaken) return;
    if (message.message == WM_QUIT) {
      m_Quit = true;
      return;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
    Rethrow();
  }
}

/// The handle that ended the sleep may be one that a sleep resets; the others are asked one by one, each
/// right before its handler, since the handlers before it may have pumped.
void Win32EventLoop::HandleWatches(HANDLE signalled) {
  const std::vector<std::shared_ptr<Source>> sources = m_Sources;
  for (const auto& source : sources) {
    if (m_Quit) return;
    const bool boolHere = std::ranges::find(m_Sources, source) != m_Sources.end();
    if (!boolHere || source->Running) continue;
    if (source->Waited != signalled && WaitForSingleObject(source->Waited, 0) != WAIT_OBJECT_0) continue;
    const Mark running(source->Running);
    source->Handler();
  }
}

void Win32EventLoop::HandleSignals() {
  std::vector<std::weak_ptr<SignalState>> raised;
  {
    const std::lock_guard lock(m_SignalsGuard);
    raised.swap(m_Signals);
  }
  std::vector<std::weak_ptr<SignalState>> later;
  const auto keepLater = [&](size_t from) {
    later.insert(later.end(), raised.begin() + static_cast<std::ptrdiff_t>(from), raised.end());
    if (later.empty()) return;
    const std::lock_guard lock(m_SignalsGuard);
    m_Signals.insert(m_Signals.begin(), later.begin(), later.end());
    SetEvent(m_Raised.Get());
  };
  for (size_t i = 0; i < raised.size(); ++i) {
    if (m_Quit) return keepLater(i);
    const auto state = raised[i].lock();
    if (!state) continue;
    if (state->Running) {
      later.push_back(state);
      continue;
    }
    state->Raised = false;
    const Mark running(state->Running);
    try {
      state->Handler();
    } catch (...) {
      keepLater(i + 1);
      throw;
    }
  }
  keepLater(raised.size());
}

void Win32EventLoop::Rethrow() {
  if (m_Kept) std::rethrow_exception(std::exchange(m_Kept, nullptr));
}

}  // namespace vex

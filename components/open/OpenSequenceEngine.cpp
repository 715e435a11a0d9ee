#include "components/open/OpenSequenceEngine.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "basic/Error.h"
#include "player/devices/ChannelIO.h"

namespace vex {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

/// How long an event takes: at least a millisecond, and a rate of nothing is a very small one.
int32_t DurationMs(const LightingEvent& event, double playRate) {
  if (event.StartTime == event.EndTime) return 1;  // every event of a frame
  constexpr double SmallestRate = 0.00001;
  const double rate = std::abs(event.Rate) < SmallestRate ? SmallestRate : event.Rate;
  const double duration = std::nearbyint((event.EndTime - event.StartTime) / rate / playRate);
  return static_cast<int32_t>(std::clamp(duration, 1.0, double{std::numeric_limits<int32_t>::max()}));
}

int64_t CeilMilliseconds(nanoseconds time) {
  return std::chrono::ceil<milliseconds>(time).count();
}

}  // namespace

OpenSequenceEngine::OpenSequenceEngine(vex::Clock& clock, EventLoop& eventLoop, Files& files,
                                       SequencePathFinder fullPath)
    : m_Clock(clock), m_EventLoop(eventLoop), m_Files(files), m_FullPath(std::move(fullPath)) {}

OpenSequenceEngine::~OpenSequenceEngine() {
  try {
    Close();
  } catch (const std::exception&) {
    // A control that fails now has failed the show already.
  }
}

void OpenSequenceEngine::Load(const std::string& szFilename) {
  Close();
  m_Cursor.reset();
  m_Sequence.reset();
  auto sequence = std::make_unique<OpenSequence>(LoadOpenSequence(m_Files, m_FullPath, szFilename));
  m_Cursor = std::make_unique<SequenceCursor>(*sequence);
  m_Harmless.reset();
  m_Sequence = std::move(sequence);
}

void OpenSequenceEngine::PlayRate(double rate) {
  if (!(rate > 0) || !std::isfinite(rate)) throw PlatformError(ErrorInvalidCall);
  if (PlaysByClock()) {
    const Elapsed now = m_Clock.Elapsed();
    const nanoseconds position = Position(now);
    m_Rate = rate;
    m_RoundStart += now - MomentOf(position);  // goes on from where it is
    Sleep();
  }
  m_Rate = rate;
}

void OpenSequenceEngine::PlayOptions(bool boolLoopAtEnd, bool boolLightsOffAtEnd) {
  m_NextOptions = {boolLoopAtEnd, boolLightsOffAtEnd};
}

void OpenSequenceEngine::PrepareForPlay(bool boolHasMedia) {
  Close();
  m_Options = m_NextOptions;
  m_HasMedia = boolHasMedia;
  if (!m_Cursor) return;
  m_Cursor->Restart(nanoseconds(0));
  m_Cursor->Prefetch();
}

void OpenSequenceEngine::Start() {
  if (!m_Cursor) return;  // its load failed; it ends at the first look
  if (m_Playing) {
    Close();
    m_Cursor->Restart(nanoseconds(0));
  }
  m_Playing = true;
  m_Unseen = NobodySees();
  if (m_HasMedia) return;
  m_Cursor->Restart(nanoseconds(0));
  // Begun in a millisecond, as everything is: the timers' ticks then lie on what is due.
  m_RoundStart = std::chrono::floor<milliseconds>(m_Clock.Elapsed());
  if (!m_Timer) {
    m_Timer = m_EventLoop.NewTimer(TimerOrder::Component);
    m_Timer->Tick([this] { m_Timer_Tick(); });
  }
  m_Timer->Enabled(true);
  PlayPass();
}

void OpenSequenceEngine::Stop() {
  Close();
}

int32_t OpenSequenceEngine::PlayState() {
  if (m_Failure) std::rethrow_exception(std::exchange(m_Failure, nullptr));
  // The end is where the clock says, whether the own timer or the player looks first.
  if (PlaysByClock() && !m_Options.LoopAtEnd && Position(m_Clock.Elapsed()) >= RoundLength()) PlayPass();
  return m_Playing ? 1 : 0;
}

std::string OpenSequenceEngine::MediaFile() {
  return m_Sequence ? m_Sequence->Media : std::string();
}

std::any OpenSequenceEngine::ShellCommand() {
  if (!m_Sequence || m_Sequence->ShellCommand.CommandLine.empty()) return {};
  return m_Sequence->ShellCommand;
}

bool OpenSequenceEngine::UsesNetwork(NetworkKind kind) {
  if (!m_Sequence) return false;
  switch (kind) {
    case NetworkKind::Main:
      return m_Sequence->UsesMain;
    case NetworkKind::X10:
      return m_Sequence->UsesX10;
    case NetworkKind::Courser:
      return m_Sequence->UsesCourser;
  }
  return false;
}

void OpenSequenceEngine::InitMusicSync(int32_t lMilliseconds) {
  if (m_Cursor) m_Cursor->Restart(milliseconds(std::max(lMilliseconds, 0)));
}

void OpenSequenceEngine::SyncToMusic(int32_t lMilliseconds) {
  if (m_Playing && m_HasMedia) m_Cursor->Reach(milliseconds(lMilliseconds));
}

bool OpenSequenceEngine::GetEvent(LightingEvent& event) {
  if (!m_Playing || !m_HasMedia || m_Unseen) return false;
  if (m_Cursor->Next(event)) return true;
  m_Cursor->Prefetch();
  return false;
}

NextDue OpenSequenceEngine::NextEventDue() {
  if (!m_Playing || !m_HasMedia || m_Unseen) return NextDue::Never();
  const auto due = m_Cursor->NextDue();
  return due ? NextDue::At(CeilMilliseconds(*due)) : NextDue::Never();
}

/// A loop changes nothing by itself; it is looked at once a round all the same, for it may have failed.
NextDue OpenSequenceEngine::NextStateChange() {
  if (m_Failure) return NextDue::At(0);
  return PlaysByClock() ? NextDue::At(MomentOf(RoundLength()).count()) : NextDue::Never();
}

std::optional<int32_t> OpenSequenceEngine::Length() {
  if (!m_Sequence) return std::nullopt;
  constexpr int64_t Longest = std::numeric_limits<int32_t>::max();
  return static_cast<int32_t>(std::min(CeilMilliseconds(m_Sequence->Duration), Longest));
}

void OpenSequenceEngine::m_Timer_Tick() {
  if (!PlaysByClock()) return;
  try {
    PlayPass();
  } catch (const std::exception&) {
    m_Failure = std::current_exception();
  }
}

/// A loop of no length would never end a round.
nanoseconds OpenSequenceEngine::RoundLength() const {
  const nanoseconds shortest = m_Options.LoopAtEnd ? nanoseconds(milliseconds(1)) : nanoseconds(0);
  return std::max(m_Sequence->Duration, shortest);
}

nanoseconds OpenSequenceEngine::Position(Elapsed now) const {
  const Elapsed past = now - m_RoundStart;
  if (m_Rate == 1.0) return past;
  return nanoseconds(static_cast<int64_t>(static_cast<double>(past.count()) * m_Rate));
}

Elapsed OpenSequenceEngine::MomentOf(nanoseconds position) const {
  if (m_Rate == 1.0) return m_RoundStart + position;
  return m_RoundStart +
         Elapsed(static_cast<int64_t>(std::ceil(static_cast<double>(position.count()) / m_Rate)));
}

void OpenSequenceEngine::PlayPass() {
  try {
    PlayUntil(m_Clock.Elapsed());
  } catch (...) {
    try {
      Close();  // a sequence that fails ends as any other
    } catch (const std::exception&) {
      // The first failure is the one to tell.
    }
    throw;
  }
}

void OpenSequenceEngine::PlayUntil(Elapsed now) {
  nanoseconds position = Position(now);
  while (position >= RoundLength()) {
    m_Cursor->Reach(RoundLength());
    SendDue();
    if (!m_Options.LoopAtEnd) {
      Close();
      return;
    }
    BeginNextRound(now);
    position = Position(now);
  }
  m_Cursor->Reach(position);
  SendDue();
  FlushSent();
  m_Cursor->Prefetch();
  Sleep();
}

/// Rounds that were missed altogether are left out.
void OpenSequenceEngine::BeginNextRound(Elapsed now) {
  const Elapsed round = MomentOf(RoundLength()) - m_RoundStart;
  m_RoundStart += std::max<int64_t>((now - m_RoundStart) / round, 1) * round;
  m_Cursor->NextRound();
}

/// A damaged frame must fail when its time comes, seen or not.
bool OpenSequenceEngine::NobodySees() {
  if (!m_CIO || m_CIO->EventsAreSeen()) return false;
  if (!m_Harmless) m_Harmless = !m_Sequence->Frames || m_Sequence->Frames->Intact();
  return *m_Harmless;
}

void OpenSequenceEngine::SendDue() {
  if (m_Unseen) return;
  while (m_Cursor->Next(m_Event)) Send(m_Event);
}

void OpenSequenceEngine::Send(const LightingEvent& event) {
  if (!m_CIO || !m_CIO->AcceptsUnit(event.Network, event.UnitId) ||
      !m_CIO->AcceptsCircuit(event.Network, event.UnitId, event.Circuit))
    return;
  m_CIO->SendEvent(event.Network, event.UnitId, event.Circuit, event.StartLevel, event.EndLevel,
                   event.Command, event.Rate, event.StartTime, event.EndTime,
                   DurationMs(event, m_HasMedia ? 1.0 : m_Rate));
  m_Sent = true;
}

void OpenSequenceEngine::Sleep() {
  const nanoseconds end = RoundLength();
  const auto due = m_Unseen ? std::nullopt : m_Cursor->NextDue();
  m_Timer->QuietUntil(MomentOf(std::min(due.value_or(end), end)));
}

void OpenSequenceEngine::Close() {
  if (!m_Playing) return;
  m_Playing = false;
  if (m_Timer) m_Timer->Enabled(false);
  if (m_Options.LightsOffAtEnd) SendLightsOff();
  FlushSent();
  m_Cursor->Restart(nanoseconds(0));
}

/// A light that stays lit is seen by everybody: a control that refuses is asked once more, and one circuit
/// that cannot be put out holds up no other.
void OpenSequenceEngine::SendLightsOff() {
  std::exception_ptr failure;
  while (m_Cursor->NextLightsOff(m_Event)) {
    try {
      try {
        Send(m_Event);
      } catch (const std::exception&) {
        Send(m_Event);
      }
    } catch (const std::exception&) {
      if (!failure) failure = std::current_exception();
    }
  }
  if (failure) {
    FlushSent();
    std::rethrow_exception(failure);
  }
}

void OpenSequenceEngine::FlushSent() {
  if (std::exchange(m_Sent, false)) m_CIO->Flush();
}

}  // namespace vex

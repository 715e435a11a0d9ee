#include <algorithm>
#include <chrono>
#include <cmath>

#include "player/Handlers.h"
#include "player/ShowPlayer.h"
#include "schedule/MonitoredShowEvent.h"
#include "show/Show.h"

namespace vex {

void ShowPlayer::m_ShowTimer_Timer() {
  const bool boolDone = GuardHandler(m_Report, "m_ShowTimer_Timer", [this] { Tick(); });
  if (boolDone && m_ShowTimer->Enabled()) SleepUntilSomethingIsDue();
}

void ShowPlayer::Tick() {
  m_Busy = false;
  if (!m_CurrentShow) {
    Log(StatusReport::LevelDetail, "Starting next show");
    StartShow();
  }
  if (!m_CurrentShow) {
    Log(StatusReport::LevelDetail, "No current show");
    m_ShowTimer->Enabled(false);
    m_CIO->ShowsEnded();
    return;
  }
  while (!m_StartQueue.Empty()) StartNextQueued();
  const PlayingNow now = CheckPlaying();
  if (m_State.ShutdownMode) {
    FeedShutdown(now);
  } else {
    FeedShow(now);
  }
}

ShowPlayer::PlayingNow ShowPlayer::CheckPlaying() {
  PlayingNow now;
  int32_t lIndex = 1;
  while (lIndex <= m_Playing.Count()) {
    const SequenceReference sequence = m_Playing.Item(lIndex);
    if (CheckSequence(sequence)) {
      NotePlaying(sequence, now);
      ++lIndex;
    } else {
      m_Playing.Remove(lIndex);
      Log(StatusReport::LevelCourse, "Ending", sequence.get());
      m_Busy = true;
    }
  }
  return now;
}

void ShowPlayer::NotePlaying(const SequenceReference& sequence, PlayingNow& now) const {
  const bool boolHoldsMedia = sequence == m_MediaHolder;
  bool boolMusic = false;
  switch (sequence->PlayType()) {
    case PlayStartup:
      now.Startup = true;
      break;
    case PlayAnimation:
      now.Animation = true;
      break;
    case PlayMusical:
    case PlayCleanup:
      boolMusic = true;
      break;
    case PlayInteractive:
      boolMusic = boolHoldsMedia;
      break;
    case PlayShutdown:
      now.Shutdown = true;
      break;
    default:
      break;
  }
  if (boolMusic && !now.Music) {
    now.Music = true;
    now.FirstMusicHoldsMedia = boolHoldsMedia;
  }
}

void ShowPlayer::FeedShow(const PlayingNow& now) {
  if (now.Startup || !m_State.MainEnabled) return;
  if (!m_State.Startup.Empty()) {
    QueueSequence(m_State.Startup, 1, true);
    return;
  }
  if (!now.Animation) NextAnimation();
  if (!now.Music) NextMusical();
  if (!m_State.InteractiveRegistered) RegisterInteractiveTriggers();
}

void ShowPlayer::FeedShutdown(const PlayingNow& now) {
  if (now.Shutdown) return;
  if (now.Music && now.FirstMusicHoldsMedia) {
    if (!now.Animation) NextAnimation();
    return;
  }
  m_Busy = true;
  HideVideoWindow();
  if (!m_State.NonBackgroundStopped) StopNonBackground();
  if (!m_State.Shutdown.Empty() && m_State.MainEnabled) {
    QueueSequence(m_State.Shutdown, 1, true);
    return;
  }
  StopEverything();
  if (m_Playing.Empty()) FinishShow();
}

void ShowPlayer::StopNonBackground() {
  for (const auto& sequence : m_Playing) {
    if (sequence->PlayType() == PlayBackground) continue;
    Log(StatusReport::LevelCourse, "Stopping", sequence.get());
    sequence->StopPlay();
  }
  m_State.NonBackgroundStopped = true;
}

void ShowPlayer::StopEverything() {
  for (const auto& sequence : m_Playing) {
    Log(StatusReport::LevelCourse, "Stopping", sequence.get());
    sequence->StopPlay();
  }
}

void ShowPlayer::FinishShow() {
  Log(StatusReport::LevelCourse, "Finished show: " + m_CurrentShow->Monitoring()->Filename());
  CurrentShow(nullptr);
  ResetShowState();
  StartShow();
}

// Ticks that would find nothing to do are left out. What a tick looks at changes only by the tick itself,
// by the clock (a sequence's own end, the next lighting event of the music, the delay's end) or by an event
// from outside, which wakes the timer. A device that fails to tell is looked at in every tick.
void ShowPlayer::SleepUntilSomethingIsDue() {
  if (m_Busy || !m_StartQueue.Empty()) return;
  IgnoreErrors([this] {
    const NextDue due = NextTickDue();
    if (due.IsEveryTick()) return;
    m_ShowTimer->QuietUntil(due.IsNever() ? Elapsed::max() : Elapsed(due.Value()));
  });
}

NextDue ShowPlayer::NextTickDue() {
  NextDue due = DelayEndDue();
  for (const auto& sequence : m_Playing) {
    due = NextDue::Sooner(due, sequence->NextStateChange());
    if (due.IsEveryTick()) return due;
  }
  if (!m_MediaHolder) return due;
  due = NextDue::Sooner(due, m_WMP->NextStateChange());
  const NextDue event = m_MediaHolder->NextEventDue();
  if (event.IsEveryTick()) return event;
  if (event.IsNever()) return due;
  return NextDue::Sooner(due, m_WMP->WhenPositionReaches(static_cast<int32_t>(event.Value())));
}

// The delay waits for the wall clock, which is set (that wakes the timer) or jumps by itself when summer
// time begins or ends. It does so at a full minute, so the wait never runs past the next one.
NextDue ShowPlayer::DelayEndDue() const {
  if (m_State.Step != MusicalStep::Delay || !m_State.Delaying) return NextDue::Never();
  constexpr double secondsPerMinute = 60;
  const double secondsNow = m_Clock.SecondsOfDay();
  const double nextMinute = (std::floor(secondsNow / secondsPerMinute) + 1) * secondsPerMinute;
  double until = nextMinute;
  if (m_State.DelayEnd > secondsNow) until = std::min(until, static_cast<double>(m_State.DelayEnd));
  const auto wait = std::chrono::duration<double>(std::max(0.0, until - secondsNow));
  return NextDue::At((m_Clock.Elapsed() + std::chrono::duration_cast<Elapsed>(wait)).count());
}

}  // namespace vex

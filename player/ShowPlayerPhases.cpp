#include "basic/Number.h"
#include "player/ShowPlayer.h"
#include "show/Playlist.h"
#include "show/Show.h"

namespace vex {

namespace {

bool Inside(int32_t lIndex, int32_t lCount) {
  return lIndex >= 1 && lIndex <= lCount;
}

}  // namespace

void ShowPlayer::QueueSequence(SequenceList& list, int32_t lIndex, bool boolRemove) {
  if (!Inside(lIndex, list.Count())) return;
  SequenceReference sequence = list.Item(lIndex);
  if (boolRemove) list.Remove(lIndex);
  Log(StatusReport::LevelDetail, "Queueing", sequence.get());
  m_StartQueue.Add(std::move(sequence));
}

void ShowPlayer::QueueWholeList(SequenceList& list) {
  while (!list.Empty()) QueueSequence(list, 1, true);
}

void ShowPlayer::StartBackground() {
  if (m_State.BackgroundEnabled) QueueWholeList(m_State.Background);
}

void ShowPlayer::NextAnimation() {
  if (m_State.Animation.Empty()) return;
  if (m_State.AnimationType == 2) {
    QueueWholeList(m_State.Animation);
    return;
  }
  if (!Inside(m_State.AnimationIndex, m_State.Animation.Count())) m_State.AnimationIndex = 1;
  QueueSequence(m_State.Animation, m_State.AnimationIndex, false);
  ++m_State.AnimationIndex;
}

// Song, clean-up, delay, next song. A step that is over hands on to the next one in the same call.
void ShowPlayer::NextMusical() {
  if (m_State.MusicalMaster.Empty()) {
    HideVideoWindow();
    return;
  }
  if (m_State.Step == MusicalStep::CleanUp) MusicalCleanUp();
  if (m_State.Step == MusicalStep::Delay) MusicalDelay();
  if (m_State.Step == MusicalStep::Pick) MusicalPick();
}

void ShowPlayer::MusicalCleanUp() {
  if (!Inside(m_State.CleanUpIndex, m_State.CleanUp.Count())) {
    m_State.CleanUpIndex = 1;
    m_State.Step = MusicalStep::Delay;
    m_State.Delaying = false;
    return;
  }
  QueueSequence(m_State.CleanUp, m_State.CleanUpIndex, false);
  ++m_State.CleanUpIndex;
}

// Kept on purpose: the end is a second of the day, so a delay that would end after midnight never does.
void ShowPlayer::MusicalDelay() {
  if (m_State.MusicalDelay <= 0) {
    m_State.Step = MusicalStep::Pick;
    return;
  }
  if (!m_State.Delaying) {
    Log(StatusReport::LevelCourse,
        "Delaying between Musical sequences for " + FormatNumber(m_State.MusicalDelay) + " seconds");
    m_State.Delaying = true;
    m_State.DelayEnd = RoundToLong(m_Clock.SecondsOfDay() + m_State.MusicalDelay);
  } else if (m_Clock.SecondsOfDay() >= m_State.DelayEnd) {
    Log(StatusReport::LevelDetail, "Delay finished");
    m_State.Step = MusicalStep::Pick;
    m_State.Delaying = false;
  }
}

void ShowPlayer::MusicalPick() {
  constexpr int32_t shuffle = 2;
  m_State.Step = MusicalStep::CleanUp;
  SequenceList& working = m_State.MusicalWorking;
  if (m_State.MusicalType == shuffle) {
    m_State.MusicalIndex = ShuffledIndex();
  } else if (!Inside(m_State.MusicalIndex, working.Count())) {
    m_State.MusicalIndex = 1;
  }
  const bool boolRemove =
      m_State.MusicalType == shuffle && !m_CurrentShow->Musical()->ShuffleWithReplacement();
  m_LastMusical = working.Item(m_State.MusicalIndex);
  QueueSequence(working, m_State.MusicalIndex, boolRemove);
  if (working.Empty()) working = m_State.MusicalMaster;
  ++m_State.MusicalIndex;
}

int32_t ShowPlayer::ShuffledIndex() {
  const SequenceList& working = m_State.MusicalWorking;
  const SequenceReference last = m_LastMusical.lock();
  const bool boolAnyMayFollow = working.Count() == 1 || m_CurrentShow->Musical()->ShuffleAllowsBackToBack();
  int32_t lIndex = m_Random.Pick(working.Count());
  while (!boolAnyMayFollow && working.Item(lIndex) == last) lIndex = m_Random.Pick(working.Count());
  return lIndex;
}

}  // namespace vex

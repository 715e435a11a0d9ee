#include <algorithm>
#include <cmath>

#include "basic/Error.h"
#include "basic/Number.h"
#include "player/ShowPlayer.h"
#include "show/InteractiveGroup.h"

namespace vex {

namespace {

/// How long a lighting event takes, in milliseconds.
int32_t DurationOf(const LightingEvent& event) {
  constexpr double smallestRate = 0.00001;
  const double rate = std::abs(event.Rate) < smallestRate ? smallestRate : event.Rate;
  const double length = static_cast<double>(event.EndTime) - static_cast<double>(event.StartTime);
  return std::max(1, RoundToLong(length / rate));
}

}  // namespace

// Kept on purpose: the main networks are asked for before the sequence is loaded, and one that is not
// loaded uses no network; so the first start of a sequence never opens them for play.
void ShowPlayer::StartNextQueued() {
  m_Busy = true;
  const SequenceReference sequence = m_StartQueue.Item(1);
  m_StartQueue.Remove(1);
  if (sequence->ErrorOccurred()) {
    DropFailed(*sequence);
    return;
  }
  const bool boolMayStopOthers = sequence->PlayType() == PlayInteractive || sequence == m_MediaHolder;
  if (boolMayStopOthers && !MakeRoomFor(sequence)) return;
  if (!m_Opened.Main && sequence->UsesVex()) OpenMainNetworksForPlay();
  m_Playing.Add(sequence);
  sequence->InitializeForPlay();
  OpenNetworksUsedBy(*sequence);
  sequence->ExecuteShellCommand(Required(m_ShellCommands));
  const std::string szMediaFilename = sequence->MediaFilename();
  if (!szMediaFilename.empty()) TakeMediaPlayer(sequence, szMediaFilename);
  Log(StatusReport::LevelCourse, "Starting", sequence.get());
  sequence->StartPlay();
}

void ShowPlayer::DropFailed(const SequencePlayInfo& sequence) {
  Log(StatusReport::LevelError, "ERROR WITH SEQUENCE (" + sequence.ErrorText() + ")", &sequence);
  if (sequence.PlayType() == PlayMusical || sequence.PlayType() == PlayCleanup) {
    m_State.Step = MusicalStep::Pick;
    m_State.Delaying = false;
  }
}

// Stops what the new sequence does not go together with; false when the new one is to be dropped. What has
// been stopped stays in the playing list until the next walk, and stays stopped if the new one is dropped
// after all.
bool ShowPlayer::MakeRoomFor(const SequenceReference& sequence) {
  for (int32_t lIndex = 1; lIndex <= m_Playing.Count(); ++lIndex) {
    const SequenceReference playing = m_Playing.Item(lIndex);
    bool boolStop = false;
    const bool boolSameGroup = sequence->PlayType() == PlayInteractive &&
                               playing->PlayType() == PlayInteractive &&
                               playing->Group() == sequence->Group();
    if (boolSameGroup) {
      const InteractiveGroup& group = Required(sequence->Group());
      if (group.Interruptible().IsClear()) return false;
      boolStop = playing->Filename() == sequence->Filename() || group.Independent().IsClear();
    }
    if (!sequence->MediaFilename().empty() && playing == m_MediaHolder) boolStop = true;
    if (boolStop) {
      playing->StopPlay();
      // Whether it still plays matters to the next walk; here the check lets go of the media player.
      static_cast<void>(CheckSequence(playing));
    }
  }
  return true;
}

void ShowPlayer::TakeMediaPlayer(const SequenceReference& sequence, const std::string& szMediaFilename) {
  m_MediaHolder = sequence;
  m_WMP->CurrentMedia(m_WMP->NewMedia(szMediaFilename));
  m_WMP->CurrentPosition(0);
  sequence->InitMusicSync(0);
  m_WMP->Play();
}

// Whether the sequence is still playing. Letting go of the media player is part of the check, so that a
// failure there marks the sequence too.
bool ShowPlayer::CheckSequence(const SequenceReference& sequence) {
  try {
    if (SyncSequence(sequence)) return true;
    ReleaseMediaOf(sequence);
    return false;
  } catch (const Error& error) {
    sequence->ErrorText(error.Description);
  } catch (const std::exception& error) {
    sequence->ErrorText(error.what());
  }
  Log(StatusReport::LevelError, "ERROR PLAYING SEQUENCE (" + sequence->ErrorText() + "):");
  ReleaseMediaOf(sequence);
  return false;
}

bool ShowPlayer::SyncSequence(const SequenceReference& sequence) {
  if (sequence->ErrorOccurred() || sequence->SequencePlayState() == 0) return false;
  bool boolMediaEnded = false;
  if (sequence == m_MediaHolder) {
    boolMediaEnded = m_WMP->PlayState() == MediaPlayer::StateStopped;
    if (boolMediaEnded) {
      sequence->StopPlay();
    } else {
      constexpr double millisecondsPerSecond = 1000;
      sequence->SyncToMusic(RoundToLong(m_WMP->CurrentPosition() * millisecondsPerSecond));
      SendDueEvents(*sequence);
    }
  }
  return sequence->SequencePlayState() != 0 && !boolMediaEnded;
}

void ShowPlayer::SendDueEvents(SequencePlayInfo& sequence) {
  bool boolAny = false;
  while (sequence.GetEvent(m_Event)) {
    boolAny = true;
    SendEvent(m_Event);
  }
  if (boolAny) m_CIO->Flush();
}

void ShowPlayer::SendEvent(const LightingEvent& event) {
  if (!m_CIO->AcceptsUnit(event.Network, event.UnitId)) return;
  if (!m_CIO->AcceptsCircuit(event.Network, event.UnitId, event.Circuit)) return;
  m_CIO->SendEvent(event.Network, event.UnitId, event.Circuit, event.StartLevel, event.EndLevel,
                   event.Command, event.Rate, event.StartTime, event.EndTime, DurationOf(event));
}

void ShowPlayer::ReleaseMediaOf(const SequenceReference& sequence) {
  if (sequence != m_MediaHolder) return;
  m_MediaHolder.reset();
  m_WMP->Stop();
}

}  // namespace vex

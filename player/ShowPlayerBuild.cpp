#include "player/ShowPlayer.h"
#include "show/InteractiveGroup.h"
#include "show/Playlist.h"
#include "show/Show.h"
#include "show/TriggeredSequences.h"

namespace vex {

void ShowPlayer::BuildLists() {
  const Show& show = *m_CurrentShow;
  BuildList(*show.Background(), PlayBackground, true, m_State.Background);
  BuildList(*show.Startup(), PlayStartup, false, m_State.Startup);
  m_State.AnimationType = show.Main()->AnimationType();
  BuildList(*show.Main(), PlayAnimation, m_State.AnimationType == 2, m_State.Animation);
  BuildMusical(*show.Musical());
  BuildInteractive();
  BuildList(*show.Shutdown(), PlayShutdown, false, m_State.Shutdown);
  if (!m_State.MusicalMaster.Empty()) m_WMP->MediaExpected();
}

// Kept on purpose: the file name comes before Preload, and only the file name's setter loads. So nothing
// is loaded at show start, also when the show asks for preloading.
ShowPlayer::SequenceReference ShowPlayer::NewSequence(int32_t lPlayType, const std::string& szFilename,
                                                      bool boolLightsOffAtEnd, bool boolLoopAtEnd) {
  auto sequence = std::make_shared<SequencePlayInfo>(m_SequenceSurroundings);
  sequence->CIO(m_CIO);
  sequence->PlayType(lPlayType);
  sequence->Filename(szFilename);
  sequence->LightsOffAtEnd(boolLightsOffAtEnd);
  sequence->LoopAtEnd(boolLoopAtEnd);
  sequence->Preload(m_CurrentShow->PreloadSequences());
  return sequence;
}

void ShowPlayer::BuildList(const Playlist& playlist, int32_t lPlayType, bool boolLoopAtEnd,
                           SequenceList& list) {
  for (const auto& szName : playlist.List()) {
    list.Add(NewSequence(lPlayType, std::string(szName), playlist.LightsOffAtEnd(), boolLoopAtEnd));
  }
}

void ShowPlayer::BuildMusical(const Playlist& playlist) {
  BuildList(playlist, PlayMusical, false, m_State.MusicalMaster);
  m_State.MusicalWorking = m_State.MusicalMaster;
  if (!playlist.CleanUp().empty()) {
    constexpr bool boolLightsOffAtEnd = true;
    m_State.CleanUp.Add(NewSequence(PlayCleanup, playlist.CleanUp(), boolLightsOffAtEnd, false));
  }
  m_State.MusicalType = playlist.MusicalType();
  m_State.MusicalDelay = playlist.Delay();
}

void ShowPlayer::BuildInteractive() {
  for (const auto& group : m_CurrentShow->InteractiveGroups()) {
    Collection<SequenceList> triggers;
    for (int32_t lEntry = 0; lEntry < group->Count(); ++lEntry) {
      const auto& entry = group->GetTriggeredSequences(lEntry);
      SequenceList sequences;
      for (int32_t lSequence = 0; lSequence < entry->NumSequences(); ++lSequence) {
        auto sequence = NewSequence(PlayInteractive, std::string(entry->Sequence(lSequence)),
                                    group->LightsOffAtEnd().IsTrue(), false);
        sequence->Group(group);
        sequences.Add(std::move(sequence));
      }
      triggers.Add(std::move(sequences));
    }
    m_State.Interactive.Add(std::move(triggers));
  }
}

}  // namespace vex

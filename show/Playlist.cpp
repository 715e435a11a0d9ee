#include "show/Playlist.h"

#include <utility>

namespace vex {

void Playlist::AnimationType(int32_t lAnimationType) {
  if (m_PlaylistType != AnimationPlaylist) return;
  BreakSeal();
  m_AnimationType = lAnimationType;
}

void Playlist::CleanUp(std::string szCleanUp) {
  BreakSeal();
  m_CleanUp = std::move(szCleanUp);
}

void Playlist::Delay(int32_t lSeconds) {
  if (m_PlaylistType != MusicalPlaylist) return;
  BreakSeal();
  m_Delay = lSeconds;
}

void Playlist::LightsOffAtEnd(bool boolLightsOff) {
  BreakSeal();
  m_LightsOffAtEnd = boolLightsOff;
}

void Playlist::MusicalType(int32_t lMusicalType) {
  if (m_PlaylistType != MusicalPlaylist) return;
  BreakSeal();
  m_MusicalType = lMusicalType;
}

void Playlist::PlaylistType(int32_t lPlaylistType) {
  if (lPlaylistType == m_PlaylistType) return;
  BreakSeal();
  m_PlaylistType = lPlaylistType;
  if (lPlaylistType == AnimationPlaylist) {
    m_AnimationType = 1;
    m_MusicalType = 0;
    m_Delay = 0;
  } else if (lPlaylistType == MusicalPlaylist) {
    // kept on purpose: the delay stays. A list that was musical before, and something else between, has
    // its pause back.
    m_AnimationType = 0;
    m_MusicalType = 1;
  }
}

void Playlist::ShuffleAllowsBackToBack(bool boolAllows) {
  BreakSeal();
  m_ShuffleAllowsBackToBack = boolAllows;
}

void Playlist::ShuffleWithReplacement(bool boolReplaces) {
  BreakSeal();
  m_ShuffleWithReplacement = boolReplaces;
}

void Playlist::PutUnder(const std::shared_ptr<ContentsSeal>& seal) {
  SealedPart::PutUnder(seal);
  m_List.PutUnder(seal);
}

}  // namespace vex

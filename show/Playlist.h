#pragma once

#include <cstdint>
#include <string>

#include "show/ContentsSeal.h"
#include "show/StringCollection.h"

namespace vex {

/// Kinds of playlist; the kind decides which type fields can be set. Any other number is stored too.
enum PlaylistKind : int32_t { AnimationPlaylist = 1, MusicalPlaylist = 2 };

/// An ordered list of sequence file names with the options that tell the player how to go through them.
/// Every show has five. An animation playlist has an animation type and neither musical type nor delay, a
/// musical one the other way round: setting a field that does not belong to the kind is passed over, and
/// setting another kind gives the type fields that kind's values.
class Playlist : public SealedPart {
 public:
  [[nodiscard]] int32_t AnimationType() const { return m_AnimationType; }
  /// Takes effect on an animation playlist only.
  void AnimationType(int32_t lAnimationType);
  /// File name of the clean-up sequence, empty for none.
  [[nodiscard]] const std::string& CleanUp() const { return m_CleanUp; }
  void CleanUp(std::string szCleanUp);
  [[nodiscard]] int32_t Count() const { return m_List.Count(); }
  /// Seconds between musical sequences.
  [[nodiscard]] int32_t Delay() const { return m_Delay; }
  /// Takes effect on a musical playlist only.
  void Delay(int32_t lSeconds);
  [[nodiscard]] bool LightsOffAtEnd() const { return m_LightsOffAtEnd; }
  void LightsOffAtEnd(bool boolLightsOff);
  /// The names in play order; callers add to it.
  [[nodiscard]] const StringCollection& List() const { return m_List; }
  [[nodiscard]] StringCollection& List() { return m_List; }
  [[nodiscard]] int32_t MusicalType() const { return m_MusicalType; }
  /// Takes effect on a musical playlist only.
  void MusicalType(int32_t lMusicalType);
  [[nodiscard]] int32_t PlaylistType() const { return m_PlaylistType; }
  void PlaylistType(int32_t lPlaylistType);
  /// When shuffling, the same sequence may play twice in a row.
  [[nodiscard]] bool ShuffleAllowsBackToBack() const { return m_ShuffleAllowsBackToBack; }
  void ShuffleAllowsBackToBack(bool boolAllows);
  /// When shuffling, a played sequence goes back into the pool.
  [[nodiscard]] bool ShuffleWithReplacement() const { return m_ShuffleWithReplacement; }
  void ShuffleWithReplacement(bool boolReplaces);

  /// The names as well.
  void PutUnder(const std::shared_ptr<ContentsSeal>& seal);

 private:
  StringCollection m_List;
  int32_t m_PlaylistType = AnimationPlaylist;
  int32_t m_AnimationType = 1;
  int32_t m_MusicalType = 0;
  std::string m_CleanUp;
  int32_t m_Delay = 0;
  bool m_LightsOffAtEnd = true;
  bool m_ShuffleAllowsBackToBack = false;
  bool m_ShuffleWithReplacement = false;
};

}  // namespace vex

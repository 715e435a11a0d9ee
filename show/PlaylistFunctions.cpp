#include "show/PlaylistFunctions.h"

#include "basic/Number.h"
#include "show/lists/Serialize.h"

namespace vex {

namespace {

/// The four numbers of a playlist may have fractions; they are rounded, not cut as integer fields are.
int32_t RoundedNumber(std::string_view szField) {
  return RoundToLong(ParseNumber(UnescapeText(szField)));
}

std::string NamesToText(const StringCollection& names) {
  if (names.Empty()) return "";
  FieldArray fields;
  for (std::string_view szName : names) fields.Append(EscapeText(szName));
  return ListToText(fields);
}

}  // namespace

std::shared_ptr<Playlist> NewAnimationPlaylist(int32_t lAnimationType) {
  auto playlist = std::make_shared<Playlist>();
  playlist->PlaylistType(AnimationPlaylist);
  playlist->AnimationType(lAnimationType);
  return playlist;
}

std::shared_ptr<Playlist> NewMusicalPlaylist(int32_t lMusicalType, int32_t lDelay) {
  auto playlist = std::make_shared<Playlist>();
  playlist->PlaylistType(MusicalPlaylist);
  playlist->MusicalType(lMusicalType);
  playlist->Delay(lDelay);
  return playlist;
}

std::string PlaylistToText(const Playlist& playlist) {
  FieldArray fields;
  fields.Append(IntToText(playlist.AnimationType()));
  fields.Append(IntToText(playlist.MusicalType()));
  fields.Append(IntToText(playlist.PlaylistType()));
  fields.Append(IntToText(playlist.Delay()));
  fields.Append(EscapeText(playlist.CleanUp()));
  fields.Append(NamesToText(playlist.List()));
  fields.Append(BoolToText(playlist.LightsOffAtEnd()));
  fields.Append(BoolToText(playlist.ShuffleAllowsBackToBack()));
  fields.Append(BoolToText(playlist.ShuffleWithReplacement()));
  return ListToText(fields);
}

std::shared_ptr<Playlist> PlaylistFromText(std::string_view szText) {
  const FieldViews fields = SplitList(szText);
  auto playlist = std::make_shared<Playlist>();
  // The kind comes first: the guarded assignments after it keep only what belongs to the kind.
  playlist->PlaylistType(RoundedNumber(fields.Element(3)));
  playlist->AnimationType(RoundedNumber(fields.Element(1)));
  playlist->MusicalType(RoundedNumber(fields.Element(2)));
  playlist->Delay(RoundedNumber(fields.Element(4)));
  playlist->CleanUp(UnescapeText(fields.Element(5)));
  const std::string_view szNames = fields.Element(6);
  const FieldViews names = SplitList(szNames);
  playlist->List().Reserve(static_cast<size_t>(names.Length()), szNames.size());
  playlist->List().AddEscaped(names);
  if (fields.Length() >= 7) playlist->LightsOffAtEnd(BoolFromText(fields.Element(7)));
  // kept on purpose: texts older than these two options behave as if both were set, unlike new playlists.
  playlist->ShuffleAllowsBackToBack(fields.Length() < 8 || BoolFromText(fields.Element(8)));
  playlist->ShuffleWithReplacement(fields.Length() < 9 || BoolFromText(fields.Element(9)));
  return playlist;
}

}  // namespace vex

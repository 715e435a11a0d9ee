#include "show/Playlist.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "show/PlaylistFunctions.h"
#include "tests/show/RaisedError.h"

namespace vex {
namespace {

TEST(Playlist, HasItsDefaultsWhenNew) {
  const Playlist playlist;
  EXPECT_EQ(0, playlist.Count());
  EXPECT_EQ(0, playlist.List().Count());
  EXPECT_EQ(1, playlist.PlaylistType());
  EXPECT_EQ(1, playlist.AnimationType());
  EXPECT_EQ(0, playlist.MusicalType());
  EXPECT_EQ("", playlist.CleanUp());
  EXPECT_EQ(0, playlist.Delay());
  EXPECT_TRUE(playlist.LightsOffAtEnd());
  EXPECT_FALSE(playlist.ShuffleAllowsBackToBack());
  EXPECT_FALSE(playlist.ShuffleWithReplacement());
}

TEST(Playlist, CountsTheNamesThatCallersAdd) {
  Playlist playlist;
  playlist.List().Add("a.seq");
  playlist.List().Add("b.seq");
  EXPECT_EQ(2, playlist.Count());
  EXPECT_EQ("b.seq", playlist.List().Item(2));
}

TEST(Playlist, PlainPropertiesTakeWhatIsGiven) {
  Playlist playlist;
  playlist.CleanUp("sweep.seq");
  playlist.LightsOffAtEnd(false);
  playlist.ShuffleAllowsBackToBack(true);
  playlist.ShuffleWithReplacement(true);
  EXPECT_EQ("sweep.seq", playlist.CleanUp());
  EXPECT_FALSE(playlist.LightsOffAtEnd());
  EXPECT_TRUE(playlist.ShuffleAllowsBackToBack());
  EXPECT_TRUE(playlist.ShuffleWithReplacement());
}

TEST(Playlist, AnimationTypeIsPassedOverUnlessTheKindIsAnimation) {
  Playlist playlist;
  playlist.AnimationType(2);
  EXPECT_EQ(2, playlist.AnimationType());
  playlist.PlaylistType(2);
  playlist.AnimationType(2);
  EXPECT_EQ(0, playlist.AnimationType());
  playlist.PlaylistType(5);
  playlist.AnimationType(2);
  EXPECT_EQ(0, playlist.AnimationType());
}

TEST(Playlist, MusicalTypeAndDelayArePassedOverUnlessTheKindIsMusical) {
  Playlist playlist;
  playlist.MusicalType(2);
  playlist.Delay(5);
  EXPECT_EQ(0, playlist.MusicalType());
  EXPECT_EQ(0, playlist.Delay());
  playlist.PlaylistType(2);
  playlist.MusicalType(2);
  playlist.Delay(5);
  EXPECT_EQ(2, playlist.MusicalType());
  EXPECT_EQ(5, playlist.Delay());
  playlist.PlaylistType(7);
  playlist.MusicalType(3);
  playlist.Delay(6);
  EXPECT_EQ(2, playlist.MusicalType());
  EXPECT_EQ(5, playlist.Delay());
}

TEST(Playlist, SettingTheKindItHasChangesNothing) {
  Playlist animation;
  animation.AnimationType(2);
  animation.PlaylistType(1);
  EXPECT_EQ(2, animation.AnimationType());
  const auto musical = NewMusicalPlaylist(3, 9);
  musical->PlaylistType(2);
  EXPECT_EQ(3, musical->MusicalType());
  EXPECT_EQ(9, musical->Delay());
}

TEST(Playlist, BecomingMusicalGivesTheMusicalTypes) {
  Playlist playlist;
  playlist.PlaylistType(2);
  EXPECT_EQ(0, playlist.AnimationType());
  EXPECT_EQ(1, playlist.MusicalType());
  EXPECT_EQ(0, playlist.Delay());
}

TEST(Playlist, BecomingAnAnimationGivesTheAnimationTypesAndDropsTheDelay) {
  const auto playlist = NewMusicalPlaylist(3, 9);
  playlist->PlaylistType(1);
  EXPECT_EQ(1, playlist->AnimationType());
  EXPECT_EQ(0, playlist->MusicalType());
  EXPECT_EQ(0, playlist->Delay());
}

TEST(Playlist, AnUnknownKindTouchesNothingAndTheDelaySurvivesTheWayBackToMusical) {
  const auto playlist = NewMusicalPlaylist(3, 9);
  playlist->PlaylistType(-4);
  EXPECT_EQ(-4, playlist->PlaylistType());
  EXPECT_EQ(3, playlist->MusicalType());
  EXPECT_EQ(9, playlist->Delay());
  playlist->PlaylistType(2);
  EXPECT_EQ(1, playlist->MusicalType());
  EXPECT_EQ(9, playlist->Delay());
}

TEST(Playlist, NewAnimationPlaylistHasTheTypeGiven) {
  const auto playlist = NewAnimationPlaylist(2);
  EXPECT_EQ(1, playlist->PlaylistType());
  EXPECT_EQ(2, playlist->AnimationType());
  EXPECT_EQ(0, playlist->MusicalType());
}

TEST(Playlist, NewMusicalPlaylistHasTypeAndDelayGiven) {
  const auto playlist = NewMusicalPlaylist(2, 30);
  EXPECT_EQ(2, playlist->PlaylistType());
  EXPECT_EQ(0, playlist->AnimationType());
  EXPECT_EQ(2, playlist->MusicalType());
  EXPECT_EQ(30, playlist->Delay());
}

TEST(PlaylistText, WritesNineFields) {
  EXPECT_EQ("(1,0,1,0,,,T,F,F)", PlaylistToText(Playlist()));
  const auto playlist = NewMusicalPlaylist(3, -5);
  playlist->CleanUp("a,b");
  playlist->List().Add("x(1).seq");
  playlist->List().Add("");
  playlist->List().Add("y*.seq");
  playlist->LightsOffAtEnd(false);
  playlist->ShuffleAllowsBackToBack(true);
  playlist->ShuffleWithReplacement(true);
  EXPECT_EQ("(0,3,2,-5,a*Sb,(x*O1*C.seq,,y*E.seq),F,T,T)", PlaylistToText(*playlist));
}

TEST(PlaylistText, ReadsWhatItWrites) {
  const std::string szText = "(0,3,2,-5,a*Sb,(x*O1*C.seq,,y*E.seq),F,T,F)";
  const auto playlist = PlaylistFromText(szText);
  EXPECT_EQ("a,b", playlist->CleanUp());
  ASSERT_EQ(3, playlist->Count());
  EXPECT_EQ("x(1).seq", playlist->List().Item(1));
  EXPECT_EQ("", playlist->List().Item(2));
  EXPECT_EQ("y*.seq", playlist->List().Item(3));
  EXPECT_EQ(szText, PlaylistToText(*playlist));
}

TEST(PlaylistText, OldestTextGetsLightsOffAndBothShuffleOptions) {
  const auto playlist = PlaylistFromText("(2,0,1,0,,)");
  EXPECT_EQ(1, playlist->PlaylistType());
  EXPECT_EQ(2, playlist->AnimationType());
  EXPECT_EQ("", playlist->CleanUp());
  EXPECT_EQ(0, playlist->Count());
  EXPECT_TRUE(playlist->LightsOffAtEnd());
  EXPECT_TRUE(playlist->ShuffleAllowsBackToBack());
  EXPECT_TRUE(playlist->ShuffleWithReplacement());
}

TEST(PlaylistText, SevenFieldsKeepLightsOffAndGetBothShuffleOptions) {
  const auto playlist = PlaylistFromText("(2,0,1,0,,,F)");
  EXPECT_FALSE(playlist->LightsOffAtEnd());
  EXPECT_TRUE(playlist->ShuffleAllowsBackToBack());
  EXPECT_TRUE(playlist->ShuffleWithReplacement());
}

TEST(PlaylistText, EightFieldsKeepBackToBackAndGetReplacement) {
  const auto playlist = PlaylistFromText("(2,0,1,0,,,x,F)");
  EXPECT_FALSE(playlist->LightsOffAtEnd());
  EXPECT_FALSE(playlist->ShuffleAllowsBackToBack());
  EXPECT_TRUE(playlist->ShuffleWithReplacement());
}

TEST(PlaylistText, KeepsOnlyTheTypeFieldsOfItsKind) {
  const auto musical = PlaylistFromText("(0,3,2,5,,)");
  EXPECT_EQ(0, musical->AnimationType());
  EXPECT_EQ(3, musical->MusicalType());
  EXPECT_EQ(5, musical->Delay());
  const auto animation = PlaylistFromText("(0,3,1,5,,)");
  EXPECT_EQ(0, animation->AnimationType());
  EXPECT_EQ(0, animation->MusicalType());
  EXPECT_EQ(0, animation->Delay());
  const auto other = PlaylistFromText("(7,3,9,5,,)");
  EXPECT_EQ(9, other->PlaylistType());
  EXPECT_EQ(1, other->AnimationType());
  EXPECT_EQ(0, other->MusicalType());
  EXPECT_EQ(0, other->Delay());
}

TEST(PlaylistText, RoundsItsNumbersHalvesToEven) {
  const auto musical = PlaylistFromText("(0,2.5,1.5,3.5,,)");
  EXPECT_EQ(2, musical->PlaylistType());
  EXPECT_EQ(2, musical->MusicalType());
  EXPECT_EQ(4, musical->Delay());
  const auto animation = PlaylistFromText("(-2.5,0,0.6,0,,)");
  EXPECT_EQ(1, animation->PlaylistType());
  EXPECT_EQ(-2, animation->AnimationType());
}

TEST(PlaylistText, ANumberThatIsNoneFailsEvenWhereItWouldBePassedOver) {
  EXPECT_EQ(TypeMismatchError, RaisedError([] { (void)PlaylistFromText("(x,0,1,0,,)"); }));
  EXPECT_EQ(TypeMismatchError, RaisedError([] { (void)PlaylistFromText("(1,x,1,0,,)"); }));
  EXPECT_EQ(TypeMismatchError, RaisedError([] { (void)PlaylistFromText("(1,0,x,0,,)"); }));
  EXPECT_EQ(TypeMismatchError, RaisedError([] { (void)PlaylistFromText("(1,0,1,,,)"); }));
  EXPECT_EQ(OverflowError, RaisedError([] { (void)PlaylistFromText("(1,0,1,9999999999,,)"); }));
}

TEST(PlaylistText, FewerThanSixFieldsFail) {
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)PlaylistFromText("(1,0,1,0,)"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)PlaylistFromText("(1,0)"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)PlaylistFromText("()"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)PlaylistFromText(""); }));
}

TEST(PlaylistText, TheKindIsReadBeforeTheOtherNumbers) {
  // Field 3 is missing and field 1 is no number: the missing field is met first.
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)PlaylistFromText("(x,0)"); }));
}

TEST(PlaylistText, ABadTextOrBadListOfNamesFails) {
  EXPECT_EQ(ListError1, RaisedError([] { (void)PlaylistFromText("(1,0,1,0,,"); }));
  EXPECT_EQ(ListError1, RaisedError([] { (void)PlaylistFromText("1,0,1,0,,)"); }));
  EXPECT_EQ(ListError3, RaisedError([] { (void)PlaylistFromText("(1,0,1,0,,(a)(b,c))"); }));
}

TEST(PlaylistText, AListOfNamesWithOneEmptyFieldHoldsOneEmptyName) {
  EXPECT_EQ(1, PlaylistFromText("(1,0,1,0,,())")->Count());
  EXPECT_EQ(0, PlaylistFromText("(1,0,1,0,,no list)")->Count());
}

TEST(PlaylistText, DoesNotReadMoreFieldsThanItKnows) {
  EXPECT_EQ("(1,0,1,0,,,T,F,F)", PlaylistToText(*PlaylistFromText("(1,0,1,0,,,T,F,F,x,(y))")));
}

}  // namespace
}  // namespace vex

#include <gtest/gtest.h>

#include <set>

#include "tests/player/PlayerRig.h"

namespace vex::test {
namespace {

TEST(ShowPlayerShuffle, WithoutReplacementEachSongPlaysOnceBeforeAnyRepeats) {
  for (uint64_t seed = 1; seed <= 20; ++seed) {
    PlayerRig rig(seed);
    rig.Sequences({"m1", "m2", "m3", "m4"}, 9999, "song.ogg");
    ShowText text;
    text.Songs = {"m1", "m2", "m3", "m4"};
    text.MusicalType = 2;
    rig.Give(text);
    rig.Run(12500);
    const Transcript songs = rig.LinesOf("1 Starting M");
    ASSERT_EQ(songs.size(), 13U);
    for (size_t round = 0; round + 4 <= 12; round += 4) {
      EXPECT_EQ(std::set<std::string>(songs.begin() + static_cast<std::ptrdiff_t>(round),
                                      songs.begin() + static_cast<std::ptrdiff_t>(round + 4))
                    .size(),
                4U);
    }
  }
}

TEST(ShowPlayerShuffle, WithReplacementNoSongFollowsItselfUnlessAllowed) {
  const auto repeats = [](bool boolAllowed) {
    PlayerRig rig(7);
    rig.Sequences({"m1", "m2", "m3"}, 9999, "song.ogg");
    ShowText text;
    text.Songs = {"m1", "m2", "m3"};
    text.MusicalType = 2;
    text.WithReplacement = true;
    text.BackToBack = boolAllowed;
    rig.Give(text);
    rig.Run(100000);
    const Transcript songs = rig.LinesOf("1 Starting M");
    int32_t lRepeats = 0;
    for (size_t i = 1; i < songs.size(); ++i) lRepeats += songs[i] == songs[i - 1] ? 1 : 0;
    return lRepeats;
  };
  EXPECT_EQ(repeats(false), 0);
  EXPECT_GT(repeats(true), 10);
}

TEST(ShowPlayerShuffle, ASingleSongFollowsItself) {
  PlayerRig rig;
  rig.Sequences({"m1"}, 9999, "song.ogg");
  ShowText text;
  text.Songs = {"m1"};
  text.MusicalType = 2;
  rig.Give(text);
  rig.Run(5500);
  EXPECT_EQ(rig.LinesOf("1 Starting M").size(), 6U);
}

TEST(ShowPlayerShuffle, OneSeedDrawsTheSameSongs) {
  const auto songs = [](uint64_t seed) {
    PlayerRig rig(seed);
    rig.Sequences({"m1", "m2", "m3", "m4", "m5"}, 9999, "song.ogg");
    ShowText text;
    text.Songs = {"m1", "m2", "m3", "m4", "m5"};
    text.MusicalType = 2;
    rig.Give(text);
    rig.Run(30000);
    return rig.LinesOf("1 Starting M");
  };
  EXPECT_EQ(songs(5), songs(5));
  EXPECT_NE(songs(5), songs(6));
}

}  // namespace
}  // namespace vex::test

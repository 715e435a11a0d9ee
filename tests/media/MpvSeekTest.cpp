#include "tests/media/MpvRig.h"

namespace vex::test {
namespace {

class MpvSeek : public MpvRig {};

TEST_F(MpvSeek, APositionSetWhilePlayingIsGoneTo) {
  Play(Wave("tone.wav", 30));
  ASSERT_TRUE(RunUntilPosition(0.2));
  const int32_t changes = m_Changes;
  m_Player->CurrentPosition(20);
  EXPECT_GT(m_Changes, changes);
  EXPECT_GE(m_Player->CurrentPosition(), 20);
  ASSERT_TRUE(RunUntilPosition(20.2));
  EXPECT_LT(m_Player->CurrentPosition(), 29);
  EXPECT_EQ(m_Player->PlayState(), MediaPlayer::StatePlaying);
}

TEST_F(MpvSeek, AStartPositionIsWhereItBegins) {
  m_Player->CurrentMedia(m_Player->NewMedia(Wave("tone.wav", 30)));
  m_Player->CurrentPosition(10);
  m_Player->Play();
  ASSERT_TRUE(RunUntilPosition(10.2));
  EXPECT_LT(m_Player->CurrentPosition(), 25);
}

}  // namespace
}  // namespace vex::test

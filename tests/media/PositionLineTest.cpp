#include "components/open/media/PositionLine.h"

#include <gtest/gtest.h>

namespace vex {
namespace {

using namespace std::chrono_literals;

class PositionLineTest : public testing::Test {
 protected:
  /// An answer at that moment, asked just before; false where it says nothing new.
  bool Answer(Elapsed at, Elapsed position, Elapsed took = 200us) {
    return m_Line.Add(at - took / 2, at + took / 2, position);
  }
  /// Answers every 20 ms while the sound runs evenly, the first of them telling that position.
  Elapsed Even(Elapsed from, Elapsed position, int count) {
    for (int i = 0; i < count; ++i) Answer(from + i * 20ms, position + i * 20ms);
    return from + count * 20ms;
  }

  PositionLine m_Line;
};

TEST_F(PositionLineTest, StandsUntilTheFirstAnswer) {
  m_Line.Begin(3s);
  EXPECT_FALSE(m_Line.Runs());
  EXPECT_EQ(m_Line.At(100s), 3s);
  EXPECT_EQ(m_Line.Reaches(4s), std::nullopt);
}

TEST_F(PositionLineTest, RunsOnBetweenAnswers) {
  m_Line.Begin(0s);
  EXPECT_TRUE(Answer(10s, 1s));
  EXPECT_EQ(m_Line.At(10s), 1s);
  EXPECT_EQ(m_Line.At(10s + 7ms), 1s + 7ms);
  EXPECT_EQ(m_Line.Reaches(2s), 11s);
}

TEST_F(PositionLineTest, EvenAnswersSayNothingNew) {
  m_Line.Begin(0s);
  EXPECT_TRUE(Answer(10s, 1s));
  for (int i = 1; i < 100; ++i) EXPECT_FALSE(Answer(10s + i * 20ms, 1s + i * 20ms)) << i;
}

TEST_F(PositionLineTest, OneLateAnswerDoesNotBendIt) {
  m_Line.Begin(0s);
  const Elapsed next = Even(10s, 1s, 10);
  EXPECT_FALSE(Answer(next, 1s + 200ms - 40ms));
  EXPECT_EQ(m_Line.At(next), 1s + 200ms);
}

TEST_F(PositionLineTest, ASlowAnswerCountsOnlyWhileThereIsNoOther) {
  m_Line.Begin(0s);
  EXPECT_TRUE(Answer(10s, 1s, 10ms));
  EXPECT_EQ(m_Line.At(10s), 1s);
  EXPECT_TRUE(Answer(10s + 20ms, 1s + 25ms));
  EXPECT_EQ(m_Line.At(10s + 20ms), 1s + 25ms);
  EXPECT_FALSE(Answer(10s + 40ms, 9s, 10ms));
  EXPECT_EQ(m_Line.At(10s + 40ms), 1s + 45ms);
}

TEST_F(PositionLineTest, AnInterruptionIsFollowedAfterFiveAnswersThatAgree) {
  m_Line.Begin(0s);
  const Elapsed next = Even(10s, 1s, 32);
  const Elapsed before = m_Line.At(next);
  for (int i = 0; i < 4; ++i) EXPECT_FALSE(Answer(next + i * 20ms, before - 100ms + i * 20ms)) << i;
  EXPECT_TRUE(Answer(next + 80ms, before - 100ms + 80ms));
  EXPECT_EQ(m_Line.Reaches(before + 1s), next + 1s + 100ms);
}

TEST_F(PositionLineTest, AnswersThatDisagreeAmongEachOtherAreNoInterruption) {
  m_Line.Begin(0s);
  const Elapsed next = Even(10s, 1s, 32);
  const Elapsed position = m_Line.At(next);
  for (int i = 0; i < 5; ++i) Answer(next + i * 20ms, position - 100ms - i * 30ms + i * 20ms);
  EXPECT_EQ(m_Line.Reaches(position + 1s), next + 1s);
}

TEST_F(PositionLineTest, ThePositionToldNeverGoesBack) {
  m_Line.Begin(0s);
  const Elapsed next = Even(10s, 1s, 32);
  const Elapsed told = m_Line.At(next + 80ms);
  for (int i = 0; i < 5; ++i) Answer(next + i * 20ms, told - 200ms + i * 20ms);
  EXPECT_EQ(m_Line.At(next + 81ms), told);
  EXPECT_EQ(m_Line.At(next + 500ms), told + 300ms);
}

TEST_F(PositionLineTest, ABeginForgetsWhatWasAnswered) {
  m_Line.Begin(0s);
  Even(10s, 1s, 32);
  m_Line.Begin(500ms);
  EXPECT_FALSE(m_Line.Runs());
  EXPECT_EQ(m_Line.At(20s), 500ms);
}

}  // namespace
}  // namespace vex

#include "monitor/PendingStatus.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <vector>

namespace vex {
namespace {

TEST(PendingStatus, JoinsLinesByCarriageReturnAndLineFeed) {
  PendingStatus pending;
  EXPECT_TRUE(pending.Empty());
  pending.Append("one");
  EXPECT_EQ(pending.Text(), "one");
  pending.Append("two");
  pending.Append("three");
  EXPECT_EQ(pending.Text(), "one\r\ntwo\r\nthree");
  pending.Clear();
  EXPECT_TRUE(pending.Empty());
}

TEST(PendingStatus, KeepsWhatIsOneCharacterBelowTheLimit) {
  PendingStatus pending;
  pending.Append(std::string(29998, 'a'));
  pending.Append(std::string(29999, 'b'));
  EXPECT_EQ(pending.Text().size(), 59999U);
}

TEST(PendingStatus, AtTheLimitKeepsTheLastHalfWithoutItsFirstLine) {
  PendingStatus pending;
  pending.Append(std::string(29998, 'a'));
  pending.Append(std::string(5, 'b'));
  pending.Append(std::string(5, 'c'));
  pending.Append(std::string(29986, 'd'));
  // 60000 in all, and the last 30000 happen to begin with the whole b line; it goes all the same.
  EXPECT_EQ(pending.Text(), std::string(5, 'c') + "\r\n" + std::string(29986, 'd'));
}

TEST(PendingStatus, WhatIsLeftOfALineThatWasCutIsDropped) {
  PendingStatus pending;
  pending.Append(std::string(40000, 'a'));
  pending.Append(std::string(7, 'b'));
  pending.Append(std::string(20000, 'c'));
  EXPECT_EQ(pending.Text(), std::string(7, 'b') + "\r\n" + std::string(20000, 'c'));
}

TEST(PendingStatus, ACutBetweenTheTwoCharactersOfALineEndDropsTheNextLineToo) {
  PendingStatus pending;
  pending.Append(std::string(30000, 'a'));
  pending.Append(std::string(7, 'b'));
  pending.Append(std::string(29990, 'c'));
  // 60001 in all, of which the last 30000 begin with the line feed.
  EXPECT_EQ(pending.Text(), std::string(29990, 'c'));
}

TEST(PendingStatus, OneEndlessLineKeepsItsLastHalf) {
  PendingStatus pending;
  pending.Append(std::string(70000, 'x'));
  EXPECT_EQ(pending.Text(), std::string(30000, 'x'));
}

TEST(PendingStatus, StaysBelowTheLimitAndAlwaysBeginsWithAWholeLine) {
  EXPECT_TRUE(rc::check([] {
    const auto lengths = *rc::gen::container<std::vector<int>>(100, rc::gen::inRange(1, 4000));
    PendingStatus pending;
    std::vector<std::string> lines;
    for (const int length : lengths) {
      lines.push_back(std::to_string(lines.size()) + std::string(static_cast<size_t>(length), '.'));
      pending.Append(lines.back());
      RC_ASSERT(pending.Text().size() < PendingStatus::Limit);
      std::string szTail;  // the newest whole lines, as many as are there
      for (auto line = lines.rbegin(); line != lines.rend() && szTail.size() < pending.Text().size();
           ++line) {
        szTail = szTail.empty() ? *line : *line + "\r\n" + szTail;
      }
      RC_ASSERT(pending.Text() == szTail);
    }
  }));
}

}  // namespace
}  // namespace vex

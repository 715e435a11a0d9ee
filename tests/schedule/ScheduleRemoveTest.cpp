#include "schedule/Schedule.h"

#include <gtest/gtest.h>

#include "tests/schedule/ScheduleWords.h"

namespace vex {
namespace {

const Lines WholeWeek = {"Sun 0:00 - Sun 0:00"};

class ScheduleRemove : public testing::Test {
 protected:
  void Add(Day day, const std::string& szName, int32_t lFrom = 0, int32_t lTo = 24) {
    const auto end = At(day, 0)->PlusDuration(lTo * 3600);
    m_Schedule.AddShowEvent(ShowFrom(At(day, lFrom), end, szName));
  }
  void Remove(Day day, int32_t lHour = 12) {
    m_Schedule.RemoveShowEvent(m_Schedule.GetNodeByTime(At(day, lHour)));
  }

  Schedule m_Schedule;
};

TEST_F(ScheduleRemove, BetweenTwoNullEventsLeavesOne) {
  Add(Mon, "a");
  Add(Wed, "b");
  Add(Fri, "c");
  m_Schedule.Modified(false);
  Remove(Wed);
  EXPECT_EQ((Lines{"Sun 0:00 - Mon 0:00", "Mon 0:00 - Tue 0:00 a", "Tue 0:00 - Fri 0:00",
                   "Fri 0:00 - Sat 0:00 c", "Sat 0:00 - Sun 0:00"}),
            Chain(m_Schedule));
  EXPECT_TRUE(m_Schedule.Modified());
}

TEST_F(ScheduleRemove, BetweenTwoShowsTurnsTheEventIntoNullTimeInPlace) {
  Add(Mon, "a");
  Add(Tue, "b");
  Add(Wed, "c");
  auto* const node = m_Schedule.GetNodeByTime(At(Tue, 12));
  const auto event = node->Obj();
  const auto start = event->StartTime();
  Remove(Tue);
  EXPECT_EQ(node, m_Schedule.GetNodeByTime(At(Tue, 12)));
  EXPECT_EQ(event, node->Obj());
  EXPECT_EQ(start, event->StartTime());
  EXPECT_EQ("Tue 0:00 - Wed 0:00", Words(*event));
}

TEST_F(ScheduleRemove, BeforeNullTimeGivesItsSpanToTheNextEvent) {
  Add(Mon, "a");
  Add(Tue, "b");
  Remove(Tue);
  EXPECT_EQ((Lines{"Sun 0:00 - Mon 0:00", "Mon 0:00 - Tue 0:00 a", "Tue 0:00 - Sun 0:00"}),
            Chain(m_Schedule));
}

TEST_F(ScheduleRemove, BehindNullTimeGivesItsSpanToThePreviousEvent) {
  Add(Mon, "a");
  Add(Tue, "b");
  Remove(Mon);
  EXPECT_EQ((Lines{"Sun 0:00 - Tue 0:00", "Tue 0:00 - Wed 0:00 b", "Wed 0:00 - Sun 0:00"}),
            Chain(m_Schedule));
}

TEST_F(ScheduleRemove, AMissingNeighbourCountsAsAShow) {
  Add(Sun, "a");
  Add(Mon, "b");
  // The chain begins with Monday's show here and ends with Sunday's.
  EXPECT_EQ((Lines{"Mon 0:00 - Tue 0:00 b", "Tue 0:00 - Sun 0:00", "Sun 0:00 - Mon 0:00 a"}),
            Chain(m_Schedule));
  Add(Tue, "c", 0, 24 * 5);
  Remove(Sun);
  EXPECT_EQ((Lines{"Mon 0:00 - Tue 0:00 b", "Tue 0:00 - Sun 0:00 c", "Sun 0:00 - Mon 0:00"}),
            Chain(m_Schedule));
}

TEST_F(ScheduleRemove, TheLastShowResetsTheWeek) {
  Add(Mon, "a");
  Remove(Mon);
  EXPECT_EQ(WholeWeek, Chain(m_Schedule));
  EXPECT_EQ(604800, m_Schedule.FirstNode()->Obj()->Duration());
  m_Schedule.AddShowEvent(ShowFrom(At(Sat, 22), At(Sun, 2)));
  m_Schedule.RemoveShowEvent(m_Schedule.LastNode());
  EXPECT_EQ(WholeWeek, Chain(m_Schedule));
}

TEST_F(ScheduleRemove, OfANullEventFailsAndChangesNothing) {
  Add(Mon, "a");
  m_Schedule.Modified(false);
  const Lines before = Chain(m_Schedule);
  EXPECT_EQ("1/Schedule.RemoveShowEvent/Can not remove non-show event", RaisedError([&] { Remove(Tue); }));
  EXPECT_EQ(before, Chain(m_Schedule));
  EXPECT_FALSE(m_Schedule.Modified());
}

TEST_F(ScheduleRemove, OfNoNodeFails) {
  EXPECT_EQ(ObjectNotSetError, RaisedError([&] { m_Schedule.RemoveShowEvent(nullptr); }));
}

}  // namespace
}  // namespace vex

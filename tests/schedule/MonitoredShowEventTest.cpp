#include "schedule/MonitoredShowEvent.h"

#include <gtest/gtest.h>

#include "tests/schedule/ScheduleWords.h"

namespace vex {
namespace {

const std::string Text = "(eve*S.shw,(T,2026-12-24 18:00:00,F,),1,T)";

TEST(MonitoredShowEvent, IsEmptyAndUnboundedWhenNew) {
  const MonitoredShowEvent event;
  EXPECT_EQ("", event.Filename());
  ASSERT_NE(nullptr, event.Range());
  EXPECT_EQ("... .. ...", Words(*event.Range()));
  EXPECT_EQ(0, event.ScheduleType());
  EXPECT_FALSE(event.ShuttingDown());
  EXPECT_EQ("(,(F,,F,),0,F)", event.Serialize());
}

TEST(MonitoredShowEvent, PropertiesStoreWhatIsGiven) {
  MonitoredShowEvent event;
  event.Filename("eve.shw");
  event.ScheduleType(-7);
  event.ShuttingDown(true);
  const auto range = std::make_shared<TimeRange>();
  event.Range(range);
  EXPECT_EQ("eve.shw", event.Filename());
  EXPECT_EQ(-7, event.ScheduleType());
  EXPECT_TRUE(event.ShuttingDown());
  EXPECT_EQ(range, event.Range());
}

TEST(MonitoredShowEvent, AnEmptyRangeReferenceBecomesANewRange) {
  MonitoredShowEvent event;
  event.Deserialize(Text);
  event.Range(nullptr);
  ASSERT_NE(nullptr, event.Range());
  EXPECT_FALSE(event.Range()->HasStart());
}

TEST(MonitoredShowEvent, ReadsWhatItWrites) {
  MonitoredShowEvent event;
  event.Deserialize(Text);
  EXPECT_EQ("eve,.shw", event.Filename());
  EXPECT_EQ("2026-12-24 18:00:00 .. ...", Words(*event.Range()));
  EXPECT_EQ(1, event.ScheduleType());
  EXPECT_TRUE(event.ShuttingDown());
  EXPECT_EQ(Text, event.Serialize());
}

TEST(MonitoredShowEvent, AnotherCountThanFourFailsAndChangesNothing) {
  MonitoredShowEvent event;
  event.Deserialize(Text);
  const std::string szPrefix = "37//Unexpected number of fields in serialized monitored show event: ";
  EXPECT_EQ(szPrefix + "3", RaisedError([&] { event.Deserialize("(x,(F,,F,),0)"); }));
  EXPECT_EQ(szPrefix + "5", RaisedError([&] { event.Deserialize("(x,(F,,F,),0,F,)"); }));
  EXPECT_EQ(szPrefix + "1", RaisedError([&] { event.Deserialize("()"); }));
  EXPECT_EQ(szPrefix + "0", RaisedError([&] { event.Deserialize(""); }));
  EXPECT_EQ(Text, event.Serialize());
}

TEST(MonitoredShowEvent, ErrorsInsidePassThroughAndChangeNothing) {
  MonitoredShowEvent event;
  event.Deserialize(Text);
  EXPECT_EQ("37//Unexpected number of fields in serialized time range: 3",
            RaisedError([&] { event.Deserialize("(x,(F,,F),0,F)"); }));
  EXPECT_EQ(TypeMismatchError, RaisedError([&] { event.Deserialize("(x,(T,never,F,),0,F)"); }));
  EXPECT_EQ(TypeMismatchError, RaisedError([&] { event.Deserialize("(x,(F,,F,),weekly,F)"); }));
  EXPECT_EQ(ListError1, RaisedError([&] { event.Deserialize("(x"); }));
  EXPECT_EQ(Text, event.Serialize());
}

TEST(MonitoredShowEvent, CopyFromCopiesAndSharesNothing) {
  MonitoredShowEvent event, copy;
  event.Deserialize(Text);
  copy.CopyFrom(&event);
  EXPECT_EQ(Text, copy.Serialize());
  EXPECT_NE(event.Range(), copy.Range());
  copy.CopyFrom(&copy);
  EXPECT_EQ(Text, copy.Serialize());
}

TEST(MonitoredShowEvent, CopyFromNoRecordGivesANewOne) {
  MonitoredShowEvent event;
  event.Deserialize(Text);
  event.CopyFrom(nullptr);
  EXPECT_EQ("(,(F,,F,),0,F)", event.Serialize());
}

TEST(MonitoredShowEvent, EqualsWhenEveryFieldDoes) {
  MonitoredShowEvent event;
  event.Deserialize(Text);
  const auto equals = [&](const char* szOther) {
    MonitoredShowEvent other;
    other.Deserialize(szOther);
    return event.MemberwiseEquals(&other);
  };
  EXPECT_TRUE(equals("(eve*S.shw,(T,2026-12-24 18:00:00,F,),1,T)"));
  EXPECT_FALSE(equals("(Eve*S.shw,(T,2026-12-24 18:00:00,F,),1,T)"));
  EXPECT_FALSE(equals("(eve*S.shw,(T,2026-12-24 18:00:01,F,),1,T)"));
  EXPECT_FALSE(equals("(eve*S.shw,(T,2026-12-24 18:00:00,T,2026-12-24 19:00:00),1,T)"));
  EXPECT_FALSE(equals("(eve*S.shw,(T,2026-12-24 18:00:00,F,),0,T)"));
  EXPECT_FALSE(equals("(eve*S.shw,(T,2026-12-24 18:00:00,F,),1,F)"));
  EXPECT_FALSE(event.MemberwiseEquals(nullptr));
}

TEST(MonitoredShowEvent, ABoundThatWasClearedDoesNotCount) {
  MonitoredShowEvent event;
  event.Range()->StartTime(DateTime::FromParts(2026, 12, 24));
  event.Range()->ClearStart();
  EXPECT_TRUE(event.MemberwiseEquals(nullptr));
  EXPECT_TRUE(MonitoredShowEvent().MemberwiseEquals(&event));
}

}  // namespace
}  // namespace vex

#include "schedule/ShowEvent.h"

#include <gtest/gtest.h>

#include "tests/schedule/ScheduleWords.h"

namespace vex {
namespace {

// A Sunday: the week of 20 to 26 December 2026.
DateTime On(int32_t lDay, int32_t lHour, int32_t lMinute = 0) {
  return DateTime::FromParts(2026, 12, lDay, lHour, lMinute);
}

TEST(ShowEvent, IsANullEventOfUnknownDurationWhenNew) {
  const ShowEvent event;
  EXPECT_EQ(1, event.EventType());
  EXPECT_EQ("", event.Filename());
  EXPECT_EQ(0, event.StartTime()->TimeVal());
  EXPECT_EQ(0, event.EndTime()->TimeVal());
  EXPECT_NE(event.StartTime(), event.EndTime());
  EXPECT_EQ(-1, event.Duration());
}

TEST(ShowEvent, AFileNameMakesItAShowAndNoneANullEvent) {
  ShowEvent event;
  event.Filename("eve.shw");
  EXPECT_EQ(2, event.EventType());
  event.Filename("");
  EXPECT_EQ(1, event.EventType());
}

TEST(ShowEvent, TheNullTypeEmptiesTheFileNameAndNoOtherDoes) {
  ShowEvent event;
  event.Filename("eve.shw");
  event.EventType(7);
  EXPECT_EQ(7, event.EventType());
  EXPECT_EQ("eve.shw", event.Filename());
  event.EventType(1);
  EXPECT_EQ("", event.Filename());
}

TEST(ShowEvent, SettingTheStartLeavesTheEndAndTheDurationFollows) {
  ShowEvent event;
  event.EndTime(At(Mon, 22));
  EXPECT_EQ(86400 + 22 * 3600, event.Duration());
  const auto start = At(Mon, 20);
  event.StartTime(start);
  EXPECT_EQ(start, event.StartTime());
  EXPECT_EQ("Mon 22:00", Words(*event.EndTime()));
  EXPECT_EQ(7200, event.Duration());
}

TEST(ShowEvent, SettingTheEndLeavesTheStartAndTheDurationWraps) {
  ShowEvent event;
  event.StartTime(At(Sat, 22));
  const auto end = At(Sun, 2);
  event.EndTime(end);
  EXPECT_EQ(end, event.EndTime());
  EXPECT_EQ("Sat 22:00", Words(*event.StartTime()));
  EXPECT_EQ(4 * 3600, event.Duration());
}

TEST(ShowEvent, SetDurationMovesTheEndAndKeepsTheDurationAsGiven) {
  ShowEvent event;
  event.StartTime(At(Mon, 1));
  event.SetDuration(604800);
  EXPECT_EQ("Mon 1:00", Words(*event.EndTime()));
  EXPECT_EQ(604800, event.Duration());
  event.SetDuration(60);
  EXPECT_EQ("Mon 1:01", Words(*event.EndTime()));
}

TEST(ShowEvent, AWeekTimeChangedInPlaceMovesTheBoundary) {
  const auto boundary = At(Mon, 20);
  const auto one = ShowFrom(At(Mon, 18), boundary), next = ShowFrom(boundary, At(Mon, 22));
  boundary->Hour(21);
  EXPECT_EQ("Mon 18:00 - Mon 21:00 a", Words(*one));
  EXPECT_EQ("Mon 21:00 - Mon 22:00 a", Words(*next));
}

TEST(ShowEventRange, OverTheWeeksEndIsLastWeeksWhileItRuns) {
  const auto event = ShowFrom(At(Sat, 22), At(Sun, 2));
  EXPECT_EQ("2026-12-19 22:00:00 .. 2026-12-20 02:00:00", Words(event->Range(On(20, 1))));
  EXPECT_EQ("2026-12-19 22:00:00 .. 2026-12-20 02:00:00", Words(event->Range(On(20, 2))));
  EXPECT_EQ("2026-12-26 22:00:00 .. 2026-12-27 02:00:00", Words(event->Range(On(20, 2, 1))));
  EXPECT_EQ("2026-12-26 22:00:00 .. 2026-12-27 02:00:00", Words(event->Range(On(23, 12))));
  EXPECT_EQ("2026-12-26 22:00:00 .. 2026-12-27 02:00:00", Words(event->Range(On(26, 23))));
}

TEST(ShowEventRange, WithinTheWeekIsThisWeeksUntilItIsOver) {
  const auto event = ShowFrom(At(Mon, 10), At(Mon, 12));
  EXPECT_EQ("2026-12-21 10:00:00 .. 2026-12-21 12:00:00", Words(event->Range(On(20, 0))));
  EXPECT_EQ("2026-12-21 10:00:00 .. 2026-12-21 12:00:00", Words(event->Range(On(21, 11))));
  EXPECT_EQ("2026-12-21 10:00:00 .. 2026-12-21 12:00:00", Words(event->Range(On(21, 12))));
  EXPECT_EQ("2026-12-28 10:00:00 .. 2026-12-28 12:00:00", Words(event->Range(On(21, 13))));
}

TEST(ShowEventRange, OfEqualStartAndEndIsUnbounded) {
  EXPECT_EQ("... .. ...", Words(ShowFrom(At(Mon, 10), At(Mon, 10))->Range(On(21, 13))));
  EXPECT_EQ("... .. ...", Words(ShowEvent().Range(On(21, 13))));
}

TEST(ShowEventFunctions, NewNullShowEventHasStartAndDuration) {
  const auto start = At(Tue, 3);
  const auto event = NewNullShowEvent(start, 3600);
  EXPECT_EQ(1, event->EventType());
  EXPECT_EQ(start, event->StartTime());
  EXPECT_EQ("Tue 4:00", Words(*event->EndTime()));
  EXPECT_EQ(3600, event->Duration());
}

TEST(ShowEventFunctions, NewShowEventKeepsTheReferencesGiven) {
  const auto start = At(Tue, 3), end = At(Tue, 5);
  const auto event = NewShowEvent("eve.shw", start, end);
  EXPECT_EQ(2, event->EventType());
  EXPECT_EQ("eve.shw", event->Filename());
  EXPECT_EQ(start, event->StartTime());
  EXPECT_EQ(end, event->EndTime());
  EXPECT_EQ(7200, event->Duration());
}

TEST(ShowEventFunctions, NewShowEventWithoutANameIsANullEvent) {
  EXPECT_EQ(1, NewShowEvent("", At(Tue, 3), At(Tue, 5))->EventType());
}

TEST(ShowEventText, WritesEndTypeFileStart) {
  EXPECT_EQ("(165600,2,(,0,a*Sb.shw),151200)",
            ShowEventToText(*ShowFrom(At(Mon, 18), At(Mon, 22), "a,b.shw")));
  EXPECT_EQ("(0,1,(,0,),0)", ShowEventToText(ShowEvent()));
}

TEST(ShowEventText, ReadsWhatItWrites) {
  const auto event = ShowEventFromText("(165600,2,(,0,a*Sb.shw),151200)");
  EXPECT_EQ("Mon 18:00 - Mon 22:00 a,b.shw", Words(*event));
  EXPECT_EQ(4 * 3600, event->Duration());
}

TEST(ShowEventText, TheNameDecidesTheTypeInTheEnd) {
  EXPECT_EQ(2, ShowEventFromText("(7200,1,(,0,a),3600)")->EventType());
  EXPECT_EQ(1, ShowEventFromText("(7200,2,(,0,),3600)")->EventType());
  EXPECT_EQ(2, ShowEventFromText("(7200,none,(,0,a),3600)")->EventType());
  EXPECT_EQ(2, ShowEventFromText("(7200,,(,0,a),3600)")->EventType());
}

TEST(ShowEventText, TheFirstTwoElementsOfTheFileReferenceAreNotRead) {
  EXPECT_EQ("a", ShowEventFromText("(7200,2,(what,ever,a,more),3600,more)")->Filename());
}

TEST(ShowEventText, TimesAreLeadingNumbersRoundedAndTakenRoundTheWeek) {
  const auto event = ShowEventFromText("(604800,2,(,0,a),3600.5x)");
  EXPECT_EQ(0, event->EndTime()->TimeVal());
  EXPECT_EQ(3600, event->StartTime()->TimeVal());
  EXPECT_EQ(0, ShowEventFromText("(none,2,(,0,a),)")->StartTime()->TimeVal());
}

TEST(ShowEventText, TooFewElementsFail) {
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)ShowEventFromText("(7200,2,(,0,a))"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)ShowEventFromText("(7200,2,(,0),3600)"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)ShowEventFromText("(7200,2,a,3600)"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)ShowEventFromText("()"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)ShowEventFromText(""); }));
}

TEST(ShowEventText, ABadListOrANumberTooLargeFails) {
  EXPECT_EQ(ListError1, RaisedError([] { (void)ShowEventFromText("(7200,2"); }));
  EXPECT_EQ(OverflowError, RaisedError([] { (void)ShowEventFromText("(99999999999,2,(,0,a),0)"); }));
  EXPECT_EQ(OverflowError, RaisedError([] { (void)ShowEventFromText("(0,99999999999,(,0,a),0)"); }));
}

}  // namespace
}  // namespace vex

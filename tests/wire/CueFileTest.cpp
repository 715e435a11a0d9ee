#include "components/open/wire/CueFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <nlohmann/json.hpp>

#include "basic/Error.h"

namespace vex {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using testing::AllOf;
using testing::HasSubstr;

CueFile Parse(const std::string& szText) {
  return ParseCueFile(szText, "porch.vexseq");
}

/// The description with which the text is refused; empty when it is not.
std::string Refusal(const std::string& szText) {
  try {
    (void)Parse(szText);
  } catch (const Error& error) {
    EXPECT_EQ(error.Source, "Sequence.Load");
    EXPECT_EQ(error.Number, 1);
    EXPECT_THAT(error.Description, HasSubstr("porch.vexseq"));
    EXPECT_THAT(error.Description, HasSubstr("; ")) << "says what to do";
    return error.Description;
  }
  return {};
}

std::string WithEvent(const std::string& szMembers) {
  return R"({"duration":10,"events":[{},{)" + szMembers + "}]}";
}

TEST(CueFile, ReadsEveryMember) {
  const CueFile file = Parse(R"({ "format": "vexseq", "version": 1, "duration": 2.5, "media": "carol.ogg",
    "shellCommand": { "commandLine": "notify-send lights", "windowStyle": 6 }, "frames": "tree.fseq",
    "events": [ { "kind": "x10", "network": 2, "unit": 3, "circuit": 4, "start": 0.25, "end": 0.5,
                  "from": 12.5, "to": 100, "rate": 2.0, "command": "fade" } ] })");
  EXPECT_EQ(file.Duration, milliseconds(2500));
  EXPECT_EQ(file.Media, "carol.ogg");
  EXPECT_EQ(file.CommandLine, "notify-send lights");
  EXPECT_EQ(file.WindowStyle, 6);
  EXPECT_EQ(file.Frames, "tree.fseq");
  ASSERT_EQ(file.Events.size(), 1U);
  const CueEvent& event = file.Events[0];
  EXPECT_EQ(event.Kind, CueKind::X10);
  EXPECT_EQ(event.Network, 2);
  EXPECT_EQ(event.Unit, 3);
  EXPECT_EQ(event.Circuit, 4);
  EXPECT_EQ(event.Start, milliseconds(250));
  EXPECT_EQ(event.End, milliseconds(500));
  EXPECT_EQ(event.From, 12.5);
  EXPECT_EQ(event.To, 100);
  EXPECT_EQ(event.Rate, 2.0);
  EXPECT_EQ(file.Commands[event.Command], "fade");
}

TEST(CueFile, NeedsNothingButADuration) {
  const CueFile file = Parse(R"({"duration": 0})");
  EXPECT_EQ(file.Duration, nanoseconds(0));
  EXPECT_EQ(file.Media, "");
  EXPECT_EQ(file.Frames, "");
  EXPECT_EQ(file.CommandLine, "");
  EXPECT_EQ(file.WindowStyle, 1);
  EXPECT_TRUE(file.Events.empty());
}

TEST(CueFile, DurationMayComeFromFrames) {
  EXPECT_EQ(Parse(R"({"frames":"a.fseq"})").Duration, std::nullopt);
}

TEST(CueFile, RefusesToGuessTheDuration) {
  EXPECT_THAT(Refusal("{}"), HasSubstr("\"duration\" is missing"));
  EXPECT_THAT(Refusal(R"({"frames":"","events":[]})"), HasSubstr("\"duration\" is missing"));
}

TEST(CueFile, EventsHaveDefaults) {
  const CueEvent event = Parse(R"({"duration":1,"events":[{}]})").Events[0];
  EXPECT_EQ(event.Kind, CueKind::Main);
  EXPECT_EQ(event.Network, 0);
  EXPECT_EQ(event.Unit, 1);
  EXPECT_EQ(event.Circuit, 1);
  EXPECT_EQ(event.Start, nanoseconds(0));
  EXPECT_EQ(event.End, nanoseconds(0));
  EXPECT_EQ(event.From, 0);
  EXPECT_EQ(event.To, 0);
  EXPECT_EQ(event.Rate, 1.0);
  EXPECT_EQ(event.Command, 0U);
}

TEST(CueFile, EventWithoutEndEndsWhereItStarts) {
  EXPECT_EQ(Parse(R"({"duration":1,"events":[{"start":0.5}]})").Events[0].End, milliseconds(500));
}

TEST(CueFile, EventWithoutToStaysAtItsFrom) {
  EXPECT_EQ(Parse(R"({"duration":1,"events":[{"from":40}]})").Events[0].To, 40);
}

TEST(CueFile, EventsDoNotInheritFromTheOneBefore) {
  const auto events = Parse(R"({"duration":1,"events":[{"unit":9,"to":80,"command":"x"},{}]})").Events;
  EXPECT_EQ(events[1].Unit, 1);
  EXPECT_EQ(events[1].To, 0);
  EXPECT_EQ(events[1].Command, 0U);
}

TEST(CueFile, KeepsEachCommandOnce) {
  const CueFile file = Parse(
      R"({"duration":1,"events":[{"command":"fade"},{"command":"on"},{"command":"fade"},{"command":""}]})");
  EXPECT_EQ(file.Commands, (std::vector<std::string>{"", "fade", "on"}));
  EXPECT_EQ(file.Events[2].Command, file.Events[0].Command);
  EXPECT_EQ(file.Events[3].Command, 0U);
}

TEST(CueFile, PassesOverWhatItDoesNotKnow) {
  const CueFile file =
      Parse(R"({"x":{"duration":9,"events":[1,[2]],"y":{}},"z":[{"a":null}],"n":null,"b":true,
    "duration":1,"shellCommand":{"why":{"commandLine":"no"},"commandLine":"yes"},
    "events":[{"deep":[[[{"unit":5}]]],"circuit":7,"note":"n","flag":false}]})");
  EXPECT_EQ(file.Duration, milliseconds(1000));
  EXPECT_EQ(file.CommandLine, "yes");
  ASSERT_EQ(file.Events.size(), 1U);
  EXPECT_EQ(file.Events[0].Unit, 1);
  EXPECT_EQ(file.Events[0].Circuit, 7);
}

TEST(CueFile, OfAMemberGivenTwiceTheLaterHolds) {
  EXPECT_EQ(Parse(R"({"duration":1,"duration":2})").Duration, milliseconds(2000));
  EXPECT_EQ(Parse(R"({"duration":1,"events":[{},{}],"events":[{}]})").Events.size(), 1U);
}

TEST(CueFile, ReadsPastAByteOrderMark) {
  EXPECT_EQ(Parse("\xEF\xBB\xBF{\"duration\":1}").Duration, milliseconds(1000));
}

TEST(CueFile, ReadsNestingOfAnyDepth) {
  const std::string szDeep = std::string(100000, '[') + std::string(100000, ']');
  EXPECT_EQ(Parse(R"({"x":)" + szDeep + R"(,"duration":1})").Duration, milliseconds(1000));
}

TEST(CueFile, TimesAreExactToTheNanosecond) {
  const auto events =
      Parse(R"({"duration":1,"events":[{"start":0.025},{"start":0.0005},{"start":2147483.647}]})").Events;
  EXPECT_EQ(events[0].Start, milliseconds(25));
  EXPECT_EQ(events[1].Start, nanoseconds(500000));
  EXPECT_EQ(events[2].Start, milliseconds(2147483647));
}

TEST(CueFile, SaysWhereTextIsNoJson) {
  EXPECT_THAT(Refusal("{\n  \"duration\": 1,\n  oops\n}"),
              AllOf(HasSubstr("line 3, column 3"), HasSubstr("JSON")));
  EXPECT_THAT(Refusal(""), HasSubstr("line 1, column 1"));
  EXPECT_THAT(Refusal(R"({"duration":1} x)"), HasSubstr("JSON"));
  EXPECT_THAT(Refusal("{\"media\":\"\xFF\"}"), HasSubstr("UTF-8"));
  EXPECT_THAT(Refusal(R"({"duration":1e999})"), HasSubstr("number too large"));
}

TEST(CueFile, RefusesWhatIsNoObject) {
  EXPECT_THAT(Refusal("[]"), HasSubstr("holds no object"));
  EXPECT_THAT(Refusal("3"), HasSubstr("holds no object"));
  EXPECT_THAT(Refusal("null"), HasSubstr("holds no object"));
}

TEST(CueFile, RefusesAnotherFormatOrVersion) {
  EXPECT_THAT(Refusal(R"({"format":"other","duration":1})"), HasSubstr("\"format\""));
  EXPECT_THAT(Refusal(R"({"format":1,"duration":1})"), HasSubstr("\"format\""));
  EXPECT_THAT(Refusal(R"({"version":2,"duration":1})"), HasSubstr("\"version\""));
  EXPECT_THAT(Refusal(R"({"version":"1","duration":1})"), HasSubstr("\"version\""));
}

struct WrongValue {
  std::string Text;
  std::string Place;
};
class CueFileWrongValues : public testing::TestWithParam<WrongValue> {};

TEST_P(CueFileWrongValues, AreRefusedByName) {
  EXPECT_THAT(Refusal(GetParam().Text), HasSubstr("\"" + GetParam().Place + "\""));
}

INSTANTIATE_TEST_SUITE_P(
    All, CueFileWrongValues,
    testing::Values(
        WrongValue{R"({"duration":"1"})", "duration"}, WrongValue{R"({"duration":null})", "duration"},
        WrongValue{R"({"duration":-0.1})", "duration"}, WrongValue{R"({"duration":2147484})", "duration"},
        WrongValue{R"({"duration":{}})", "duration"}, WrongValue{R"({"duration":[1]})", "duration"},
        WrongValue{R"({"duration":true})", "duration"}, WrongValue{R"({"media":1})", "media"},
        WrongValue{R"({"media":["a"]})", "media"}, WrongValue{R"({"frames":{}})", "frames"},
        WrongValue{R"({"shellCommand":"ls"})", "shellCommand"},
        WrongValue{R"({"shellCommand":[]})", "shellCommand"},
        WrongValue{R"({"shellCommand":{"commandLine":1}})", "shellCommand.commandLine"},
        WrongValue{R"({"shellCommand":{"commandLine":{}}})", "shellCommand.commandLine"},
        WrongValue{R"({"shellCommand":{"windowStyle":1.5}})", "shellCommand.windowStyle"},
        WrongValue{R"({"events":{}})", "events"}, WrongValue{R"({"events":"a"})", "events"},
        WrongValue{R"({"events":[{},3]})", "events[1]"}, WrongValue{R"({"events":[[]]})", "events[0]"},
        WrongValue{R"({"events":[null]})", "events[0]"}));

INSTANTIATE_TEST_SUITE_P(Events, CueFileWrongValues,
                         testing::Values(WrongValue{WithEvent(R"("kind":"dmx")"), "events[1].kind"},
                                         WrongValue{WithEvent(R"("kind":1)"), "events[1].kind"},
                                         WrongValue{WithEvent(R"("network":0.5)"), "events[1].network"},
                                         WrongValue{WithEvent(R"("network":"0")"), "events[1].network"},
                                         WrongValue{WithEvent(R"("unit":3000000000)"), "events[1].unit"},
                                         WrongValue{WithEvent(R"("circuit":null)"), "events[1].circuit"},
                                         WrongValue{WithEvent(R"("start":-1)"), "events[1].start"},
                                         WrongValue{WithEvent(R"("start":"0")"), "events[1].start"},
                                         WrongValue{WithEvent(R"("start":2,"end":1)"), "events[1].end"},
                                         WrongValue{WithEvent(R"("from":100.1)"), "events[1].from"},
                                         WrongValue{WithEvent(R"("from":-0.1)"), "events[1].from"},
                                         WrongValue{WithEvent(R"("to":"100")"), "events[1].to"},
                                         WrongValue{WithEvent(R"("to":{})"), "events[1].to"},
                                         WrongValue{WithEvent(R"("rate":-1)"), "events[1].rate"},
                                         WrongValue{WithEvent(R"("rate":[])"), "events[1].rate"},
                                         WrongValue{WithEvent(R"("command":5)"), "events[1].command"}));

TEST(CueFile, UnitsThatNoControlTakesAreNoDamage) {
  EXPECT_EQ(Parse(R"({"duration":1,"events":[{"unit":-5,"circuit":100000,"network":77}]})").Events[0].Unit,
            -5);
}

TEST(CueFileProperties, EveryEventComesBackAsItWasWritten) {
  EXPECT_TRUE(rc::check([] {
    const auto starts = *rc::gen::container<std::vector<int32_t>>(rc::gen::inRange(0, 100000));
    nlohmann::json events = nlohmann::json::array();
    std::vector<CueEvent> expected;
    for (const int32_t lStart : starts) {
      CueEvent event;
      event.Start = milliseconds(lStart);
      event.End = milliseconds(lStart + *rc::gen::inRange(0, 5000));
      event.From = *rc::gen::inRange(0, 1001) / 10.0;
      event.To = *rc::gen::inRange(0, 1001) / 10.0;
      event.Unit = *rc::gen::arbitrary<int32_t>();
      event.Circuit = *rc::gen::arbitrary<int32_t>();
      event.Network = *rc::gen::arbitrary<int32_t>();
      events.push_back({{"start", lStart / 1000.0},
                        {"end", static_cast<double>(event.End.count()) / 1e9},
                        {"from", event.From},
                        {"to", event.To},
                        {"unit", event.Unit},
                        {"circuit", event.Circuit},
                        {"network", event.Network}});
      expected.push_back(event);
    }
    const CueFile file = Parse(nlohmann::json{{"duration", 1}, {"events", events}}.dump());
    RC_ASSERT(file.Events.size() == expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
      RC_ASSERT(file.Events[i].Start == expected[i].Start);
      RC_ASSERT(file.Events[i].End == expected[i].End);
      RC_ASSERT(file.Events[i].From == expected[i].From);
      RC_ASSERT(file.Events[i].To == expected[i].To);
      RC_ASSERT(file.Events[i].Unit == expected[i].Unit);
      RC_ASSERT(file.Events[i].Circuit == expected[i].Circuit);
      RC_ASSERT(file.Events[i].Network == expected[i].Network);
    }
  }));
}

TEST(CueFileProperties, CutAnywhereTheTextIsRefusedAndNeverMore) {
  const std::string szWhole =
      R"({"format":"vexseq","duration":2.5,"shellCommand":{"commandLine":"a"},"events":[{"unit":1,"to":5e1}]})";
  for (size_t size = 0; size < szWhole.size(); ++size)
    EXPECT_NE(Refusal(szWhole.substr(0, size)), "") << size;
  EXPECT_EQ(Refusal(szWhole), "");
}

}  // namespace
}  // namespace vex

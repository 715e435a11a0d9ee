#include "components/open/OpenSequenceEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/open/EngineRig.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Failure(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.Description;
  }
  return {};
}

TEST(OpenSequenceEngine, UntilLoadedNothingHappens) {
  EngineRig rig;
  rig.Engine->PlayOptions(true, true);
  rig.Engine->PrepareForPlay(false);
  rig.Engine->Start();
  EXPECT_EQ(rig.Engine->PlayState(), 0);
  rig.Engine->InitMusicSync(0);
  EXPECT_THAT(rig.Sync(100), IsEmpty());
  EXPECT_EQ(rig.Engine->MediaFile(), "");
  EXPECT_FALSE(rig.Engine->ShellCommand().has_value());
  EXPECT_FALSE(rig.Engine->UsesNetwork(NetworkKind::Main));
  EXPECT_TRUE(rig.Engine->NextEventDue().IsNever());
  EXPECT_TRUE(rig.Engine->NextStateChange().IsNever());
  EXPECT_EQ(rig.Engine->Length(), std::nullopt);
  rig.Engine->Stop();
  EXPECT_THAT(rig.Lights->Take(), IsEmpty());
}

TEST(OpenSequenceEngine, ByItsOwnClockTheFirstEventsComeInStart) {
  EngineRig rig;
  rig.Play(Two);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("0: 1.1 10>10 1", "0: flush"));
  EXPECT_EQ(rig.Engine->PlayState(), 1);
}

TEST(OpenSequenceEngine, ByItsOwnClockEventsComeWhenTheyAreDue) {
  EngineRig rig;
  rig.Advance(1234);
  rig.Play(Two);
  rig.Lights->Take();
  rig.Advance(49);
  EXPECT_THAT(rig.Lights->Take(), IsEmpty());
  rig.Advance(1);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("1284: 1.2 20>20 1", "1284: flush"));
}

TEST(OpenSequenceEngine, ItsTimerSleepsUntilTheNextEvent) {
  EngineRig rig;
  rig.Play(R"({"duration":3600,"events":[{"start":1800}]})");
  rig.Advance(3700000);
  EXPECT_LE(rig.Host.EventLoop().Ticks(), 2U);
}

TEST(OpenSequenceEngine, EndsAsSoonAsItsDurationHasPassed) {
  EngineRig rig;
  rig.Play(Two);
  rig.Advance(99);
  EXPECT_EQ(rig.Engine->PlayState(), 1);
  rig.Advance(1);
  EXPECT_EQ(rig.Engine->PlayState(), 0);
}

TEST(OpenSequenceEngine, TheEndIsToldFromTheClockWithoutATick) {
  EngineRig rig;
  rig.Play(Two, false, true);
  rig.Advance(99);
  rig.Lights->Take();
  int32_t lState = -1;
  rig.Host.EventLoop().At(std::chrono::milliseconds(100), [&] { lState = rig.Engine->PlayState(); });
  rig.Advance(1);
  EXPECT_EQ(lState, 0);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("100: 1.1 0>0 1", "100: 1.2 0>0 1", "100: flush"));
}

TEST(OpenSequenceEngine, AnEventAtTheVeryEndIsPlayedALaterOneIsNot) {
  EngineRig rig;
  rig.Play(R"({"duration":0.1,"events":[{"start":0.1,"to":0},{"start":0.101,"circuit":2}]})");
  rig.Advance(500);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("100: 1.1 0>0 1", "100: flush"));
}

TEST(OpenSequenceEngine, ADurationBetweenMillisecondsEndsWithTheNext) {
  EngineRig rig;
  rig.Play(R"({"duration":0.0995})");
  EXPECT_EQ(rig.Engine->NextStateChange(), NextDue::At(99500000));
  rig.Advance(99);
  EXPECT_EQ(rig.Engine->PlayState(), 1);
  rig.Advance(1);
  EXPECT_EQ(rig.Engine->PlayState(), 0);
  EXPECT_EQ(rig.Engine->Length(), 100);
}

TEST(OpenSequenceEngine, WithoutDurationLeftItEndsAtOnce) {
  EngineRig rig;
  rig.Play(R"({"duration":0,"events":[{"to":50,"from":50}]})");
  EXPECT_EQ(rig.Engine->PlayState(), 0);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("0: 1.1 50>50 1", "0: flush"));
}

TEST(OpenSequenceEngine, ALoopBeginsAgainWithoutDrift) {
  EngineRig rig;
  rig.Play(R"({"duration":0.0333,"events":[{"from":1,"to":1}]})", true);
  rig.Lights->Take();
  rig.Advance(3330);
  std::vector<std::string> expected;
  for (int i = 1; i <= 100; ++i) {
    const int at = static_cast<int>((i * 333 + 9) / 10);
    expected.push_back(std::to_string(at) + ": 1.1 1>1 1");
    expected.push_back(std::to_string(at) + ": flush");
  }
  EXPECT_EQ(rig.Lights->Take(), expected);
  EXPECT_EQ(rig.Engine->PlayState(), 1);
}

TEST(OpenSequenceEngine, ALoopPlaysItsLastEventsBeforeItsFirst) {
  EngineRig rig;
  rig.Play(R"({"duration":0.1,"events":[{"from":1,"to":1},{"start":0.1,"from":9,"to":9}]})", true);
  rig.Lights->Take();
  rig.Advance(100);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("100: 1.1 9>9 1", "100: 1.1 1>1 1", "100: flush"));
}

TEST(OpenSequenceEngine, ALoopOfNoLengthGoesRoundOnceAMillisecond) {
  EngineRig rig;
  rig.Play(R"({"duration":0,"events":[{"from":1,"to":1}]})", true);
  rig.Lights->Take();
  rig.Advance(3);
  EXPECT_EQ(rig.Lights->Take().size(), 6U);
}

TEST(OpenSequenceEngine, RoundsMissedAltogetherAreLeftOut) {
  EngineRig rig;
  rig.Play(R"({"duration":0.1,"events":[{"from":1,"to":1},{"start":0.05,"from":5,"to":5}]})", true);
  rig.Lights->Take();
  rig.Host.EventLoop().At(std::chrono::milliseconds(10), [&] {
    rig.Host.Clock().MoveTo(std::chrono::milliseconds(1020));  // the machine stood still
  });
  rig.Advance(15);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("1020: 1.1 5>5 1", "1020: 1.1 1>1 1", "1020: flush"));
}

TEST(OpenSequenceEngine, AsksForUnitThenCircuitAndFlushesOnceAPass) {
  EngineRig rig;
  rig.Lights->NoteQuestions = true;
  rig.Play(R"({"duration":1,"events":[{"unit":65},{"unit":2,"circuit":600},{"unit":3},{"unit":4}]})");
  EXPECT_THAT(rig.Lights->Take(),
              ElementsAre("0: unit?65", "0: unit?2", "0: circuit?2.600", "0: unit?3", "0: circuit?3.1",
                          "0: 3.1 0>0 1", "0: unit?4", "0: circuit?4.1", "0: 4.1 0>0 1", "0: flush"));
}

TEST(OpenSequenceEngine, APassWithoutAcceptedEventsFlushesNothing) {
  EngineRig rig;
  rig.Play(R"({"duration":1,"events":[{"unit":65}]})");
  EXPECT_THAT(rig.Lights->Take(), IsEmpty());
}

TEST(OpenSequenceEngine, HandsTheWholeEventToTheControl) {
  EngineRig rig;
  rig.Lights->Whole = true;
  rig.Play(R"({"duration":1,"events":[
    {"network":2,"unit":3,"circuit":4,"start":0,"end":0.5,"from":25.5,"to":75,"rate":2.0,"command":"f\u00fcr"}]})");
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("0: 2/3.4 25.5>75 250 [f\xFCr 2 0 500]", "0: flush"));
}

TEST(OpenSequenceEngine, AnEventTakesAtLeastAMillisecondAndARateOfNothingIsVerySmall) {
  EngineRig rig;
  rig.Play(
      R"({"duration":1,"events":[{"end":0.0001},{"end":1,"rate":0},{"end":2000000,"rate":0},{"end":1,"rate":3}]})");
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("0: 1.1 0>0 1", "0: 1.1 0>0 100000000", "0: 1.1 0>0 2147483647",
                                              "0: 1.1 0>0 333", "0: flush"));
}

TEST(OpenSequenceEngine, X10AndCourserEventsGoNowhere) {
  EngineRig rig;
  rig.Play(R"({"duration":1,"events":[{"kind":"x10"},{"kind":"courser"}]})", false, true);
  rig.Advance(2000);
  EXPECT_THAT(rig.Lights->Take(), IsEmpty());
}

TEST(OpenSequenceEngine, AnswersWhichNetworksItUses) {
  EngineRig rig;
  const auto uses = [&](const std::string& szEvents) {
    rig.Load(R"({"duration":1,"events":[)" + szEvents + "]}");
    std::string szUses;
    if (rig.Engine->UsesNetwork(NetworkKind::Main)) szUses += 'm';
    if (rig.Engine->UsesNetwork(NetworkKind::X10)) szUses += 'x';
    if (rig.Engine->UsesNetwork(NetworkKind::Courser)) szUses += 'c';
    return szUses;
  };
  EXPECT_EQ(uses(""), "");
  EXPECT_EQ(uses("{}"), "m");
  EXPECT_EQ(uses(R"({"kind":"x10"})"), "x");
  EXPECT_EQ(uses(R"({"kind":"courser"})"), "c");
  EXPECT_EQ(uses(R"({"kind":"courser"},{},{"kind":"x10"})"), "mxc");
}

TEST(OpenSequenceEngine, HandsOutItsShellCommandAndMedia) {
  EngineRig rig;
  rig.Load(
      R"({"duration":1,"media":"F\u00fcr Elise.ogg","shellCommand":{"commandLine":"echo \u20ac","windowStyle":6}})");
  EXPECT_EQ(rig.Engine->MediaFile(), "F\xFCr Elise.ogg");
  const auto command = std::any_cast<OpenShellCommand>(rig.Engine->ShellCommand());
  EXPECT_EQ(command.CommandLine, "echo \x80");
  EXPECT_EQ(command.WindowStyle, 6);
}

TEST(OpenSequenceEngine, AnEmptyShellCommandIsNone) {
  EngineRig rig;
  rig.Load(R"({"duration":1,"shellCommand":{"commandLine":""}})");
  EXPECT_FALSE(rig.Engine->ShellCommand().has_value());
}

TEST(OpenSequenceEngine, LightsGoOffWhenItEnds) {
  EngineRig rig;
  rig.Play(Two, false, true);
  rig.Advance(99);
  rig.Lights->Take();
  rig.Advance(1);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("100: 1.1 0>0 1", "100: 1.2 0>0 1", "100: flush"));
}

TEST(OpenSequenceEngine, OnlyCircuitsThatWereUsedGoOff) {
  EngineRig rig;
  rig.Play(Two, false, true);
  rig.Advance(20);
  rig.Lights->Take();
  rig.Engine->Stop();
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("20: 1.1 0>0 1", "20: flush"));
  rig.Engine->Stop();
  rig.Advance(200);
  EXPECT_THAT(rig.Lights->Take(), IsEmpty());
}

TEST(OpenSequenceEngine, AControlThatRefusesToPutALightOutIsAskedOnceMore) {
  EngineRig rig;
  rig.Play(Two, false, true);
  rig.Advance(99);
  rig.Lights->Take();
  rig.Lights->RefuseNext = 1;
  rig.Engine->Stop();
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("99: 1.1 0>0 1", "99: 1.2 0>0 1", "99: flush"));
}

TEST(OpenSequenceEngine, ALightThatCannotBePutOutHoldsUpNoOther) {
  EngineRig rig;
  rig.Play(Two, false, true);
  rig.Advance(99);
  rig.Lights->Take();
  rig.Lights->RefuseNext = 2;
  EXPECT_THROW(rig.Engine->Stop(), Error);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("99: 1.2 0>0 1", "99: flush"));
  EXPECT_EQ(rig.Engine->PlayState(), 0);
}

TEST(OpenSequenceEngine, WithoutLightsOffTheyStay) {
  EngineRig rig;
  rig.Play(Two);
  rig.Lights->Take();
  rig.Engine->Stop();
  EXPECT_EQ(rig.Engine->PlayState(), 0);
  rig.Engine.reset();
  EXPECT_THAT(rig.Lights->Take(), IsEmpty());
}

TEST(OpenSequenceEngine, LightsGoOffWhenItIsReleasedWithoutAStop) {
  EngineRig rig;
  rig.Play(Two, true, true);
  rig.Lights->Take();
  rig.Engine.reset();
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("0: 1.1 0>0 1", "0: flush"));
}

TEST(OpenSequenceEngine, LightsGoOffWhenItIsPreparedAnewByTheOptionsThatHeldSoFar) {
  EngineRig rig;
  rig.Play(Two, true, true);
  rig.Lights->Take();
  rig.Engine->PlayOptions(false, false);
  rig.Engine->PrepareForPlay(false);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("0: 1.1 0>0 1", "0: flush"));
  EXPECT_EQ(rig.Engine->PlayState(), 0);
}

TEST(OpenSequenceEngine, OptionsHoldFromTheNextPrepareOn) {
  EngineRig rig;
  rig.Play(Two, true, true);
  rig.Engine->PlayOptions(false, false);
  rig.Advance(100);
  EXPECT_EQ(rig.Engine->PlayState(), 1);
  rig.Engine->PrepareForPlay(false);
  rig.Engine->Start();
  rig.Lights->Take();
  rig.Advance(100);
  EXPECT_EQ(rig.Engine->PlayState(), 0);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("150: 1.2 20>20 1", "150: flush"));
}

TEST(OpenSequenceEngine, StartedTwiceItBeginsAgain) {
  EngineRig rig;
  rig.Play(Two);
  rig.Advance(60);
  rig.Lights->Take();
  rig.Engine->Start();
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("60: 1.1 10>10 1", "60: flush"));
  rig.Advance(99);
  EXPECT_EQ(rig.Engine->PlayState(), 1);
}

TEST(OpenSequenceEngine, PlayedAgainItPlaysTheSame) {
  EngineRig rig;
  rig.Play(Two, false, true);
  rig.Advance(100);
  const auto first = rig.Lights->Take().size();
  rig.Engine->PrepareForPlay(false);
  rig.Engine->Start();
  rig.Advance(100);
  EXPECT_EQ(rig.Lights->Take().size(), first);
}

TEST(OpenSequenceEngine, RunsFasterByItsPlayRate) {
  EngineRig rig;
  rig.Load(R"({"duration":0.1,"events":[{"start":0.05,"end":0.1}]})");
  rig.Engine->PlayRate(2.0);
  rig.Engine->PlayOptions(false, false);
  rig.Engine->PrepareForPlay(false);
  rig.Engine->Start();
  rig.Advance(49);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("25: 1.1 0>0 25", "25: flush"));
  EXPECT_EQ(rig.Engine->PlayState(), 1);
  rig.Advance(1);
  EXPECT_EQ(rig.Engine->PlayState(), 0);
}

TEST(OpenSequenceEngine, AChangedPlayRateGoesOnFromWhereItIs) {
  EngineRig rig;
  rig.Play(R"({"duration":0.1,"events":[{"start":0.09}]})");
  rig.Advance(50);
  rig.Engine->PlayRate(0.5);
  rig.Advance(79);
  EXPECT_THAT(rig.Lights->Take(), IsEmpty());
  rig.Advance(1);
  EXPECT_THAT(rig.Lights->Take(), ElementsAre("130: 1.1 0>0 1", "130: flush"));
}

TEST(OpenSequenceEngine, RefusesAPlayRateThatIsNone) {
  EngineRig rig;
  for (const double rate : {0.0, -1.0, std::nan(""), HUGE_VAL})
    EXPECT_EQ(Failure([&] { rig.Engine->PlayRate(rate); }), "Invalid procedure call or argument");
}

TEST(OpenSequenceEngine, AControlThatRefusesEndsTheSequenceAndIsToldAtTheNextLook) {
  EngineRig rig;
  rig.Play(Two, true);
  rig.Lights->FailSends = true;
  rig.Advance(60);
  EXPECT_EQ(rig.Engine->NextStateChange(), NextDue::At(0));
  EXPECT_EQ(Failure([&] { (void)rig.Engine->PlayState(); }), "no lights");
  EXPECT_EQ(rig.Engine->PlayState(), 0);
  rig.Lights->FailSends = false;
  rig.Lights->Take();
  rig.Advance(1000);
  EXPECT_THAT(rig.Lights->Take(), IsEmpty());
}

TEST(OpenSequenceEngine, AControlThatRefusesAtTheStartFailsTheStart) {
  EngineRig rig;
  rig.Lights->FailSends = true;
  EXPECT_EQ(Failure([&] { rig.Play(Two, true, true); }), "no lights");
  EXPECT_EQ(rig.Engine->PlayState(), 0);
}

TEST(OpenSequenceEngine, WithoutAControlItPlaysUnseen) {
  EngineRig rig;
  rig.Engine->AttachControl(nullptr);
  rig.Play(Two, false, true);
  rig.Advance(99);
  EXPECT_EQ(rig.Engine->PlayState(), 1);
  rig.Advance(1);
  EXPECT_EQ(rig.Engine->PlayState(), 0);
}

}  // namespace
}  // namespace vex

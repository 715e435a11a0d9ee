#include "basic/Error.h"
#include "tests/com/ComMachine.h"
#include "tests/com/suite/SuiteClasses.h"

namespace vex::test {
namespace {

class SuiteSequenceEngineTest : public testing::Test {
 protected:
  void Make() {
    m_Devices = m_Machine.MakeDevices();
    m_Engine = m_Devices.NewSequence();
    Calls();
  }
  void Return(const char* szMember, VARIANT value) { SuiteReturn(szMember, &value); }

  SuiteMachine m_Machine;
  Devices m_Devices;
  std::shared_ptr<SequenceEngine> m_Engine;
};

TEST_F(SuiteSequenceEngineTest, LoadingPassesTheControlTheNameAsItIsAndTheRate) {
  Make();
  m_Engine->AttachControl(m_Devices.Lights);
  m_Engine->Load("D:\\Shows\\F\xFCr Elise.seq");
  m_Engine->PlayRate(1.0);
  EXPECT_EQ(Calls(),
            "SequenceEngine.AttachControl(DISPATCH:ChannelIO)\n"
            "SequenceEngine.Load(BSTR:D:\\Shows\\F\xFCr Elise.seq)\n"
            "SequenceEngine.PlayRate = R8:1\n");
}

TEST_F(SuiteSequenceEngineTest, ControlOfOthersIsNoObject) {
  Make();
  m_Engine->AttachControl(nullptr);
  EXPECT_EQ(Calls(), "SequenceEngine.AttachControl(DISPATCH:none)\n");
}

TEST_F(SuiteSequenceEngineTest, PlayingPassesOptionsMediaAndPositions) {
  Make();
  m_Engine->PlayOptions(false, true);
  m_Engine->PrepareForPlay(true);
  m_Engine->Start();
  m_Engine->InitMusicSync(0);
  m_Engine->SyncToMusic(1234);
  m_Engine->Stop();
  EXPECT_EQ(Calls(),
            "SequenceEngine.PlayOptions(BOOL:0, BOOL:-1)\n"
            "SequenceEngine.PrepareForPlay(BOOL:-1)\n"
            "SequenceEngine.Start()\n"
            "SequenceEngine.InitMusicSync(I4:0)\n"
            "SequenceEngine.SyncToMusic(I4:1234)\n"
            "SequenceEngine.Stop()\n");
}

TEST_F(SuiteSequenceEngineTest, EngineWithoutPlayOptionsPlaysWithout) {
  SuiteRename("SequenceEngine.PlayOptions", nullptr);
  Make();
  m_Engine->PlayOptions(true, true);
  EXPECT_EQ(Calls(), "SequenceEngine has no PlayOptions\n");
}

TEST_F(SuiteSequenceEngineTest, AnswersAreReadAsTheirType) {
  Make();
  Return("SequenceEngine.PlayState", LongValue(2));
  Return("SequenceEngine.MediaFile", TextValue(L"F\x00FCr Elise.ogg"));
  Return("SequenceEngine.UsesNetwork", LongValue(1));
  EXPECT_EQ(m_Engine->PlayState(), 2);
  EXPECT_EQ(m_Engine->MediaFile(), "F\xFCr Elise.ogg");
  EXPECT_TRUE(m_Engine->UsesNetwork(NetworkKind::Courser));
  EXPECT_EQ(Calls(),
            "SequenceEngine.PlayState()\n"
            "SequenceEngine.MediaFile()\n"
            "SequenceEngine.UsesNetwork(I4:4)\n");
}

TEST_F(SuiteSequenceEngineTest, EmptyAnswersAreZeroAndEmptyText) {
  Make();
  EXPECT_EQ(m_Engine->PlayState(), 0);
  EXPECT_EQ(m_Engine->MediaFile(), "");
  EXPECT_FALSE(m_Engine->UsesNetwork(NetworkKind::Main));
}

TEST_F(SuiteSequenceEngineTest, AnswerThatCannotBeReadIsATypeMismatch) {
  Make();
  Return("SequenceEngine.PlayState", TextValue(L"playing"));
  try {
    (void)m_Engine->PlayState();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, ErrorTypeMismatch);
    EXPECT_EQ(error.Description, "Type mismatch");
  }
}

TEST_F(SuiteSequenceEngineTest, LightingEventIsReadByName) {
  Make();
  PropertiesObject given{{{L"EndTime", LongValue(1500)},
                          {L"StartTime", DoubleValue(1000)},
                          {L"Rate", DoubleValue(0.5)},
                          {L"Command", TextValue(L"fade")},
                          {L"EndLevel", DoubleValue(99.5)},
                          {L"StartLevel", LongValue(3)},
                          {L"Circuit", LongValue(16)},
                          {L"UnitId", LongValue(4)},
                          {L"Network", LongValue(1)}}};
  Return("SequenceEngine.GetEvent", ObjectValue(&given));
  LightingEvent event;
  ASSERT_TRUE(m_Engine->GetEvent(event));
  EXPECT_EQ(event.Network, 1);
  EXPECT_EQ(event.UnitId, 4);
  EXPECT_EQ(event.Circuit, 16);
  EXPECT_EQ(event.StartLevel, 3);
  EXPECT_EQ(event.EndLevel, 99.5);
  EXPECT_EQ(event.Command, "fade");
  EXPECT_EQ(event.Rate, 0.5);
  EXPECT_EQ(event.StartTime, 1000);
  EXPECT_EQ(event.EndTime, 1500);
  SuiteReset();
  EXPECT_EQ(given.References(), 1U);
}

TEST_F(SuiteSequenceEngineTest, NoMoreEventsIsEmptyOrANullObject) {
  Make();
  LightingEvent event;
  EXPECT_FALSE(m_Engine->GetEvent(event));
  Return("SequenceEngine.GetEvent", ObjectValue(nullptr));
  EXPECT_FALSE(m_Engine->GetEvent(event));
  Return("SequenceEngine.GetEvent", LongValue(1));
  EXPECT_THROW((void)m_Engine->GetEvent(event), Error);
}

TEST_F(SuiteSequenceEngineTest, LightingEventThatLacksAPropertyIsAnError) {
  Make();
  PropertiesObject given{{{L"Network", LongValue(1)}}};
  Return("SequenceEngine.GetEvent", ObjectValue(&given));
  LightingEvent event;
  try {
    (void)m_Engine->GetEvent(event);
    FAIL();
  } catch (const Error& error) {
    EXPECT_NE(error.Description.find("\"UnitId\""), std::string::npos);
    EXPECT_NE(error.Description.find("SequenceEngine.GetEvent"), std::string::npos);
  }
  SuiteReset();
}

TEST_F(SuiteSequenceEngineTest, ShellCommandGoesToTheManagerAsItIs) {
  Make();
  PropertiesObject command{{}};
  Return("ShellCommandManager.CommandLineFor", TextValue(L"calc.exe /x"));
  Return("ShellCommandManager.WindowStyleFor", LongValue(2));
  for (const auto& [value, szDescribed] : {std::pair{LongValue(17), "I4:17"},
                                           {TextValue(L"note"), "BSTR:note"},
                                           {DoubleValue(2.5), "R8:2.5"},
                                           {ObjectValue(&command), "DISPATCH:object"}}) {
    Return("SequenceEngine.ShellCommand", value);
    const std::any kept = m_Engine->ShellCommand();
    ASSERT_TRUE(kept.has_value());
    Calls();
    EXPECT_EQ(m_Devices.ShellCommands->CommandLineFor(kept), "calc.exe /x");
    EXPECT_EQ(m_Devices.ShellCommands->WindowStyleFor(kept), 2);
    const std::string szArgument = std::string("(") + szDescribed + ")\n";
    EXPECT_EQ(Calls(), "ShellCommandManager.CommandLineFor" + szArgument +
                           "ShellCommandManager.WindowStyleFor" + szArgument);
  }
  SuiteReset();
  EXPECT_EQ(command.References(), 1U);
}

TEST_F(SuiteSequenceEngineTest, NoShellCommandIsNoValue) {
  Make();
  EXPECT_FALSE(m_Engine->ShellCommand().has_value());
  Return("SequenceEngine.ShellCommand", TextValue(L""));
  EXPECT_FALSE(m_Engine->ShellCommand().has_value());
  Return("SequenceEngine.ShellCommand", ObjectValue(nullptr));
  EXPECT_FALSE(m_Engine->ShellCommand().has_value());
}

TEST_F(SuiteSequenceEngineTest, CommandOfAnotherEngineIsATypeMismatch) {
  Make();
  EXPECT_THROW((void)m_Devices.ShellCommands->CommandLineFor(std::any(std::string("calc"))), Error);
}

TEST_F(SuiteSequenceEngineTest, MissingEngineFailsEachSequenceAndNotTheStart) {
  m_Machine.Remove("VEXSEQUENCELib.Sequence");
  m_Devices = m_Machine.MakeDevices();
  for (int32_t lTimes = 0; lTimes < 2; ++lTimes) {
    try {
      (void)m_Devices.NewSequence();
      FAIL();
    } catch (const Error& error) {
      EXPECT_EQ(error.Number, 429);
      EXPECT_NE(error.Description.find("VEXSEQUENCELib.Sequence"), std::string::npos);
    }
  }
}

TEST_F(SuiteSequenceEngineTest, MissingManagerIsAnErrorAtTheStart) {
  m_Machine.Remove("VEXSHELLCMDMGRLib.ShellCmdManager");
  try {
    m_Devices = m_Machine.MakeDevices();
    FAIL();
  } catch (const Error& error) {
    EXPECT_NE(
        error.Description.find("ShellCommandManager (program id \"VEXSHELLCMDMGRLib.ShellCmdManager\")"),
        std::string::npos);
  }
}

TEST_F(SuiteSequenceEngineTest, EachSequenceHasAnEngineOfItsOwnThatGoesWithIt) {
  Make();
  const auto other = m_Devices.NewSequence();
  EXPECT_EQ(SuiteObjects(), 4);
  m_Engine.reset();
  EXPECT_EQ(SuiteObjects(), 3);
}

}  // namespace
}  // namespace vex::test

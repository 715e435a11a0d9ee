#include "basic/Error.h"
#include "show/Trigger.h"
#include "tests/com/ComMachine.h"

namespace vex::test {
namespace {

class SuiteChannelIOTest : public testing::Test {
 protected:
  void Make() {
    m_Devices = m_Machine.MakeDevices();
    Calls();
  }
  ChannelIO& Control() { return *m_Devices.Lights; }

  SuiteMachine m_Machine;
  Devices m_Devices;
};

TEST_F(SuiteChannelIOTest, ConfiguringANetworkPassesItsNumberAndA16BitValueOrAFlag) {
  Make();
  Control().ConfigureValue(3, -2);
  Control().ConfigureFlag(1, true);
  Control().ConfigureFlag(2, false);
  EXPECT_EQ(Calls(),
            "ChannelIO.ConfigureValue(I4:3, I2:-2)\n"
            "ChannelIO.ConfigureFlag(I4:1, BOOL:-1)\n"
            "ChannelIO.ConfigureFlag(I4:2, BOOL:0)\n");
}

TEST_F(SuiteChannelIOTest, OpeningPassesThePortByReferenceAndLeavesOutForPlayAtStart) {
  Make();
  uint8_t port = 4;
  Control().OpenNetwork(2, port, std::nullopt);
  Control().OpenNetwork(3, port, true);
  Control().OpenX10(port);
  Control().OpenCourser(port);
  EXPECT_EQ(Calls(),
            "ChannelIO.OpenNetwork(UI1:2, UI1&:4)\n"
            "ChannelIO.OpenNetwork(UI1:3, UI1&:4, BOOL:-1)\n"
            "ChannelIO.OpenX10(UI1&:4)\n"
            "ChannelIO.OpenCourser(UI1&:4)\n");
}

TEST_F(SuiteChannelIOTest, PortThatTheControlChangesIsChanged) {
  Make();
  SuiteMovePorts(5);
  uint8_t port = 4;
  Control().OpenX10(port);
  EXPECT_EQ(port, 9);
}

TEST_F(SuiteChannelIOTest, TriggerIsRegisteredAsAnObjectReadByName) {
  Make();
  Trigger trigger;
  trigger.Network(1);
  trigger.UnitId(7);
  trigger.InputNumber(3);
  trigger.Name("T\xFCr");
  Control().RegisterTrigger(trigger);
  Control().ClearTriggers();
  EXPECT_EQ(Calls(),
            "ChannelIO.RegisterTrigger(DISPATCH:{I4:1 I4:7 I4:3 BSTR:T\xFCr})\n"
            "ChannelIO.ClearTriggers()\n");
}

TEST_F(SuiteChannelIOTest, LightingEventIsTenArguments) {
  Make();
  Control().SendEvent(0, 2, 15, 12.5, 100, "fade", 1.25, 1000, 1500, 400);
  Control().Flush();
  Control().KeepAlive();
  EXPECT_EQ(Calls(),
            "ChannelIO.SendEvent(I4:0, I4:2, I4:15, R8:12.5, R8:100, BSTR:fade, R8:1.25, I4:1000, I4:1500, "
            "I4:400)\n"
            "ChannelIO.Flush()\n"
            "ChannelIO.KeepAlive()\n");
}

TEST_F(SuiteChannelIOTest, LinkIsSetByACallAndItsSwitchesArePut) {
  Make();
  Control().SetLink("127.0.0.1", 3737, -25536);
  Control().SupportsSpecial(true);
  Control().LinkEnabled(false);
  EXPECT_EQ(Calls(),
            "ChannelIO.SetLink(BSTR:127.0.0.1, I2:3737, I2:-25536)\n"
            "ChannelIO.SupportsSpecial = BOOL:-1\n"
            "ChannelIO.LinkEnabled = BOOL:0\n");
}

TEST_F(SuiteChannelIOTest, ControlIsAskedWhatItAccepts) {
  Make();
  const VARIANT yes = BooleanValue(true);
  const VARIANT no = BooleanValue(false);
  SuiteReturn("ChannelIO.AcceptsUnit", &yes);
  SuiteReturn("ChannelIO.AcceptsCircuit", &no);
  EXPECT_TRUE(Control().AcceptsUnit(1, 2));
  EXPECT_FALSE(Control().AcceptsCircuit(1, 2, 3));
  EXPECT_EQ(Calls(),
            "ChannelIO.AcceptsUnit(I4:1, I4:2)\n"
            "ChannelIO.AcceptsCircuit(I4:1, I4:2, I4:3)\n");
}

TEST_F(SuiteChannelIOTest, ControlThatCannotSayWhatItAcceptsTakesEverything) {
  SuiteRename("ChannelIO.AcceptsUnit", nullptr);
  SuiteDeaf("ChannelIO.AcceptsCircuit");
  Make();
  EXPECT_TRUE(Control().AcceptsUnit(1, 2));
  EXPECT_TRUE(Control().AcceptsCircuit(1, 2, 3));
  EXPECT_TRUE(Control().AcceptsUnit(1, 2));
  EXPECT_EQ(Calls(), "ChannelIO has no AcceptsUnit\n");
}

TEST_F(SuiteChannelIOTest, MembersAreCalledAsTheSettingsSay) {
  SuiteRename("ChannelIO.OpenNetwork", "OpenNet");
  SuiteRename("ChannelIO.LinkEnabled", "Online");
  m_Machine.Set("ChannelIO.OpenNetwork", "OpenNet");
  m_Machine.Set("ChannelIO.LinkEnabled", "Online");
  Make();
  uint8_t port = 1;
  Control().OpenNetwork(0, port, std::nullopt);
  Control().LinkEnabled(true);
  EXPECT_EQ(Calls(),
            "ChannelIO.OpenNetwork(UI1:0, UI1&:1)\n"
            "ChannelIO.LinkEnabled = BOOL:-1\n");
}

TEST_F(SuiteChannelIOTest, NamesAreReadOnceAtStart) {
  Make();
  m_Machine.Set("ChannelIO.Flush", "Later");
  Control().Flush();
  EXPECT_EQ(Calls(), "ChannelIO.Flush()\n");
}

TEST_F(SuiteChannelIOTest, MissingMemberIsAnErrorWhenItIsNeeded) {
  SuiteRename("ChannelIO.Flush", nullptr);
  SuiteRename("ChannelIO.SupportsSpecial", nullptr);
  m_Machine.Set("ChannelIO.Flush", "FlushNow");
  Make();
  Control().KeepAlive();
  try {
    Control().Flush();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, 438);
    EXPECT_NE(error.Description.find("ChannelIO"), std::string::npos);
    EXPECT_NE(error.Description.find("\"FlushNow\""), std::string::npos);
    EXPECT_NE(error.Description.find("\"VexChannelIO.ChannelIO\""), std::string::npos);
  }
  EXPECT_THROW(Control().SupportsSpecial(true), Error);
}

TEST_F(SuiteChannelIOTest, MissingControlIsAnErrorWithItsProgramId) {
  m_Machine.Remove("VexChannelIO.ChannelIO");
  try {
    Make();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, 429);
    EXPECT_NE(error.Description.find("ChannelIO (program id \"VexChannelIO.ChannelIO\")"), std::string::npos)
        << error.Description;
  }
}

TEST_F(SuiteChannelIOTest, ProgramIdIsTheSettings) {
  m_Machine.Set("ChannelIO", "Other.Control");
  EXPECT_THROW(Make(), Error);
  m_Machine.Set("ChannelIO", "VEXSEQUENCELib.Sequence");
  Make();
  EXPECT_THROW(Control().Flush(), Error);
  EXPECT_EQ(Calls(), "SequenceEngine has no Flush\n");
}

/// What a call raises when the control raises with these.
Error RaisedBy(ChannelIO& control) {
  try {
    control.Flush();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was raised";
  return {0, "", ""};
}

TEST_F(SuiteChannelIOTest, ErrorOfTheControlComesToTheWord) {
  Make();
  SuiteRaise("ChannelIO.Flush", static_cast<HRESULT>(0x800A1F45), 0, L"VexChannelIO", L"Port already open",
             FALSE);
  Error error = RaisedBy(Control());
  EXPECT_EQ(error.Number, 8005);
  EXPECT_EQ(error.Source, "VexChannelIO");
  EXPECT_EQ(error.Description, "Port already open");

  SuiteRaise("ChannelIO.Flush", 0, 1234, nullptr, L"filled in late", TRUE);
  error = RaisedBy(Control());
  EXPECT_EQ(error.Number, 1234);
  EXPECT_EQ(error.Source, "VexChannelIO.ChannelIO");
  EXPECT_EQ(error.Description, "filled in late");
}

TEST_F(SuiteChannelIOTest, BareResultCodeIsAnErrorThatSaysWhichCallFailed) {
  Make();
  SuiteRaise("ChannelIO.Flush", static_cast<HRESULT>(0x800A1F45), 0, nullptr, nullptr, FALSE);
  EXPECT_EQ(RaisedBy(Control()).Number, 8005);
  SuiteRaise("ChannelIO.Flush", E_ACCESSDENIED, 0, nullptr, nullptr, FALSE);
  const Error error = RaisedBy(Control());
  EXPECT_EQ(error.Number, static_cast<int32_t>(E_ACCESSDENIED));
  EXPECT_TRUE(error.Description.starts_with("ChannelIO.Flush (VexChannelIO.ChannelIO): "))
      << error.Description;
}

TEST_F(SuiteChannelIOTest, ControlThatExpectsAFormIsSeatedUnseenUntilItGoes) {
  SuiteMakeControl("ChannelIO");
  m_Devices = m_Machine.MakeDevices();
  EXPECT_EQ(Calls(),
            "ChannelIO is listened to\n"
            "ChannelIO is seated\n"
            "ChannelIO is begun anew\n");
  m_Devices = {};
  EXPECT_EQ(Calls(),
            "ChannelIO is closed\n"
            "ChannelIO is let go\n");
  EXPECT_EQ(SuiteObjects(), 0);
}

TEST_F(SuiteChannelIOTest, ControlGoesWithTheDevices) {
  Make();
  EXPECT_EQ(SuiteObjects(), 2);
  m_Devices = {};
  EXPECT_EQ(SuiteObjects(), 0);
}

}  // namespace
}  // namespace vex::test

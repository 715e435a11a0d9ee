#include <optional>

#include "basic/Error.h"
#include "tests/com/ComMachine.h"

namespace vex::test {
namespace {

class SuiteEventsTest : public testing::TestWithParam<SuiteEvents> {
 protected:
  void Make() {
    m_Devices = m_Machine.MakeDevices();
    m_Devices.Lights->TriggerDetected = [this](const NamedProperties& input) {
      m_Detected += std::to_string(input.Integer("Network")) + " " + std::to_string(input.Integer("UnitId")) +
                    " " + std::to_string(input.Integer("InputNumber")) + " " + input.Text("Name") + "\n";
    };
  }
  HRESULT Press(PropertiesObject& object, DISPID number = 1) {
    VARIANT argument = ObjectValue(&object);
    return SuiteFire("ChannelIO", number, &argument, 1);
  }

  SuiteMachine m_Machine;
  Devices m_Devices;
  std::string m_Detected;
  PropertiesObject m_Input{{{L"Extra", LongValue(9)},
                            {L"Name", TextValue(L"T\x00FCr")},
                            {L"Network", LongValue(1)},
                            {L"UnitId", DoubleValue(7)},
                            {L"InputNumber", LongValue(3)}}};
};

TEST_P(SuiteEventsTest, TriggerIsTheEventWithOneObjectWhateverItsNumber) {
  SuitePassEvents("ChannelIO", GetParam());
  Make();
  EXPECT_EQ(Press(m_Input, 1), S_OK);
  EXPECT_EQ(Press(m_Input, -77), S_OK);
  EXPECT_EQ(m_Detected, "1 7 3 T\xFCr\n1 7 3 T\xFCr\n");
  EXPECT_EQ(m_Input.References(), 1U);
}

TEST_P(SuiteEventsTest, KeepAliveIsTheEventWithoutArguments) {
  SuitePassEvents("SequenceEngine", GetParam());
  Make();
  const auto engine = m_Devices.NewSequence();
  int32_t lTimes = 0;
  engine->KeepAlive = [&] { ++lTimes; };
  VARIANT argument = LongValue(1);
  SuiteFire("SequenceEngine", 4, nullptr, 0);
  SuiteFire("SequenceEngine", 4, &argument, 1);
  EXPECT_EQ(lTimes, 1);
}

INSTANTIATE_TEST_SUITE_P(Suite, SuiteEventsTest, testing::Values(EventsDeclared, EventsEnumerated));

TEST_F(SuiteEventsTest, EventsOfAnotherShapeAreNone) {
  Make();
  VARIANT two[] = {ObjectValue(&m_Input), ObjectValue(&m_Input)};
  VARIANT number = LongValue(5);
  VARIANT none = ObjectValue(nullptr);
  SuiteFire("ChannelIO", 1, nullptr, 0);
  SuiteFire("ChannelIO", 1, two, 2);
  SuiteFire("ChannelIO", 1, &number, 1);
  SuiteFire("ChannelIO", 1, &none, 1);
  EXPECT_EQ(m_Detected, "");
}

TEST_F(SuiteEventsTest, ObjectMayComeByReferenceOrInsideAnotherValue) {
  Make();
  IDispatch* object = &m_Input;
  VARIANT inner = ObjectValue(&m_Input);
  VARIANT byReference;
  byReference.vt = VT_DISPATCH | VT_BYREF;
  byReference.ppdispVal = &object;
  VARIANT inside;
  inside.vt = VT_VARIANT | VT_BYREF;
  inside.pvarVal = &inner;
  SuiteFire("ChannelIO", 1, &byReference, 1);
  SuiteFire("ChannelIO", 1, &inside, 1);
  EXPECT_EQ(m_Detected, "1 7 3 T\xFCr\n1 7 3 T\xFCr\n");
}

TEST_F(SuiteEventsTest, PropertyThatIsMissingOrNoNumberIsAnError) {
  Make();
  PropertiesObject bad{{{L"Network", TextValue(L"one")}}};
  std::string szMissing;
  std::string szMismatch;
  m_Devices.Lights->TriggerDetected = [&](const NamedProperties& input) {
    try {
      (void)input.Integer("UnitId");
    } catch (const Error& error) {
      szMissing = error.Description;
    }
    try {
      (void)input.Integer("Network");
    } catch (const Error& error) {
      szMismatch = error.Description;
    }
  };
  Press(bad);
  EXPECT_NE(szMissing.find("\"UnitId\""), std::string::npos) << szMissing;
  EXPECT_EQ(szMismatch, "Type mismatch");
}

TEST_F(SuiteEventsTest, WhatAHandlerThrowsDoesNotReachTheComponent) {
  Make();
  m_Devices.Lights->TriggerDetected = [](const NamedProperties&) { throw Error(1, "", "thrown"); };
  EXPECT_EQ(Press(m_Input), E_FAIL);
}

TEST_F(SuiteEventsTest, ComponentWithoutEventsIsUsedWithoutThem) {
  for (const SuiteEvents how : {EventsNone, EventsRefused}) {
    SuitePassEvents("ChannelIO", how);
    SuitePassEvents("SequenceEngine", how);
    Make();
    const auto engine = m_Devices.NewSequence();
    Calls();
    m_Devices.Lights->Flush();
    engine->Start();
    EXPECT_EQ(Press(m_Input), S_FALSE);
    EXPECT_EQ(Calls(), "ChannelIO.Flush()\nSequenceEngine.Start()\n");
  }
}

TEST_F(SuiteEventsTest, ComponentThatHangsUpIsUsedOn) {
  Make();
  SuiteHangUp("ChannelIO");
  EXPECT_EQ(Press(m_Input), S_FALSE);
  Calls();
  m_Devices.Lights->Flush();
  EXPECT_EQ(Calls(), "ChannelIO.Flush()\n");
  m_Devices = {};
  EXPECT_EQ(SuiteObjects(), 0);
}

TEST_F(SuiteEventsTest, ControlMayGoInsideItsOwnEvent) {
  Make();
  m_Devices.Lights->TriggerDetected = [this](const NamedProperties& input) {
    m_Devices = {};
    m_Detected = input.Text("Name");
  };
  EXPECT_EQ(Press(m_Input), S_OK);
  EXPECT_EQ(m_Detected, "T\xFCr");
}

}  // namespace
}  // namespace vex::test

#include "show/Trigger.h"

#include <gtest/gtest.h>

#include "show/TriggerFunctions.h"
#include "tests/show/RaisedError.h"

namespace vex {
namespace {

TEST(Trigger, IsAllZeroAndNamelessWhenNew) {
  const Trigger trigger;
  EXPECT_EQ(0, trigger.InputNumber());
  EXPECT_EQ("", trigger.Name());
  EXPECT_EQ(0, trigger.Network());
  EXPECT_EQ(0, trigger.UnitId());
}

TEST(Trigger, NewTriggerTakesNetworkUnitInputName) {
  const auto trigger = NewTrigger(2, 7, 3, "Front door");
  EXPECT_EQ(2, trigger->Network());
  EXPECT_EQ(7, trigger->UnitId());
  EXPECT_EQ(3, trigger->InputNumber());
  EXPECT_EQ("Front door", trigger->Name());
}

TEST(Trigger, CopyTakesEveryField) {
  const auto trigger = NewTrigger(2, 7, 3, "Front door");
  Trigger copy;
  copy.Copy(*trigger);
  EXPECT_EQ(2, copy.Network());
  EXPECT_EQ(7, copy.UnitId());
  EXPECT_EQ(3, copy.InputNumber());
  EXPECT_EQ("Front door", copy.Name());
}

TEST(Trigger, EqualsComparesUnitInputAndNetworkButNotTheName) {
  const auto trigger = NewTrigger(2, 7, 3, "Front door");
  EXPECT_TRUE(trigger->Equals(NewTrigger(2, 7, 3, "Back door").get()));
  EXPECT_FALSE(trigger->Equals(NewTrigger(1, 7, 3, "Front door").get()));
  EXPECT_FALSE(trigger->Equals(NewTrigger(2, 8, 3, "Front door").get()));
  EXPECT_FALSE(trigger->Equals(NewTrigger(2, 7, 4, "Front door").get()));
}

TEST(Trigger, EqualsNoTriggerIsFalse) {
  EXPECT_FALSE(Trigger().Equals(nullptr));
}

TEST(TriggerText, WritesInputNameUnitNetwork) {
  EXPECT_EQ("(3,Front door,1,0)", TriggerToText(*NewTrigger(0, 1, 3, "Front door")));
}

TEST(TriggerText, EscapesTheName) {
  EXPECT_EQ("(-3,a*Sb*O*C*E,1,0)", TriggerToText(*NewTrigger(0, 1, -3, "a,b()*")));
}

TEST(TriggerText, ReadsInputNameUnitNetwork) {
  const auto trigger = TriggerFromText("(3,a*Sb,1,2)");
  EXPECT_EQ(3, trigger->InputNumber());
  EXPECT_EQ("a,b", trigger->Name());
  EXPECT_EQ(1, trigger->UnitId());
  EXPECT_EQ(2, trigger->Network());
}

TEST(TriggerText, RoundsFractionsDown) {
  const auto trigger = TriggerFromText("(2.7,n,-2.5,1.9)");
  EXPECT_EQ(2, trigger->InputNumber());
  EXPECT_EQ(-3, trigger->UnitId());
  EXPECT_EQ(1, trigger->Network());
}

TEST(TriggerText, DoesNotReadMoreFieldsThanItKnows) {
  EXPECT_EQ("(3,n,1,0)", TriggerToText(*TriggerFromText("(3,n,1,0,more,(and more))")));
}

TEST(TriggerText, FailsToReadWhatIsNoTrigger) {
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)TriggerFromText("(3,n,1)"); }));
  EXPECT_EQ(SubscriptError, RaisedError([] { (void)TriggerFromText(""); }));
  EXPECT_EQ(TypeMismatchError, RaisedError([] { (void)TriggerFromText("(x,n,1,0)"); }));
  EXPECT_EQ(TypeMismatchError, RaisedError([] { (void)TriggerFromText("(3,n,1,)"); }));
  EXPECT_EQ(OverflowError, RaisedError([] { (void)TriggerFromText("(3,n,9999999999,0)"); }));
  EXPECT_EQ(ListError1, RaisedError([] { (void)TriggerFromText("(3,n,1,0"); }));
}

}  // namespace
}  // namespace vex

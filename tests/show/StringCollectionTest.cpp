#include "show/StringCollection.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/show/RaisedError.h"

namespace vex {
namespace {

std::vector<std::string> Names(const StringCollection& names) {
  std::vector<std::string> result;
  for (std::string_view szName : names) result.emplace_back(szName);
  return result;
}

TEST(StringCollection, IsEmptyWhenNew) {
  const StringCollection names;
  EXPECT_EQ(0, names.Count());
  EXPECT_TRUE(names.Empty());
  EXPECT_TRUE(Names(names).empty());
}

TEST(StringCollection, CountsFromOneInTheOrderOfAdding) {
  StringCollection names;
  names.Add("a.seq");
  names.Add("");
  names.Add("b.seq");
  EXPECT_EQ(3, names.Count());
  EXPECT_FALSE(names.Empty());
  EXPECT_EQ("a.seq", names.Item(1));
  EXPECT_EQ("", names.Item(2));
  EXPECT_EQ("b.seq", names.Item(3));
  EXPECT_EQ((std::vector<std::string>{"a.seq", "", "b.seq"}), Names(names));
}

TEST(StringCollection, RaisesSubscriptOutsideItsBounds) {
  StringCollection names;
  EXPECT_EQ(SubscriptError, RaisedError([&] { (void)names.Item(1); }));
  names.Add("a");
  EXPECT_EQ(SubscriptError, RaisedError([&] { (void)names.Item(0); }));
  EXPECT_EQ(SubscriptError, RaisedError([&] { (void)names.Item(2); }));
  EXPECT_EQ(SubscriptError, RaisedError([&] { names.Replace(2, "b"); }));
}

TEST(StringCollection, ReplacesOneNameAndKeepsTheOthers) {
  StringCollection names;
  names.Add("a");
  names.Add("b");
  names.Add("c");
  names.Replace(2, "a longer name");
  EXPECT_EQ((std::vector<std::string>{"a", "a longer name", "c"}), Names(names));
}

TEST(StringCollection, HoldsAnyCountOfNames) {
  StringCollection names;
  for (int32_t lIndex = 1; lIndex <= 1000; ++lIndex) names.Add("name " + std::to_string(lIndex));
  for (int32_t lIndex = 1; lIndex <= 1000; ++lIndex) {
    EXPECT_EQ("name " + std::to_string(lIndex), names.Item(lIndex));
  }
  names.Replace(4, "four");
  EXPECT_EQ("four", names.Item(4));
  EXPECT_EQ(1000, names.Count());
}

TEST(StringCollection, UnescapesTheFieldsOfAList) {
  StringCollection names;
  names.AddEscaped(std::vector<std::string_view>{"plain", "a*Sb", "*Oc*C*E"});
  EXPECT_EQ((std::vector<std::string>{"plain", "a,b", "(c)*"}), Names(names));
}

TEST(StringCollection, ClearLeavesNothing) {
  StringCollection names;
  names.Add("a");
  names.Clear();
  EXPECT_TRUE(names.Empty());
  names.Add("b");
  EXPECT_EQ("b", names.Item(1));
}

TEST(StringCollection, ACopyIsItsOwn) {
  StringCollection names;
  names.Add("a");
  StringCollection copy = names;
  names.Replace(1, "b");
  EXPECT_EQ("a", copy.Item(1));
}

}  // namespace
}  // namespace vex

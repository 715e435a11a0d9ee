#include "basic/Error.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "basic/Collection.h"
#include "basic/StoredBoolean.h"
#include "tests/basic/Raises.h"

namespace vex::test {

TEST(Error, CarriesNumberSourceAndDescription) {
  const Error error(2, "Schedule.AddShowEvent", "Can't add event -- event conflict");
  EXPECT_EQ(error.Number, 2);
  EXPECT_EQ(error.Source, "Schedule.AddShowEvent");
  EXPECT_STREQ(error.what(), "Can't add event -- event conflict");
}

TEST(Error, PlatformFailuresHaveTheirUsualWordsAndNoSource) {
  const std::pair<PlatformErrorNumber, const char*> words[] = {
      {ErrorInvalidCall, "Invalid procedure call or argument"},
      {ErrorOverflow, "Overflow"},
      {ErrorSubscript, "Subscript out of range"},
      {ErrorTypeMismatch, "Type mismatch"},
      {ErrorFileNotFound, "File not found"},
      {ErrorObjectNotSet, "Object variable not set"}};
  for (const auto& [number, szWords] : words) {
    const Error error = PlatformError(number);
    EXPECT_EQ(error.Number, number);
    EXPECT_EQ(error.Source, "");
    EXPECT_EQ(error.Description, szWords);
  }
  EXPECT_EQ(ErrorInvalidCall, 5);
  EXPECT_EQ(ErrorOverflow, 6);
  EXPECT_EQ(ErrorSubscript, 9);
  EXPECT_EQ(ErrorTypeMismatch, 13);
  EXPECT_EQ(ErrorFileNotFound, 53);
  EXPECT_EQ(ErrorObjectNotSet, 91);
}

TEST(Error, RequiredGivesTheTargetOrRaisesObjectNotSet) {
  const auto number = std::make_shared<int>(7);
  EXPECT_EQ(&Required(number), number.get());
  ExpectPlatformError([] { return Required(std::shared_ptr<int>()); }, ErrorObjectNotSet);
  int* const absent = nullptr;
  ExpectPlatformError([&] { return Required(absent); }, ErrorObjectNotSet);
}

TEST(Collection, CountsFromOneInOrderOfAdding) {
  Collection<int> items;
  EXPECT_TRUE(items.Empty());
  EXPECT_EQ(items.Count(), 0);
  items.Add(10);
  items.Add(20);
  items.Add(30);
  EXPECT_EQ(items.Count(), 3);
  EXPECT_EQ(items.Item(1), 10);
  EXPECT_EQ(items.Item(3), 30);
  items.Item(2) = 21;
  EXPECT_EQ(std::as_const(items).Item(2), 21);
}

TEST(Collection, RemovingMovesTheRestUp) {
  Collection<int> items;
  for (const int item : {1, 2, 3, 4}) items.Add(item);
  items.Remove(2);
  items.Remove(1);
  EXPECT_EQ(items.Count(), 2);
  EXPECT_EQ(items.Item(1), 3);
  EXPECT_EQ(items.Item(2), 4);
  items.Clear();
  EXPECT_TRUE(items.Empty());
}

TEST(Collection, OutsideItsBoundsTheSubscriptIsOutOfRange) {
  Collection<int> items;
  items.Add(1);
  for (const int32_t lIndex : {-1, 0, 2}) {
    ExpectPlatformError([&] { return items.Item(lIndex); }, ErrorSubscript);
    ExpectPlatformError([&] { return std::as_const(items).Item(lIndex); }, ErrorSubscript);
    ExpectPlatformError(
        [&] {
          items.Remove(lIndex);
          return 0;
        },
        ErrorSubscript);
  }
  EXPECT_EQ(items.Count(), 1);
}

TEST(StoredBoolean, OnlyMinusOneIsSetAndOnlyZeroIsClear) {
  EXPECT_TRUE(StoredBoolean().IsClear());
  EXPECT_EQ(StoredBoolean(true).Value(), -1);
  EXPECT_TRUE(StoredBoolean(true).IsTrue());
  EXPECT_TRUE(StoredBoolean(false).IsClear());
  const StoredBoolean one = StoredBoolean::FromStored(1);
  EXPECT_EQ(one.Value(), 1);
  EXPECT_FALSE(one.IsTrue());
  EXPECT_FALSE(one.IsClear());
  EXPECT_NE(one, StoredBoolean(true));
  EXPECT_EQ(StoredBoolean::FromStored(-1), StoredBoolean(true));
}

}  // namespace vex::test

#include "basic/StoredBoolean.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace vex {
namespace {

TEST(StoredBoolean, IsClearWhenNew) {
  EXPECT_EQ(0, StoredBoolean().Value());
  EXPECT_TRUE(StoredBoolean().IsClear());
  EXPECT_FALSE(StoredBoolean().IsTrue());
}

TEST(StoredBoolean, ABoolStoresMinusOneOrZero) {
  EXPECT_EQ(-1, StoredBoolean(true).Value());
  EXPECT_TRUE(StoredBoolean(true).IsTrue());
  EXPECT_EQ(0, StoredBoolean(false).Value());
  EXPECT_TRUE(StoredBoolean(false).IsClear());
}

TEST(StoredBoolean, AnyOtherNumberIsNeitherSetNorClear) {
  const auto one = StoredBoolean::FromStored(1);
  EXPECT_EQ(1, one.Value());
  EXPECT_FALSE(one.IsTrue());
  EXPECT_FALSE(one.IsClear());
  EXPECT_FALSE(one == StoredBoolean(true));
  EXPECT_TRUE(StoredBoolean::FromStored(-1) == StoredBoolean(true));
}

TEST(StoredBoolean, ANumberDoesNotSlipInAsABool) {
  EXPECT_TRUE((std::is_convertible_v<bool, StoredBoolean>));
  EXPECT_FALSE((std::is_constructible_v<StoredBoolean, int32_t>));
}

}  // namespace
}  // namespace vex

#pragma once

#include <gtest/gtest.h>

#include <string>

#include "basic/Error.h"

namespace vex::test {

/// Runs an action that must fail with an error of this number, source and description.
template <class Action>
void ExpectError(Action action, int32_t lNumber, const std::string& szSource,
                 const std::string& szDescription) {
  try {
    static_cast<void>(action());
    ADD_FAILURE() << "no error, expected number " << lNumber;
  } catch (const Error& error) {
    EXPECT_EQ(error.Number, lNumber);
    EXPECT_EQ(error.Source, szSource);
    EXPECT_EQ(error.Description, szDescription);
  }
}

/// Runs an action that must fail as the platform does: no source, the number's usual words.
template <class Action>
void ExpectPlatformError(Action action, PlatformErrorNumber number) {
  const Error expected = PlatformError(number);
  ExpectError(action, expected.Number, "", expected.Description);
}

}  // namespace vex::test

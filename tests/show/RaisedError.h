#pragma once

#include <gtest/gtest.h>

#include <string>

#include "basic/Error.h"

namespace vex {

/// What a statement raised, as "number/source/description"; "nothing" when it raised nothing.
template <class Statement>
std::string RaisedError(Statement statement) {
  try {
    statement();
  } catch (const Error& error) {
    return std::to_string(error.Number) + "/" + error.Source + "/" + error.Description;
  }
  return "nothing";
}

inline const std::string SubscriptError = "9//Subscript out of range";
inline const std::string TypeMismatchError = "13//Type mismatch";
inline const std::string OverflowError = "6//Overflow";
inline const std::string ObjectNotSetError = "91//Object variable not set";
inline const std::string ListError1 = "1/Serialize.ListFromText/Badly formatted list, enclosing parens";
inline const std::string ListError2 = "2/Serialize.ListFromText/Badly formatted list, missing closing paren";
inline const std::string ListError3 =
    "3/Serialize.ListFromText/Badly formatted list, unexpected closing paren";
inline const std::string ListError4 = "4/Serialize.ListFromText/Badly formatted list, missing closing paren";

}  // namespace vex

#include "basic/Error.h"

#include <utility>

namespace vex {

Error::Error(int32_t number, std::string source, std::string description)
    : Number(number), Source(std::move(source)), Description(std::move(description)) {}

Error PlatformError(PlatformErrorNumber number) {
  switch (number) {
    case ErrorInvalidCall:
      return {number, "", "Invalid procedure call or argument"};
    case ErrorOverflow:
      return {number, "", "Overflow"};
    case ErrorSubscript:
      return {number, "", "Subscript out of range"};
    case ErrorTypeMismatch:
      return {number, "", "Type mismatch"};
    case ErrorFileNotFound:
      return {number, "", "File not found"};
    case ErrorObjectNotSet:
      return {number, "", "Object variable not set"};
  }
  return {number, "", "Application-defined or object-defined error"};
}

}  // namespace vex

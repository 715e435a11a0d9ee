#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace vex {

/// The one exception of the system: a number, the place that raised it ("Schedule.AddShowEvent") and a
/// description for people. Readers raise it, handlers log it, and the show goes on. An empty source marks
/// a failure of the platform itself (overflow, a bad subscript, a type mismatch), see PlatformError.
class Error : public std::exception {
 public:
  Error(int32_t number, std::string source, std::string description);

  [[nodiscard]] const char* what() const noexcept override { return Description.c_str(); }

  int32_t Number;
  std::string Source;
  std::string Description;
};

/// Numbers of the platform's own failures, with the words that PlatformError gives them.
enum PlatformErrorNumber : int32_t {
  ErrorInvalidCall = 5,    ///< "Invalid procedure call or argument"
  ErrorOverflow = 6,       ///< "Overflow"
  ErrorSubscript = 9,      ///< "Subscript out of range"
  ErrorTypeMismatch = 13,  ///< "Type mismatch"
  ErrorFileNotFound = 53,  ///< "File not found"
  ErrorObjectNotSet = 91,  ///< "Object variable not set"
};

/// A failure of the platform: empty source, the number's usual words.
[[nodiscard]] Error PlatformError(PlatformErrorNumber number);

/// The pointer's target; raises ErrorObjectNotSet when the reference is empty.
template <class Pointer>
auto& Required(const Pointer& pointer) {
  if (!pointer) throw PlatformError(ErrorObjectNotSet);
  return *pointer;
}

}  // namespace vex

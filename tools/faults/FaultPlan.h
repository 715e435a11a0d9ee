#pragma once

#include <string>
#include <string_view>

#include "basic/Error.h"

namespace vex {

/// Decides which calls of the seams fail. The wrappers around the seams ask it at each call that can fail.
class FaultPlan {
 public:
  virtual ~FaultPlan() = default;

  /// True when this call is to fail: the call's name, and the file that it is about or nothing.
  [[nodiscard]] virtual bool Strikes(std::string_view szCall, std::string_view szFile) = 0;
  /// Raises when this call is to fail.
  void Check(std::string_view szCall, std::string_view szFile = {}) {
    if (Strikes(szCall, szFile)) throw Error(31, std::string(szCall), std::string(szCall) + " failed");
  }
};

}  // namespace vex

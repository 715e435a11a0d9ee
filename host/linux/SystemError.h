#pragma once

#include <cerrno>
#include <string>
#include <system_error>

#include "basic/Error.h"

namespace vex {

/// The system's words for one of its codes.
[[nodiscard]] inline std::string DescribeCode(int code) {
  return std::system_category().message(code);
}

/// A failed system call as the system's exception: errno's number, who called, what it was about ("" for
/// nothing more to say) and the system's words.
[[nodiscard]] inline Error SystemError(const std::string& szSource, const std::string& szAbout,
                                       int code = errno) {
  return {code, szSource, (szAbout.empty() ? "" : szAbout + ": ") + DescribeCode(code)};
}

}  // namespace vex

#pragma once

#include <cstdint>
#include <string>

#include "basic/Error.h"

namespace vex {

/// The system's words for one of its codes.
[[nodiscard]] std::string DescribeCode(uint32_t code);

/// The code of this thread's last failed call.
[[nodiscard]] uint32_t LastCode();

/// A failed call as the system's exception: the system's code, who called, what it was about ("" for nothing
/// more to say) and the system's words.
[[nodiscard]] Error SystemError(const std::string& szSource, const std::string& szAbout,
                                uint32_t code = LastCode());

}  // namespace vex

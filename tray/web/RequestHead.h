#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vex {

/// The head of a request (its first line and its headers), looked at as bytes before any library reads it.
/// The page needs little of HTTP, so only that little is let in: three methods, few and short headers, a body
/// of known length. What is refused here costs nobody more than these bytes.
inline constexpr size_t MostHeadBytes = 8192;
inline constexpr size_t MostHeaders = 64;
inline constexpr size_t MostTargetBytes = 1024;
inline constexpr size_t MostBodyBytes = 8192;

/// What is to become of a request: Status is 0 where it may go on, else the answer's; BodyBytes how many
/// bytes belong to it after the head.
struct HeadVerdict {
  int Status = 0;
  size_t BodyBytes = 0;
};

/// szHead goes up to and with the empty line.
[[nodiscard]] HeadVerdict JudgeHead(std::string_view szHead);

/// The head without the header "Range": pages are small, and a list of a thousand ranges of one is large.
[[nodiscard]] std::string WithoutRange(std::string_view szHead);

}  // namespace vex

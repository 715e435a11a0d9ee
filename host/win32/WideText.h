#pragma once

#include <string>
#include <string_view>

namespace vex {

/// The machine's wide text is UTF-16 in a type of its own.
[[nodiscard]] inline std::u16string Utf16OfWide(std::wstring_view szWide) {
  return {szWide.begin(), szWide.end()};
}
[[nodiscard]] inline std::wstring WideOfUtf16(std::u16string_view szText) {
  return {szText.begin(), szText.end()};
}

}  // namespace vex

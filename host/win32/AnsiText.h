#pragma once

#include <string>
#include <string_view>

namespace vex {

/// Between the machine's ANSI code page, which is the system's single-byte text there, and UTF-8. The five
/// bytes that page 1252 leaves empty are the control characters of the same value.
[[nodiscard]] std::string Utf8OfAnsi(std::string_view szAnsi);
/// False for a character outside the code page, and for bytes that are no UTF-8.
[[nodiscard]] bool AnsiOfUtf8(std::string_view szUtf8, std::string& szAnsi);

/// The machine's wide text as UTF-8.
[[nodiscard]] std::string Utf8OfWide(std::wstring_view szWide);

}  // namespace vex

#pragma once

#include <string>
#include <string_view>

namespace vex {

/// The machine's ANSI code page a character at a time: what each family of machines adds to host/CodePage,
/// and only that calls it.

/// Appends the character's bytes; false, with nothing appended, where the page has none for it.
[[nodiscard]] bool AppendAnsi(char32_t character, std::string& szAnsi);
/// Bytes that are no character of the page become whatever the machine takes for such.
[[nodiscard]] std::u16string AnsiToUtf16(std::string_view szAnsi);
/// True when the byte begins a character of two.
[[nodiscard]] bool IsLeadByte(char byte);

}  // namespace vex

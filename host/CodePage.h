#pragma once

#include <string>
#include <string_view>

namespace vex {

/// Text inside the system is single-byte Windows-1252; outside it is UTF-8 or UTF-16. These functions stand
/// at that edge. The five bytes without a character (0x81 0x8D 0x8F 0x90 0x9D) are the control characters of
/// the same value in both directions, so every single-byte text has an outside form and comes back the same.

/// UTF-8 to single-byte text; false for bytes that are no UTF-8 and for a character outside the code page,
/// and szAnsi then holds what came before it.
[[nodiscard]] bool Utf8ToAnsi(std::string_view szUtf8, std::string& szAnsi);
/// The same for UTF-16.
[[nodiscard]] bool Utf16ToAnsi(std::u16string_view szUtf16, std::string& szAnsi);
[[nodiscard]] std::string AnsiToUtf8(std::string_view szAnsi);

/// True when every byte belongs to a well-formed UTF-8 character.
[[nodiscard]] bool IsUtf8(std::string_view szText);

/// UTF-16 and UTF-8 of the same text. A lone surrogate becomes the three bytes of its number and comes back
/// from them, so that text which is only passed through stays as it was.
[[nodiscard]] std::string Utf16ToUtf8(std::u16string_view szUtf16);
[[nodiscard]] std::u16string Utf8ToUtf16(std::string_view szUtf8);

/// Single-byte text in lower case by the code page's letters, for names that compare without case.
[[nodiscard]] std::string FoldCase(std::string_view szAnsi);

}  // namespace vex

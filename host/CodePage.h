#pragma once

#include <string>
#include <string_view>

namespace vex {

/// Text inside the system is text of one ANSI code page: Windows-1252, and on Windows whatever page the
/// machine has for it, since the suite's programs, their files and the registry's text follow that. Outside
/// it is UTF-8 or UTF-16. These functions stand at that edge, and nobody else knows which page it is. In most
/// pages every byte is a character; bytes that the page leaves empty are the control characters of the same
/// value in both directions, so every text has an outside form and comes back the same. In the pages of the
/// Far East a character may take two bytes, of which the second may look like a letter, a backslash or a bar,
/// but never like a sign below "@": brackets and commas of lists, colons, points and slashes of paths can be
/// looked for as bytes, backslashes by the functions below only.

/// UTF-8 to text of the page; false for bytes that are no UTF-8 and for a character outside the code page,
/// and szAnsi then holds what came before it.
[[nodiscard]] bool Utf8ToAnsi(std::string_view szUtf8, std::string& szAnsi);
/// The same for UTF-16.
[[nodiscard]] bool Utf16ToAnsi(std::u16string_view szUtf16, std::string& szAnsi);
[[nodiscard]] std::string AnsiToUtf8(std::string_view szAnsi);
/// For words about a failure: text of the page, or already UTF-8 where it tells of what the page has no room
/// for.
[[nodiscard]] std::string WordsToUtf8(std::string_view szWords);

/// As a user is told: "Windows-1252", "code page 932".
[[nodiscard]] std::string CodePageName();

/// Where the first of some signs of ASCII stands from a character's start on, or the last; npos where none
/// does.
[[nodiscard]] size_t FindInAnsi(std::string_view szAnsi, std::string_view szSigns, size_t from = 0);
[[nodiscard]] size_t FindLastInAnsi(std::string_view szAnsi, std::string_view szSigns);
[[nodiscard]] bool AnsiEndsWith(std::string_view szAnsi, char sign);

/// Text of the page in lower case by the page's letters, for names that compare without case.
[[nodiscard]] std::string FoldCase(std::string_view szAnsi);

/// True when every byte belongs to a well-formed UTF-8 character.
[[nodiscard]] bool IsUtf8(std::string_view szText);

/// UTF-16 and UTF-8 of the same text. A lone surrogate becomes the three bytes of its number and comes back
/// from them, so that text which is only passed through stays as it was.
[[nodiscard]] std::string Utf16ToUtf8(std::u16string_view szUtf16);
[[nodiscard]] std::u16string Utf8ToUtf16(std::string_view szUtf8);

}  // namespace vex

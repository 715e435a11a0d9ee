#include <algorithm>
#include <array>
#include <cstdint>

#include "host/AnsiPage.h"
#include "host/CodePage.h"

// Linux has no ANSI code page; shows and schedules come from Windows machines of the West, so theirs it is.

namespace vex {

namespace {

// The characters of bytes 0x80 to 0x9F (Unicode's mapping file CP1252.TXT); the five that have none there are
// the control characters of the same value. All other bytes are the characters of their own number.
constexpr std::array<char16_t, 32> UpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t CharacterOf(uint8_t byte) {
  return byte >= 0x80 && byte < 0xA0 ? UpperControls[byte - 0x80] : byte;
}

}  // namespace

bool AppendAnsi(char32_t character, std::string& szAnsi) {
  if (character < 0x80 || (character >= 0xA0 && character < 0x100)) {
    szAnsi += static_cast<char>(character);
    return true;
  }
  const auto found = std::ranges::find(UpperControls, character);
  if (found == UpperControls.end()) return false;
  szAnsi += static_cast<char>(0x80 + (found - UpperControls.begin()));
  return true;
}

std::u16string AnsiToUtf16(std::string_view szAnsi) {
  std::u16string szText;
  szText.reserve(szAnsi.size());
  for (const char byte : szAnsi) szText += CharacterOf(static_cast<uint8_t>(byte));
  return szText;
}

bool IsLeadByte(char /*byte*/) {
  return false;
}

std::string CodePageName() {
  return "Windows-1252";
}

std::string FoldCase(std::string_view szAnsi) {
  std::string szFolded(szAnsi);
  for (char& byte : szFolded) {
    const auto value = static_cast<uint8_t>(byte);
    const bool boolLetter =
        (value >= 'A' && value <= 'Z') || (value >= 0xC0 && value <= 0xDE && value != 0xD7);
    if (boolLetter) {
      byte = static_cast<char>(value + 0x20);
    } else if (value == 0x8A || value == 0x8C || value == 0x8E) {
      byte = static_cast<char>(value + 0x10);  // S with caron, OE, Z with caron
    } else if (value == 0x9F) {
      byte = static_cast<char>(0xFF);  // Y with diaeresis
    }
  }
  return szFolded;
}

}  // namespace vex

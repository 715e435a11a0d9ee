#include "host/CodePage.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace vex {

namespace {

// The characters of bytes 0x80 to 0x9F (Unicode's mapping file CP1252.TXT); the five that have none there are
// the control characters of the same value. All other bytes are the characters of their own number.
constexpr std::array<char16_t, 32> UpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char32_t Replacement = 0xFFFD;

bool IsSurrogate(char32_t character) {
  return character >= 0xD800 && character <= 0xDFFF;
}

char32_t CharacterOf(uint8_t byte) {
  return byte >= 0x80 && byte < 0xA0 ? UpperControls[byte - 0x80] : byte;
}

bool ByteOf(char32_t character, char& byte) {
  if (character < 0x80 || (character >= 0xA0 && character < 0x100)) {
    byte = static_cast<char>(character);
    return true;
  }
  const auto found = std::ranges::find(UpperControls, character);
  if (found == UpperControls.end()) return false;
  byte = static_cast<char>(0x80 + (found - UpperControls.begin()));
  return true;
}

/// Takes one character off the front; false, with nothing taken, where there is no well-formed one.
/// Surrogates are characters here, so that text of the other form passes through.
bool TakeUtf8(std::string_view& szText, char32_t& character) {
  const auto lead = static_cast<uint8_t>(szText.front());
  const size_t length = lead < 0x80   ? 1
                        : lead < 0xC2 ? 0
                        : lead < 0xE0 ? 2
                        : lead < 0xF0 ? 3
                        : lead < 0xF5 ? 4
                                      : 0;
  if (length == 0 || szText.size() < length) return false;
  constexpr std::array<uint8_t, 5> leadBits = {0, 0x7F, 0x1F, 0x0F, 0x07};
  constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
  char32_t result = lead & leadBits[length];
  for (size_t at = 1; at < length; ++at) {
    const auto next = static_cast<uint8_t>(szText[at]);
    if ((next & 0xC0) != 0x80) return false;
    result = result << 6 | (next & 0x3F);
  }
  if (result < least[length] || result > 0x10FFFF) return false;
  character = result;
  szText.remove_prefix(length);
  return true;
}

char32_t TakeUtf16(std::u16string_view& szText) {
  const char32_t first = szText.front();
  szText.remove_prefix(1);
  const bool boolPair = first >= 0xD800 && first < 0xDC00 && !szText.empty() && szText.front() >= 0xDC00 &&
                        szText.front() <= 0xDFFF;
  if (!boolPair) return first;
  const char32_t second = szText.front();
  szText.remove_prefix(1);
  return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

void AppendUtf8(char32_t character, std::string& szText) {
  const auto tail = [&](int shift) { return static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    szText += static_cast<char>(character);
  } else if (character < 0x800) {
    szText += {static_cast<char>(0xC0 | character >> 6), tail(0)};
  } else if (character < 0x10000) {
    szText += {static_cast<char>(0xE0 | character >> 12), tail(6), tail(0)};
  } else {
    szText += {static_cast<char>(0xF0 | character >> 18), tail(12), tail(6), tail(0)};
  }
}

}  // namespace

bool Utf8ToAnsi(std::string_view szUtf8, std::string& szAnsi) {
  szAnsi.clear();
  while (!szUtf8.empty()) {
    char32_t character = 0;
    char byte = 0;
    if (!TakeUtf8(szUtf8, character) || !ByteOf(character, byte)) return false;
    szAnsi += byte;
  }
  return true;
}

bool Utf16ToAnsi(std::u16string_view szUtf16, std::string& szAnsi) {
  szAnsi.clear();
  while (!szUtf16.empty()) {
    char byte = 0;
    if (!ByteOf(TakeUtf16(szUtf16), byte)) return false;
    szAnsi += byte;
  }
  return true;
}

std::string AnsiToUtf8(std::string_view szAnsi) {
  std::string szUtf8;
  szUtf8.reserve(szAnsi.size());
  for (const char byte : szAnsi) AppendUtf8(CharacterOf(static_cast<uint8_t>(byte)), szUtf8);
  return szUtf8;
}

bool IsUtf8(std::string_view szText) {
  while (!szText.empty()) {
    char32_t character = 0;
    if (!TakeUtf8(szText, character) || IsSurrogate(character)) return false;
  }
  return true;
}

std::string Utf16ToUtf8(std::u16string_view szUtf16) {
  std::string szUtf8;
  szUtf8.reserve(szUtf16.size());
  while (!szUtf16.empty()) AppendUtf8(TakeUtf16(szUtf16), szUtf8);
  return szUtf8;
}

std::u16string Utf8ToUtf16(std::string_view szUtf8) {
  std::u16string szUtf16;
  szUtf16.reserve(szUtf8.size());
  while (!szUtf8.empty()) {
    char32_t character = Replacement;
    if (!TakeUtf8(szUtf8, character)) szUtf8.remove_prefix(1);
    if (character < 0x10000) {
      szUtf16 += static_cast<char16_t>(character);
    } else {
      szUtf16 += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
      szUtf16 += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
  }
  return szUtf16;
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

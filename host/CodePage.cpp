#include "host/CodePage.h"

#include <array>
#include <cstdint>

#include "host/AnsiPage.h"

namespace vex {

namespace {

constexpr char32_t Replacement = 0xFFFD;

bool IsSurrogate(char32_t character) {
  return character >= 0xD800 && character <= 0xDFFF;
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
    if (!TakeUtf8(szUtf8, character) || !AppendAnsi(character, szAnsi)) return false;
  }
  return true;
}

bool Utf16ToAnsi(std::u16string_view szUtf16, std::string& szAnsi) {
  szAnsi.clear();
  while (!szUtf16.empty()) {
    if (!AppendAnsi(TakeUtf16(szUtf16), szAnsi)) return false;
  }
  return true;
}

std::string AnsiToUtf8(std::string_view szAnsi) {
  return Utf16ToUtf8(AnsiToUtf16(szAnsi));
}

std::string WordsToUtf8(std::string_view szWords) {
  return IsUtf8(szWords) ? std::string(szWords) : AnsiToUtf8(szWords);
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

size_t FindInAnsi(std::string_view szAnsi, std::string_view szSigns, size_t from) {
  for (size_t at = from; at < szAnsi.size(); at += IsLeadByte(szAnsi[at]) ? 2 : 1) {
    if (szSigns.find(szAnsi[at]) != std::string_view::npos) return at;
  }
  return std::string_view::npos;
}

size_t FindLastInAnsi(std::string_view szAnsi, std::string_view szSigns) {
  size_t last = std::string_view::npos;
  for (size_t at = FindInAnsi(szAnsi, szSigns); at != std::string_view::npos;
       at = FindInAnsi(szAnsi, szSigns, at + 1))
    last = at;
  return last;
}

bool AnsiEndsWith(std::string_view szAnsi, char sign) {
  return szAnsi.ends_with(sign) && FindLastInAnsi(szAnsi, {&sign, 1}) == szAnsi.size() - 1;
}

}  // namespace vex

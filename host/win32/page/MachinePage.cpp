#include "host/win32/page/MachinePage.h"

#include <algorithm>
#include <array>

#include "host/AnsiPage.h"
#include "host/CodePage.h"
#include "host/win32/SystemHeaders.h"

namespace vex {
namespace {

constexpr unsigned FirstWindowsPage = 1250;
constexpr unsigned LastWindowsPage = 1258;

bool IsAscii(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

std::u16string UnitsOf(char32_t character) {
  if (character < 0x10000) return {static_cast<char16_t>(character)};
  return {static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10)),
          static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF))};
}

char16_t Lower(char16_t unit) {
  const auto wide = static_cast<wchar_t>(unit);
  wchar_t lower = wide;
  LCMapStringW(LOCALE_INVARIANT, LCMAP_LOWERCASE, &wide, 1, &lower, 1);
  return static_cast<char16_t>(lower);
}

}  // namespace

const MachinePage& MachinePage::Ansi() {
  static const MachinePage page(GetACP());
  return page;
}

bool MachinePage::Append(char32_t character, std::string& szBytes) const {
  if (character < 0x80) {
    szBytes += static_cast<char>(character);
    return true;
  }
  const std::u16string szUnits = UnitsOf(character);
  const std::wstring szWide(szUnits.begin(), szUnits.end());
  std::array<char, 8> bytes{};
  // UTF-8 takes no flags at all.
  const int length =
      WideCharToMultiByte(m_Number, m_Number == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS, szWide.data(),
                          static_cast<int>(szWide.size()), bytes.data(), bytes.size(), nullptr, nullptr);
  const std::string_view szOne(bytes.data(), static_cast<size_t>(std::max(length, 0)));
  // What has no bytes there has become another character.
  if (szOne.empty() || ToUtf16(szOne) != szUnits) return false;
  szBytes += szOne;
  return true;
}

std::u16string MachinePage::ToUtf16(std::string_view szBytes) const {
  if (std::ranges::all_of(szBytes, IsAscii)) return {szBytes.begin(), szBytes.end()};
  std::wstring szWide(szBytes.size(), L'\0');  // no byte is more than one unit
  const int length = MultiByteToWideChar(m_Number, 0, szBytes.data(), static_cast<int>(szBytes.size()),
                                         szWide.data(), static_cast<int>(szWide.size()));
  return {szWide.begin(), szWide.begin() + std::max(length, 0)};
}

bool MachinePage::IsLead(char byte) const {
  return !IsAscii(byte) && IsDBCSLeadByteEx(m_Number, static_cast<BYTE>(byte)) != 0;
}

std::string MachinePage::Fold(std::string_view szBytes) const {
  std::string szFolded;
  szFolded.reserve(szBytes.size());
  for (size_t at = 0; at < szBytes.size();) {
    const size_t length = std::min<size_t>(IsLead(szBytes[at]) ? 2 : 1, szBytes.size() - at);
    const std::string_view szCharacter = szBytes.substr(at, length);
    const std::u16string szUnits = ToUtf16(szCharacter);
    // A letter whose small one is not in the page stays, and so do bytes that are no letter.
    const bool boolFolded =
        szUnits.size() == 1 && Lower(szUnits[0]) != szUnits[0] && Append(Lower(szUnits[0]), szFolded);
    if (!boolFolded) szFolded += szCharacter;
    at += length;
  }
  return szFolded;
}

std::string MachinePage::Name() const {
  const bool boolWindows = m_Number >= FirstWindowsPage && m_Number <= LastWindowsPage;
  return (boolWindows ? "Windows-" : "code page ") + std::to_string(m_Number);
}

bool AppendAnsi(char32_t character, std::string& szAnsi) {
  return MachinePage::Ansi().Append(character, szAnsi);
}

std::u16string AnsiToUtf16(std::string_view szAnsi) {
  return MachinePage::Ansi().ToUtf16(szAnsi);
}

bool IsLeadByte(char byte) {
  return MachinePage::Ansi().IsLead(byte);
}

std::string CodePageName() {
  return MachinePage::Ansi().Name();
}

std::string FoldCase(std::string_view szAnsi) {
  return MachinePage::Ansi().Fold(szAnsi);
}

}  // namespace vex

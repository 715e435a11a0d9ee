#include "host/win32/AnsiText.h"

#include "host/win32/SystemHeaders.h"

namespace vex {
namespace {

std::wstring WideOf(UINT codePage, DWORD flags, std::string_view szText) {
  const auto size = static_cast<int>(szText.size());
  const int length = MultiByteToWideChar(codePage, flags, szText.data(), size, nullptr, 0);
  std::wstring szWide(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(codePage, flags, szText.data(), size, szWide.data(), length);
  return szWide;
}

}  // namespace

std::string Utf8OfWide(std::wstring_view szWide) {
  const auto size = static_cast<int>(szWide.size());
  const int length = WideCharToMultiByte(CP_UTF8, 0, szWide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string szUtf8(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, szWide.data(), size, szUtf8.data(), length, nullptr, nullptr);
  return szUtf8;
}

std::string Utf8OfAnsi(std::string_view szAnsi) {
  return Utf8OfWide(WideOf(CP_ACP, 0, szAnsi));
}

bool AnsiOfUtf8(std::string_view szUtf8, std::string& szAnsi) {
  szAnsi.clear();
  if (szUtf8.empty()) return true;
  const std::wstring szWide = WideOf(CP_UTF8, MB_ERR_INVALID_CHARS, szUtf8);
  if (szWide.empty()) return false;
  const auto size = static_cast<int>(szWide.size());
  BOOL boolReplaced = FALSE;
  const int length = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, szWide.data(), size, nullptr, 0,
                                         nullptr, &boolReplaced);
  szAnsi.resize(static_cast<size_t>(length));
  WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, szWide.data(), size, szAnsi.data(), length, nullptr,
                      nullptr);
  // What has no form there may also have become another character that comes back differently.
  if (boolReplaced != FALSE || WideOf(CP_ACP, 0, szAnsi) != szWide) szAnsi.clear();
  return !szAnsi.empty();
}

}  // namespace vex

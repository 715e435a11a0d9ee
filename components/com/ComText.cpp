#include "components/com/ComText.h"

#include <new>

namespace vex {

std::wstring WideOf(std::string_view szText) {
  const auto size = static_cast<int>(szText.size());
  const int length = MultiByteToWideChar(CP_ACP, 0, szText.data(), size, nullptr, 0);
  std::wstring szWide(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_ACP, 0, szText.data(), size, szWide.data(), length);
  return szWide;
}

std::string TextOf(const wchar_t* szWide, size_t length) {
  const auto size = static_cast<int>(length);
  if (size == 0) return "";
  const int count = WideCharToMultiByte(CP_ACP, 0, szWide, size, nullptr, 0, nullptr, nullptr);
  std::string szText(static_cast<size_t>(count), '\0');
  WideCharToMultiByte(CP_ACP, 0, szWide, size, szText.data(), count, nullptr, nullptr);
  return szText;
}

std::string TextOf(BSTR szWide) {
  return TextOf(szWide, SysStringLen(szWide));
}

ComText::ComText(std::string_view szText) {
  const std::wstring szWide = WideOf(szText);
  m_Text = SysAllocStringLen(szWide.data(), static_cast<UINT>(szWide.size()));
  if (m_Text == nullptr) throw std::bad_alloc();
}

}  // namespace vex

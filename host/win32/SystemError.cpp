#include "host/win32/SystemError.h"

#include <array>

#include "host/win32/SystemHeaders.h"

namespace vex {

std::string DescribeCode(uint32_t code) {
  std::array<char, 512> text{};
  const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      code, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::string szText(text.data(), length);
  while (!szText.empty() && (szText.back() == '\n' || szText.back() == '\r' || szText.back() == '.'))
    szText.pop_back();
  return szText.empty() ? "System error " + std::to_string(code) : szText;
}

uint32_t LastCode() {
  return GetLastError();
}

Error SystemError(const std::string& szSource, const std::string& szAbout, uint32_t code) {
  return {static_cast<int32_t>(code), szSource, (szAbout.empty() ? "" : szAbout + ": ") + DescribeCode(code)};
}

}  // namespace vex

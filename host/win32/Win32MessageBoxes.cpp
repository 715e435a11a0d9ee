#include "host/win32/Win32MessageBoxes.h"

#include "host/win32/SystemHeaders.h"

namespace vex {

void Win32MessageBoxes::Show(const std::string& szText, const std::string& szTitle) {
  MessageBoxA(nullptr, szText.c_str(), szTitle.empty() ? "VexMonitor" : szTitle.c_str(), MB_OK);
}

}  // namespace vex

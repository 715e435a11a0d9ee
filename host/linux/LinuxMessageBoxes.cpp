#include "host/linux/LinuxMessageBoxes.h"

#include <cstdio>

#include "host/CodePage.h"

namespace vex {

void LinuxMessageBoxes::Show(const std::string& szText, const std::string& szTitle) {
  const std::string szLine = AnsiToUtf8((szTitle.empty() ? "VexMonitor" : szTitle) + ": " + szText) + "\n";
  std::fwrite(szLine.data(), 1, szLine.size(), stderr);
}

}  // namespace vex

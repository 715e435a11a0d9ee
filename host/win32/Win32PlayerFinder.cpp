#include "host/win32/Win32PlayerFinder.h"

#include <array>

#include "host/Files.h"
#include "host/win32/SystemError.h"
#include "host/win32/Win32Windows.h"
#include "host/win32/WindowNumber.h"
// Behind the others: it wants the machine's words.
#include <shlobj.h>

namespace vex {

WindowHandle Win32PlayerFinder::FindPlayer() {
  return NumberOf(FindWindowA(Win32Windows::MainClass, Win32Windows::MainTitle));
}

std::string Win32PlayerFinder::StatusFile() {
  std::array<char, MAX_PATH> folder{};
  const HRESULT result =
      SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder.data());
  if (FAILED(result)) throw SystemError("PlayerFinder.StatusFile", "", static_cast<uint32_t>(result));
  const std::string szFolder = std::string(folder.data()) + "\\VexMonitor";
  m_Files.MakeFolder(szFolder);
  return szFolder + "\\status.json";
}

}  // namespace vex

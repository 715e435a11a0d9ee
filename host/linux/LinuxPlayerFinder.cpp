#include "host/linux/LinuxPlayerFinder.h"

#include <cerrno>
#include <charconv>

#include "basic/Error.h"
#include "host/linux/LinuxSingleInstance.h"
#include "host/linux/WholeFile.h"

namespace vex {

WindowHandle LinuxPlayerFinder::FindPlayer() {
  std::string szHandle;
  if (!PlayerLockHeld(m_Folder) || ReadWholeFile(m_Folder.PlayerPath(), szHandle) != 0) return 0;
  while (!szHandle.empty() && szHandle.back() == '\n') szHandle.pop_back();
  WindowHandle hWnd = 0;
  const char* const end = szHandle.data() + szHandle.size();
  const auto [stop, problem] = std::from_chars(szHandle.data(), end, hWnd);
  return problem == std::errc() && stop == end && hWnd > 0 ? hWnd : 0;
}

std::string LinuxPlayerFinder::StatusFile() {
  std::string szPath = m_Files.SystemPath(m_Folder.StatusPath());
  if (szPath.empty())
    throw Error(EILSEQ, "PlayerFinder.StatusFile",
                "The folder " + m_Folder.Path() + " has a character outside Windows-1252");
  return szPath;
}

}  // namespace vex

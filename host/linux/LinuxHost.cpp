#include "host/linux/LinuxHost.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "basic/Error.h"

namespace vex {

LinuxHost::LinuxHost(RuntimeFolder folder, std::string szSettings)
    : m_SingleInstance(folder,
                       [this] {
                         // A player must not end because nobody reads its standard error any more.
                         std::signal(SIGPIPE, SIG_IGN);
                         m_Windows.BecomePlayer();
                       }),
      m_Windows(m_EventLoop, folder),
      m_Registry(std::move(szSettings)),
      m_Processes(m_EventLoop),
      m_PlayerFinder(folder, m_Files) {
  // A file that may not grow is a write that fails, not the program's end.
  std::signal(SIGXFSZ, SIG_IGN);
}

std::string LinuxHost::MachineId() {
  std::string szId;
  (void)m_Files.Read(m_Files.SystemPath("/etc/machine-id"), szId, nullptr);
  return szId.substr(0, szId.find('\n'));
}

std::string LinuxHost::UserDataFolder() {
  const char* const dataHome = std::getenv("XDG_DATA_HOME");
  if (dataHome != nullptr && *dataHome != '\0')
    return m_Files.SystemPath(std::string(dataHome) + "/vexmonitor") + "\\";
  const char* const home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') {
    throw Error(ErrorFileNotFound, "Host.UserDataFolder",
                "neither XDG_DATA_HOME nor HOME says where user data belong");
  }
  return m_Files.SystemPath(std::string(home) + "/.local/share/vexmonitor") + "\\";
}

bool LinuxHost::IsTerminal(StandardStream stream) const {
  return isatty(stream == StandardStream::Output ? STDOUT_FILENO : STDERR_FILENO) != 0;
}

std::unique_ptr<Host> NativeHost() {
  return std::make_unique<LinuxHost>(RuntimeFolder::FromEnvironment(), LinuxRegistry::PathFromEnvironment());
}

}  // namespace vex

#include "host/linux/LinuxHost.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "basic/Error.h"
#include "host/linux/service/LinuxServiceManager.h"

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
      m_PlayerFinder(folder, m_Files),
      m_Facilities(folder),
      m_ServiceManager(NewLinuxServiceManager()) {
  // A file that may not grow is a write that fails, not the program's end.
  std::signal(SIGXFSZ, SIG_IGN);
}

std::string LinuxHost::MachineId() {
  std::string szId;
  (void)m_Files.Read(m_Files.SystemPath("/etc/machine-id"), szId, nullptr);
  return szId.substr(0, szId.find('\n'));
}

std::string LinuxHost::UserDataFolder() {
  return FolderBelowHome("XDG_DATA_HOME", "/.local/share", "Host.UserDataFolder", "user data belong");
}

std::string LinuxHost::StateFolder() {
  return FolderBelowHome("XDG_STATE_HOME", "/.local/state", "Host.StateFolder", "logs belong");
}

std::string LinuxHost::FolderBelowHome(const char* variable, const char* szBelowHome, const char* szSource,
                                       const char* szWhat) {
  const char* const folder = std::getenv(variable);
  if (folder != nullptr && *folder != '\0')
    return m_Files.SystemPath(std::string(folder) + "/vexmonitor") + "\\";
  const char* const home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') {
    throw Error(ErrorFileNotFound, szSource,
                std::string("neither ") + variable + " nor HOME says where " + szWhat);
  }
  return m_Files.SystemPath(std::string(home) + szBelowHome + "/vexmonitor") + "\\";
}

PlaceWords LinuxHost::Places() const {
  return {
      "The player is found in VEX_RUNTIME_DIR (default $XDG_RUNTIME_DIR/vexmonitor, else "
      "/tmp/vexmonitor-UID).",
      "The settings file is VEX_SETTINGS, else $XDG_CONFIG_HOME/vexmonitor/settings.reg.",
      "no player is running; start VexMonitor, or set VEX_RUNTIME_DIR to its folder",
      "start VexMonitor, or the service: systemctl --user enable --now vexmonitor",
      "set VEX_RUNTIME_DIR, or XDG_RUNTIME_DIR, to a short path of this account's own"};
}

bool LinuxHost::IsTerminal(StandardStream stream) const {
  return isatty(stream == StandardStream::Output ? STDOUT_FILENO : STDERR_FILENO) != 0;
}

std::unique_ptr<Host> NativeHost() {
  return std::make_unique<LinuxHost>(RuntimeFolder::FromEnvironment(), LinuxRegistry::PathFromEnvironment());
}

}  // namespace vex

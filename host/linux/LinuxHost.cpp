#include "host/linux/LinuxHost.h"

#include <csignal>

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

std::unique_ptr<Host> NativeHost() {
  return std::make_unique<LinuxHost>(RuntimeFolder::FromEnvironment(), LinuxRegistry::PathFromEnvironment());
}

}  // namespace vex

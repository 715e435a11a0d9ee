#include "host/linux/LinuxProcesses.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "host/CodePage.h"
#include "host/linux/SystemError.h"

namespace vex {
namespace {

constexpr char Shell[] = "/bin/sh";

/// What a new program starts with: its own session, no signal blocked or ignored, no files but the three.
class Surroundings {
 public:
  Surroundings() {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_init(&Attributes);
    posix_spawnattr_setflags(&Attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setsigmask(&Attributes, &none);
    posix_spawnattr_setsigdefault(&Attributes, &all);
    posix_spawn_file_actions_init(&Actions);
    posix_spawn_file_actions_addopen(&Actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&Actions, STDERR_FILENO + 1);
  }
  ~Surroundings() {
    posix_spawn_file_actions_destroy(&Actions);
    posix_spawnattr_destroy(&Attributes);
  }
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

  posix_spawnattr_t Attributes{};
  posix_spawn_file_actions_t Actions{};
};

}  // namespace

ProcessId LinuxProcesses::Start(const std::string& szCommandLine, int32_t /*lWindowStyle*/) {
  CollectUnwatched();
  const Surroundings surroundings;
  std::string szShell = Shell;
  std::string szOption = "-c";
  // A command that begins with "-" is no option of the shell.
  std::string szEnd = "--";
  std::string szCommand = AnsiToUtf8(szCommandLine);
  const std::array<char*, 5> arguments{szShell.data(), szOption.data(), szEnd.data(), szCommand.data(),
                                       nullptr};
  pid_t process = 0;
  const int code = posix_spawn(&process, Shell, &surroundings.Actions, &surroundings.Attributes,
                               arguments.data(), environ);
  if (code != 0) throw SystemError("Processes.Start", "", code);
  Child child{Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0))), nullptr};
  if (child.PidFd.Open()) {
    child.Ended = m_Loop.WatchReadable(child.PidFd.Get(), [this, process] {
      waitpid(process, nullptr, WNOHANG);
      m_Children.erase(process);
    });
  }
  m_Children.insert_or_assign(process, std::move(child));
  return process;
}

void LinuxProcesses::WaitFor(ProcessId process) {
  if (!m_Children.contains(process)) return;
  while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) continue;
  m_Children.erase(process);
}

ProcessId LinuxProcesses::Current() const {
  return getpid();
}

/// Children for which the kernel had no descriptor to watch.
void LinuxProcesses::CollectUnwatched() {
  std::erase_if(m_Children, [](const auto& child) {
    return !child.second.PidFd.Open() && waitpid(child.first, nullptr, WNOHANG) != 0;
  });
}

}  // namespace vex

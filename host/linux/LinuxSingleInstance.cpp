#include "host/linux/LinuxSingleInstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <time.h>

#include "host/linux/SystemError.h"

namespace vex {
namespace {

// A companion that looks whether a player runs holds the lock for some microseconds.
constexpr int Attempts = 20;
constexpr timespec BetweenAttempts{0, 2'000'000};

bool TakeLock(int fd) {
  for (int attempt = 1; flock(fd, LOCK_EX | LOCK_NB) != 0; ++attempt) {
    if (errno != EWOULDBLOCK && errno != EINTR) throw SystemError("SingleInstance", "flock");
    if (attempt == Attempts) return false;
    nanosleep(&BetweenAttempts, nullptr);
  }
  return true;
}

}  // namespace

bool LinuxSingleInstance::AlreadyRunning() {
  if (m_Lock.Open()) return false;
  m_Folder.Prepare();
  Descriptor lock(open(m_Folder.LockPath().c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!lock.Open()) throw SystemError("SingleInstance", m_Folder.LockPath());
  if (!TakeLock(lock.Get())) return true;
  m_Lock = std::move(lock);
  if (m_OnFirst) m_OnFirst();
  return false;
}

bool PlayerLockHeld(const RuntimeFolder& folder) {
  const Descriptor lock(open(folder.LockPath().c_str(), O_RDONLY | O_CLOEXEC));
  return lock.Open() && flock(lock.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace vex

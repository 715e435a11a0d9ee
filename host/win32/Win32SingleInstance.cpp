#include "host/win32/Win32SingleInstance.h"

#include "host/win32/SystemError.h"

namespace vex {
namespace {

constexpr char Name[] = "Local\\VexMonitor.Player";

}  // namespace

bool Win32SingleInstance::AlreadyRunning() {
  if (m_Mutex.Open()) return false;
  SetLastError(ERROR_SUCCESS);
  Handle mutex(CreateMutexA(nullptr, FALSE, Name));
  const DWORD code = GetLastError();
  if (code == ERROR_ALREADY_EXISTS || code == ERROR_ACCESS_DENIED) return true;
  if (!mutex.Open()) throw SystemError("SingleInstance", Name, code);
  m_Mutex = std::move(mutex);
  if (m_OnFirst) m_OnFirst();
  return false;
}

}  // namespace vex

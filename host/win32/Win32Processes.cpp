#include "host/win32/Win32Processes.h"

#include "host/win32/Handle.h"
#include "host/win32/SystemError.h"

namespace vex {

ProcessId Win32Processes::Start(const std::string& szCommandLine, int32_t lWindowStyle) {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = static_cast<WORD>(lWindowStyle);
  PROCESS_INFORMATION started{};
  std::string szChangeable = szCommandLine;  // the call may write into it
  if (CreateProcessA(nullptr, szChangeable.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                     &started) == 0)
    throw SystemError("Processes.Start", "");
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  return static_cast<ProcessId>(started.dwProcessId);
}

void Win32Processes::WaitFor(ProcessId process) {
  const Handle opened(OpenProcess(SYNCHRONIZE, TRUE, static_cast<DWORD>(process)));
  // What cannot be opened has ended already.
  if (opened.Open()) WaitForSingleObject(opened.Get(), INFINITE);
}

ProcessId Win32Processes::Current() const {
  return static_cast<ProcessId>(GetCurrentProcessId());
}

}  // namespace vex

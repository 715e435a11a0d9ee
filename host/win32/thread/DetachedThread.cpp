#include "host/DetachedThread.h"

#include <memory>
#include <system_error>
#include <utility>

#include "host/win32/Handle.h"

namespace vex {
namespace {

DWORD WINAPI Work(void* parameter) {
  const std::unique_ptr<std::function<void()>> work(static_cast<std::function<void()>*>(parameter));
  (*work)();
  return 0;
}

}  // namespace

// The system's own thread, not a detached std::thread: where one of those ends while it is being detached,
// the runtime library of mingw-w64 gives its place to two threads at once, and the program dies.
void StartDetached(std::function<void()> work) {
  auto parameter = std::make_unique<std::function<void()>>(std::move(work));
  const Handle thread(CreateThread(nullptr, 0, Work, parameter.get(), 0, nullptr));
  if (!thread.Open())
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateThread");
  static_cast<void>(parameter.release());
}

}  // namespace vex

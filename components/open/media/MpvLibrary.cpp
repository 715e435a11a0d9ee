#include "components/open/media/MpvLibrary.h"

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>

namespace vex {

namespace {

constexpr const char* LibraryFile = "libmpv.so.2";

template <class Function>
void Find(void* library, const char* szName, Function& function, std::string& szFailure) {
  function = reinterpret_cast<Function>(dlsym(library, szName));
  if (!function) szFailure = std::string("The media library ") + LibraryFile + " has no " + szName;
}

std::atomic<uint32_t> s_DisplaysGone = 0;

/// X ends the whole program when its display breaks away, unless what is called then never returns. The
/// thread is the one in which the library draws; a core that waits for it is left behind.
int DisplayGone(void*) {
  ++s_DisplaysGone;
  for (;;) pause();
}

void OutliveTheDisplay() {
  void* const library = dlopen("libX11.so.6", RTLD_NOW | RTLD_NOLOAD);
  if (!library) return;  // the media library knows nothing of X
  using Handler = int (*)(void* display);
  if (const auto set = reinterpret_cast<Handler (*)(Handler)>(dlsym(library, "XSetIOErrorHandler")))
    set(DisplayGone);
}

MpvLibrary Load() {
  MpvLibrary functions;
  void* const library = dlopen(LibraryFile, RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    functions.Failure = std::string("The media library cannot be loaded (package libmpv2): ") + dlerror();
    return functions;
  }
  OutliveTheDisplay();
  std::string& szFailure = functions.Failure;
  Find(library, "mpv_command", functions.Command, szFailure);
  Find(library, "mpv_command_async", functions.CommandAsync, szFailure);
  Find(library, "mpv_create", functions.Create, szFailure);
  Find(library, "mpv_error_string", functions.ErrorString, szFailure);
  Find(library, "mpv_free", functions.Free, szFailure);
  Find(library, "mpv_get_property", functions.GetProperty, szFailure);
  Find(library, "mpv_get_property_async", functions.GetPropertyAsync, szFailure);
  Find(library, "mpv_hook_add", functions.HookAdd, szFailure);
  Find(library, "mpv_hook_continue", functions.HookContinue, szFailure);
  Find(library, "mpv_initialize", functions.Initialize, szFailure);
  Find(library, "mpv_observe_property", functions.ObserveProperty, szFailure);
  Find(library, "mpv_request_log_messages", functions.RequestLogMessages, szFailure);
  Find(library, "mpv_set_option_string", functions.SetOptionString, szFailure);
  Find(library, "mpv_set_property_async", functions.SetPropertyAsync, szFailure);
  Find(library, "mpv_set_wakeup_callback", functions.SetWakeupCallback, szFailure);
  Find(library, "mpv_terminate_destroy", functions.TerminateDestroy, szFailure);
  Find(library, "mpv_wait_event", functions.WaitEvent, szFailure);
  return functions;
}

}  // namespace

uint32_t MpvLibrary::DisplaysGone() {
  return s_DisplaysGone;
}

const MpvLibrary& MpvLibrary::Loaded() {
  static const MpvLibrary functions = Load();
  return functions;
}

}  // namespace vex

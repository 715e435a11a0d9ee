#include "components/open/media/MpvLibrary.h"

#include "components/open/media/MediaLibraryFile.h"

namespace vex {

namespace {

template <class Function>
void Find(void* library, const char* szName, Function& function, std::string& szFailure) {
  function = reinterpret_cast<Function>(MediaLibraryFile::Find(library, szName));
  if (!function)
    szFailure = std::string("The media library ") + MediaLibraryFile::Name() + " has no " + szName;
}

MpvLibrary Load() {
  MpvLibrary functions;
  void* const library = MediaLibraryFile::Load(functions.Failure);
  if (!library) return functions;
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
  return MediaLibraryFile::DisplaysGone();
}

const MpvLibrary& MpvLibrary::Loaded() {
  static const MpvLibrary functions = Load();
  return functions;
}

}  // namespace vex

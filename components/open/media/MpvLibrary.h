#pragma once

#include <mpv/client.h>

#include <string>

namespace vex {

/// The media library's functions. The library and the hundred others that it brings are loaded when a show
/// with media comes, not with the program: a player that waits for its first show stays small.
struct MpvLibrary {
  decltype(&mpv_command) Command = nullptr;
  decltype(&mpv_command_async) CommandAsync = nullptr;
  decltype(&mpv_create) Create = nullptr;
  decltype(&mpv_error_string) ErrorString = nullptr;
  decltype(&mpv_free) Free = nullptr;
  decltype(&mpv_get_property) GetProperty = nullptr;
  decltype(&mpv_get_property_async) GetPropertyAsync = nullptr;
  decltype(&mpv_hook_add) HookAdd = nullptr;
  decltype(&mpv_hook_continue) HookContinue = nullptr;
  decltype(&mpv_initialize) Initialize = nullptr;
  decltype(&mpv_observe_property) ObserveProperty = nullptr;
  decltype(&mpv_request_log_messages) RequestLogMessages = nullptr;
  decltype(&mpv_set_option_string) SetOptionString = nullptr;
  decltype(&mpv_set_property_async) SetPropertyAsync = nullptr;
  decltype(&mpv_set_wakeup_callback) SetWakeupCallback = nullptr;
  decltype(&mpv_terminate_destroy) TerminateDestroy = nullptr;
  decltype(&mpv_wait_event) WaitEvent = nullptr;

  /// Not empty: why the library cannot be used.
  std::string Failure;

  /// Loaded at the first call, from any thread, and kept.
  static const MpvLibrary& Loaded();
  /// How many displays have broken away from cores that drew on them.
  static uint32_t DisplaysGone();
};

}  // namespace vex

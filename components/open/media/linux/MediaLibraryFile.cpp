#include "components/open/media/MediaLibraryFile.h"

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <system_error>

namespace vex {

namespace {

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

}  // namespace

const char* MediaLibraryFile::Name() {
  return "libmpv.so.2";
}

void* MediaLibraryFile::Load(std::string& szFailure) {
  void* const library = dlopen(Name(), RTLD_NOW | RTLD_LOCAL);
  if (library) {
    OutliveTheDisplay();
  } else {
    szFailure = std::string("The media library cannot be loaded (package libmpv2): ") + dlerror();
  }
  return library;
}

void* MediaLibraryFile::Find(void* library, const char* szFunction) {
  return dlsym(library, szFunction);
}

/// With the graphics processor; where there is none drawn plainly, which costs a third of imitating one, and
/// Mesa, which imitates it, loses a megabyte with each window.
std::string MediaLibraryFile::VideoDrivers() {
  std::error_code none;
  for (const auto& device : std::filesystem::directory_iterator("/dev/dri", none))
    if (device.path().filename().string().starts_with("renderD")) return "gpu,x11,null";
  return "x11,null";
}

uint32_t MediaLibraryFile::DisplaysGone() {
  return s_DisplaysGone;
}

}  // namespace vex

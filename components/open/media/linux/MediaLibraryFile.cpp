#include "components/open/media/MediaLibraryFile.h"

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>

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

uint32_t MediaLibraryFile::DisplaysGone() {
  return s_DisplaysGone;
}

}  // namespace vex

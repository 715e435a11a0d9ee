#include "components/open/media/MediaLibraryFile.h"

#include <windows.h>

namespace vex {

const char* MediaLibraryFile::Name() {
  return "libmpv-2.dll";
}

void* MediaLibraryFile::Load(std::string& szFailure) {
  const HMODULE library = LoadLibraryA(Name());
  if (library == nullptr) {
    szFailure = std::string("The media library cannot be loaded: put ") + Name() +
                " beside the program (system error " + std::to_string(GetLastError()) + ")";
  }
  return reinterpret_cast<void*>(library);
}

void* MediaLibraryFile::Find(void* library, const char* szFunction) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), szFunction));
}

/// There the library knows none but the graphics processor that every machine has.
std::string MediaLibraryFile::VideoDrivers() {
  return "gpu,null";
}

/// Displays are the machine's own here and do not break away.
uint32_t MediaLibraryFile::DisplaysGone() {
  return 0;
}

}  // namespace vex

#pragma once

#include <cstdint>
#include <string>

namespace vex {

/// The media library as the machine loads it: a shared library by its usual name, one file for each machine.
namespace MediaLibraryFile {

/// The library's file, for people.
[[nodiscard]] const char* Name();
/// Null, with the reason, where it cannot be loaded. It is kept until the program ends.
[[nodiscard]] void* Load(std::string& szFailure);
/// A function of the library; null where it has none of that name.
[[nodiscard]] void* Find(void* library, const char* szFunction);
/// What the library may draw with, the best first, and at the end nothing: a display that is missing must not
/// end the sound.
[[nodiscard]] std::string VideoDrivers();
/// How many displays have broken away from cores that drew on them.
[[nodiscard]] uint32_t DisplaysGone();

}  // namespace MediaLibraryFile

}  // namespace vex

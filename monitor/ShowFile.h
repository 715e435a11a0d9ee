#pragma once

#include <string>

namespace vex {

class Files;

/// Reads the show file that a schedule names. A name that does not say where it lies, with a drive or from
/// the root on, is looked for in the current folder and then in the user data folder (with its trailing "\\",
/// empty for none). False where it is missing or cannot be read.
[[nodiscard]] bool ReadShowFile(Files& files, const std::string& szUserDataPath,
                                const std::string& szFilename, std::string& szText);

}  // namespace vex

#pragma once

#include <string>

#include "host/Files.h"
#include "host/Registry.h"

namespace vex {

/// The folders of sequences and how a sequence's name becomes a full path; whole files as one text.

/// The folder of sequences with audio, and of those without, read at every call; with a trailing "\" unless
/// empty.
[[nodiscard]] std::string AudioPath(Registry& registry);
[[nodiscard]] std::string NonAudioPath(Registry& registry);

/// A name with a ":" anywhere or "\\" in front is a full path already; any other is put behind its folder
/// (one leading "\" dropped), unless that folder is empty. An empty name stays empty.
[[nodiscard]] std::string FullSequencePath(Registry& registry, const std::string& szName, bool boolIsAudio);

/// True when the path exists and is not a folder.
[[nodiscard]] bool FileExists(Files& files, const std::string& szPath);
/// Every byte of the file; false, with szContents as it was or not, on any failure.
[[nodiscard]] bool ReadFile(Files& files, const std::string& szPath, std::string& szContents);
/// The whole text and nothing else; false, with the old file as it was, on any failure.
[[nodiscard]] bool WriteFile(Files& files, const std::string& szPath, const std::string& szText);

}  // namespace vex

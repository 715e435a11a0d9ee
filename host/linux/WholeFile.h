#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "host/linux/Descriptor.h"

namespace vex {

/// Files of this machine, read and written whole. All return 0 or errno's number.

/// szContents' memory is used again. Besides files, pipes and devices that end are read too, up to 64 MiB.
[[nodiscard]] int ReadWholeFile(const std::string& szHostPath, std::string& szContents);

/// Writes a new file beside the old one, flushes it and renames it over the old: whoever reads sees the old
/// text or the new one. A link stays a link, the old file's owner and permissions are kept; a new file gets
/// `mode` less the process's mask. Pipes and devices are written straight. Without the flush nothing waits
/// for the disk, and a power cut may take the new text.
enum class Flush { No, Yes };
[[nodiscard]] int WriteWholeFile(const std::string& szHostPath, std::string_view szText, mode_t mode,
                                 Flush flush = Flush::Yes);

/// Waits for the lock on the folder in which the file lies, behind a link too, and holds it as long as
/// `lock` is open. A file of its own for it would be left lying about; the file itself is renamed away.
[[nodiscard]] int LockFolderOf(const std::string& szHostPath, Descriptor& lock);

}  // namespace vex

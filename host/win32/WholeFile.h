#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vex {

/// Files of this machine, read and written whole. Both return 0 or the machine's code.

/// szContents' memory is used again.
[[nodiscard]] uint32_t ReadWholeFile(const std::string& szPath, std::string& szContents);

/// Writes a new file beside the old one, flushes it and puts it in the old one's place: whoever reads sees
/// the old text or the new one. Attributes and permissions of the old file are kept. Without the flush
/// nothing waits for the disk.
enum class Flush { No, Yes };
[[nodiscard]] uint32_t WriteWholeFile(const std::string& szPath, std::string_view szText, Flush flush);

/// The machine's words, or the system's own for a file that is not there.
[[nodiscard]] std::string DescribeFileCode(uint32_t code);

}  // namespace vex

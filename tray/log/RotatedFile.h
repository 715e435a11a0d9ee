#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host/Files.h"

namespace vex {

/// How much is kept: so many bytes a file, and so many files, the newest included.
struct RotationLimits {
  uint64_t Size = 1 << 20;
  int32_t Files = 10;
};

/// A file of lines that never grows beyond a size: when the next line does not fit, NAME becomes NAME.1,
/// NAME.1 becomes NAME.2 and so on, and the oldest goes. Whenever the program ends, what has been written is
/// there; a line that was being written then stands alone and does not spoil the one after it.
class RotatedFile {
 public:
  /// The path as the system writes paths; its folder is made with the first line. The files outlive this.
  RotatedFile(Files& files, std::string szPath, RotationLimits limits);

  /// Writes the text, one or more whole lines of which none has a line end yet but between them. False when
  /// that cannot be; nothing counts as written then, and the same may be tried again.
  bool Append(std::string_view szLine);
  /// The same, in place of the line that Amend wrote last where nothing has been appended since; it must not
  /// be shorter than that one. It stays in the file of the line before it, whatever size that has.
  bool Amend(std::string_view szLine);
  /// Waits until what has been written outlasts a power cut; true where there is nothing to wait for.
  bool Flush();

  /// NAME, NAME.1, NAME.2 ...: number 0 is the newest.
  [[nodiscard]] static std::string PathOf(const std::string& szPath, int32_t lNumber);
  /// No log has more files.
  static constexpr int32_t MostFiles = 1000;

 private:
  bool Open();
  bool Rotate();
  bool WriteEnd(std::string_view szLine);
  [[nodiscard]] bool EndsInsideLine();

  Files& m_Files;
  std::string m_Path;
  RotationLimits m_Limits;
  std::unique_ptr<GrowingFile> m_File;
  uint64_t m_End = 0;  // of what counts as written
  uint64_t m_AmendedAt = 0;
  bool m_Amended = false;
  bool m_Dirty = false;
};

}  // namespace vex

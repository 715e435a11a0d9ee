#pragma once

#include "host/Files.h"

namespace vex {

/// Files of a Windows machine. The system's paths are the machine's, in its ANSI code page; libraries get
/// them in UTF-8.
class Win32Files : public Files {
 public:
  bool Read(const std::string& szPath, std::string& szContents, std::string* szReason) override;
  bool Write(const std::string& szPath, const std::string& szText, std::string* szReason) override;
  bool Publish(const std::string& szPath, const std::string& szText) override;
  /// A named mutex for the folder, which belongs to the calling thread.
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string& szPath, std::string* szReason) override;
  [[nodiscard]] std::unique_ptr<OpenFile> Open(const std::string& szPath) override;

  [[nodiscard]] bool Exists(const std::string& szPath) override;
  bool MakeFolder(const std::string& szPath) override;
  bool Remove(const std::string& szPath) override;

  [[nodiscard]] std::string HostPath(const std::string& szPath) override;
  /// Empty for a path with a character outside the code page.
  [[nodiscard]] std::string SystemPath(const std::string& szHostPath) override;
  /// Both slashes part names, and a drive letter or a leading slash make a path that is not relative.
  [[nodiscard]] std::string HostPathBeside(const std::string& szHostFile,
                                           const std::string& szHostPath) const override;
  [[nodiscard]] std::string ProgramFolder() override;
  [[nodiscard]] std::string ProgramSuffix() const override { return ".exe"; }
};

}  // namespace vex

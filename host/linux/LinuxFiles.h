#pragma once

#include <functional>

#include "host/Files.h"

namespace vex {

/// Files of a Linux machine under the system's Windows names. At the moment a file is opened `\` becomes `/`,
/// a drive letter the folder that the drive table has for it (Z: is the root unless set there), Windows-1252
/// becomes UTF-8, and a part of the path that does not exist as written is looked for without regard to
/// case. A path that exists as written costs nothing more. Nothing is remembered between calls, since a
/// user may rename files while the show runs.
class LinuxFiles : public Files {
 public:
  using DriveLookUp = std::function<std::string(char)>;

  /// What a capital drive letter stands for, in single-byte text; empty for a letter that is not set.
  void Drives(DriveLookUp lookUp) { m_Drives = std::move(lookUp); }

  bool Read(const std::string& szPath, std::string& szContents, std::string* szReason) override;
  bool Write(const std::string& szPath, const std::string& szText, std::string* szReason) override;
  bool Publish(const std::string& szPath, const std::string& szText) override;
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string& szPath, std::string* szReason) override;
  [[nodiscard]] std::unique_ptr<OpenFile> Open(const std::string& szPath) override;
  [[nodiscard]] std::unique_ptr<GrowingFile> Grow(const std::string& szPath) override;
  bool Rename(const std::string& szPath, const std::string& szNewPath) override;

  [[nodiscard]] bool Exists(const std::string& szPath) override;
  [[nodiscard]] std::vector<std::string> FilesIn(const std::string& szFolder) override;
  bool MakeFolder(const std::string& szPath) override;
  bool Remove(const std::string& szPath) override;

  /// A path that does not exist keeps its last parts as written.
  [[nodiscard]] std::string HostPath(const std::string& szPath) override;
  /// Empty for a path with a character outside the code page; below a drive of the table where one holds it,
  /// the one with the longest folder.
  [[nodiscard]] std::string SystemPath(const std::string& szHostPath) override;
  [[nodiscard]] std::string ProgramFolder() override;
  [[nodiscard]] std::string ProgramSuffix() const override { return ""; }

 private:
  [[nodiscard]] std::string Drive(char letter) const;
  [[nodiscard]] bool AsWritten(const std::string& szPath, std::string& szHostPath) const;
  template <class Call>
  int Try(const std::string& szPath, Call call) const;

  DriveLookUp m_Drives;
};

}  // namespace vex

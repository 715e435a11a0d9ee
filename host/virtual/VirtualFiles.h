#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "host/Files.h"

namespace vex {

/// A file system in memory; names compare without case, "/" is another "\". Over real files, where those are
/// given, it reads each of them once and remembers it (a missing one too), so that a run sees the same
/// bytes from beginning to end; nothing is ever written to them.
class VirtualFiles final : public vex::Files {
 public:
  bool Read(const std::string& szPath, std::string& szContents, std::string* szReason = nullptr) override;
  /// The folder must exist, as it must on any machine; Put makes it.
  bool Write(const std::string& szPath, const std::string& szText, std::string* szReason = nullptr) override;
  /// Always to be had: nobody else is in this memory.
  [[nodiscard]] std::unique_ptr<FileLock> Lock(const std::string&, std::string*) override {
    return std::make_unique<FileLock>();
  }
  [[nodiscard]] std::unique_ptr<OpenFile> Open(const std::string& szPath) override;
  [[nodiscard]] std::unique_ptr<GrowingFile> Grow(const std::string& szPath) override;
  bool Rename(const std::string& szPath, const std::string& szNewPath) override;
  [[nodiscard]] bool Exists(const std::string& szPath) override;
  /// Names come in lower case, as they compare.
  [[nodiscard]] std::vector<std::string> FilesIn(const std::string& szFolder) override;
  /// Makes the folders above it too; true when it is there afterwards.
  bool MakeFolder(const std::string& szPath) override;
  bool Remove(const std::string& szPath) override;
  [[nodiscard]] std::string HostPath(const std::string& szPath) override;
  [[nodiscard]] std::string SystemPath(const std::string& szHostPath) override;
  [[nodiscard]] std::string ProgramFolder() override { return m_ProgramFolder; }
  [[nodiscard]] std::string ProgramSuffix() const override { return m_ProgramSuffix; }

  /// A file with its folders, whatever stood there before.
  void Put(const std::string& szPath, const std::string& szContents);
  [[nodiscard]] bool FolderExists(const std::string& szPath);
  void ProgramFolder(const std::string& szFolder) { m_ProgramFolder = szFolder; }
  void ProgramSuffix(const std::string& szSuffix) { m_ProgramSuffix = szSuffix; }

  /// Files that are not here are looked for there; it outlives this one. Null for none.
  void FallThrough(vex::Files* files);

  /// Reading or opening the file fails with that reason until HealReads; the same for writing.
  void FailReads(const std::string& szPath, const std::string& szReason = "Permission denied");
  void HealReads(const std::string& szPath);
  void FailWrites(const std::string& szPath, const std::string& szReason = "Permission denied");
  void HealWrites(const std::string& szPath);
  /// How often the file has been asked for with Read.
  [[nodiscard]] int32_t Reads(const std::string& szPath);

 private:
  friend class VirtualGrowingFile;
  /// A file as it is known: its contents, or why there are none.
  struct Entry {
    std::shared_ptr<const std::string> Contents;
    std::string Reason;
  };

  [[nodiscard]] const std::string& KeyOf(const std::string& szPath);
  [[nodiscard]] const Entry& Fetch(const std::string& szPath, const std::string& szKey);
  void MakeFolders(const std::string& szKey);

  std::map<std::string, std::string> m_KeyOfPath;  // as asked for -> by which it is kept
  std::map<std::string, Entry> m_Entries;
  std::map<std::string, bool> m_ExistsBelow;  // what the real files answered
  std::set<std::string> m_Folders;
  std::map<std::string, std::string> m_FailReads;
  std::map<std::string, std::string> m_FailWrites;
  std::map<std::string, int32_t> m_Reads;
  std::string m_ProgramFolder = "C:\\VexMonitor";
  std::string m_ProgramSuffix;
  vex::Files* m_Below = nullptr;
};

}  // namespace vex

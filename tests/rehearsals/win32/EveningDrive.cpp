#include "tests/rehearsals/EveningDrive.h"

#include "host/win32/Win32Files.h"

namespace vex::test {
namespace {

/// Drive letters are the machine's own here: the folder only seems to be one.
class EveningDrive final : public Files {
 public:
  explicit EveningDrive(const std::filesystem::path& folder)
      : m_Folder(m_Files.SystemPath(folder.string())) {}

  bool Read(const std::string& szPath, std::string& szContents, std::string* szReason) override {
    return m_Files.Read(OnMachine(szPath), szContents, szReason);
  }
  bool Write(const std::string& szPath, const std::string& szText, std::string* szReason) override {
    return m_Files.Write(OnMachine(szPath), szText, szReason);
  }
  std::unique_ptr<FileLock> Lock(const std::string& szPath, std::string* szReason) override {
    return m_Files.Lock(OnMachine(szPath), szReason);
  }
  std::unique_ptr<OpenFile> Open(const std::string& szPath) override {
    return m_Files.Open(OnMachine(szPath));
  }
  bool Exists(const std::string& szPath) override { return m_Files.Exists(OnMachine(szPath)); }
  bool MakeFolder(const std::string& szPath) override { return m_Files.MakeFolder(OnMachine(szPath)); }
  bool Remove(const std::string& szPath) override { return m_Files.Remove(OnMachine(szPath)); }
  std::string HostPath(const std::string& szPath) override { return m_Files.HostPath(OnMachine(szPath)); }
  std::string SystemPath(const std::string& szHostPath) override {
    const std::string szPath = m_Files.SystemPath(szHostPath);
    return szPath.starts_with(m_Folder) ? "D:" + szPath.substr(m_Folder.size()) : szPath;
  }
  std::string ProgramFolder() override { return m_Files.ProgramFolder(); }
  std::string ProgramSuffix() const override { return m_Files.ProgramSuffix(); }

 private:
  [[nodiscard]] std::string OnMachine(const std::string& szPath) const {
    const bool boolOnDrive = szPath.starts_with("D:") || szPath.starts_with("d:");
    return boolOnDrive ? m_Folder + szPath.substr(2) : szPath;
  }

  Win32Files m_Files;
  std::string m_Folder;
};

}  // namespace

std::unique_ptr<Files> FilesWithDriveD(const std::filesystem::path& folder) {
  return std::make_unique<EveningDrive>(folder);
}

}  // namespace vex::test

#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include "host/linux/LinuxHost.h"

namespace vex::test {

/// A folder of this machine that goes with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string szPattern = (std::filesystem::temp_directory_path() / "vexXXXXXX").string();
    m_Path = mkdtemp(szPattern.data());
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::string& Path() const { return m_Path; }
  [[nodiscard]] std::string operator/(const std::string& szName) const { return m_Path + "/" + szName; }

 private:
  std::string m_Path;
};

inline void WriteHostFile(const std::string& szPath, const std::string& szText) {
  std::ofstream(szPath, std::ios::binary) << szText;
}

inline std::string ReadHostFile(const std::string& szPath) {
  std::ostringstream text;
  text << std::ifstream(szPath, std::ios::binary).rdbuf();
  return text.str();
}

inline int ModeOf(const std::string& szPath) {
  struct stat state {};
  return stat(szPath.c_str(), &state) == 0 ? static_cast<int>(state.st_mode & 07777) : -1;
}

/// Programs of one user that meet in a runtime folder of their own.
class LinuxMachine {
 public:
  [[nodiscard]] std::unique_ptr<LinuxHost> NewHost() const {
    return std::make_unique<LinuxHost>(RuntimeFolder(m_Folder / "run"), m_Folder / "settings.reg");
  }
  [[nodiscard]] const TemporaryFolder& Folder() const { return m_Folder; }
  [[nodiscard]] std::string RuntimePath() const { return m_Folder / "run"; }

 private:
  TemporaryFolder m_Folder;
};

/// Runs the loop until the condition holds; false when it does not within ten thousand ticks.
inline bool RunUntil(EventLoop& loop, const std::function<bool()>& condition) {
  int ticks = 0;
  bool boolHolds = condition();
  if (boolHolds) return true;
  const auto check = loop.NewTimer(TimerOrder::Component);
  check->Tick([&] {
    boolHolds = condition();
    if (boolHolds || ++ticks > 10000) loop.Quit();
  });
  check->Enabled(true);
  loop.Run();
  return boolHolds;
}

}  // namespace vex::test

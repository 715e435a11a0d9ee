#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "host/win32/Win32Host.h"
#include "host/win32/WindowNumber.h"

namespace vex::test {

/// A folder of this machine that goes with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    static int counter = 0;
    m_Path = std::filesystem::temp_directory_path() /
             ("vex" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++counter));
    std::filesystem::create_directories(m_Path);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// As the system writes paths, with its "\".
  [[nodiscard]] std::string Path() const { return m_Path.string() + "\\"; }

 private:
  std::filesystem::path m_Path;
};

/// Puts an empty key in the place of the current user's for as long as it lives: what a test writes there
/// touches nobody's settings.
class EmptyUserKey {
 public:
  EmptyUserKey() : m_Name("Software\\VexMonitorTests\\" + std::to_string(GetCurrentProcessId())) {
    Put(nullptr);
    RegDeleteTreeA(HKEY_CURRENT_USER, m_Name.c_str());
    RegCreateKeyExA(HKEY_CURRENT_USER, m_Name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_Key,
                    nullptr);
    Put(m_Key);
  }
  ~EmptyUserKey() {
    Put(nullptr);
    RegCloseKey(m_Key);
    RegDeleteTreeA(HKEY_CURRENT_USER, m_Name.c_str());
    RegDeleteKeyA(HKEY_CURRENT_USER, m_Name.c_str());
  }
  EmptyUserKey(const EmptyUserKey&) = delete;
  EmptyUserKey& operator=(const EmptyUserKey&) = delete;

 private:
  static void Put(HKEY key) { EXPECT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, key), ERROR_SUCCESS); }

  std::string m_Name;
  HKEY m_Key = nullptr;
};

/// Another process of this same program, in one of the parts that main() gives it. It is ended, if need be by
/// force, when this goes.
class OtherProgram {
 public:
  explicit OtherProgram(const std::string& szPart, const std::string& szArgument = "") {
    char file[4096] = {};
    GetModuleFileNameA(nullptr, file, sizeof file);
    std::string szCommand = "\"" + std::string(file) + "\" " + szPart + " " + szArgument;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    EXPECT_NE(CreateProcessA(nullptr, szCommand.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &started),
              0);
    CloseHandle(started.hThread);
    m_Process = Handle(started.hProcess);
  }
  ~OtherProgram() { End(); }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  void End() {
    TerminateProcess(m_Process.Get(), 1);
    WaitForSingleObject(m_Process.Get(), INFINITE);
  }

 private:
  Handle m_Process;
};

/// The command line that starts this program in one of its other parts.
inline std::string CommandForPart(const std::string& szRest) {
  char file[4096] = {};
  GetModuleFileNameA(nullptr, file, sizeof file);
  return "\"" + std::string(file) + "\" " + szRest;
}

/// Whether nobody is at the machine to press OK in its message boxes.
inline std::atomic<bool>& PersonIsAway() {
  static std::atomic<bool> away = false;
  return away;
}

/// Runs the loop until the condition holds; false when it does not within twenty thousand ticks.
inline bool RunUntil(EventLoop& loop, const std::function<bool()>& condition) {
  int ticks = 0;
  bool boolHolds = condition();
  if (boolHolds) return true;
  const auto check = loop.NewTimer(TimerOrder::Component);
  check->Tick([&] {
    boolHolds = condition();
    if (boolHolds || ++ticks > 20000) loop.Quit();
  });
  check->Enabled(true);
  loop.Run();
  return boolHolds;
}

}  // namespace vex::test

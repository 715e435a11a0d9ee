#pragma once

#include <cstdint>
#include <string>

namespace vex {

class Files;
class MessageBoxes;
class Processes;
class Registry;

/// A non-empty path that does not end in "\" gets one; an empty path stays empty.
[[nodiscard]] std::string EnsureTrailingBackslash(const std::string& szPath);

/// Where the suite is installed, where the user's data lie, and how the network link is set up: what the
/// shell must know before anything else runs. The readers never raise; missing values have their defaults.
///
/// Once installed, the suite's post-installation program must have run (version 5 or later) in the folder
/// from which this program runs, or the player does not start.
class Installation {
 public:
  /// All outlive the installation.
  Installation(Registry& registry, Files& files, Processes& processes, MessageBoxes& boxes);

  /// The installation folder, read at every call.
  [[nodiscard]] std::string AppPath();
  /// The folder of the schedule files, read until there is one.
  [[nodiscard]] const std::string& UserDataPath();
  /// The folder from which the running program was started.
  [[nodiscard]] std::string ProgramFolder();
  /// A program of the suite: beside the running one if it is there, else in the installation folder.
  [[nodiscard]] std::string ProgramFile(const std::string& szName);

  /// With boolCheckFolder the program's folder must be the installation folder, to the letter.
  [[nodiscard]] bool InstallationValid(bool boolCheckFolder);
  /// Runs the post-installation program once where the installation is not valid, and waits for it. False
  /// when that did not help, after a message box; false too on any error.
  [[nodiscard]] bool CheckInstallation();

  [[nodiscard]] int16_t LocalPort();
  [[nodiscard]] int16_t RemotePort();
  [[nodiscard]] std::string RemoteHost();
  [[nodiscard]] bool SupportsSpecial();
  /// The link is switched on at start-up.
  [[nodiscard]] bool On();

 private:
  void RunPostInstallation();
  [[nodiscard]] int16_t Port(const char* szName, int16_t defaultPort);

  Registry& m_Registry;
  Files& m_Files;
  Processes& m_Processes;
  MessageBoxes& m_Boxes;
  std::string m_UserDataPath;
};

}  // namespace vex

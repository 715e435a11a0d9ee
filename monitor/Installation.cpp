#include "monitor/Installation.h"

#include <exception>
#include <limits>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "host/Files.h"
#include "host/MessageBoxes.h"
#include "host/Processes.h"
#include "settings/LibFile.h"
#include "settings/LibRegistryVex.h"

namespace vex {

namespace {

constexpr int32_t OldestPostInstallation = 5;
constexpr char PostInstallationProgram[] = "VexPostInstall";
constexpr char LinkSubkey[] = "XLK";

/// A program of this machine as a command line. What is no plain name is quoted the machine's way: where
/// paths begin with "/" a shell takes the command, and between single quotes it takes everything as it is.
std::string CommandLineOf(const std::string& szHostPath) {
  const bool boolShell = szHostPath.starts_with('/');
  if (szHostPath.find_first_of(boolShell ? " \t\"'\\$`&|;<>()*?[]#~!{}" : " ") == std::string::npos) {
    return szHostPath;
  }
  if (!boolShell) return "\"" + szHostPath + "\"";
  std::string szQuoted = "'";
  for (const char character : szHostPath) szQuoted += character == '\'' ? "'\\''" : std::string(1, character);
  return szQuoted + "'";
}

}  // namespace

std::string EnsureTrailingBackslash(const std::string& szPath) {
  return szPath.empty() || AnsiEndsWith(szPath, '\\') ? szPath : szPath + "\\";
}

Installation::Installation(Registry& registry, Files& files, Processes& processes, MessageBoxes& boxes)
    : m_Registry(registry), m_Files(files), m_Processes(processes), m_Boxes(boxes) {}

std::string Installation::AppPath() {
  return EnsureTrailingBackslash(GetProductString(m_Registry, "AppPath", "", ""));
}

const std::string& Installation::UserDataPath() {
  if (m_UserDataPath.empty()) {
    m_UserDataPath = EnsureTrailingBackslash(GetProductString(m_Registry, "UserDataPath", "", ""));
  }
  return m_UserDataPath;
}

std::string Installation::ProgramFolder() {
  return EnsureTrailingBackslash(m_Files.ProgramFolder());
}

std::string Installation::ProgramFile(const std::string& szName) {
  const std::string szFile = szName + m_Files.ProgramSuffix();
  std::string szBeside = ProgramFolder() + szFile;
  return FileExists(m_Files, szBeside) ? szBeside : AppPath() + szFile;
}

bool Installation::InstallationValid(bool boolCheckFolder) {
  const bool boolRecord = GetProductLong(m_Registry, "PostInstallVer", "", 0) >= OldestPostInstallation &&
                          GetProductBool(m_Registry, "PostInstall", "", false);
  return boolRecord && (!boolCheckFolder || ProgramFolder() == AppPath());
}

bool Installation::CheckInstallation() {
  try {
    if (!InstallationValid(true)) RunPostInstallation();
    if (InstallationValid(true)) return true;
    m_Boxes.Show("Brillara is not correctly installed.", "Brillara");
  } catch (const std::exception&) {
    // A program that cannot even be started leaves the installation as invalid as it was.
  }
  return false;
}

void Installation::RunPostInstallation() {
  std::string szHostPath;
  if (!Utf8ToAnsi(m_Files.HostPath(ProgramFile(PostInstallationProgram)), szHostPath)) {
    throw PlatformError(ErrorFileNotFound);
  }
  const ProcessId process = m_Processes.Start(CommandLineOf(szHostPath), NormalFocus);
  m_Processes.WaitFor(process);
}

int16_t Installation::LocalPort() {
  return Port("LocalPort", 3737);
}

int16_t Installation::RemotePort() {
  return Port("RemotePort", 3738);
}

std::string Installation::RemoteHost() {
  return GetProductString(m_Registry, "RemoteHost", LinkSubkey, "127.0.0.1");
}

bool Installation::SupportsSpecial() {
  return GetProductBool(m_Registry, "SupportsSpecial", LinkSubkey, true);
}

bool Installation::On() {
  return GetProductBool(m_Registry, "On", LinkSubkey, false);
}

// The control takes 16-bit numbers; a port above 32767 is the number of the same bits.
int16_t Installation::Port(const char* szName, int16_t defaultPort) {
  const int32_t lPort = GetProductLong(m_Registry, szName, LinkSubkey, defaultPort);
  const bool boolFits =
      lPort >= std::numeric_limits<int16_t>::min() && lPort <= std::numeric_limits<uint16_t>::max();
  return boolFits ? static_cast<int16_t>(lPort) : defaultPort;
}

}  // namespace vex

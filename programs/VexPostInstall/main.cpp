#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "components/machine/MachineComponents.h"
#include "host/CodePage.h"
#include "host/Host.h"
#include "settings/LibRegistry.h"
#include "settings/LibRegistryVex.h"

// The post-installation program: notes in the settings where the programs lie and that this has been done,
// and sees to it that there is a folder for the user's schedules. Whatever else the settings hold stays as
// it is, and a second run finds nothing to change. Where the suite's lighting components are wanted and not
// installed, the open ones are noted in their place: the player itself never takes others than it was told.

namespace vex {
namespace {

constexpr int32_t RecordVersion = 5;

/// Writes values of the product key, each only where it says something else.
class ProductSettings {
 public:
  explicit ProductSettings(Registry& registry, const std::string& szSubkey = "")
      : m_Registry(registry),
        m_Subkey(szSubkey),
        m_Key(OpenKey(registry, RegistryRoot::CurrentUser, ProductKeyPath(szSubkey), KEY_WRITE_ACCESS)) {}
  ~ProductSettings() { m_Registry.CloseKey(m_Key); }
  ProductSettings(const ProductSettings&) = delete;
  ProductSettings& operator=(const ProductSettings&) = delete;

  void Text(const std::string& szName, const std::string& szText) {
    if (GetProductString(m_Registry, szName, m_Subkey, "") == szText) return;
    std::vector<uint8_t> data(szText.begin(), szText.end());
    data.push_back(0);
    Set(szName, RegistryKind::String, data);
  }

  void Long(const std::string& szName, int32_t lValue) {
    if (GetProductLong(m_Registry, szName, m_Subkey, ~lValue) == lValue) return;
    const auto value = static_cast<uint32_t>(lValue);
    std::vector<uint8_t> data;
    for (uint32_t shift = 0; shift < 32; shift += 8) data.push_back(static_cast<uint8_t>(value >> shift));
    Set(szName, RegistryKind::DWord, data);
  }

 private:
  void Set(const std::string& szName, RegistryKind kind, const std::vector<uint8_t>& data) {
    const int32_t lCode = m_Registry.SetValue(m_Key, szName, kind, data);
    if (lCode != RegistrySuccess) throw Error(lCode, "VexPostInstall", "cannot write the setting " + szName);
  }

  Registry& m_Registry;
  std::string m_Subkey;
  RegistryKey m_Key;
};

void ChooseLights(Registry& registry) {
  const MachineComponents& machine = ComponentsOfThisMachine();
  const std::string szWanted = GetProductString(registry, "Lights", "Components", machine.DefaultLights);
  if (machine.SuiteIsInstalled == nullptr || FoldCase(szWanted) != "suite") return;
  if (machine.SuiteIsInstalled(registry)) return;
  ProductSettings(registry, "Components").Text("Lights", "open");
  std::cout << "The suite's lighting components are not installed; the open ones are used: \"Lights\" in the "
               "subkey Components is now \"open\".\n";
}

void Install(Host& host) {
  Registry& registry = host.Registry();
  Files& files = host.Files();
  host.DriveTable(
      [&registry](char letter) { return GetProductString(registry, std::string(1, letter), "Drives", ""); });
  std::string szUserData = GetProductString(registry, "UserDataPath", "", "");
  if (szUserData.empty()) szUserData = host.UserDataFolder();
  if (!files.MakeFolder(szUserData)) {
    throw Error(ErrorFileNotFound, "VexPostInstall", "cannot make the user data folder " + szUserData);
  }
  ProductSettings settings(registry);
  settings.Text("UserDataPath", szUserData);
  settings.Text("AppPath", files.ProgramFolder() + "\\");
  settings.Long("PostInstall", 1);
  settings.Long("PostInstallVer", RecordVersion);
  ChooseLights(registry);
}

int TellUsage(const Host& host, const std::string& szArgument) {
  const bool boolHelp = szArgument == "--help";
  (boolHelp ? std::cout : std::cerr)
      << "usage: VexPostInstall\n"
         "Notes in the settings where VexMonitor is installed and makes the user data folder.\n"
      << host.Places().Settings << "\n";
  return boolHelp ? 0 : 2;
}

}  // namespace
}  // namespace vex

int main(int argc, char** argv) {
  try {
    const auto host = vex::NativeHost();
    const std::vector<std::string> arguments = host->Arguments(argc, argv);
    if (arguments.size() > 1) return vex::TellUsage(*host, arguments[1]);
    vex::Install(*host);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "VexPostInstall: " << vex::WordsToUtf8(error.what()) << "\n";
    return 1;
  }
}

#include <cstdlib>
#include <string_view>

#include "basic/Error.h"
#include "host/RegistryText.h"
#include "host/virtual/VirtualRegistry.h"
#include "settings/LibFile.h"
#include "settings/LibNetworks.h"
#include "settings/LibRegistryVex.h"
#include "settings/VideoPreferences.h"

namespace {

void Require(bool boolHolds) {
  if (!boolHolds) std::abort();
}

/// Every key, and the errors, must be the same after another value was set; only that value changes.
void SetAndReadBack(const vex::RegistryText& text, const std::string& szText) {
  const std::string szSubkey = "Software\\Brillara\\Fuzz";
  vex::RegistryText changed = text;
  try {
    changed.SetText(szSubkey, "Set by the fuzzer", szText);
  } catch (const vex::Error& error) {
    Require(error.Number == vex::ErrorInvalidCall);
    return;
  }
  const vex::RegistryText read(changed.Bytes());
  const vex::RegistryTextValue* value = read.Find(szSubkey, "SET BY THE FUZZER");
  Require(value != nullptr && value->Text == szText);
  for (const auto& [szPath, key] : text.Keys()) {
    for (const auto& [szName, old] : key.Values) {
      if (&old == text.Find(szSubkey, "Set by the fuzzer")) continue;
      const vex::RegistryTextValue* kept = read.Find(szPath, szName);
      Require(kept != nullptr && kept->Kind == old.Kind && kept->Text == old.Text &&
              kept->Number == old.Number);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view szBytes(reinterpret_cast<const char*>(data), size);
  const vex::RegistryText text(szBytes);
  for (const vex::RegistryTextError& error : text.Errors())
    Require(error.Line >= 1 && !error.Message.empty());
  SetAndReadBack(text, std::string(szBytes.substr(0, 40)));

  vex::VirtualRegistry registry;
  registry.Load(text);
  vex::Networks networks(registry);
  for (int i = 0; i < 256; ++i) {
    const int32_t lSpeed = networks.NetworkSpeed(static_cast<uint8_t>(i));
    Require(lSpeed >= 1 && lSpeed <= 3 && networks.NetworkPort(static_cast<uint8_t>(i)) <= 25);
  }
  Require(networks.CourserPort() <= 25 && networks.X10Port() <= 25);
  (void)vex::GetVideoPreferences(registry);
  (void)vex::GetProductString(registry, "AppPath", "", "");
  Require(vex::FullSequencePath(registry, "C:\\tree", true) == "C:\\tree");
  Require(registry.OpenKeys() == 0);
  return 0;
}

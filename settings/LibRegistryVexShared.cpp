#include "settings/LibRegistryVexShared.h"

#include "settings/LibRegistry.h"
#include "settings/LibRegistryVex.h"

namespace vex {

std::string SharedKeyPath(const std::string& szSubkey) {
  return ProductKeyPath(szSubkey.empty() ? "Shared" : "Shared\\" + szSubkey);
}

int32_t GetSharedLong(Registry& registry, const std::string& szName, const std::string& szSubkey,
                      int32_t lDefault) {
  return QueryLong(registry, RegistryRoot::CurrentUser, SharedKeyPath(szSubkey), szName, lDefault);
}

bool GetSharedBool(Registry& registry, const std::string& szName, const std::string& szSubkey,
                   bool boolDefault) {
  return QueryBool(registry, RegistryRoot::CurrentUser, SharedKeyPath(szSubkey), szName, boolDefault);
}

std::string GetSharedString(Registry& registry, const std::string& szName, const std::string& szSubkey,
                            const std::string& szDefault) {
  return QueryString(registry, RegistryRoot::CurrentUser, SharedKeyPath(szSubkey), szName, szDefault);
}

}  // namespace vex

#include "settings/LibRegistryVex.h"

#include "settings/LibRegistry.h"

namespace vex {

std::string ProductKeyPath(const std::string& szSubkey) {
  const std::string szProductKey = "Software\\Brillara";
  return szSubkey.empty() ? szProductKey : szProductKey + "\\" + szSubkey;
}

int32_t GetProductLong(Registry& registry, const std::string& szName, const std::string& szSubkey,
                       int32_t lDefault) {
  return QueryLong(registry, RegistryRoot::CurrentUser, ProductKeyPath(szSubkey), szName, lDefault);
}

bool GetProductBool(Registry& registry, const std::string& szName, const std::string& szSubkey,
                    bool boolDefault) {
  return QueryBool(registry, RegistryRoot::CurrentUser, ProductKeyPath(szSubkey), szName, boolDefault);
}

std::string GetProductString(Registry& registry, const std::string& szName, const std::string& szSubkey,
                             const std::string& szDefault) {
  return QueryString(registry, RegistryRoot::CurrentUser, ProductKeyPath(szSubkey), szName, szDefault);
}

}  // namespace vex

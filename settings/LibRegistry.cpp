#include "settings/LibRegistry.h"

#include <vector>

#include "basic/Error.h"

namespace vex {

namespace {

/// A key open for reading, closed whichever way the reader ends.
class ReadKey {
 public:
  ReadKey(Registry& registry, RegistryRoot root, const std::string& szSubkey)
      : m_Registry(registry), m_Key(OpenKey(registry, root, szSubkey, KEY_READ_ACCESS)) {}
  ~ReadKey() { m_Registry.CloseKey(m_Key); }
  ReadKey(const ReadKey&) = delete;
  ReadKey& operator=(const ReadKey&) = delete;

  /// The bytes of a value of that kind; raises what the readers turn into their default.
  [[nodiscard]] std::vector<uint8_t> Value(const std::string& szName, RegistryKind wanted) {
    RegistryKind kind = RegistryKind::None;
    uint32_t size = 0;
    if (const int32_t lCode = m_Registry.QueryValue(m_Key, szName, kind, nullptr, size))
      throw Error(lCode, "LibRegistry.QueryValue", "RegQueryValueEx failure (length)");
    if (kind != wanted) throw PlatformError(ErrorTypeMismatch);
    std::vector<uint8_t> data(size);
    if (const int32_t lCode = m_Registry.QueryValue(m_Key, szName, kind, &data, size))
      throw Error(lCode, "LibRegistry.QueryValue", "RegQueryValueEx failure");
    data.resize(size);
    return data;
  }

 private:
  Registry& m_Registry;
  RegistryKey m_Key;
};

}  // namespace

RegistryKey OpenKey(Registry& registry, RegistryRoot root, const std::string& szSubkey, uint32_t access) {
  RegistryKey key = 0;
  int32_t lCode = registry.OpenKey(root, szSubkey, access, key);
  if (lCode != RegistrySuccess && access == KEY_WRITE_ACCESS) {
    CreateKey(registry, root, szSubkey);
    lCode = registry.OpenKey(root, szSubkey, access, key);
  }
  if (lCode != RegistrySuccess) throw Error(lCode, "LibRegistry.OpenKey", "RegOpenKeyEx failure");
  return key;
}

void CreateKey(Registry& registry, RegistryRoot root, const std::string& szSubkey) {
  RegistryKey key = 0;
  if (const int32_t lCode = registry.CreateKey(root, szSubkey, key))
    throw Error(lCode, "LibRegistry.CreateKey", "RegCreateKeyEx failure");
  registry.CloseKey(key);
}

int32_t QueryLong(Registry& registry, RegistryRoot root, const std::string& szSubkey,
                  const std::string& szName, int32_t lDefault) {
  try {
    const auto data = ReadKey(registry, root, szSubkey).Value(szName, RegistryKind::DWord);
    if (data.size() != 4) return lDefault;
    return static_cast<int32_t>(data[0] | uint32_t{data[1]} << 8 | uint32_t{data[2]} << 16 |
                                uint32_t{data[3]} << 24);
  } catch (const std::exception&) {
    return lDefault;
  }
}

bool QueryBool(Registry& registry, RegistryRoot root, const std::string& szSubkey, const std::string& szName,
               bool boolDefault) {
  return QueryLong(registry, root, szSubkey, szName, boolDefault ? 1 : 0) != 0;
}

std::string QueryString(Registry& registry, RegistryRoot root, const std::string& szSubkey,
                        const std::string& szName, const std::string& szDefault) {
  try {
    const auto data = ReadKey(registry, root, szSubkey).Value(szName, RegistryKind::String);
    std::string szText(data.begin(), data.end());
    if (!szText.empty() && szText.back() == '\0') szText.pop_back();
    return szText;
  } catch (const std::exception&) {
    return szDefault;
  }
}

}  // namespace vex

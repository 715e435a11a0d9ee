#include "host/win32/RegistryExport.h"

#include <algorithm>
#include <vector>

#include "host/win32/SystemHeaders.h"

namespace vex {
namespace {

/// A key of the current user, open for reading as long as this lives.
class OpenedKey {
 public:
  explicit OpenedKey(const std::string& szSubkey) {
    if (RegOpenKeyExA(HKEY_CURRENT_USER, szSubkey.c_str(), 0, KEY_READ, &m_Key) != ERROR_SUCCESS)
      m_Key = nullptr;
  }
  ~OpenedKey() {
    if (m_Key != nullptr) RegCloseKey(m_Key);
  }
  OpenedKey(const OpenedKey&) = delete;
  OpenedKey& operator=(const OpenedKey&) = delete;

  [[nodiscard]] HKEY Get() const { return m_Key; }

 private:
  HKEY m_Key = nullptr;
};

/// The longest names and value that the key holds, in bytes of any code page.
struct Sizes {
  DWORD KeyName = 0;
  DWORD ValueName = 0;
  DWORD Value = 0;
};

Sizes SizesIn(HKEY key) {
  constexpr DWORD bytesPerCharacter = 4;
  Sizes sizes;
  RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, &sizes.KeyName, nullptr, nullptr,
                   &sizes.ValueName, &sizes.Value, nullptr, nullptr);
  sizes.KeyName = sizes.KeyName * bytesPerCharacter + 1;
  sizes.ValueName = sizes.ValueName * bytesPerCharacter + 1;
  sizes.Value = sizes.Value * bytesPerCharacter + 1;
  return sizes;
}

bool FitsALine(const std::string& szText) {
  return szText.find_first_of(std::string("\r\n\0", 3)) == std::string::npos;
}

void TakeText(const std::string& szSubkey, const std::string& szName, std::string szValue,
              RegistryText& text) {
  if (!szValue.empty() && szValue.back() == '\0') szValue.pop_back();
  if (FitsALine(szValue)) text.SetText(szSubkey, szName, szValue);
}

void TakeNumber(const std::string& szSubkey, const std::string& szName, const std::string& szValue,
                RegistryText& text) {
  if (szValue.size() != sizeof(uint32_t)) return;
  uint32_t number = 0;
  for (size_t at = sizeof number; at-- > 0;) number = number << 8 | static_cast<uint8_t>(szValue[at]);
  text.SetLong(szSubkey, szName, number);
}

/// A value without a name is that of the key itself, of which the system knows none.
void TakeValues(HKEY key, const std::string& szSubkey, RegistryText& text) {
  const Sizes sizes = SizesIn(key);
  std::string szNameRoom(sizes.ValueName, '\0');
  std::string szValueRoom(sizes.Value, '\0');
  for (DWORD index = 0;; ++index) {
    DWORD name = sizes.ValueName;
    DWORD value = sizes.Value;
    DWORD kind = 0;
    const LONG lCode = RegEnumValueA(key, index, szNameRoom.data(), &name, nullptr, &kind,
                                     reinterpret_cast<BYTE*>(szValueRoom.data()), &value);
    if (lCode != ERROR_SUCCESS && lCode != ERROR_MORE_DATA) return;
    const std::string szName(szNameRoom.data(), std::min<size_t>(name, szNameRoom.size()));
    const std::string szValue(szValueRoom.data(), std::min<size_t>(value, szValueRoom.size()));
    if (lCode != ERROR_SUCCESS || szName.empty() || !FitsALine(szName)) continue;
    if (kind == REG_SZ) TakeText(szSubkey, szName, szValue, text);
    if (kind == REG_DWORD) TakeNumber(szSubkey, szName, szValue, text);
  }
}

std::vector<std::string> KeysBelow(HKEY key) {
  const Sizes sizes = SizesIn(key);
  std::string szRoom(sizes.KeyName, '\0');
  std::vector<std::string> names;
  for (DWORD index = 0;; ++index) {
    DWORD name = sizes.KeyName;
    if (RegEnumKeyExA(key, index, szRoom.data(), &name, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      return names;
    names.emplace_back(szRoom.data(), name);
  }
}

}  // namespace

void ExportRegistryKey(const std::string& szSubkey, RegistryText& text) {
  const OpenedKey key(szSubkey);
  if (key.Get() == nullptr || !FitsALine(szSubkey)) return;
  text.AddKey(szSubkey);
  TakeValues(key.Get(), szSubkey, text);
  const std::string szBelow = szSubkey + "\\";
  for (const std::string& szName : KeysBelow(key.Get())) {
    std::string szKey = szBelow;
    ExportRegistryKey(szKey.append(szName), text);
  }
}

}  // namespace vex

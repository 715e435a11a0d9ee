#include "host/win32/Win32Registry.h"

#include "host/win32/SystemHeaders.h"

namespace vex {
namespace {

// The class text that the suite's programs give the keys they make.
constexpr char KeyClass[] = "0";

HKEY RootOf(RegistryRoot root) {
  // The machine's numbers of the roots are negative, and stay so when they grow to a pointer.
  return reinterpret_cast<HKEY>(static_cast<intptr_t>(static_cast<int32_t>(root)));
}

// Handles have 32 bits that count.
HKEY KeyOf(RegistryKey key) {
  return reinterpret_cast<HKEY>(static_cast<uintptr_t>(key));
}
RegistryKey NumberOf(HKEY key) {
  return static_cast<RegistryKey>(reinterpret_cast<uintptr_t>(key));
}

}  // namespace

int32_t Win32Registry::OpenKey(RegistryRoot root, const std::string& szSubkey, uint32_t access,
                               RegistryKey& key) {
  HKEY opened = nullptr;
  const LONG lCode = RegOpenKeyExA(RootOf(root), szSubkey.c_str(), 0, access, &opened);
  if (lCode == ERROR_SUCCESS) key = NumberOf(opened);
  return lCode;
}

int32_t Win32Registry::CreateKey(RegistryRoot root, const std::string& szSubkey, RegistryKey& key) {
  HKEY created = nullptr;
  std::string szClass = KeyClass;
  const LONG lCode =
      RegCreateKeyExA(RootOf(root), szSubkey.c_str(), 0, szClass.data(), REG_OPTION_NON_VOLATILE,
                      KEY_READ | KEY_WRITE, nullptr, &created, nullptr);
  if (lCode == ERROR_SUCCESS) key = NumberOf(created);
  return lCode;
}

int32_t Win32Registry::QueryValue(RegistryKey key, const std::string& szName, RegistryKind& kind,
                                  std::vector<uint8_t>* data, uint32_t& size) {
  if (key == 0) return RegistryInvalidHandle;
  DWORD type = 0;
  DWORD bytes = data == nullptr ? 0 : static_cast<DWORD>(data->size());
  const LONG lCode = RegQueryValueExA(KeyOf(key), szName.c_str(), nullptr, &type,
                                      data == nullptr ? nullptr : data->data(), &bytes);
  if (lCode == ERROR_SUCCESS || lCode == ERROR_MORE_DATA) {
    kind = static_cast<RegistryKind>(type);
    size = bytes;
  }
  // A buffer of no bytes at all is taken for a question about the size.
  return lCode == ERROR_SUCCESS && data != nullptr && data->size() < bytes ? RegistryMoreData : lCode;
}

int32_t Win32Registry::SetValue(RegistryKey key, const std::string& szName, RegistryKind kind,
                                const std::vector<uint8_t>& data) {
  if (key == 0) return RegistryInvalidHandle;
  return RegSetValueExA(KeyOf(key), szName.c_str(), 0, static_cast<DWORD>(kind), data.data(),
                        static_cast<DWORD>(data.size()));
}

void Win32Registry::CloseKey(RegistryKey key) {
  if (key != 0) RegCloseKey(KeyOf(key));
}

}  // namespace vex

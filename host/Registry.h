#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vex {

/// Root key, access rights, value kinds and result codes as the platform numbers them (winreg.h,
/// winerror.h), because the error numbers of the registry layer are these codes.
enum class RegistryRoot : uint32_t { CurrentUser = 0x80000001 };
constexpr uint32_t KEY_READ_ACCESS = 0x20019;
constexpr uint32_t KEY_WRITE_ACCESS = 0x20006;
enum class RegistryKind : uint32_t { None = 0, String = 1, Binary = 3, DWord = 4 };
constexpr int32_t RegistrySuccess = 0;
constexpr int32_t RegistryFileNotFound = 2;
constexpr int32_t RegistryAccessDenied = 5;
constexpr int32_t RegistryInvalidHandle = 6;
constexpr int32_t RegistryMoreData = 234;

using RegistryKey = uint32_t;  ///< 0 is no key

/// The store of settings, called the way the platform's registry is: every call returns a result code,
/// strings are single-byte text and their size counts the terminating zero. Key and value names compare
/// without case. Keys opened are closed by the caller.
class Registry {
 public:
  virtual ~Registry() = default;

  virtual int32_t OpenKey(RegistryRoot root, const std::string& szSubkey, uint32_t access,
                          RegistryKey& key) = 0;
  virtual int32_t CreateKey(RegistryRoot root, const std::string& szSubkey, RegistryKey& key) = 0;
  /// Asks a value's kind and size when data is null; else fills the front of data, whose size must suffice,
  /// or RegistryMoreData comes back. size becomes the value's size either way.
  virtual int32_t QueryValue(RegistryKey key, const std::string& szName, RegistryKind& kind,
                             std::vector<uint8_t>* data, uint32_t& size) = 0;
  virtual int32_t SetValue(RegistryKey key, const std::string& szName, RegistryKind kind,
                           const std::vector<uint8_t>& data) = 0;
  virtual void CloseKey(RegistryKey key) = 0;
};

}  // namespace vex

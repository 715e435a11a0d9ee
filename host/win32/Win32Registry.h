#pragma once

#include "host/Registry.h"

namespace vex {

/// The machine's registry by its single-byte calls; every call hands its code on.
class Win32Registry : public Registry {
 public:
  int32_t OpenKey(RegistryRoot root, const std::string& szSubkey, uint32_t access, RegistryKey& key) override;
  int32_t CreateKey(RegistryRoot root, const std::string& szSubkey, RegistryKey& key) override;
  int32_t QueryValue(RegistryKey key, const std::string& szName, RegistryKind& kind,
                     std::vector<uint8_t>* data, uint32_t& size) override;
  int32_t SetValue(RegistryKey key, const std::string& szName, RegistryKind kind,
                   const std::vector<uint8_t>& data) override;
  void CloseKey(RegistryKey key) override;
};

}  // namespace vex

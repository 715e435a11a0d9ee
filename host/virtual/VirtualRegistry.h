#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/Registry.h"

namespace vex {

class RegistryText;

/// A registry in memory, empty at first. A key comes with all the keys above it. Handles are given out anew
/// for every opening, so that one that was closed is an invalid handle ever after.
class VirtualRegistry final : public vex::Registry {
 public:
  int32_t OpenKey(RegistryRoot root, const std::string& szSubkey, uint32_t access, RegistryKey& key) override;
  int32_t CreateKey(RegistryRoot root, const std::string& szSubkey, RegistryKey& key) override;
  int32_t QueryValue(RegistryKey key, const std::string& szName, RegistryKind& kind,
                     std::vector<uint8_t>* data, uint32_t& size) override;
  int32_t SetValue(RegistryKey key, const std::string& szName, RegistryKind kind,
                   const std::vector<uint8_t>& data) override;
  void CloseKey(RegistryKey key) override;

  /// Takes over every key and value of a settings file.
  void Load(const RegistryText& text);
  /// Values straight below the current user, their keys made where missing.
  void SetLong(const std::string& szSubkey, const std::string& szName, uint32_t number);
  void SetText(const std::string& szSubkey, const std::string& szName, const std::string& szText);
  void SetBytes(const std::string& szSubkey, const std::string& szName, RegistryKind kind,
                std::vector<uint8_t> data);
  /// Nothing where the value is missing or of another kind.
  [[nodiscard]] std::optional<uint32_t> Long(const std::string& szSubkey, const std::string& szName) const;
  [[nodiscard]] std::optional<std::string> Text(const std::string& szSubkey, const std::string& szName) const;
  [[nodiscard]] bool HasKey(const std::string& szSubkey) const;
  void Remove(const std::string& szSubkey, const std::string& szName);
  /// With all keys below it.
  void RemoveKey(const std::string& szSubkey);

  /// Handles that are open now: a caller that closes what it opens leaves 0.
  [[nodiscard]] size_t OpenKeys() const { return m_Open.size(); }
  /// The call of that number from now on (1 is the next), of any of the four that return a code, returns
  /// this code and does nothing.
  void FailCall(int32_t lCall, int32_t lCode);

 private:
  struct Value {
    RegistryKind Kind = RegistryKind::None;
    std::vector<uint8_t> Data;
  };
  using Values = std::map<std::string, Value>;
  struct OpenedKey {
    std::string Path;
    bool Read = false;
    bool Write = false;
  };

  [[nodiscard]] int32_t Fault();
  RegistryKey NewHandle(std::string szPath, bool boolRead, bool boolWrite);
  Values& MakeKey(const std::string& szSubkey);
  [[nodiscard]] const Value* Find(const std::string& szSubkey, const std::string& szName) const;

  std::map<std::string, Values> m_Keys;  // by folded path
  std::map<RegistryKey, OpenedKey> m_Open;
  RegistryKey m_LastHandle = 0;
  int32_t m_FaultIn = 0;
  int32_t m_FaultCode = 0;
};

}  // namespace vex

#pragma once

#include <sys/stat.h>

#include <map>
#include <optional>
#include <string>

#include "host/Registry.h"
#include "host/RegistryText.h"

namespace vex {

/// The settings as a file in the registry editor's form. It is read again whenever a key is opened and the
/// file is another than the one read last, so that what somebody writes into it counts at once. A line that
/// cannot be read is told on standard error, once for each change of the file, and the rest holds. Changes
/// are written whole; a missing file has no settings and is made, with its folders, by the first change.
class LinuxRegistry : public Registry {
 public:
  explicit LinuxRegistry(std::string szHostPath) : m_Path(std::move(szHostPath)) {}
  /// VEX_SETTINGS, else vexmonitor/settings.reg below XDG_CONFIG_HOME or ~/.config.
  static std::string PathFromEnvironment();
  [[nodiscard]] const std::string& File() const { return m_Path; }

  int32_t OpenKey(RegistryRoot root, const std::string& szSubkey, uint32_t access, RegistryKey& key) override;
  int32_t CreateKey(RegistryRoot root, const std::string& szSubkey, RegistryKey& key) override;
  int32_t QueryValue(RegistryKey key, const std::string& szName, RegistryKind& kind,
                     std::vector<uint8_t>* data, uint32_t& size) override;
  /// Text and 32-bit numbers; the system's code when the file cannot be written, which then stays as it was.
  int32_t SetValue(RegistryKey key, const std::string& szName, RegistryKind kind,
                   const std::vector<uint8_t>& data) override;
  void CloseKey(RegistryKey key) override { m_Open.erase(key); }

 private:
  struct OpenedKey {
    std::string Subkey;
    uint32_t Access = 0;
  };
  /// What tells one state of the file from another.
  struct Identity {
    dev_t Device = 0;
    ino_t Inode = 0;
    off_t Size = 0;
    timespec Modified{};
    timespec Changed{};
    [[nodiscard]] bool Same(const Identity& other) const;
  };

  [[nodiscard]] std::optional<Identity> Look() const;
  void ReadIfChanged();
  int32_t Save(RegistryText changed);
  RegistryKey NewHandle(const std::string& szSubkey, uint32_t access);

  std::string m_Path;
  RegistryText m_Text;
  std::optional<Identity> m_Read;  ///< the state that m_Text holds; none for a missing file
  int m_ReadCode = 0;
  std::map<RegistryKey, OpenedKey> m_Open;
  RegistryKey m_LastHandle = 0;
};

}  // namespace vex

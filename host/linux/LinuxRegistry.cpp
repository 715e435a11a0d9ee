#include "host/linux/LinuxRegistry.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "host/linux/SystemError.h"
#include "host/linux/WholeFile.h"

namespace vex {
namespace {

// The rights inside the access masks (winnt.h, KEY_QUERY_VALUE and KEY_SET_VALUE).
constexpr uint32_t QueryRight = 1;
constexpr uint32_t SetRight = 2;
constexpr mode_t NewFileMode = 0600;
constexpr mode_t NewFolderMode = 0700;

std::string Variable(const char* szName) {
  const char* const szValue = std::getenv(szName);
  return szValue == nullptr ? "" : szValue;
}

std::string WithoutEndBackslashes(std::string szSubkey) {
  while (!szSubkey.empty() && szSubkey.back() == '\\') szSubkey.pop_back();
  return szSubkey;
}

void Tell(const std::string& szLine) {
  std::fputs((szLine + "\n").c_str(), stderr);
}

bool SameTime(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

std::vector<uint8_t> BytesOf(const RegistryTextValue& value) {
  std::vector<uint8_t> bytes;
  if (value.Kind == RegistryKind::DWord) {
    for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<uint8_t>(value.Number >> shift));
  } else {
    bytes.assign(value.Text.begin(), value.Text.end());
    bytes.push_back(0);
  }
  return bytes;
}

uint32_t NumberOf(const std::vector<uint8_t>& data) {
  uint32_t number = 0;
  for (size_t i = 0; i < 4; ++i) number |= static_cast<uint32_t>(data[i]) << (8 * i);
  return number;
}

std::string TextOf(const std::vector<uint8_t>& data) {
  return {data.begin(), data.end() - (!data.empty() && data.back() == 0 ? 1 : 0)};
}

void MakeFoldersFor(const std::string& szFile) {
  for (size_t slash = szFile.find('/', 1); slash != std::string::npos; slash = szFile.find('/', slash + 1))
    mkdir(szFile.substr(0, slash).c_str(), NewFolderMode);
}

int32_t ResultOf(int code) {
  return code == EACCES || code == EPERM || code == EROFS ? RegistryAccessDenied : code;
}

}  // namespace

std::string LinuxRegistry::PathFromEnvironment() {
  if (std::string szFile = Variable("VEX_SETTINGS"); !szFile.empty()) return szFile;
  std::string szFolder = Variable("XDG_CONFIG_HOME");
  if (szFolder.empty()) szFolder = Variable("HOME") + "/.config";
  return szFolder + "/vexmonitor/settings.reg";
}

bool LinuxRegistry::Identity::Same(const Identity& other) const {
  return Device == other.Device && Inode == other.Inode && Size == other.Size &&
         SameTime(Modified, other.Modified) && SameTime(Changed, other.Changed);
}

std::optional<LinuxRegistry::Identity> LinuxRegistry::Look() const {
  struct stat state {};
  if (stat(m_Path.c_str(), &state) != 0) return std::nullopt;
  return Identity{state.st_dev, state.st_ino, state.st_size, state.st_mtim, state.st_ctim};
}

void LinuxRegistry::ReadIfChanged() {
  const std::optional<Identity> now = Look();
  if (now.has_value() == m_Read.has_value() && (!now || now->Same(*m_Read))) return;
  std::string szBytes;
  m_ReadCode = now ? ReadWholeFile(m_Path, szBytes) : 0;
  m_Read = now;
  if (m_ReadCode != 0) Tell(m_Path + ": " + DescribeCode(m_ReadCode));
  m_Text = RegistryText(m_ReadCode == 0 ? szBytes : "");
  for (const RegistryTextError& error : m_Text.Errors())
    Tell(m_Path + ":" + std::to_string(error.Line) + ": " + error.Message);
}

int32_t LinuxRegistry::OpenKey(RegistryRoot, const std::string& szSubkey, uint32_t access, RegistryKey& key) {
  ReadIfChanged();
  const std::string szPath = WithoutEndBackslashes(szSubkey);
  if (!m_Text.HasKey(szPath)) return RegistryFileNotFound;
  key = NewHandle(szPath, access);
  return RegistrySuccess;
}

int32_t LinuxRegistry::CreateKey(RegistryRoot, const std::string& szSubkey, RegistryKey& key) {
  ReadIfChanged();
  const std::string szPath = WithoutEndBackslashes(szSubkey);
  if (!m_Text.HasKey(szPath)) {
    RegistryText changed = m_Text;
    try {
      changed.AddKey(szPath);
    } catch (const Error& error) {
      return error.Number;
    }
    if (const int32_t lResult = Save(std::move(changed)); lResult != RegistrySuccess) return lResult;
  }
  key = NewHandle(szPath, QueryRight | SetRight);
  return RegistrySuccess;
}

int32_t LinuxRegistry::QueryValue(RegistryKey key, const std::string& szName, RegistryKind& kind,
                                  std::vector<uint8_t>* data, uint32_t& size) {
  const auto open = m_Open.find(key);
  if (open == m_Open.end()) return RegistryInvalidHandle;
  if ((open->second.Access & QueryRight) == 0) return RegistryAccessDenied;
  const RegistryTextValue* const value = m_Text.Find(open->second.Subkey, szName);
  if (value == nullptr) return RegistryFileNotFound;
  const std::vector<uint8_t> bytes = BytesOf(*value);
  kind = value->Kind;
  size = static_cast<uint32_t>(bytes.size());
  if (data == nullptr) return RegistrySuccess;
  if (data->size() < bytes.size()) return RegistryMoreData;
  std::ranges::copy(bytes, data->begin());
  return RegistrySuccess;
}

int32_t LinuxRegistry::SetValue(RegistryKey key, const std::string& szName, RegistryKind kind,
                                const std::vector<uint8_t>& data) {
  const auto open = m_Open.find(key);
  if (open == m_Open.end()) return RegistryInvalidHandle;
  if ((open->second.Access & SetRight) == 0) return RegistryAccessDenied;
  ReadIfChanged();
  RegistryText changed = m_Text;
  try {
    if (kind == RegistryKind::DWord && data.size() == 4)
      changed.SetLong(open->second.Subkey, szName, NumberOf(data));
    else if (kind == RegistryKind::String)
      changed.SetText(open->second.Subkey, szName, TextOf(data));
    else
      return EINVAL;
  } catch (const Error& error) {
    return error.Number;
  }
  return Save(std::move(changed));
}

/// What could not be read is not written over: that would lose every setting in it.
int32_t LinuxRegistry::Save(RegistryText changed) {
  if (m_ReadCode != 0) return ResultOf(m_ReadCode);
  MakeFoldersFor(m_Path);
  const int code = WriteWholeFile(m_Path, changed.Bytes(), NewFileMode);
  if (code != 0) return ResultOf(code);
  m_Text = std::move(changed);
  m_Read = Look();
  return RegistrySuccess;
}

RegistryKey LinuxRegistry::NewHandle(const std::string& szSubkey, uint32_t access) {
  m_Open[++m_LastHandle] = {szSubkey, access};
  return m_LastHandle;
}

}  // namespace vex

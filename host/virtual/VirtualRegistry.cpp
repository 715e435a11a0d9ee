#include "host/virtual/VirtualRegistry.h"

#include <algorithm>
#include <utility>

#include "host/CodePage.h"
#include "host/RegistryText.h"

namespace vex {

namespace {

// The rights inside the access masks (winnt.h, KEY_QUERY_VALUE and KEY_SET_VALUE).
constexpr uint32_t QueryRight = 1;
constexpr uint32_t SetRight = 2;

std::string PathOf(const std::string& szSubkey) {
  std::string szPath = FoldCase(szSubkey);
  while (AnsiEndsWith(szPath, '\\')) szPath.pop_back();
  return szPath;
}

std::vector<uint8_t> LongBytes(uint32_t number) {
  return {static_cast<uint8_t>(number), static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number >> 16),
          static_cast<uint8_t>(number >> 24)};
}

std::vector<uint8_t> TextBytes(const std::string& szText) {
  std::vector<uint8_t> bytes(szText.begin(), szText.end());
  bytes.push_back(0);
  return bytes;
}

}  // namespace

int32_t VirtualRegistry::OpenKey(RegistryRoot, const std::string& szSubkey, uint32_t access,
                                 RegistryKey& key) {
  if (const int32_t lFault = Fault()) return lFault;
  if (!HasKey(szSubkey)) return RegistryFileNotFound;
  key = NewHandle(PathOf(szSubkey), (access & QueryRight) != 0, (access & SetRight) != 0);
  return RegistrySuccess;
}

int32_t VirtualRegistry::CreateKey(RegistryRoot, const std::string& szSubkey, RegistryKey& key) {
  if (const int32_t lFault = Fault()) return lFault;
  MakeKey(szSubkey);
  key = NewHandle(PathOf(szSubkey), true, true);
  return RegistrySuccess;
}

int32_t VirtualRegistry::QueryValue(RegistryKey key, const std::string& szName, RegistryKind& kind,
                                    std::vector<uint8_t>* data, uint32_t& size) {
  if (const int32_t lFault = Fault()) return lFault;
  const auto open = m_Open.find(key);
  if (open == m_Open.end()) return RegistryInvalidHandle;
  if (!open->second.Read) return RegistryAccessDenied;
  const Value* value = Find(open->second.Path, szName);
  if (value == nullptr) return RegistryFileNotFound;
  kind = value->Kind;
  size = static_cast<uint32_t>(value->Data.size());
  if (data == nullptr) return RegistrySuccess;
  if (data->size() < value->Data.size()) return RegistryMoreData;
  std::ranges::copy(value->Data, data->begin());
  return RegistrySuccess;
}

int32_t VirtualRegistry::SetValue(RegistryKey key, const std::string& szName, RegistryKind kind,
                                  const std::vector<uint8_t>& data) {
  if (const int32_t lFault = Fault()) return lFault;
  const auto open = m_Open.find(key);
  if (open == m_Open.end()) return RegistryInvalidHandle;
  if (!open->second.Write) return RegistryAccessDenied;
  SetBytes(open->second.Path, szName, kind, data);
  return RegistrySuccess;
}

void VirtualRegistry::CloseKey(RegistryKey key) {
  m_Open.erase(key);
}

void VirtualRegistry::Load(const RegistryText& text) {
  for (const auto& [szPath, key] : text.Keys()) {
    MakeKey(szPath);
    for (const auto& [szName, value] : key.Values) {
      if (value.Kind == RegistryKind::DWord)
        SetLong(szPath, szName, value.Number);
      else
        SetText(szPath, szName, value.Text);
    }
  }
}

void VirtualRegistry::SetLong(const std::string& szSubkey, const std::string& szName, uint32_t number) {
  SetBytes(szSubkey, szName, RegistryKind::DWord, LongBytes(number));
}

void VirtualRegistry::SetText(const std::string& szSubkey, const std::string& szName,
                              const std::string& szText) {
  SetBytes(szSubkey, szName, RegistryKind::String, TextBytes(szText));
}

void VirtualRegistry::SetBytes(const std::string& szSubkey, const std::string& szName, RegistryKind kind,
                               std::vector<uint8_t> data) {
  MakeKey(szSubkey)[FoldCase(szName)] = {kind, std::move(data)};
}

std::optional<uint32_t> VirtualRegistry::Long(const std::string& szSubkey, const std::string& szName) const {
  const Value* value = Find(szSubkey, szName);
  if (value == nullptr || value->Kind != RegistryKind::DWord || value->Data.size() != 4) return std::nullopt;
  return value->Data[0] | uint32_t{value->Data[1]} << 8 | uint32_t{value->Data[2]} << 16 |
         uint32_t{value->Data[3]} << 24;
}

std::optional<std::string> VirtualRegistry::Text(const std::string& szSubkey,
                                                 const std::string& szName) const {
  const Value* value = Find(szSubkey, szName);
  if (value == nullptr || value->Kind != RegistryKind::String) return std::nullopt;
  std::string szText(value->Data.begin(), value->Data.end());
  if (!szText.empty() && szText.back() == '\0') szText.pop_back();
  return szText;
}

bool VirtualRegistry::HasKey(const std::string& szSubkey) const {
  const std::string szPath = PathOf(szSubkey);
  return szPath.empty() || m_Keys.contains(szPath);
}

void VirtualRegistry::Remove(const std::string& szSubkey, const std::string& szName) {
  if (const auto key = m_Keys.find(PathOf(szSubkey)); key != m_Keys.end())
    key->second.erase(FoldCase(szName));
}

void VirtualRegistry::RemoveKey(const std::string& szSubkey) {
  const std::string szPath = PathOf(szSubkey);
  std::erase_if(m_Keys,
                [&](const auto& key) { return key.first == szPath || key.first.starts_with(szPath + "\\"); });
}

void VirtualRegistry::FailCall(int32_t lCall, int32_t lCode) {
  m_FaultIn = lCall;
  m_FaultCode = lCode;
}

int32_t VirtualRegistry::Fault() {
  if (m_FaultIn == 0 || --m_FaultIn != 0) return RegistrySuccess;
  return m_FaultCode;
}

RegistryKey VirtualRegistry::NewHandle(std::string szPath, bool boolRead, bool boolWrite) {
  m_Open[++m_LastHandle] = {std::move(szPath), boolRead, boolWrite};
  return m_LastHandle;
}

VirtualRegistry::Values& VirtualRegistry::MakeKey(const std::string& szSubkey) {
  const std::string szPath = PathOf(szSubkey);
  for (size_t at = FindInAnsi(szPath, "\\"); at != std::string::npos; at = FindInAnsi(szPath, "\\", at + 1))
    m_Keys[szPath.substr(0, at)];
  return m_Keys[szPath];
}

const VirtualRegistry::Value* VirtualRegistry::Find(const std::string& szSubkey,
                                                    const std::string& szName) const {
  const auto key = m_Keys.find(PathOf(szSubkey));
  if (key == m_Keys.end()) return nullptr;
  const auto value = key->second.find(FoldCase(szName));
  return value == key->second.end() ? nullptr : &value->second;
}

}  // namespace vex

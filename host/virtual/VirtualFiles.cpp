#include "host/virtual/VirtualFiles.h"

#include <algorithm>
#include <utility>

#include "host/CodePage.h"

namespace vex {

namespace {

constexpr const char* FileNotFound = "File not found";

class VirtualOpenFile final : public OpenFile {
 public:
  explicit VirtualOpenFile(std::shared_ptr<const std::string> contents) : m_Contents(std::move(contents)) {}

  [[nodiscard]] uint64_t Size() const override { return m_Contents->size(); }
  bool ReadAt(uint64_t offset, std::span<uint8_t> bytes) override {
    if (offset > m_Contents->size() || bytes.size() > m_Contents->size() - offset) return false;
    std::copy_n(m_Contents->begin() + static_cast<std::ptrdiff_t>(offset), bytes.size(), bytes.begin());
    return true;
  }

 private:
  std::shared_ptr<const std::string> m_Contents;  // as it was when opened, whatever is written later
};

std::string FolderOf(const std::string& szKey) {
  const size_t last = FindLastInAnsi(szKey, "\\");
  return last == std::string::npos ? "" : szKey.substr(0, last);
}

/// The current folder, a drive and the machine in front of a network path need not be made.
bool IsRoot(const std::string& szKey) {
  return szKey.empty() || szKey == "\\" || szKey.ends_with(':');
}

bool Fail(std::string* szReason, const std::string& szWhy) {
  if (szReason != nullptr) *szReason = szWhy;
  return false;
}

}  // namespace

/// Follows its file when that gets another name, as a file of a real machine does. Writing fails as
/// FailWrites of the path by which it was opened has it, and then half of the bytes stand there.
class VirtualGrowingFile final : public GrowingFile {
 public:
  VirtualGrowingFile(VirtualFiles& files, std::string szPath, std::shared_ptr<std::string> contents)
      : m_Files(files), m_Path(std::move(szPath)), m_Contents(std::move(contents)) {}

  [[nodiscard]] uint64_t Size() const override { return m_Contents->size(); }
  bool WriteAt(uint64_t offset, std::string_view bytes) override {
    if (offset > m_Contents->size()) return false;
    const bool boolFails = m_Files.m_FailWrites.contains(m_Files.KeyOf(m_Path));
    const std::string_view written = bytes.substr(0, boolFails ? bytes.size() / 2 : bytes.size());
    const auto place =
        static_cast<size_t>(offset);  // not behind the end, which the memory of this machine holds
    m_Contents->replace(place, std::min(written.size(), m_Contents->size() - place), written);
    return !boolFails;
  }
  bool Flush() override { return !m_Files.m_FailWrites.contains(m_Files.KeyOf(m_Path)); }

 private:
  VirtualFiles& m_Files;
  std::string m_Path;
  std::shared_ptr<std::string> m_Contents;
};

std::unique_ptr<GrowingFile> VirtualFiles::Grow(const std::string& szPath) {
  const std::string& szKey = KeyOf(szPath);
  const bool boolFolder = m_Folders.contains(szKey) || !FolderExists(FolderOf(szKey));
  if (boolFolder || m_FailWrites.contains(szKey)) return nullptr;
  Entry& entry = m_Entries[szKey];
  const auto contents = std::make_shared<std::string>(entry.Contents ? *entry.Contents : "");
  entry = {contents, ""};
  return std::make_unique<VirtualGrowingFile>(*this, szPath, contents);
}

bool VirtualFiles::Rename(const std::string& szPath, const std::string& szNewPath) {
  const std::string& szKey = KeyOf(szPath);
  const std::string& szNewKey = KeyOf(szNewPath);
  if (m_FailWrites.contains(szKey) || m_FailWrites.contains(szNewKey) || !Exists(szPath)) return false;
  const Entry entry = Fetch(szPath, szKey);
  m_Entries[szKey] = {nullptr, FileNotFound};
  m_Entries[szNewKey] = entry;
  return true;
}

bool VirtualFiles::Read(const std::string& szPath, std::string& szContents, std::string* szReason) {
  const std::string& szKey = KeyOf(szPath);
  ++m_Reads[szKey];
  if (const auto fault = m_FailReads.find(szKey); fault != m_FailReads.end())
    return Fail(szReason, fault->second);
  const Entry& entry = Fetch(szPath, szKey);
  if (!entry.Contents) return Fail(szReason, entry.Reason);
  szContents.assign(*entry.Contents);
  return true;
}

bool VirtualFiles::Write(const std::string& szPath, const std::string& szText, std::string* szReason) {
  const std::string& szKey = KeyOf(szPath);
  if (const auto fault = m_FailWrites.find(szKey); fault != m_FailWrites.end())
    return Fail(szReason, fault->second);
  if (m_Folders.contains(szKey)) return Fail(szReason, "Is a directory");
  if (m_Below == nullptr && !FolderExists(FolderOf(szKey))) return Fail(szReason, "Path not found");
  m_Entries[szKey] = {std::make_shared<const std::string>(szText), ""};
  return true;
}

std::unique_ptr<OpenFile> VirtualFiles::Open(const std::string& szPath) {
  const std::string& szKey = KeyOf(szPath);
  if (m_FailReads.contains(szKey)) return nullptr;
  const auto entry = m_Entries.find(szKey);
  if (entry == m_Entries.end()) return m_Below == nullptr ? nullptr : m_Below->Open(szPath);
  if (!entry->second.Contents) return nullptr;
  return std::make_unique<VirtualOpenFile>(entry->second.Contents);
}

bool VirtualFiles::Exists(const std::string& szPath) {
  const std::string& szKey = KeyOf(szPath);
  if (const auto entry = m_Entries.find(szKey); entry != m_Entries.end())
    return entry->second.Contents != nullptr;
  if (m_Below == nullptr) return false;
  const auto known = m_ExistsBelow.find(szKey);
  if (known != m_ExistsBelow.end()) return known->second;
  return m_ExistsBelow[szKey] = m_Below->Exists(szPath);
}

std::vector<std::string> VirtualFiles::FilesIn(const std::string& szFolder) {
  const std::string szKey = KeyOf(szFolder);
  std::vector<std::string> names;
  for (const auto& [szPath, entry] : m_Entries) {
    if (entry.Contents && FolderOf(szPath) == szKey) names.push_back(szPath.substr(szKey.size() + 1));
  }
  return names;
}

bool VirtualFiles::MakeFolder(const std::string& szPath) {
  const std::string& szKey = KeyOf(szPath);
  for (std::string szFolder = szKey; !IsRoot(szFolder); szFolder = FolderOf(szFolder)) {
    const auto entry = m_Entries.find(szFolder);
    if (entry != m_Entries.end() && entry->second.Contents) return false;
  }
  MakeFolders(szKey);
  return true;
}

bool VirtualFiles::Remove(const std::string& szPath) {
  const bool boolExisted = Exists(szPath);
  const std::string& szKey = KeyOf(szPath);
  if (!boolExisted || m_FailWrites.contains(szKey)) return false;
  m_Entries[szKey] = {nullptr, FileNotFound};
  return true;
}

std::string VirtualFiles::HostPath(const std::string& szPath) {
  return m_Below == nullptr ? AnsiToUtf8(szPath) : m_Below->HostPath(szPath);
}

std::string VirtualFiles::SystemPath(const std::string& szHostPath) {
  if (m_Below != nullptr) return m_Below->SystemPath(szHostPath);
  std::string szPath;
  (void)Utf8ToAnsi(szHostPath, szPath);
  return szPath;
}

void VirtualFiles::Put(const std::string& szPath, const std::string& szContents) {
  const std::string& szKey = KeyOf(szPath);
  MakeFolders(FolderOf(szKey));
  m_Entries[szKey] = {std::make_shared<const std::string>(szContents), ""};
}

bool VirtualFiles::FolderExists(const std::string& szPath) {
  const std::string& szKey = KeyOf(szPath);
  return IsRoot(szKey) || m_Folders.contains(szKey);
}

void VirtualFiles::FallThrough(vex::Files* files) {
  m_Below = files;
  m_KeyOfPath.clear();
}

void VirtualFiles::FailReads(const std::string& szPath, const std::string& szReason) {
  m_FailReads[KeyOf(szPath)] = szReason;
}

void VirtualFiles::HealReads(const std::string& szPath) {
  m_FailReads.erase(KeyOf(szPath));
}

void VirtualFiles::FailWrites(const std::string& szPath, const std::string& szReason) {
  m_FailWrites[KeyOf(szPath)] = szReason;
}

void VirtualFiles::HealWrites(const std::string& szPath) {
  m_FailWrites.erase(KeyOf(szPath));
}

int32_t VirtualFiles::Reads(const std::string& szPath) {
  const auto reads = m_Reads.find(KeyOf(szPath));
  return reads == m_Reads.end() ? 0 : reads->second;
}

const std::string& VirtualFiles::KeyOf(const std::string& szPath) {
  const auto known = m_KeyOfPath.find(szPath);
  if (known != m_KeyOfPath.end()) return known->second;
  // Below, several paths may lead to one file (drives, relative paths); the machine's own path is the same.
  std::string szKey = FoldCase(m_Below == nullptr ? szPath : m_Below->SystemPath(m_Below->HostPath(szPath)));
  std::ranges::replace(szKey, '/', '\\');
  while (szKey.size() > 1 && AnsiEndsWith(szKey, '\\')) szKey.pop_back();
  return m_KeyOfPath[szPath] = szKey;
}

const VirtualFiles::Entry& VirtualFiles::Fetch(const std::string& szPath, const std::string& szKey) {
  const auto known = m_Entries.find(szKey);
  if (known != m_Entries.end()) return known->second;
  Entry entry{nullptr, FileNotFound};
  std::string szContents;
  if (m_Below == nullptr) {
    static const Entry missing{nullptr, FileNotFound};
    return missing;
  }
  if (m_Below->Read(szPath, szContents, &entry.Reason))
    entry.Contents = std::make_shared<const std::string>(std::move(szContents));
  return m_Entries[szKey] = entry;
}

void VirtualFiles::MakeFolders(const std::string& szKey) {
  for (std::string szFolder = szKey; !IsRoot(szFolder); szFolder = FolderOf(szFolder))
    m_Folders.insert(szFolder);
}

}  // namespace vex

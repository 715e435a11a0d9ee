#include "host/win32/Win32Files.h"

#include <algorithm>
#include <array>

#include "host/CodePage.h"
#include "host/win32/Handle.h"
#include "host/win32/WholeFile.h"
#include "host/win32/WideText.h"

namespace vex {
namespace {

class Win32OpenFile : public OpenFile {
 public:
  Win32OpenFile(Handle file, uint64_t size) : m_File(std::move(file)), m_Size(size) {}

  [[nodiscard]] uint64_t Size() const override { return m_Size; }
  bool ReadAt(uint64_t offset, std::span<uint8_t> bytes) override {
    if (offset > m_Size || bytes.size() > m_Size - offset) return false;
    while (!bytes.empty()) {
      OVERLAPPED place{};
      place.Offset = static_cast<DWORD>(offset);
      place.OffsetHigh = static_cast<DWORD>(offset >> 32);
      DWORD count = 0;
      const auto wanted = static_cast<DWORD>(std::min<size_t>(bytes.size(), 1U << 30));
      if (ReadFile(m_File.Get(), bytes.data(), wanted, &count, &place) == 0 || count == 0) return false;
      bytes = bytes.subspan(count);
      offset += count;
    }
    return true;
  }

 private:
  Handle m_File;
  uint64_t m_Size;
};

class Win32FileLock : public FileLock {
 public:
  explicit Win32FileLock(Handle mutex) : m_Mutex(std::move(mutex)) {}
  ~Win32FileLock() override { ReleaseMutex(m_Mutex.Get()); }

 private:
  Handle m_Mutex;
};

std::string FullPath(const std::string& szPath) {
  std::array<char, 4096> full{};
  const DWORD length =
      GetFullPathNameA(szPath.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  return length < full.size() ? std::string(full.data(), length) : "";
}

bool IsFolder(const std::string& szPath) {
  const DWORD attributes = GetFileAttributesA(szPath.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool Succeeded(uint32_t code, std::string* szReason) {
  if (code == 0) return true;
  if (szReason != nullptr) *szReason = DescribeFileCode(code);
  return false;
}

/// The machine's calls end a text at its first zero; a path with one is no path.
bool IsPath(const std::string& szPath) {
  return !szPath.empty() && szPath.find('\0') == std::string::npos;
}

}  // namespace

bool Win32Files::Read(const std::string& szPath, std::string& szContents, std::string* szReason) {
  return Succeeded(IsPath(szPath) ? ReadWholeFile(szPath, szContents) : ERROR_FILE_NOT_FOUND, szReason);
}

bool Win32Files::Write(const std::string& szPath, const std::string& szText, std::string* szReason) {
  return Succeeded(IsPath(szPath) ? WriteWholeFile(szPath, szText, Flush::Yes) : ERROR_FILE_NOT_FOUND,
                   szReason);
}

bool Win32Files::Publish(const std::string& szPath, const std::string& szText) {
  return IsPath(szPath) && WriteWholeFile(szPath, szText, Flush::No) == 0;
}

std::unique_ptr<FileLock> Win32Files::Lock(const std::string& szPath, std::string* szReason) {
  std::string szFolder = IsPath(szPath) ? FullPath(szPath) : "";
  szFolder.erase(std::min(FindLastInAnsi(szFolder, "\\") + 1, szFolder.size()));
  if (!IsFolder(szFolder)) return Succeeded(ERROR_PATH_NOT_FOUND, szReason), nullptr;
  std::wstring szName = WideOfUtf16(Utf8ToUtf16(AnsiToUtf8(FoldCase(szFolder))));
  std::ranges::replace(szName, L'\\', L'/');  // which the name of a mutex may hold
  Handle mutex(CreateMutexW(nullptr, FALSE, (L"Local\\VexMonitor.Folder." + szName).c_str()));
  if (!mutex.Open()) return Succeeded(GetLastError(), szReason), nullptr;
  WaitForSingleObject(mutex.Get(), INFINITE);
  return std::make_unique<Win32FileLock>(std::move(mutex));
}

std::unique_ptr<OpenFile> Win32Files::Open(const std::string& szPath) {
  if (!IsPath(szPath)) return nullptr;
  Handle file(CreateFileA(szPath.c_str(), GENERIC_READ,
                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                          FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER size{};
  if (!file.Open() || GetFileSizeEx(file.Get(), &size) == 0) return nullptr;
  return std::make_unique<Win32OpenFile>(std::move(file), static_cast<uint64_t>(size.QuadPart));
}

bool Win32Files::Exists(const std::string& szPath) {
  if (!IsPath(szPath)) return false;
  const DWORD attributes = GetFileAttributesA(szPath.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool Win32Files::MakeFolder(const std::string& szPath) {
  if (!IsPath(szPath)) return false;
  std::string szFolder = szPath;
  while (AnsiEndsWith(szFolder, '\\')) szFolder.pop_back();
  for (size_t slash = FindInAnsi(szFolder, "\\"); slash != std::string::npos;
       slash = FindInAnsi(szFolder, "\\", slash + 1))
    CreateDirectoryA(szFolder.substr(0, slash).c_str(), nullptr);
  return CreateDirectoryA(szFolder.c_str(), nullptr) != 0 || IsFolder(szFolder + "\\");
}

bool Win32Files::Remove(const std::string& szPath) {
  return IsPath(szPath) && DeleteFileA(szPath.c_str()) != 0;
}

std::string Win32Files::HostPath(const std::string& szPath) {
  return AnsiToUtf8(szPath);
}

std::string Win32Files::SystemPath(const std::string& szHostPath) {
  std::string szPath;
  if (!Utf8ToAnsi(szHostPath, szPath)) return "";
  std::ranges::replace(szPath, '/', '\\');
  return szPath;
}

std::string Win32Files::HostPathBeside(const std::string& szHostFile, const std::string& szHostPath) const {
  const bool boolWhole = szHostPath.find_first_of("/\\") == 0 || szHostPath.find(':') == 1;
  return boolWhole ? szHostPath : szHostFile.substr(0, szHostFile.find_last_of("/\\:") + 1) + szHostPath;
}

std::string Win32Files::ProgramFolder() {
  std::array<char, 4096> file{};
  const DWORD length = GetModuleFileNameA(nullptr, file.data(), static_cast<DWORD>(file.size()));
  const std::string szFile(file.data(), length);
  return szFile.substr(0, FindLastInAnsi(szFile, "\\"));
}

}  // namespace vex

#include "host/linux/LinuxFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "host/CodePage.h"
#include "host/linux/Descriptor.h"
#include "host/linux/NameSearch.h"
#include "host/linux/SystemError.h"
#include "host/linux/WholeFile.h"

namespace vex {
namespace {

constexpr mode_t NewFileMode = 0666;
constexpr mode_t NewFolderMode = 0777;

class LinuxOpenFile : public OpenFile {
 public:
  LinuxOpenFile(Descriptor file, uint64_t size) : m_File(std::move(file)), m_Size(size) {}

  [[nodiscard]] uint64_t Size() const override { return m_Size; }
  bool ReadAt(uint64_t offset, std::span<uint8_t> bytes) override {
    if (offset > m_Size || bytes.size() > m_Size - offset) return false;
    while (!bytes.empty()) {
      const ssize_t count = pread(m_File.Get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      bytes = bytes.subspan(static_cast<size_t>(count));
      offset += static_cast<uint64_t>(count);
    }
    return true;
  }

 private:
  Descriptor m_File;
  uint64_t m_Size;
};

class LinuxGrowingFile : public GrowingFile {
 public:
  LinuxGrowingFile(Descriptor file, uint64_t size) : m_File(std::move(file)), m_Size(size) {}

  [[nodiscard]] uint64_t Size() const override { return m_Size; }
  bool WriteAt(uint64_t offset, std::string_view bytes) override {
    if (offset > m_Size) return false;
    while (!bytes.empty()) {
      const ssize_t count = pwrite(m_File.Get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      bytes.remove_prefix(static_cast<size_t>(count));
      offset += static_cast<uint64_t>(count);
      m_Size = std::max(m_Size, offset);
    }
    return true;
  }
  bool Flush() override { return fdatasync(m_File.Get()) == 0; }

 private:
  Descriptor m_File;
  uint64_t m_Size;
};

class LinuxFileLock : public FileLock {
 public:
  explicit LinuxFileLock(Descriptor folder) : m_Folder(std::move(folder)) {}

 private:
  Descriptor m_Folder;
};

bool IsLetter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

char Capital(char letter) {
  return static_cast<char>(letter & ~0x20);
}

std::string WithoutEndSlashes(std::string szPath) {
  while (!szPath.empty() && szPath.back() == '/') szPath.pop_back();
  return szPath;
}

bool Succeeded(int code, std::string* szReason) {
  if (code != 0 && szReason != nullptr)
    *szReason =
        code == ENOENT || code == ENOTDIR ? PlatformError(ErrorFileNotFound).Description : DescribeCode(code);
  return code == 0;
}

int MakeWithFoldersAbove(const std::string& szFolder) {
  for (size_t slash = szFolder.find('/', 1); slash != std::string::npos;
       slash = szFolder.find('/', slash + 1))
    mkdir(szFolder.substr(0, slash).c_str(), NewFolderMode);
  if (mkdir(szFolder.c_str(), NewFolderMode) == 0) return 0;
  const int code = errno;
  struct stat state {};
  return stat(szFolder.c_str(), &state) == 0 && S_ISDIR(state.st_mode) ? 0 : code;
}

/// "" where the folder itself, the rest after it where the path lies below the folder.
bool Below(const std::string& szPath, const std::string& szFolder, std::string& szRest) {
  if (!szPath.starts_with(szFolder)) return false;
  szRest = szPath.substr(szFolder.size());
  return szRest.empty() || szRest.front() == '/';
}

}  // namespace

/// The drive's folder without an ending slash, UTF-8: "" is the root. A letter that is not set is "?", which
/// no absolute path begins with.
std::string LinuxFiles::Drive(char letter) const {
  const std::string szFolder = m_Drives ? m_Drives(letter) : "";
  if (szFolder.empty()) return letter == 'Z' ? "" : "?";
  std::string szHost = AnsiToUtf8(szFolder);
  std::ranges::replace(szHost, '\\', '/');
  return WithoutEndSlashes(szHost);
}

/// The path in this machine's words, whatever exists; false where it can be none.
bool LinuxFiles::AsWritten(const std::string& szPath, std::string& szHostPath) const {
  if (szPath.empty() || szPath.find('\0') != std::string::npos) return false;
  szHostPath = AnsiToUtf8(szPath);
  std::ranges::replace(szHostPath, '\\', '/');
  if (szPath.size() < 2 || szPath[1] != ':' || !IsLetter(szPath[0])) return true;
  const std::string szFolder = Drive(Capital(szPath[0]));
  if (szFolder == "?") return false;
  const bool boolSlash = szHostPath.size() > 2 && szHostPath[2] == '/';
  szHostPath = szFolder + (boolSlash ? "" : "/") + szHostPath.substr(2);
  return true;
}

/// Calls with the path as written and, where that does not exist, with the one found without regard to case.
template <class Call>
int LinuxFiles::Try(const std::string& szPath, Call call) const {
  std::string szHostPath;
  if (!AsWritten(szPath, szHostPath)) return ENOENT;
  const int code = call(szHostPath);
  if (code != ENOENT) return code;
  const std::string szFound = FindWithoutCase(szHostPath);
  return szFound == szHostPath ? code : call(szFound);
}

bool LinuxFiles::Read(const std::string& szPath, std::string& szContents, std::string* szReason) {
  return Succeeded(Try(szPath, [&](const std::string& szHost) { return ReadWholeFile(szHost, szContents); }),
                   szReason);
}

bool LinuxFiles::Write(const std::string& szPath, const std::string& szText, std::string* szReason) {
  // Not by trying: writing under the name as written would make a second file beside "Eve.SHW".
  std::string szHostPath;
  if (!AsWritten(szPath, szHostPath)) return Succeeded(ENOENT, szReason);
  return Succeeded(WriteWholeFile(FindWithoutCase(szHostPath), szText, NewFileMode), szReason);
}

bool LinuxFiles::Publish(const std::string& szPath, const std::string& szText) {
  std::string szHostPath;
  if (!AsWritten(szPath, szHostPath)) return false;
  return WriteWholeFile(FindWithoutCase(szHostPath), szText, NewFileMode, Flush::No) == 0;
}

std::unique_ptr<FileLock> LinuxFiles::Lock(const std::string& szPath, std::string* szReason) {
  std::string szHostPath;
  Descriptor folder;
  int code = ENOENT;
  if (AsWritten(szPath, szHostPath)) code = LockFolderOf(FindWithoutCase(szHostPath), folder);
  if (!Succeeded(code, szReason)) return nullptr;
  return std::make_unique<LinuxFileLock>(std::move(folder));
}

std::unique_ptr<OpenFile> LinuxFiles::Open(const std::string& szPath) {
  Descriptor file;
  struct stat state {};
  const int code = Try(szPath, [&](const std::string& szHost) {
    file = Descriptor(open(szHost.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file.Open() && fstat(file.Get(), &state) == 0 ? 0 : errno;
  });
  if (code != 0 || !S_ISREG(state.st_mode)) return nullptr;
  return std::make_unique<LinuxOpenFile>(std::move(file), static_cast<uint64_t>(state.st_size));
}

std::unique_ptr<GrowingFile> LinuxFiles::Grow(const std::string& szPath) {
  std::string szHostPath;
  if (!AsWritten(szPath, szHostPath)) return nullptr;
  Descriptor file(open(FindWithoutCase(szHostPath).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, NewFileMode));
  struct stat state {};
  if (!file.Open() || fstat(file.Get(), &state) != 0 || !S_ISREG(state.st_mode)) return nullptr;
  if (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) return nullptr;
  return std::make_unique<LinuxGrowingFile>(std::move(file), static_cast<uint64_t>(state.st_size));
}

bool LinuxFiles::Rename(const std::string& szPath, const std::string& szNewPath) {
  std::string szNewHostPath;
  if (!AsWritten(szNewPath, szNewHostPath)) return false;
  return Try(szPath, [&](const std::string& szHost) {
           return rename(szHost.c_str(), szNewHostPath.c_str()) == 0 ? 0 : errno;
         }) == 0;
}

bool LinuxFiles::Exists(const std::string& szPath) {
  struct stat state {};
  const int code =
      Try(szPath, [&](const std::string& szHost) { return stat(szHost.c_str(), &state) == 0 ? 0 : errno; });
  return code == 0 && !S_ISDIR(state.st_mode);
}

std::vector<std::string> LinuxFiles::FilesIn(const std::string& szFolder) {
  std::vector<std::string> names;
  std::string szHostPath;
  if (!AsWritten(szFolder, szHostPath)) return names;
  std::error_code problem;
  std::filesystem::directory_iterator entry(FindWithoutCase(WithoutEndSlashes(szHostPath)), problem);
  for (; !problem && entry != std::filesystem::directory_iterator(); entry.increment(problem)) {
    std::string szName;
    std::error_code unknown;
    if (entry->is_regular_file(unknown) && Utf8ToAnsi(entry->path().filename().string(), szName))
      names.push_back(szName);
  }
  std::ranges::sort(names);
  return names;
}

bool LinuxFiles::MakeFolder(const std::string& szPath) {
  std::string szHostPath;
  if (!AsWritten(szPath, szHostPath)) return false;
  const std::string szFolder = WithoutEndSlashes(FindWithoutCase(szHostPath));
  return MakeWithFoldersAbove(szFolder.empty() ? "/" : szFolder) == 0;
}

bool LinuxFiles::Remove(const std::string& szPath) {
  return Try(szPath, [](const std::string& szHost) { return unlink(szHost.c_str()) == 0 ? 0 : errno; }) == 0;
}

std::string LinuxFiles::HostPath(const std::string& szPath) {
  std::string szHostPath;
  if (AsWritten(szPath, szHostPath)) return FindWithoutCase(szHostPath);
  return szHostPath;
}

std::string LinuxFiles::SystemPath(const std::string& szHostPath) {
  std::string szBest;
  std::string szBestRest = szHostPath;
  size_t longest = 0;
  const bool boolAbsolute = szHostPath.starts_with('/') && !szHostPath.starts_with("//");
  for (char letter = 'A'; boolAbsolute && letter <= 'Z'; ++letter) {
    const std::string szFolder = Drive(letter);
    std::string szRest;
    if (!Below(szHostPath, szFolder, szRest) || (!szBest.empty() && szFolder.size() <= longest)) continue;
    szBest = std::string{letter, ':'};
    szBestRest = szRest;
    longest = szFolder.size();
  }
  std::string szPath;
  if (!Utf8ToAnsi(szBest + szBestRest, szPath)) return "";
  std::ranges::replace(szPath, '/', '\\');
  return szPath;
}

std::string LinuxFiles::ProgramFolder() {
  std::array<char, PATH_MAX> link{};
  const ssize_t size = readlink("/proc/self/exe", link.data(), link.size());
  if (size <= 0) return "";
  std::string szHostFolder(link.data(), static_cast<size_t>(size));
  szHostFolder.erase(szHostFolder.rfind('/'));
  std::string szFolder = SystemPath(szHostFolder + "/");
  if (szFolder.empty())
    std::fputs(("The folder " + szHostFolder + " has a character outside Windows-1252\n").c_str(), stderr);
  while (!szFolder.empty() && szFolder.back() == '\\') szFolder.pop_back();
  return szFolder;
}

}  // namespace vex

#include "host/linux/WholeFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <utility>

namespace vex {
namespace {

constexpr mode_t PermissionBits = 07777;
constexpr size_t MostOfUnsized = 64u << 20;

/// Reads until the end of the file or until the buffer is full; -1 on failure.
ssize_t ReadInto(int fd, std::string& szBuffer, size_t from) {
  while (from < szBuffer.size()) {
    const ssize_t count = read(fd, szBuffer.data() + from, szBuffer.size() - from);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return -1;
    if (count == 0) break;
    from += static_cast<size_t>(count);
  }
  return static_cast<ssize_t>(from);
}

/// The buffer has one byte more than the file is said to have, so that one read also finds the end. Memory
/// that the text already has is not filled again.
int ReadSized(int fd, size_t size, std::string& szContents) {
  const size_t most = std::max(2 * size, MostOfUnsized);
  size_t from = 0;
  while (true) {
    szContents.resize(size + 1);
    const ssize_t count = ReadInto(fd, szContents, from);
    if (count < 0) return errno;
    from = static_cast<size_t>(count);
    if (from <= size) break;
    if (from > most) return EFBIG;
    size = from + 65536;
  }
  szContents.resize(from);
  return 0;
}

int WriteAll(int fd, std::string_view szText) {
  while (!szText.empty()) {
    const ssize_t count = write(fd, szText.data(), szText.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    szText.remove_prefix(static_cast<size_t>(count));
  }
  return 0;
}

std::string FolderOf(const std::string& szPath) {
  const size_t slash = szPath.rfind('/');
  if (slash == std::string::npos) return "./";
  return szPath.substr(0, slash + 1);
}

/// Where a link leads, also where nothing is there yet; the path itself where it is no link, or leads in a
/// circle.
std::string BehindLink(const std::string& szPath) {
  constexpr int mostLinks = 40;
  std::string szTarget = szPath;
  for (int links = 0; links < mostLinks; ++links) {
    std::array<char, PATH_MAX> link{};
    const ssize_t size = readlink(szTarget.c_str(), link.data(), link.size());
    if (size <= 0) return szTarget;
    const std::string_view szNext(link.data(), static_cast<size_t>(size));
    szTarget = szNext.starts_with('/') ? std::string(szNext) : FolderOf(szTarget).append(szNext);
  }
  return szPath;
}

/// A file beside szPath that did not exist before; its name tells what it was if it is ever left over.
Descriptor NewFileBeside(const std::string& szPath, mode_t mode, std::string& szNew) {
  static unsigned counter = 0;
  const size_t name = szPath.rfind('/') == std::string::npos ? 0 : szPath.rfind('/') + 1;
  // Cut short of a file system's longest name.
  const std::string szStem =
      szPath.substr(0, name) + "." + szPath.substr(name, 200) + ".new-" + std::to_string(getpid()) + "-";
  while (true) {
    szNew = szStem + std::to_string(++counter);
    Descriptor file(open(szNew.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (file.Open() || errno != EEXIST) return file;
  }
}

int KeepOwnerAndPermissions(int fd, const struct stat& old) {
  struct stat now {};
  if (fstat(fd, &now) != 0) return errno;
  // Another user's file can be given back only by root; its permissions hold all the same.
  if (now.st_uid != old.st_uid || now.st_gid != old.st_gid)
    if (fchown(fd, old.st_uid, old.st_gid) != 0 && errno != EPERM) return errno;
  return fchmod(fd, old.st_mode & PermissionBits) == 0 ? 0 : errno;
}

void FlushFolder(const std::string& szFolder) {
  const Descriptor folder(open(szFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some file systems cannot; the rename stands nevertheless.
  if (folder.Open()) fsync(folder.Get());
}

int Replace(const std::string& szPath, std::string_view szText, mode_t mode, Flush flush,
            const struct stat* old) {
  std::string szNew;
  // What was private stays so while it is written.
  Descriptor file = NewFileBeside(szPath, old == nullptr ? mode : 0600, szNew);
  if (!file.Open()) return errno;
  int code = WriteAll(file.Get(), szText);
  if (code == 0 && old != nullptr) code = KeepOwnerAndPermissions(file.Get(), *old);
  if (code == 0 && flush == Flush::Yes && fsync(file.Get()) != 0) code = errno;
  if (code == 0 && rename(szNew.c_str(), szPath.c_str()) != 0) code = errno;
  if (code != 0)
    unlink(szNew.c_str());
  else if (flush == Flush::Yes)
    FlushFolder(FolderOf(szPath));
  return code;
}

}  // namespace

int ReadWholeFile(const std::string& szHostPath, std::string& szContents) {
  // Opening a pipe that nobody writes to would wait.
  const Descriptor file(open(szHostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file.Open()) return errno;
  struct stat state {};
  if (fstat(file.Get(), &state) != 0) return errno;
  if (S_ISDIR(state.st_mode)) return EISDIR;
  if (!S_ISREG(state.st_mode)) fcntl(file.Get(), F_SETFL, fcntl(file.Get(), F_GETFL) & ~O_NONBLOCK);
  return ReadSized(file.Get(), static_cast<size_t>(state.st_size), szContents);
}

int WriteWholeFile(const std::string& szHostPath, std::string_view szText, mode_t mode, Flush flush) {
  struct stat old {};
  const bool boolExists = stat(szHostPath.c_str(), &old) == 0;
  if (boolExists && S_ISDIR(old.st_mode)) return EISDIR;
  if (boolExists && !S_ISREG(old.st_mode)) {
    const Descriptor device(open(szHostPath.c_str(), O_WRONLY | O_CLOEXEC));
    return device.Open() ? WriteAll(device.Get(), szText) : errno;
  }
  return Replace(BehindLink(szHostPath), szText, mode, flush, boolExists ? &old : nullptr);
}

int LockFolderOf(const std::string& szHostPath, Descriptor& lock) {
  const std::string szFolder = FolderOf(BehindLink(szHostPath));
  Descriptor folder(open(szFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder.Open()) return errno;
  while (flock(folder.Get(), LOCK_EX) != 0) {
    if (errno != EINTR) return errno;
  }
  lock = std::move(folder);
  return 0;
}

}  // namespace vex

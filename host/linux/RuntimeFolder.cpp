#include "host/linux/RuntimeFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>

#include "host/linux/Descriptor.h"
#include "host/linux/NearestFolder.h"
#include "host/linux/SystemError.h"

namespace vex {
namespace {

constexpr char Source[] = "RuntimeFolder.Prepare";
constexpr mode_t OwnerOnly = 0700;
constexpr mode_t OthersBits = 0077;
// A slash and ten digits follow the folder, and a zero byte ends the name.
constexpr size_t LongestFolder = sizeof(sockaddr_un::sun_path) - 12;

[[noreturn]] void Refuse(int code, const std::string& szFolder, const std::string& szWhy) {
  throw Error(code, Source, "The folder " + szFolder + " " + szWhy);
}

std::string TooLong() {
  return "is too long for a socket's name (at most " + std::to_string(LongestFolder) + " bytes)";
}

void MakeWithParents(const std::string& szFolder) {
  for (size_t slash = szFolder.find('/', 1); slash != std::string::npos;
       slash = szFolder.find('/', slash + 1))
    mkdir(szFolder.substr(0, slash).c_str(), OwnerOnly);
  mkdir(szFolder.c_str(), OwnerOnly);
}

/// True for "/tmp", "/", "/run" and the like: closing them would lock the whole machine out.
bool SharedByTheMachine(int folder, const struct stat& state) {
  struct stat above {};
  if (fstatat(folder, "..", &above, 0) != 0) return true;
  const bool boolMountPoint = above.st_dev != state.st_dev || above.st_ino == state.st_ino;
  return boolMountPoint || (state.st_mode & S_ISVTX) != 0;
}

std::string Variable(const char* szName) {
  const char* const szValue = std::getenv(szName);
  return szValue == nullptr ? "" : szValue;
}

}  // namespace

RuntimeFolder RuntimeFolder::FromEnvironment() {
  std::string szFolder = Variable("VEX_RUNTIME_DIR");
  if (szFolder.empty()) {
    const std::string szBase = Variable("XDG_RUNTIME_DIR");
    szFolder = szBase.empty() ? "/tmp/vexmonitor-" + std::to_string(getuid()) : szBase + "/vexmonitor";
  }
  while (szFolder.size() > 1 && szFolder.back() == '/') szFolder.pop_back();
  return RuntimeFolder(szFolder);
}

std::string RuntimeFolder::Trouble() const {
  if (m_Path.size() > LongestFolder) return TooLong();
  const Descriptor folder(open(m_Path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder.Open()) {
    if (errno != ENOENT) return "cannot be used: " + DescribeCode(errno);
    const std::string szAbove = NearestFolder(m_Path);
    return access(szAbove.c_str(), W_OK | X_OK) == 0 ? "" : "cannot be made: no right to write in " + szAbove;
  }
  struct stat state {};
  if (fstat(folder.Get(), &state) != 0) return DescribeCode(errno);
  if (state.st_uid != geteuid()) return "belongs to another user";
  const bool boolOpen = (state.st_mode & OthersBits) != 0 && SharedByTheMachine(folder.Get(), state);
  return boolOpen ? "is open to other users" : "";
}

void RuntimeFolder::Prepare() const {
  if (m_Path.size() > LongestFolder) Refuse(ENAMETOOLONG, m_Path, TooLong());
  MakeWithParents(m_Path);
  const Descriptor folder(open(m_Path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder.Open()) {
    const int code = errno;
    Refuse(code, m_Path, "cannot be used: " + DescribeCode(code));
  }
  struct stat state {};
  if (fstat(folder.Get(), &state) != 0) throw SystemError(Source, m_Path);
  if (state.st_uid != geteuid()) Refuse(EACCES, m_Path, "belongs to another user");
  if ((state.st_mode & OthersBits) == 0) return;
  if (SharedByTheMachine(folder.Get(), state)) Refuse(EACCES, m_Path, "is open to other users");
  if (fchmod(folder.Get(), OwnerOnly) != 0) throw SystemError(Source, m_Path);
}

}  // namespace vex

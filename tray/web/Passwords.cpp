#include "tray/web/Passwords.h"

#include <httplib.h>
#include <sodium.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <sstream>

#include "basic/Error.h"

namespace vex {
namespace {

constexpr const char* Source = "Passwords";

void PrepareLibrary() {
  if (sodium_init() < 0) throw Error(1, Source, "The cryptographic library does not start");
}

/// A descriptor that is closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int number) : m_Number(number) {}
  ~Descriptor() {
    if (m_Number >= 0) ::close(m_Number);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int Number() const { return m_Number; }

 private:
  int m_Number;
};

/// Ours, of mode 0600 and no other: a file that others read is no secret, one in a group's hands is none
/// either, and one of another user's holds his passwords.
void RequirePrivate(const struct stat& status, const std::string& szFile) {
  constexpr unsigned allModes = 07777;
  constexpr unsigned ownersOnly = 0600;
  if (!S_ISREG(status.st_mode)) throw Error(1, Source, "The password file " + szFile + " is no file");
  if (status.st_uid != ::geteuid()) {
    throw Error(
        1, Source,
        "The password file " + szFile + " belongs to another user; make one of your own, --help tells how");
  }
  if ((status.st_mode & allModes) != ownersOnly) {
    throw Error(1, Source,
                "The password file " + szFile + " may be touched by others; run: chmod 600 '" + szFile + "'");
  }
}

/// What is judged is what was opened, so that nothing can be put in its place in between; nor does a pipe of
/// that name hold us up.
std::string ReadPrivate(const std::string& szFile) {
  constexpr size_t mostBytes = 65536;
  const Descriptor file(::open(szFile.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (file.Number() < 0) {
    throw Error(53, Source,
                "The password file " + szFile + " cannot be read (" + std::strerror(errno) +
                    "); --help tells how to make it");
  }
  struct stat status {};
  if (::fstat(file.Number(), &status) != 0)
    throw Error(53, Source, "The password file " + szFile + " cannot be read");
  RequirePrivate(status, szFile);
  std::string szText(mostBytes, '\0');
  size_t size = 0;
  ssize_t count = 0;
  while (size < mostBytes && (count = ::read(file.Number(), szText.data() + size, mostBytes - size)) > 0)
    size += static_cast<size_t>(count);
  if (count != 0) throw Error(53, Source, "The password file " + szFile + " cannot be read, or is none");
  szText.resize(size);
  return szText;
}

bool Fits(const std::string& szHash, const std::string& szPassword) {
  return !szHash.empty() &&
         crypto_pwhash_str_verify(szHash.c_str(), szPassword.data(), szPassword.size()) == 0;
}

}  // namespace

Passwords::Passwords(const std::string& szFile) {
  PrepareLibrary();
  std::istringstream file(ReadPrivate(szFile));
  std::string szLine;
  for (size_t number = 1; std::getline(file, szLine); number++) {
    if (!szLine.empty() && szLine.back() == '\r') szLine.pop_back();
    if (!szLine.empty() && szLine.front() != '#') Take(szLine, szFile + " line " + std::to_string(number));
  }
  if (!Any())
    throw Error(1, Source, "The password file " + szFile + " holds no password; --help tells how to make it");
}

void Passwords::Take(const std::string& szLine, const std::string& szPlace) {
  const auto blank = szLine.find(' ');
  const auto szWord = szLine.substr(0, blank);
  const auto szHash = blank == std::string::npos ? std::string() : szLine.substr(blank + 1);
  if (szWord != "control" && szWord != "view") {
    throw Error(1, Source, szPlace + ": expected \"control\" or \"view\" and a hash");
  }
  if (szHash.rfind("$argon2", 0) != 0 || szHash.size() >= crypto_pwhash_STRBYTES ||
      crypto_pwhash_str_needs_rehash(szHash.c_str(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                                     crypto_pwhash_MEMLIMIT_INTERACTIVE) < 0) {
    throw Error(1, Source, szPlace + ": this is no argon2 hash; --help tells how to make one");
  }
  std::string& szKept = szWord == "control" ? m_Control : m_View;
  if (!szKept.empty()) throw Error(1, Source, szPlace + ": a second password for \"" + szWord + "\"");
  szKept = szHash;
}

Role Passwords::Of(const std::string& szPassword) const {
  if (szPassword.empty() || szPassword.size() > MostPasswordBytes) return Role::None;
  // Both are tried whatever comes of the first, so that the time tells nothing.
  const bool boolControl = Fits(m_Control, szPassword);
  const bool boolView = Fits(m_View, szPassword);
  if (boolControl) return Role::Control;
  return boolView ? Role::View : Role::None;
}

std::string Passwords::Line(Role role, const std::string& szPassword) {
  PrepareLibrary();
  if (role == Role::None || szPassword.empty() || szPassword.size() > MostPasswordBytes) {
    throw Error(1, Source, "A password has 1 to " + std::to_string(MostPasswordBytes) + " bytes");
  }
  std::array<char, crypto_pwhash_STRBYTES> hash{};
  if (crypto_pwhash_str(hash.data(), szPassword.data(), szPassword.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                        crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0) {
    throw Error(1, Source, "There is not enough memory (64 MB) to hash a password");
  }
  return std::string(role == Role::Control ? "control " : "view ") + hash.data();
}

}  // namespace vex

#include "tray/web/Passwords.h"

#include <sodium.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "basic/Error.h"

namespace vex {
namespace {

constexpr const char* Source = "Passwords";

void PrepareLibrary() {
  if (sodium_init() < 0) throw Error(1, Source, "The cryptographic library does not start");
}

/// Mode 0600 and no other: a file that others read is no secret, one in a group's hands is none either.
void RequirePrivate(const std::string& szFile) {
  namespace fs = std::filesystem;
  std::error_code code;
  const auto status = fs::status(szFile, code);
  if (code || status.type() == fs::file_type::not_found) {
    throw Error(53, Source, "The password file " + szFile + " is not there; --help tells how to make it");
  }
  if (status.type() != fs::file_type::regular)
    throw Error(1, Source, "The password file " + szFile + " is no file");
  if (status.permissions() != (fs::perms::owner_read | fs::perms::owner_write)) {
    throw Error(1, Source,
                "The password file " + szFile + " may be touched by others; run: chmod 600 '" + szFile + "'");
  }
}

bool Fits(const std::string& szHash, const std::string& szPassword) {
  return !szHash.empty() &&
         crypto_pwhash_str_verify(szHash.c_str(), szPassword.data(), szPassword.size()) == 0;
}

}  // namespace

Passwords::Passwords(const std::string& szFile) {
  PrepareLibrary();
  RequirePrivate(szFile);
  std::ifstream file(szFile);
  if (!file) throw Error(53, Source, "The password file " + szFile + " cannot be read");
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

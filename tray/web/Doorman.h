#pragma once

#include <httplib.h>

#include <chrono>
#include <map>
#include <mutex>
#include <string>

#include "tray/web/Guards.h"
#include "tray/web/LoginLimits.h"
#include "tray/web/Passwords.h"
#include "tray/web/Sessions.h"

namespace vex {

/// Who stands at the door, what they may do, and the token that their page must send with every change.
struct Visitor {
  Role May = Role::None;
  std::string Token;
  std::string Session;  // its name; empty without one
};

/// Looks at every request before anything is done for it: whether it was meant for this machine, who sends
/// it, and where it wants to change something whether it comes from our own page.
///
/// All methods may be called on any thread.
class Doorman {
 public:
  Doorman(Guards guards, bool boolLoopback);

  /// Whether the request asks for a name of ours; anything else is a name that was pointed here.
  [[nodiscard]] bool HostFits(const httplib::Request& request) const;
  /// Who it is, by cookie, or by password where a program asks ("Authorization: Basic", to look only).
  [[nodiscard]] Visitor Look(const httplib::Request& request);
  /// Whether a page of another site has a browser fetch this: it could not read the answer, but hold the
  /// places of those who may.
  [[nodiscard]] static bool FromElsewhere(const httplib::Request& request);
  /// Why a request that changes something is no request of our page; empty where it is one.
  [[nodiscard]] std::string Forged(const httplib::Request& request, const Visitor& visitor) const;
  [[nodiscard]] bool HasPasswords() const { return m_Passwords.Any(); }

  /// What came of a password: Wait is above zero where it was not even looked at.
  struct Attempt {
    Role May = Role::None;
    std::chrono::seconds Wait{0};
  };
  [[nodiscard]] Attempt Try(const httplib::Request& request, const std::string& szPassword);
  /// Begins a session; the value of the header "Set-Cookie".
  [[nodiscard]] std::string LetIn(const httplib::Request& request, Role role);
  /// Ends the visitor's session; the value of the header "Set-Cookie".
  [[nodiscard]] std::string LetOut(const httplib::Request& request, const Visitor& visitor);
  /// Whether who was let in by that session still is.
  [[nodiscard]] bool StillIn(const Visitor& visitor);

 private:
  [[nodiscard]] Role OfProgram(const httplib::Request& request);
  [[nodiscard]] std::string AddressOf(const httplib::Request& request) const;
  [[nodiscard]] std::string Fingerprint(const std::string& szPassword) const;

  const Guards m_Guards;
  const bool m_Loopback;
  Passwords m_Passwords;
  Sessions m_Sessions;
  std::string m_FingerprintKey;

  std::timed_mutex m_Trying;  // one password at a time: each takes 64 MB
  LoginLimits m_Limits;
  std::map<std::string, Role> m_Known;  // fingerprints of right passwords, so that a scrape costs no hash
};

}  // namespace vex

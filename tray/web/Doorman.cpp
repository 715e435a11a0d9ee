#include "tray/web/Doorman.h"

#include <sodium.h>

#include <array>

#include "tray/web/Addresses.h"

namespace vex {
namespace {

constexpr const char* CookieName = "vextray";
constexpr std::chrono::seconds BusyWait{2};

Sessions::Clock::time_point Now() {
  return Sessions::Clock::now();
}

std::string CookieOf(const httplib::Request& request) {
  const std::string szWanted = std::string(CookieName) + "=";
  const auto szCookies = request.get_header_value("Cookie");
  for (size_t at = 0; at < szCookies.size();) {
    while (at < szCookies.size() && szCookies[at] == ' ') at++;
    const auto end = std::min(szCookies.find(';', at), szCookies.size());
    if (szCookies.compare(at, szWanted.size(), szWanted) == 0) {
      return szCookies.substr(at + szWanted.size(), end - at - szWanted.size());
    }
    at = end + 1;
  }
  return {};
}

/// Behind a proxy that speaks TLS the cookie is to go over TLS only. Who lies here harms himself alone.
std::string CookieLook(const httplib::Request& request) {
  const bool boolSecure = request.get_header_value("X-Forwarded-Proto") == "https";
  return std::string("; Path=/; HttpOnly; SameSite=Strict") + (boolSecure ? "; Secure" : "");
}

/// The password of "Basic user:password"; the user is not looked at.
std::string BasicPassword(const httplib::Request& request) {
  const auto szHeader = request.get_header_value("Authorization");
  if (szHeader.rfind("Basic ", 0) != 0) return {};
  std::string szPlain(szHeader.size(), '\0');
  size_t size = 0;
  if (sodium_base642bin(reinterpret_cast<unsigned char*>(szPlain.data()), szPlain.size(), szHeader.data() + 6,
                        szHeader.size() - 6, nullptr, &size, nullptr, sodium_base64_VARIANT_ORIGINAL) != 0) {
    return {};
  }
  szPlain.resize(size);
  const auto colon = szPlain.find(':');
  return colon == std::string::npos ? std::string() : szPlain.substr(colon + 1);
}

Passwords ReadPasswords(const Guards& guards) {
  return guards.szPasswordFile.empty() ? Passwords() : Passwords(guards.szPasswordFile);
}

}  // namespace

Doorman::Doorman(Guards guards, bool boolLoopback)
    : m_Guards(std::move(guards)),
      m_Loopback(boolLoopback),
      m_Passwords(ReadPasswords(m_Guards)),
      m_FingerprintKey(crypto_generichash_KEYBYTES, '\0') {
  randombytes_buf(m_FingerprintKey.data(), m_FingerprintKey.size());
}

bool Doorman::HostFits(const httplib::Request& request) const {
  return HostIsOurs(request.get_header_value("Host"), m_Loopback, m_Guards.Names);
}

Visitor Doorman::Look(const httplib::Request& request) {
  if (!m_Passwords.Any()) return {Role::Control, m_Sessions.OpenToken(), {}};
  const auto szName = CookieOf(request);
  const auto session = m_Sessions.Find(szName, Now());
  if (session.May != Role::None) return {session.May, session.Token, szName};
  return {OfProgram(request), m_Sessions.OpenToken(), {}};
}

Role Doorman::OfProgram(const httplib::Request& request) {
  if (request.method == "POST") return Role::None;
  const auto szPassword = BasicPassword(request);
  if (szPassword.empty()) return Role::None;
  return Try(request, szPassword).May == Role::None ? Role::None : Role::View;
}

bool Doorman::FromElsewhere(const httplib::Request& request) {
  const auto szSite = request.get_header_value("Sec-Fetch-Site");
  return !szSite.empty() && szSite != "same-origin" && szSite != "none";
}

std::string Doorman::Forged(const httplib::Request& request, const Visitor& visitor) const {
  if (!OriginIsHost(request.get_header_value("Origin"), request.get_header_value("Host")) ||
      request.get_header_value_count("Origin") != 1) {
    return "This was not asked for by a page of this server (Origin).";
  }
  if (request.has_header("Sec-Fetch-Site") && request.get_header_value("Sec-Fetch-Site") != "same-origin") {
    return "This was not asked for by a page of this server (Sec-Fetch-Site).";
  }
  if (!Sessions::Same(request.get_header_value("X-Vex-Token"), visitor.Token)) {
    return "The page is too old; load it again.";
  }
  if (request.get_header_value("Content-Type").rfind("application/json", 0) != 0) {
    return "A change is asked for as application/json.";
  }
  return {};
}

std::string Doorman::AddressOf(const httplib::Request& request) const {
  if (m_Guards.Names.empty() || !IsLoopback(request.remote_addr)) return request.remote_addr;
  // The proxy adds its guest at the end, be it of the list or as a header of its own; what stands before that
  // is the guest's own word.
  const auto headers = request.get_header_value_count("X-Forwarded-For");
  const auto szChain =
      headers == 0 ? std::string() : request.get_header_value("X-Forwarded-For", headers - 1);
  const auto szLast = szChain.substr(szChain.find_last_of(", ") + 1);
  return IsAddress(szLast) ? szLast : request.remote_addr;
}

std::string Doorman::Fingerprint(const std::string& szPassword) const {
  std::string szHash(crypto_generichash_BYTES, '\0');
  crypto_generichash(reinterpret_cast<unsigned char*>(szHash.data()), szHash.size(),
                     reinterpret_cast<const unsigned char*>(szPassword.data()), szPassword.size(),
                     reinterpret_cast<const unsigned char*>(m_FingerprintKey.data()),
                     m_FingerprintKey.size());
  return szHash;
}

Doorman::Attempt Doorman::Try(const httplib::Request& request, const std::string& szPassword) {
  const auto szAddress = AddressOf(request);
  const std::unique_lock lock(m_Trying, BusyWait);
  if (!lock.owns_lock()) return {Role::None, BusyWait};
  const auto wait = m_Limits.Wait(szAddress, Now());
  if (wait.count() > 0) return {Role::None, wait};
  const auto szFingerprint = Fingerprint(szPassword);
  const auto known = m_Known.find(szFingerprint);
  const Role role = known != m_Known.end() ? known->second : m_Passwords.Of(szPassword);
  if (role == Role::None) {
    m_Limits.Failed(szAddress, Now());
  } else {
    m_Known[szFingerprint] = role;
    m_Limits.Succeeded(szAddress);
  }
  return {role, std::chrono::seconds{0}};
}

std::string Doorman::LetIn(const httplib::Request& request, Role role) {
  return std::string(CookieName) + "=" + m_Sessions.Open(role, Now()) + CookieLook(request);
}

std::string Doorman::LetOut(const httplib::Request& request, const Visitor& visitor) {
  m_Sessions.End(visitor.Session);
  return std::string(CookieName) + "=; Max-Age=0" + CookieLook(request);
}

bool Doorman::StillIn(const Visitor& visitor) {
  return visitor.Session.empty() || m_Sessions.Find(visitor.Session, Now()).May != Role::None;
}

}  // namespace vex

#include "tray/web/Sessions.h"

#include <sodium.h>

#include <algorithm>
#include <array>

#include "basic/Error.h"

namespace vex {
namespace {

constexpr size_t MostSessions = 256;
constexpr std::chrono::hours UnusedTime{12};
constexpr std::chrono::hours WholeTime{7 * 24};
constexpr size_t SecretBytes = 32;

std::string InHex(const unsigned char* bytes, size_t size) {
  std::string szText(size * 2 + 1, '\0');
  sodium_bin2hex(szText.data(), szText.size(), bytes, size);
  szText.pop_back();
  return szText;
}

std::string HashOf(const std::string& szName) {
  std::array<unsigned char, crypto_generichash_BYTES> hash{};
  crypto_generichash(hash.data(), hash.size(), reinterpret_cast<const unsigned char*>(szName.data()),
                     szName.size(), nullptr, 0);
  return InHex(hash.data(), hash.size());
}

}  // namespace

Sessions::Sessions() {
  if (sodium_init() < 0) throw Error(1, "Sessions", "The cryptographic library does not start");
  m_OpenToken = Secret();
}

std::string Sessions::Open(Role role, Clock::time_point now) {
  const std::lock_guard lock(m_Mutex);
  MakeRoom();
  std::string szName = Secret();
  m_Sessions[HashOf(szName)] = Session{role, Secret(), now, now};
  return szName;
}

void Sessions::MakeRoom() {
  if (m_Sessions.size() < MostSessions) return;
  m_Sessions.erase(std::min_element(
      m_Sessions.begin(), m_Sessions.end(),
      [](const auto& left, const auto& right) { return left.second.Used < right.second.Used; }));
}

Sessions::Session Sessions::Find(const std::string& szName, Clock::time_point now) {
  if (szName.empty()) return {};
  const std::lock_guard lock(m_Mutex);
  const auto found = m_Sessions.find(HashOf(szName));
  if (found == m_Sessions.end()) return {};
  if (now - found->second.Used >= UnusedTime || now - found->second.Began >= WholeTime) {
    m_Sessions.erase(found);
    return {};
  }
  found->second.Used = now;
  return found->second;
}

void Sessions::End(const std::string& szName) {
  const std::lock_guard lock(m_Mutex);
  m_Sessions.erase(HashOf(szName));
}

size_t Sessions::Count() const {
  const std::lock_guard lock(m_Mutex);
  return m_Sessions.size();
}

std::string Sessions::Secret() {
  std::array<unsigned char, SecretBytes> bytes{};
  randombytes_buf(bytes.data(), bytes.size());
  return InHex(bytes.data(), bytes.size());
}

bool Sessions::Same(const std::string& szLeft, const std::string& szRight) {
  return szLeft.size() == szRight.size() && sodium_memcmp(szLeft.data(), szRight.data(), szLeft.size()) == 0;
}

}  // namespace vex

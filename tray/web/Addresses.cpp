#include "tray/web/Addresses.h"

#include <httplib.h>

#include <algorithm>
#include <array>

namespace vex {
namespace {

std::string Lower(std::string_view szText) {
  std::string szLower(szText);
  for (char& letter : szLower) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + ('a' - 'A'));
  }
  return szLower;
}

bool IsVersion4(std::string_view szText) {
  in_addr address{};
  return ::inet_pton(AF_INET, std::string(szText).c_str(), &address) == 1;
}

bool IsVersion6(std::string_view szText) {
  in6_addr address{};
  return ::inet_pton(AF_INET6, std::string(szText.substr(0, szText.find('%'))).c_str(), &address) == 1;
}

bool IsPort(std::string_view szText) {
  return szText.size() <= 5 && szText.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

bool IsAddress(std::string_view szText) {
  return IsVersion4(szText) || IsVersion6(szText);
}

bool IsLoopback(std::string_view szAddress) {
  constexpr std::string_view szMapped = "::ffff:";
  auto szLower = Lower(szAddress);
  if (szLower == "localhost" || szLower == "::1") return true;
  if (szLower.rfind(szMapped, 0) == 0) szLower.erase(0, szMapped.size());
  return IsVersion4(szLower) && szLower.rfind("127.", 0) == 0;
}

std::string HostName(std::string_view szHost) {
  auto colon = szHost.rfind(':');
  if (!szHost.empty() && szHost.front() == '[') {
    const auto close = szHost.find(']');
    if (close == std::string_view::npos || !IsVersion6(szHost.substr(1, close - 1))) return {};
    const auto szRest = szHost.substr(close + 1);
    if (!szRest.empty() && (szRest.front() != ':' || !IsPort(szRest.substr(1)))) return {};
    return Lower(szHost.substr(1, close - 1));
  }
  if (colon != std::string_view::npos && !IsPort(szHost.substr(colon + 1))) return {};
  const auto szName = Lower(szHost.substr(0, colon));
  constexpr std::string_view szLetters = "abcdefghijklmnopqrstuvwxyz0123456789-._";
  return szName.find_first_not_of(szLetters) == std::string::npos ? szName : std::string();
}

bool HostIsOurs(std::string_view szHost, bool boolLoopback, const std::vector<std::string>& names) {
  const auto szName = HostName(szHost);
  if (szName.empty()) return false;
  if (IsLoopback(szName)) return true;
  if (!boolLoopback && IsAddress(szName)) return true;
  return std::any_of(names.begin(), names.end(),
                     [&szName](const auto& szOne) { return Lower(szOne) == szName; });
}

bool OriginIsHost(std::string_view szOrigin, std::string_view szHost) {
  for (const std::string_view szScheme : {"http://", "https://"}) {
    if (szOrigin.substr(0, szScheme.size()) == szScheme) {
      return !szHost.empty() && Lower(szOrigin.substr(szScheme.size())) == Lower(szHost);
    }
  }
  return false;
}

std::string SourceOf(const std::string& szAddress) {
  in6_addr address{};
  if (::inet_pton(AF_INET6, szAddress.substr(0, szAddress.find('%')).c_str(), &address) != 1)
    return szAddress;
  std::array<char, INET6_ADDRSTRLEN> text{};
  constexpr size_t NetworkBytes = 8;
  constexpr std::array<unsigned char, 12> mapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};
  // An IPv4 address in the clothes of an IPv6 one is a guest of its own.
  if (!std::equal(mapped.begin(), mapped.end(), std::begin(address.s6_addr))) {
    std::fill(std::begin(address.s6_addr) + NetworkBytes, std::end(address.s6_addr),
              static_cast<unsigned char>(0));
  }
  ::inet_ntop(AF_INET6, &address, text.data(), text.size());
  return text.data();
}

}  // namespace vex

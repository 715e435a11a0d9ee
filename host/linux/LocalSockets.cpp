#include "host/linux/LocalSockets.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cstddef>

#include "host/linux/Descriptor.h"

namespace vex {
namespace {

bool Accepts(const std::string& szBytes) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (szBytes.size() >= sizeof address.sun_path) return false;
  std::copy(szBytes.begin(), szBytes.end(), address.sun_path);
  const bool boolAbstract = szBytes.starts_with('\0');
  const auto length =
      static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + szBytes.size() + (boolAbstract ? 0 : 1));
  const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  return socket.Open() && connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), length) == 0;
}

}  // namespace

bool LocalSocketAccepts(const std::string& szPath) {
  return Accepts(szPath);
}

bool AbstractSocketAccepts(const std::string& szName) {
  return Accepts(std::string(1, '\0') + szName);
}

}  // namespace vex

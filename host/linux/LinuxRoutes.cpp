#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "host/linux/Descriptor.h"
#include "host/linux/LinuxFacilities.h"
#include "host/linux/SystemError.h"

// The way that datagrams would take: the kernel chooses it for a socket that is connected, without sending.

namespace vex {
namespace {

using Verdict = FacilityAnswer::Verdict;
constexpr uint16_t AnyPort = 9;

struct NetworkInterface {
  std::string Name;
  bool Up = false;
  bool Running = false;  // a cable, or a link by air
};

NetworkInterface InterfaceWith(in_addr_t address) {
  NetworkInterface found;
  ifaddrs* all = nullptr;
  if (getifaddrs(&all) != 0) return found;
  for (const ifaddrs* each = all; each != nullptr; each = each->ifa_next) {
    if (each->ifa_addr == nullptr || each->ifa_addr->sa_family != AF_INET) continue;
    if (reinterpret_cast<const sockaddr_in*>(each->ifa_addr)->sin_addr.s_addr != address) continue;
    found = {each->ifa_name, (each->ifa_flags & IFF_UP) != 0, (each->ifa_flags & IFF_RUNNING) != 0};
  }
  freeifaddrs(all);
  return found;
}

/// 0, or the system's code; local becomes the address that datagrams would come from.
int ConnectedFrom(uint32_t address, uint32_t interfaceAddress, in_addr_t& local) {
  const Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  const int one = 1;
  if (!socket.Open() || setsockopt(socket.Get(), SOL_SOCKET, SO_BROADCAST, &one, sizeof one) != 0)
    return errno;
  const in_addr interface { htonl(interfaceAddress) };
  if (interfaceAddress != 0 &&
      setsockopt(socket.Get(), IPPROTO_IP, IP_MULTICAST_IF, &interface, sizeof interface) != 0)
    return errno;
  sockaddr_in remote{};
  remote.sin_family = AF_INET;
  remote.sin_port = htons(AnyPort);
  remote.sin_addr.s_addr = htonl(address);
  if (connect(socket.Get(), reinterpret_cast<const sockaddr*>(&remote), sizeof remote) != 0) return errno;
  sockaddr_in own{};
  socklen_t length = sizeof own;
  if (getsockname(socket.Get(), reinterpret_cast<sockaddr*>(&own), &length) != 0) return errno;
  local = own.sin_addr.s_addr;
  return 0;
}

}  // namespace

FacilityAnswer LinuxFacilities::RouteTo(uint32_t address, uint32_t interfaceAddress) {
  in_addr_t local = 0;
  if (const int code = ConnectedFrom(address, interfaceAddress, local); code != 0)
    return {Verdict::No, DescribeCode(code)};
  const NetworkInterface found = InterfaceWith(local);
  // An address of the loopback network need not be the interface's own.
  if (found.Name.empty()) return {Verdict::Yes, "inside this machine"};
  if (!found.Up) return {Verdict::No, "the interface " + found.Name + " is switched off"};
  if (!found.Running) return {Verdict::No, "the interface " + found.Name + " has no link (is the cable in?)"};
  return {Verdict::Yes, "by " + found.Name};
}

}  // namespace vex

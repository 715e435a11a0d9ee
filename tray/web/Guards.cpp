#include "tray/web/Guards.h"

#include "basic/Error.h"
#include "tray/web/Addresses.h"

namespace vex {

void RequireGuards(const std::string& szAddress, const Guards& guards) {
  if (szAddress != "localhost" && !IsAddress(szAddress)) {
    throw Error(1, "Server.Start",
                "Can't listen on \"" + szAddress + "\": give an address, such as 192.168.1.20 or ::1");
  }
  if (!IsLoopback(szAddress) && guards.szPasswordFile.empty()) {
    throw Error(1, "Server.Start",
                "Can't listen on " + szAddress +
                    " without passwords: whoever reaches it could stop the show; give --password-file FILE");
  }
  if (!guards.Names.empty() && guards.szPasswordFile.empty()) {
    throw Error(1, "Server.Start",
                "Can't be \"" + guards.Names.front() +
                    "\" without passwords: whoever reaches the proxy of that name could stop the show; give "
                    "--password-file FILE");
  }
}

std::string ListenNotice(const std::string& szAddress) {
  if (IsLoopback(szAddress)) return {};
  return "The page is served on " + szAddress +
         " without encryption: passwords can be read on the way. TLS belongs to a reverse proxy on this "
         "machine; let it "
         "hand on to 127.0.0.1 and name it with --name.";
}

}  // namespace vex

#include "host/win32/SocketLibrary.h"

#include <string>

#include "host/win32/SystemError.h"

namespace vex {
namespace {

constexpr char Source[] = "Datagrams";
constexpr char LibraryFile[] = "ws2_32.dll";
constexpr WORD Version = 0x0202;

class FoundFunctions {
 public:
  FoundFunctions() : m_Library(LoadLibraryA(LibraryFile)) {
    if (m_Library == nullptr) throw SystemError(Source, LibraryFile);
  }
  template <class Function>
  void Find(const char* szName, Function& function) const {
    // By way of a plain pointer, since the machine hands out every function as one of its own type.
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_Library, szName)));
    if (!function) throw SystemError(Source, std::string(LibraryFile) + " " + szName);
  }

 private:
  HMODULE m_Library;
};

SocketLibrary Load() {
  const FoundFunctions found;
  SocketLibrary library;
  found.Find("WSAStartup", library.Startup);
  found.Find("WSAGetLastError", library.LastError);
  found.Find("WSAIoctl", library.Control);
  found.Find("WSAEventSelect", library.EventSelect);
  found.Find("socket", library.NewSocket);
  found.Find("closesocket", library.CloseSocket);
  found.Find("ioctlsocket", library.ControlSocket);
  found.Find("setsockopt", library.SetOption);
  found.Find("bind", library.Bind);
  found.Find("sendto", library.SendTo);
  found.Find("recvfrom", library.ReceiveFrom);
  found.Find("getaddrinfo", library.AddressInfo);
  found.Find("freeaddrinfo", library.FreeAddressInfo);
  WSADATA data{};
  if (const int code = library.Startup(Version, &data))
    throw SystemError(Source, LibraryFile, static_cast<uint32_t>(code));
  return library;
}

}  // namespace

const SocketLibrary& SocketLibrary::Loaded() {
  static const SocketLibrary library = Load();
  return library;
}

}  // namespace vex

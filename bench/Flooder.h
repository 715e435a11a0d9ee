#pragma once

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "bench/PacketReceiver.h"
#include "components/open/wire/OscTrigger.h"
#include "host/linux/CopyDataWire.h"

namespace vex::bench {

/// What one process shouts at the player.
struct Flood {
  enum class Kind {
    Mixed,     ///< messages of all types but those that end the player, and of none
    Reloads,   ///< requests to read the schedules anew
    Demands,   ///< requests for the show that plays
    Triggers,  ///< Open Sound Control: presses, presses that nobody knows, and no triggers
    Bundles,   ///< Open Sound Control: bundles as full of presses as a datagram can be
  };
  Kind What = Kind::Mixed;
  int Count = 100'000;
  uint16_t Port = 0;  ///< of the link
};

/// A process that sends as fast as it is let: what is refused for want of room is counted and sent again when
/// there is some. It speaks the wire itself, as a program by others would.
class Flooder {
 public:
  explicit Flooder(const Flood& flood) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) std::exit(1);
    m_Pipe = ends[0];
    m_Process = fork();
    if (m_Process == 0) {
      const int result = dup2(ends[1], LastOwn);
      close_range(LastOwn + 1, ~0U, 0);
      Outcome outcome;
      Send(flood, outcome);
      _exit(write(result, &outcome, sizeof outcome) == sizeof outcome ? 0 : 1);
    }
    close(ends[1]);
  }
  ~Flooder() {
    close(m_Pipe);
    waitpid(m_Process, nullptr, 0);
  }
  Flooder(const Flooder&) = delete;
  Flooder& operator=(const Flooder&) = delete;

  [[nodiscard]] bool Done() {
    m_Done = m_Done || read(m_Pipe, &m_Outcome, sizeof m_Outcome) == sizeof m_Outcome;
    return m_Done;
  }
  /// Once it is done.
  [[nodiscard]] int64_t Sent() const { return m_Outcome.Sent; }
  [[nodiscard]] int64_t Refused() const { return m_Outcome.Refused; }
  /// How many of those sent the player tells by a line.
  [[nodiscard]] int64_t Told() const { return m_Outcome.Told; }

 private:
  static constexpr int LastOwn = 3;
  struct Outcome {
    int64_t Sent = 0;
    int64_t Refused = 0;
    int64_t Told = 0;
  };

  static std::vector<uint8_t> Message(WindowHandle sender, const std::string& szPayload) {
    return EncodeCopyData(sender, {3, static_cast<uint32_t>(szPayload.size()), szPayload.data()});
  }

  /// Whether the player writes one line of its own about it.
  static bool IsTold(const std::string& szPayload) {
    return szPayload.starts_with("05") || szPayload.starts_with("09");
  }

  static std::string Payload(Flood::Kind kind, int number) {
    const std::string szNumber = std::to_string(number);
    const std::string szDemand = "09(flood.shw,(F,,F,),0,F)";
    if (kind == Flood::Kind::Reloads) return "05";
    if (kind == Flood::Kind::Demands) return szDemand;
    const std::vector<std::string> mixed = {"",
                                            "0",
                                            "00" + szNumber,
                                            "zz",
                                            "-1",
                                            "03",
                                            "04x",
                                            "05",
                                            "06ON",
                                            "07" + std::string(1000, 'x'),
                                            "09",
                                            "09(" + szNumber,
                                            szDemand,
                                            "10",
                                            "11",
                                            "12" + szNumber,
                                            "99",
                                            "06off",
                                            "06ON",
                                            "02"};
    return mixed[static_cast<size_t>(number) % mixed.size()];
  }

  static void Deliver(int socket, const std::vector<uint8_t>& datagram, Outcome& outcome) {
    while (send(socket, datagram.data(), datagram.size(), MSG_DONTWAIT | MSG_NOSIGNAL) < 0) {
      if (errno != EAGAIN && errno != ENOBUFS) return;
      ++outcome.Refused;
      pollfd room{socket, POLLOUT, 0};
      poll(&room, 1, -1);
    }
    ++outcome.Sent;
  }

  static void Send(const Flood& flood, Outcome& outcome) {
    if (flood.What == Flood::Kind::Triggers)
      SendTriggers(flood, MixedTriggers(), outcome);
    else if (flood.What == Flood::Kind::Bundles)
      SendTriggers(flood, {Bundle()}, outcome);
    else
      SendMessages(flood, outcome);
  }

  static void SendMessages(const Flood& flood, Outcome& outcome) {
    const std::string szFolder = std::getenv("VEX_RUNTIME_DIR");
    std::string szHandle;
    std::ifstream(szFolder + "/player") >> szHandle;
    const int player = Socket(szFolder + "/" + szHandle, connect);
    // The window of a tray that never reads.
    const auto own = static_cast<WindowHandle>(getpid());
    const std::string szOwn = szFolder + "/" + std::to_string(own);
    const int deaf = Socket(szOwn, bind);
    for (int number = 0; number < flood.Count; ++number) {
      const std::string szPayload = Payload(flood.What, number);
      Deliver(player, Message(own, szPayload), outcome);
      outcome.Told += IsTold(szPayload) ? 1 : 0;
    }
    close(deaf);
    unlink(szOwn.c_str());
  }

  static int Socket(const std::string& szPath, int (*function)(int, const sockaddr*, socklen_t)) {
    const int result = socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, szPath.data(), std::min(szPath.size(), sizeof address.sun_path - 1));
    if (function(result, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      std::perror(szPath.c_str());
      _exit(1);
    }
    return result;
  }

  static std::vector<std::vector<uint8_t>> MixedTriggers() {
    return {WriteOscTrigger({0, 1, 3, "Button"}),
            WriteOscTrigger({0, 1, 4, "Nobody"}),
            {},
            {'/', 'x', 0, 0},
            std::vector<uint8_t>(1400, 0xFF)};
  }

  /// A bundle with the time tag "now" (Open Sound Control 1.0): each element has its size before it.
  static std::vector<uint8_t> Bundle() {
    constexpr size_t longest = 65000;
    std::vector<uint8_t> bytes = {'#', 'b', 'u', 'n', 'd', 'l', 'e', 0, 0, 0, 0, 0, 0, 0, 0, 1};
    const std::vector<uint8_t> press = WriteOscTrigger({0, 1, 4, "Nobody"});
    while (bytes.size() + press.size() + 4 < longest) {
      bytes.insert(bytes.end(), {0, 0, 0, static_cast<uint8_t>(press.size())});
      bytes.insert(bytes.end(), press.begin(), press.end());
    }
    return bytes;
  }

  static void SendTriggers(const Flood& flood, const std::vector<std::vector<uint8_t>>& datagrams,
                           Outcome& outcome) {
    const int player = socket(AF_INET, SOCK_DGRAM, 0);
    const sockaddr_in address = Loopback(flood.Port);
    connect(player, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    for (int number = 0; number < flood.Count; ++number)
      Deliver(player, datagrams[static_cast<size_t>(number) % datagrams.size()], outcome);
  }

  int m_Pipe = -1;
  pid_t m_Process = -1;
  bool m_Done = false;
  Outcome m_Outcome;
};

}  // namespace vex::bench

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace vex {

/// An IPv4 address in host byte order with its port.
struct DatagramAddress {
  uint32_t Address = 0;
  uint16_t Port = 0;
  friend bool operator==(const DatagramAddress&, const DatagramAddress&) = default;
};

struct Datagram {
  DatagramAddress To;
  std::span<const uint8_t> Bytes;
};

/// A socket for sending UDP datagrams to the show network. Sending never waits.
class DatagramSocket {
 public:
  virtual ~DatagramSocket() = default;
  /// Sends all in one go where the machine can. Returns 0, or the system's code of the first datagram
  /// that failed (an unreachable network, say); the others are tried all the same.
  virtual int32_t Send(std::span<const Datagram> datagrams) = 0;
};

/// A bound port; it is given back when the receiver goes. A handler that raises loses its datagram only.
class DatagramReceiver {
 public:
  virtual ~DatagramReceiver() = default;
};

class EventLoop;

/// Sender and contents of a datagram that has come.
using DatagramHandler = std::function<void(const DatagramAddress& from, std::span<const uint8_t> bytes)>;

/// A question about a host name that is under way. Whoever lets it go gets no answer.
class HostLookUp {
 public:
  virtual ~HostLookUp() = default;
};

/// The address of a host, or none where the name is not known.
using HostLookUpHandler = std::function<void(std::optional<uint32_t> address)>;

/// Four numbers from 0 to 255 with dots between them, most significant first; false for anything else.
/// Nobody is asked, so this never waits.
[[nodiscard]] bool AddressFromText(const std::string& szText, uint32_t& address);

/// UDP as the open components need it.
class Datagrams {
 public:
  virtual ~Datagrams() = default;
  /// A socket whose multicast goes out by the interface with that address (0: the system's choice), time
  /// to live 1 unless set up otherwise, broadcast allowed. Raises Error with the system's code.
  [[nodiscard]] virtual std::unique_ptr<DatagramSocket> NewSender(uint32_t multicastInterface) = 0;
  /// Binds a port at one of this machine's addresses (0: all of them). The handler runs on the loop, which
  /// outlives the receiver, once for each datagram, at most sixteen in one turn; a flood has to wait in
  /// between. Raises Error with the system's code.
  [[nodiscard]] virtual std::unique_ptr<DatagramReceiver> NewReceiver(EventLoop& loop,
                                                                      const DatagramAddress& at,
                                                                      DatagramHandler handler) = 0;
  /// The same beside other programs that listen at that address and let others, too. Of what is sent to a
  /// multicast group or by broadcast each gets its own, and one that listens at that very group or broadcast
  /// address takes nothing else; of what is sent to one machine's address only one program gets it, the
  /// machine chooses which. A group is joined at the interface with the given address (0: the system's
  /// choice). Machines on which nobody listens beside others raise ErrorInvalidCall.
  [[nodiscard]] virtual std::unique_ptr<DatagramReceiver> NewSharedReceiver(EventLoop& loop,
                                                                            const DatagramAddress& at,
                                                                            uint32_t multicastInterface,
                                                                            DatagramHandler handler);
  /// Asks the name service for a host without waiting. The handler runs on the loop, once, never within
  /// this call; it may let the question go. The loop outlives the question.
  [[nodiscard]] virtual std::unique_ptr<HostLookUp> LookUp(EventLoop& loop, const std::string& szHost,
                                                           HostLookUpHandler handler) = 0;
  /// A host name or dotted address; false when it cannot be resolved. For a name it waits for the name
  /// service, which may take long: nothing that keeps a show going asks so.
  [[nodiscard]] virtual bool Resolve(const std::string& szHost, uint32_t& address) = 0;
  /// The system's words for a code.
  [[nodiscard]] virtual std::string Describe(int32_t lCode) const = 0;
};

}  // namespace vex

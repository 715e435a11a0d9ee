#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "components/open/OpenChannelIO.h"
#include "host/virtual/VirtualHost.h"

namespace vex {

/// The open I/O control on a virtual machine, with its network's record read back as packets.
struct OutputRig {
  struct Packet {
    int64_t AtMs = 0;
    DatagramAddress To;
    int32_t Universe = 0;
    int32_t Sequence = 0;
    bool Terminated = false;
    std::vector<uint8_t> Slots;
  };

  VirtualHost Host;
  OutputSettings Settings;
  std::vector<std::string> Troubles;
  std::unique_ptr<OpenChannelIO> Lights;

  OutputRig() { Make(); }
  explicit OutputRig(const OutputSettings& settings) : Settings(settings) { Make(); }

  void Make() {
    Lights.reset();
    Lights = std::make_unique<OpenChannelIO>(Host.Clock(), Host.EventLoop(), Host.Datagrams(), Settings,
                                             "machine");
    Lights->Trouble = [this](const std::string& szText) { Troubles.push_back(szText); };
  }

  void Event(int32_t lUnit, int32_t lCircuit, double from, double to, int32_t lDurationMs,
             int32_t lNetwork = 0) {
    Lights->SendEvent(lNetwork, lUnit, lCircuit, from, to, "", 1.0, 0, lDurationMs, lDurationMs);
  }
  void Set(int32_t lUnit, int32_t lCircuit, double level) { Event(lUnit, lCircuit, level, level, 1); }
  /// One circuit to a level, flushed.
  void Light(int32_t lUnit, int32_t lCircuit, double level) {
    Set(lUnit, lCircuit, level);
    Lights->Flush();
  }
  void Advance(int64_t milliseconds) { Host.EventLoop().Advance(milliseconds); }

  [[nodiscard]] int64_t NowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Host.Clock().Elapsed()).count();
  }

  /// The packets with levels sent so far, discovery left out; of one universe where a number is given.
  [[nodiscard]] std::vector<Packet> Packets(int32_t lUniverse = 0) {
    std::vector<Packet> packets;
    for (const auto& sent : Host.Datagrams().Sent()) {
      const auto& bytes = sent.Bytes;
      Packet packet;
      packet.AtMs = std::chrono::duration_cast<std::chrono::milliseconds>(sent.At).count();
      packet.To = sent.To;
      if (bytes.size() == 638) {
        packet.Universe = bytes[113] << 8 | bytes[114];
        packet.Sequence = bytes[111];
        packet.Terminated = (bytes[112] & 0x40) != 0;
        packet.Slots.assign(bytes.begin() + 126, bytes.end());
      } else if (bytes.size() == 530) {
        packet.Universe = bytes[15] << 8 | bytes[14];
        packet.Sequence = bytes[12];
        packet.Slots.assign(bytes.begin() + 18, bytes.end());
      } else {
        continue;
      }
      if (lUniverse == 0 || packet.Universe == lUniverse) packets.push_back(packet);
    }
    return packets;
  }

  [[nodiscard]] std::vector<int64_t> Times(int32_t lUniverse = 0) {
    std::vector<int64_t> times;
    for (const Packet& packet : Packets(lUniverse)) times.push_back(packet.AtMs);
    return times;
  }

  /// The slot in each packet of universe 1.
  [[nodiscard]] std::vector<int32_t> Values(size_t slot = 0) {
    std::vector<int32_t> values;
    for (const Packet& packet : Packets(1)) values.push_back(packet.Slots[slot]);
    return values;
  }
};

}  // namespace vex

#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "components/open/PacketPace.h"
#include "components/open/wire/UniversePacket.h"
#include "host/Clock.h"

namespace vex {

/// One universe of the output: its 512 slots, the moves under way on them, and where its stream stands. The
/// slots lie in the packet itself. A later event on a slot takes the slot over, whichever sequence it comes
/// from: the last word wins.
class OutputUniverse {
 public:
  static constexpr int32_t UnitsPerNetwork = 64;
  static constexpr int32_t Networks = 4;
  static constexpr int32_t MostUniverses = Networks * UnitsPerNetwork;

  OutputUniverse(const UniversePacket& packet, int32_t lNumber, int32_t lFrameRate);

  [[nodiscard]] int32_t Number() const { return m_Number; }
  [[nodiscard]] UniversePacket& Packet() { return m_Packet; }

  /// Level 0 to 100 of a slot (from 0), at once; ends a move on it.
  void Set(size_t slot, double level);
  /// Moves a slot evenly from one level to another, beginning now.
  void Move(size_t slot, double from, double to, Elapsed now, Elapsed duration);
  /// Brings every move to where it stands now; those that have arrived end.
  void Advance(Elapsed now);
  /// Every move arrives at once.
  void FinishMoves();
  [[nodiscard]] bool Moving() const { return !m_Moves.empty(); }

  /// A slot has changed since the last packet.
  [[nodiscard]] bool Changed() const { return m_Changed; }
  /// An event has come since the last flush.
  bool Touched = false;
  /// A change waits for the pace.
  bool Waiting = false;
  /// A packet has gone out since the last frame of the grid.
  bool SentThisFrame = false;
  bool Streaming = false;
  /// How many packets without a change are still to follow quickly.
  int32_t Repeats = 0;
  Elapsed LastSent{0};
  PacketPace Pace;

  /// Numbers the packet and notes that it goes out now.
  void Send(Elapsed now);

 private:
  static constexpr uint16_t NoMove = 0xFFFF;

  struct SlotMove {
    uint16_t Slot;
    double From;
    double To;
    Elapsed Start;
    Elapsed Duration;
  };

  void Write(size_t slot, double level);
  void EndMove(size_t slot);

  UniversePacket m_Packet;
  int32_t m_Number;
  bool m_Changed = false;
  std::vector<SlotMove> m_Moves;  // room for all slots from the beginning
  std::array<uint16_t, UniversePacket::SlotCount> m_MoveOf;
};

}  // namespace vex

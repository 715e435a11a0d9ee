#include "components/open/OutputUniverse.h"

#include <algorithm>

namespace vex {
namespace {

/// Packets without a change that follow a change before the stream falls back to keeping alive.
constexpr int32_t RepeatsAfterChange = 3;

/// Level 0 to 100 as a slot's byte, halves to even; what lies outside becomes the nearest. A frame may set
/// every slot of every universe before its packets leave, so there is no call into the mathematics library
/// here: beside 1.5 * 2^52 a double holds whole numbers only, and adding it rounds.
uint8_t ByteOf(double level) {
  constexpr double ByteOfOne = 2.55;
  constexpr double HighestByte = 255;
  constexpr double WholeNumbersOnly = 6755399441055744.0;
  const double byte = level * ByteOfOne;
  if (!(byte > 0)) return 0;
  return static_cast<uint8_t>(std::min(byte, HighestByte) + WholeNumbersOnly - WholeNumbersOnly);
}

}  // namespace

OutputUniverse::OutputUniverse(const UniversePacket& packet, int32_t lNumber, int32_t lFrameRate)
    : Pace(lFrameRate), m_Packet(packet), m_Number(lNumber) {
  m_Moves.reserve(UniversePacket::SlotCount);
  m_MoveOf.fill(NoMove);
}

void OutputUniverse::Set(size_t slot, double level) {
  if (m_MoveOf[slot] != NoMove) EndMove(slot);
  Write(slot, level);
}

void OutputUniverse::Move(size_t slot, double from, double to, Elapsed now, Elapsed duration) {
  Set(slot, from);
  m_MoveOf[slot] = static_cast<uint16_t>(m_Moves.size());
  m_Moves.push_back({static_cast<uint16_t>(slot), from, to, now, duration});
}

void OutputUniverse::Advance(Elapsed now) {
  for (size_t i = m_Moves.size(); i-- > 0;) {
    const SlotMove& move = m_Moves[i];
    const Elapsed past = now - move.Start;
    if (past >= move.Duration) {
      const size_t slot = move.Slot;
      Write(slot, move.To);
      EndMove(slot);
    } else {
      const double part = static_cast<double>(past.count()) / static_cast<double>(move.Duration.count());
      Write(move.Slot, move.From + (move.To - move.From) * part);
    }
  }
}

void OutputUniverse::FinishMoves() {
  Advance(Elapsed::max());
}

void OutputUniverse::Send(Elapsed now) {
  Pace.Sent(now, m_Changed);
  if (m_Changed)
    Repeats = RepeatsAfterChange;
  else
    Repeats = std::max(0, Repeats - 1);
  m_Packet.NextSequence();
  m_Changed = false;
  Waiting = false;
  SentThisFrame = true;
  LastSent = now;
}

void OutputUniverse::Write(size_t slot, double level) {
  uint8_t& byte = m_Packet.Slots()[slot];
  const uint8_t newByte = ByteOf(level);
  m_Changed = m_Changed || byte != newByte;
  byte = newByte;
}

void OutputUniverse::EndMove(size_t slot) {
  const uint16_t index = m_MoveOf[slot];
  m_MoveOf[slot] = NoMove;
  if (index + 1U != m_Moves.size()) {
    m_Moves[index] = m_Moves.back();
    m_MoveOf[m_Moves[index].Slot] = index;
  }
  m_Moves.pop_back();
}

}  // namespace vex

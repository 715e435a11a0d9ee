#pragma once

#include <cstdint>
#include <deque>
#include <list>
#include <vector>

#include "host/Windows.h"

namespace vex {

/// What waits for one receiver that has no room, in the order in which it was sent. At most 60000 characters
/// are kept: a receiver that has stopped must not cost the player its memory. Beyond that whole status lines
/// go, the oldest first, also one by one out of a block of several; a report or a request goes only when no
/// line is left, oldest first, because a later line does not make up for it.
class UnsentMessages {
 public:
  static constexpr size_t MostCharacters = 60000;

  /// False when the message alone is more than may be kept and has no lines to drop.
  bool Add(WindowHandle sender, const CopyData& copy);

  [[nodiscard]] bool Empty() const { return m_Messages.empty(); }
  /// The oldest message as it goes on the wire.
  [[nodiscard]] std::vector<uint8_t> FirstDatagram() const;
  void RemoveFirst();
  /// Those kept, without the zero bytes that end them.
  [[nodiscard]] size_t Characters() const { return m_Characters; }

 private:
  struct Message {
    WindowHandle Sender = 0;
    uint32_t Data = 0;
    std::vector<char> Bytes;
    [[nodiscard]] size_t Characters() const;
    [[nodiscard]] bool IsStatus() const;
  };
  using Position = std::list<Message>::iterator;

  void Trim();
  void DropOldestLine();
  void Remove(Position message);

  std::list<Message> m_Messages;
  std::deque<Position> m_Status;  // the status messages among them, in order
  size_t m_Characters = 0;
};

}  // namespace vex

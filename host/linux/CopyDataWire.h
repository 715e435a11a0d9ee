#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "host/Windows.h"

namespace vex {

// One datagram of the message channel is one WM_COPYDATA, in four little-endian words and what follows:
//
//    0         4           8         12        16
//   +---------+-----------+---------+---------+--------------------+
//   | 74      | sender    | dwData  | cbData  | cbData bytes       |
//   +---------+-----------+---------+---------+--------------------+

constexpr size_t CopyDataHeaderSize = 16;

struct ReceivedCopyData {
  uint32_t Sender = 0;
  CopyData Copy;  ///< its bytes lie in the datagram
};

[[nodiscard]] std::vector<uint8_t> EncodeCopyData(WindowHandle sender, const CopyData& copy);

/// False for a datagram of another shape: shorter than the header, another message, another length. dwData
/// and the text's ending zero are the receiver's affair.
[[nodiscard]] bool DecodeCopyData(std::span<const uint8_t> datagram, ReceivedCopyData& received);

}  // namespace vex

#include "host/linux/CopyDataWire.h"

namespace vex {
namespace {

void PutWord(std::vector<uint8_t>& bytes, uint32_t word) {
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<uint8_t>(word >> shift));
}

uint32_t WordAt(std::span<const uint8_t> bytes, size_t offset) {
  uint32_t word = 0;
  for (size_t i = 0; i < 4; ++i) word |= static_cast<uint32_t>(bytes[offset + i]) << (8 * i);
  return word;
}

}  // namespace

std::vector<uint8_t> EncodeCopyData(WindowHandle sender, const CopyData& copy) {
  std::vector<uint8_t> datagram;
  datagram.reserve(CopyDataHeaderSize + copy.Size);
  PutWord(datagram, WM_COPYDATA);
  PutWord(datagram, static_cast<uint32_t>(sender));
  PutWord(datagram, copy.Data);
  PutWord(datagram, copy.Size);
  if (copy.Size > 0) datagram.insert(datagram.end(), copy.Bytes, copy.Bytes + copy.Size);
  return datagram;
}

bool DecodeCopyData(std::span<const uint8_t> datagram, ReceivedCopyData& received) {
  if (datagram.size() < CopyDataHeaderSize || WordAt(datagram, 0) != WM_COPYDATA) return false;
  const std::span<const uint8_t> payload = datagram.subspan(CopyDataHeaderSize);
  if (WordAt(datagram, 12) != payload.size()) return false;
  received.Sender = WordAt(datagram, 4);
  received.Copy.Data = WordAt(datagram, 8);
  received.Copy.Size = static_cast<uint32_t>(payload.size());
  received.Copy.Bytes = payload.empty() ? nullptr : reinterpret_cast<const char*>(payload.data());
  return true;
}

}  // namespace vex

#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "components/open/wire/FrameFile.h"
#include "host/Files.h"

namespace vex {

/// Gives the frames of a frame file one at a time. Nothing of the file is kept but one piece of compressed
/// input: each frame is decoded as the continuation of the one before, so a show of hours costs no more
/// memory or time between two frames than a short one. Going back, or far ahead, decodes again from the
/// beginning of the frame's block.
class FrameReader {
 public:
  FrameReader(std::unique_ptr<OpenFile> file, FrameHeader header, std::string szName);

  [[nodiscard]] const FrameHeader& Header() const { return m_Header; }
  /// Fills bytes (ChannelCount of them) with the frame, counted from 0. Raises Error from "Sequence.Play"
  /// when the file cannot be read or is damaged there.
  void Read(uint32_t frame, std::span<uint8_t> bytes);
  /// Whether every frame can be read; all are decoded for it.
  [[nodiscard]] bool Intact();

 private:
  void ReadPlain(uint32_t frame, std::span<uint8_t> bytes);
  void BeginBlock(size_t block);
  void DecodeFrame(std::span<uint8_t> bytes);
  [[nodiscard]] size_t BlockOf(uint32_t frame) const;
  [[noreturn]] void Refuse(uint32_t frame);

  std::unique_ptr<OpenFile> m_File;
  FrameHeader m_Header;
  std::string m_Name;
  std::unique_ptr<BlockDecoder> m_Decoder;
  std::vector<uint8_t> m_Piece;
  std::span<const uint8_t> m_Input;  // what of the piece is not decoded yet
  uint64_t m_InputAt = 0;            // where in the file the next piece begins
  uint64_t m_InputEnd = 0;           // where the block ends
  size_t m_Block = 0;
  bool m_Begun = false;
  uint32_t m_NextFrame = 0;  // which frame the decoder gives next
};

}  // namespace vex

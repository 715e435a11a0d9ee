#include "components/open/FrameReader.h"

#include <algorithm>

#include "basic/Error.h"
#include "components/open/wire/SequenceFileError.h"

namespace vex {
namespace {

constexpr size_t PieceSize = size_t{64} * 1024;

}  // namespace

FrameReader::FrameReader(std::unique_ptr<OpenFile> file, FrameHeader header, std::string szName)
    : m_File(std::move(file)), m_Header(std::move(header)), m_Name(std::move(szName)) {
  if (m_Header.Compression == FrameCompression::None) return;
  m_Decoder = BlockDecoder::New(m_Header.Compression);
  m_Piece.resize(PieceSize);
}

void FrameReader::Read(uint32_t frame, std::span<uint8_t> bytes) {
  if (!m_Decoder) {
    ReadPlain(frame, bytes);
    return;
  }
  const size_t block = BlockOf(frame);
  if (!m_Begun || block != m_Block || frame < m_NextFrame) BeginBlock(block);
  while (m_NextFrame <= frame) DecodeFrame(bytes);
}

bool FrameReader::Intact() {
  std::vector<uint8_t> bytes(m_Header.ChannelCount);
  try {
    for (uint32_t frame = 0; frame < m_Header.FrameCount; ++frame) Read(frame, bytes);
    return true;
  } catch (const Error&) {
    return false;
  }
}

void FrameReader::ReadPlain(uint32_t frame, std::span<uint8_t> bytes) {
  const uint64_t offset = m_Header.DataOffset + uint64_t{m_Header.ChannelCount} * frame;
  if (!m_File->ReadAt(offset, bytes)) Refuse(frame);
}

void FrameReader::BeginBlock(size_t block) {
  const FrameBlock& begun = m_Header.Blocks[block];
  m_Decoder->Begin();
  m_Begun = true;
  m_Block = block;
  m_NextFrame = begun.FirstFrame;
  m_Input = {};
  m_InputAt = begun.Offset;
  m_InputEnd = begun.Offset + begun.Length;
}

void FrameReader::DecodeFrame(std::span<uint8_t> bytes) {
  std::span<uint8_t> wanted = bytes;
  while (!wanted.empty()) {
    if (m_Input.empty() && m_InputAt < m_InputEnd) {
      const auto size = static_cast<size_t>(std::min<uint64_t>(PieceSize, m_InputEnd - m_InputAt));
      const std::span<uint8_t> piece(m_Piece.data(), size);
      if (!m_File->ReadAt(m_InputAt, piece)) Refuse(m_NextFrame);
      m_InputAt += piece.size();
      m_Input = piece;
    }
    const size_t before = m_Input.size() + wanted.size();
    if (!m_Decoder->Decode(m_Input, wanted)) Refuse(m_NextFrame);
    const bool boolMoved = m_Input.size() + wanted.size() != before;
    if (!boolMoved && (m_InputAt >= m_InputEnd || !m_Input.empty())) Refuse(m_NextFrame);
  }
  ++m_NextFrame;
}

size_t FrameReader::BlockOf(uint32_t frame) const {
  const auto after =
      std::upper_bound(m_Header.Blocks.begin(), m_Header.Blocks.end(), frame,
                       [](uint32_t lFrame, const FrameBlock& block) { return lFrame < block.FirstFrame; });
  return static_cast<size_t>(after - m_Header.Blocks.begin()) - 1;
}

void FrameReader::Refuse(uint32_t frame) {
  m_Begun = false;  // whoever asks again gets whole frames from the block's beginning, or the same answer
  throw Error(SequenceFileDamaged, "Sequence.Play",
              "Sequence file \"" + m_Name + "\": damaged at frame " + std::to_string(frame) +
                  "; export the sequence again or copy the file once more");
}

}  // namespace vex

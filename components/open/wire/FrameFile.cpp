#include "components/open/wire/FrameFile.h"

#include <algorithm>
#include <string_view>

#include "components/open/wire/SequenceFileError.h"

namespace vex {
namespace {

constexpr size_t FixedSizeV1 = 28;
constexpr size_t FixedSizeV2 = 32;
constexpr size_t BlockEntrySize = 8;
constexpr size_t RangeEntrySize = 6;
constexpr size_t VariableHeadSize = 4;
/// Sparse ranges count channels in 24 bits; nothing that could be played has more.
constexpr uint32_t MostChannels = 1U << 24;

/// Reads the head of one file, field by field, little endian. Every read is checked against the head's end.
class HeadReader {
 public:
  HeadReader(std::span<const uint8_t> head, uint64_t fileSize, const std::string& szName)
      : m_Head(head), m_FileSize(fileSize), m_Name(szName) {}

  FrameHeader Read();

 private:
  void ReadVersion2();
  void ReadBlocks(size_t at, size_t count);
  void ReadRanges(size_t at, size_t count);
  void ReadVariableHeaders(size_t at);
  void CheckFrames() const;

  [[nodiscard]] uint32_t Number(size_t at, size_t size) const {
    if (at + size > m_Head.size()) Refuse("its head is too short");
    uint32_t value = 0;
    for (size_t i = 0; i < size; ++i) value |= uint32_t{m_Head[at + i]} << (8 * i);
    return value;
  }
  [[noreturn]] void Refuse(std::string_view szWhat) const {
    throw SequenceFileError(m_Name, szWhat, "export the sequence again or copy the file once more");
  }

  std::span<const uint8_t> m_Head;
  uint64_t m_FileSize;
  const std::string& m_Name;
  FrameHeader m_Header;
};

FrameHeader HeadReader::Read() {
  m_Header.DataOffset = Number(4, 2);
  const uint32_t major = Number(7, 1);
  const uint32_t variableHeaders = Number(8, 2);
  m_Header.ChannelCount = Number(10, 4);
  m_Header.FrameCount = Number(14, 4);
  m_Header.StepMs = Number(18, 1);
  if (major != 1 && major != 2)
    Refuse("it is a frame file of version " + std::to_string(major) + ", not 1 or 2");
  if (m_Header.ChannelCount == 0 || m_Header.FrameCount == 0) Refuse("it has no channels or no frames");
  if (m_Header.ChannelCount > MostChannels) Refuse("it has more channels than a frame file can have");
  if (m_Header.StepMs == 0) Refuse("its frames have no length");

  size_t fixedSize = FixedSizeV1;
  if (major == 2) {
    ReadVersion2();
    fixedSize = FixedSizeV2;
  }
  if (m_Header.Ranges.empty()) m_Header.Ranges.push_back({0, m_Header.ChannelCount});
  if (variableHeaders < fixedSize) Refuse("its head is damaged");
  ReadVariableHeaders(variableHeaders);
  CheckFrames();
  return std::move(m_Header);
}

void HeadReader::ReadVersion2() {
  const uint32_t minor = Number(6, 1);
  const uint32_t compression = Number(20, 1);
  size_t blocks = Number(21, 1);
  if (minor >= 1) blocks |= size_t{compression & 0xF0} << 4;
  if ((compression & 0x0F) > 2) Refuse("its compression is not known");
  m_Header.Compression = static_cast<FrameCompression>(compression & 0x0F);
  if (m_Header.Compression != FrameCompression::None) ReadBlocks(FixedSizeV2, blocks);
  ReadRanges(FixedSizeV2 + BlockEntrySize * blocks, Number(22, 1));
}

void HeadReader::ReadBlocks(size_t at, size_t count) {
  uint64_t offset = m_Header.DataOffset;
  for (size_t i = 0; i < count; ++i, at += BlockEntrySize) {
    const FrameBlock block{Number(at, 4), offset, Number(at + 4, 4)};
    if (block.Length == 0) continue;  // padding
    const bool boolInOrder = m_Header.Blocks.empty() ? block.FirstFrame == 0
                                                     : block.FirstFrame > m_Header.Blocks.back().FirstFrame;
    if (!boolInOrder || block.FirstFrame >= m_Header.FrameCount) Refuse("its blocks are out of order");
    m_Header.Blocks.push_back(block);
    offset += block.Length;
  }
  if (m_Header.Blocks.empty()) Refuse("it is compressed but has no blocks");
  if (offset > m_FileSize) Refuse("its blocks reach beyond the file's end");
}

void HeadReader::ReadRanges(size_t at, size_t count) {
  uint64_t sum = 0;
  for (size_t i = 0; i < count; ++i, at += RangeEntrySize) {
    const FrameRange range{Number(at, 3), Number(at + 3, 3)};
    sum += range.Count;
    if (range.Count > 0) m_Header.Ranges.push_back(range);
  }
  if (count > 0 && sum != m_Header.ChannelCount) Refuse("its channel ranges do not make up its frames");
}

void HeadReader::ReadVariableHeaders(size_t at) {
  const size_t end = m_Head.size();
  while (at + VariableHeadSize < end) {
    const size_t length = Number(at, 2);
    if (length <= VariableHeadSize) {
      at += VariableHeadSize;
      continue;
    }
    if (at + length > end) Refuse("a header reaches into the frames");
    if (m_Head[at + 2] == 'm' && m_Head[at + 3] == 'f') {
      const auto text = m_Head.subspan(at + VariableHeadSize, length - VariableHeadSize);
      const auto zero = std::find(text.begin(), text.end(), uint8_t{0});
      if (zero == text.end()) Refuse("its media name does not end");
      m_Header.Media.assign(text.begin(), zero);
    }
    at += length;
  }
}

void HeadReader::CheckFrames() const {
  if (m_Header.Compression != FrameCompression::None) return;
  const uint64_t size = uint64_t{m_Header.ChannelCount} * m_Header.FrameCount;
  if (m_Header.DataOffset + size > m_FileSize) Refuse("it is shorter than its frames");
}

}  // namespace

bool IsFrameFile(std::span<const uint8_t> probe) {
  constexpr std::string_view letters = "PSEQ";
  return probe.size() >= letters.size() && std::equal(letters.begin(), letters.end(), probe.begin());
}

size_t FrameHeadSize(std::span<const uint8_t> probe) {
  return static_cast<size_t>(probe[4]) | static_cast<size_t>(probe[5]) << 8;
}

FrameHeader ParseFrameHeader(std::span<const uint8_t> head, uint64_t fileSize, const std::string& szName) {
  return HeadReader(head, fileSize, szName).Read();
}

}  // namespace vex

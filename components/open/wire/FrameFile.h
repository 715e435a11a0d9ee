#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vex {

enum class FrameCompression : uint8_t { None = 0, Zstd = 1, Zlib = 2 };

/// A run of channels, counted from 0.
struct FrameRange {
  uint32_t First = 0;
  uint32_t Count = 0;
};

/// Frames that were compressed together: from FirstFrame to the next block's, Length bytes at Offset.
struct FrameBlock {
  uint32_t FirstFrame = 0;
  uint64_t Offset = 0;
  uint32_t Length = 0;
};

/// What the head of a frame file (FSEQ) says about its frames. A frame is ChannelCount bytes: the channels
/// of the ranges, one range after another.
struct FrameHeader {
  uint32_t DataOffset = 0;
  uint32_t ChannelCount = 0;
  uint32_t FrameCount = 0;
  uint32_t StepMs = 0;
  FrameCompression Compression = FrameCompression::None;
  std::vector<FrameBlock> Blocks;  ///< only when compressed: the first begins at frame 0, none is empty
  std::vector<FrameRange> Ranges;  ///< one from channel 0 when the file is not sparse
  std::string Media;               ///< the bytes of the header "mf"
};

/// So many bytes tell whether it is a frame file, and how long its head is.
constexpr size_t FrameProbeSize = 6;
[[nodiscard]] bool IsFrameFile(std::span<const uint8_t> probe);
/// The length of the head, which is where the frames begin.
[[nodiscard]] size_t FrameHeadSize(std::span<const uint8_t> probe);

/// Reads the head: the file's first FrameHeadSize bytes. Raises Error from "Sequence.Load" when it is
/// damaged, of an unknown version, or promises more than a file of that size can hold.
[[nodiscard]] FrameHeader ParseFrameHeader(std::span<const uint8_t> head, uint64_t fileSize,
                                           const std::string& szName);

/// Decompresses a block as its bytes come, a piece at a time, so that neither a whole block nor a burst of
/// work stands between two frames.
class BlockDecoder {
 public:
  /// Not for FrameCompression::None.
  [[nodiscard]] static std::unique_ptr<BlockDecoder> New(FrameCompression compression);
  virtual ~BlockDecoder() = default;

  /// A new block begins; what is left of the one before is forgotten.
  virtual void Begin() = 0;
  /// Decodes in to out until either is used up, and moves both on by what was used; several streams one
  /// after another in a block are read as one. Returns false when the bytes are damaged.
  [[nodiscard]] virtual bool Decode(std::span<const uint8_t>& in, std::span<uint8_t>& out) = 0;
};

}  // namespace vex

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "components/open/FrameReader.h"

namespace {

class MemoryFile final : public vex::OpenFile {
 public:
  explicit MemoryFile(std::span<const uint8_t> bytes) : m_Bytes(bytes) {}
  [[nodiscard]] uint64_t Size() const override { return m_Bytes.size(); }
  bool ReadAt(uint64_t offset, std::span<uint8_t> bytes) override {
    if (offset > m_Bytes.size() || bytes.size() > m_Bytes.size() - offset) return false;
    if (!bytes.empty()) std::memcpy(bytes.data(), m_Bytes.data() + offset, bytes.size());
    return true;
  }

 private:
  std::span<const uint8_t> m_Bytes;
};

/// Reads frames forwards, then some again; a frame read twice must be the same.
void ReadFrames(std::span<const uint8_t> bytes, vex::FrameHeader header) {
  constexpr uint32_t MostFrames = 64;
  constexpr uint32_t MostChannels = 1 << 16;
  if (header.ChannelCount > MostChannels) return;
  const uint32_t frames = std::min(header.FrameCount, MostFrames);
  std::vector<uint8_t> frame(header.ChannelCount);
  std::vector<uint8_t> again(header.ChannelCount);
  vex::FrameReader reader(std::make_unique<MemoryFile>(bytes), header, "fuzz");
  for (uint32_t i = 0; i < frames; ++i) {
    reader.Read(i, frame);
    if (i % 7 != 0) continue;
    reader.Read(0, again);
    reader.Read(i, again);
    if (frame != again) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::span<const uint8_t> bytes(data, size);
  if (size < vex::FrameProbeSize || !vex::IsFrameFile(bytes)) return 0;
  const size_t head = vex::FrameHeadSize(bytes);
  try {
    ReadFrames(bytes, vex::ParseFrameHeader(bytes.first(std::min(head, size)), size, "fuzz"));
  } catch (const vex::Error& error) {
    if (error.Source.rfind("Sequence.", 0) != 0) std::abort();
  }
  return 0;
}

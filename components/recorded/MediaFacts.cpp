#include "components/recorded/MediaFacts.h"

#include <algorithm>
#include <array>
#include <span>

#include "host/CodePage.h"
#include "host/Files.h"

namespace vex {

namespace {

constexpr uint64_t kChunkHead = 8;  // four letters and a length

uint32_t LittleEndian(std::span<const uint8_t> bytes) {
  return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
         static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

bool Spells(std::span<const uint8_t> bytes, std::string_view szLetters) {
  return std::equal(szLetters.begin(), szLetters.end(), bytes.begin(),
                    [](char c, uint8_t byte) { return static_cast<uint8_t>(c) == byte; });
}

/// Walks the chunks: the format tells how many bytes sound in a second, the data how many there are.
std::optional<Elapsed> LengthOfChunks(OpenFile& file) {
  uint32_t bytesPerSecond = 0;
  for (uint64_t offset = 12; offset + kChunkHead <= file.Size();) {
    std::array<uint8_t, kChunkHead> head{};
    if (!file.ReadAt(offset, head)) return std::nullopt;
    const uint64_t body = offset + kChunkHead;
    const uint64_t size = LittleEndian(std::span(head).subspan(4));
    if (Spells(head, "fmt ") && size >= 16) {
      std::array<uint8_t, 12> format{};
      if (!file.ReadAt(body, format)) return std::nullopt;
      bytesPerSecond = LittleEndian(std::span(format).subspan(8));
    } else if (Spells(head, "data")) {
      if (bytesPerSecond == 0) return std::nullopt;
      const uint64_t sounding = std::min(size, file.Size() - body);
      return Elapsed(static_cast<int64_t>(static_cast<double>(sounding) * 1e9 / bytesPerSecond));
    }
    offset = body + size + (size & 1);  // chunks begin at even places
  }
  return std::nullopt;
}

}  // namespace

std::optional<Elapsed> WaveLength(Files& files, const std::string& szPath) {
  const auto file = files.Open(szPath);
  std::array<uint8_t, 12> head{};
  if (!file || !file->ReadAt(0, head)) return std::nullopt;
  if (!Spells(head, "RIFF") || !Spells(std::span(head).subspan(8), "WAVE")) return std::nullopt;
  return LengthOfChunks(*file);
}

bool IsVideoName(std::string_view szName) {
  const std::string szFolded = FoldCase(szName);
  static constexpr std::array<std::string_view, 4> kEnds{".avi", ".mp4", ".wmv", ".mpg"};
  return std::any_of(kEnds.begin(), kEnds.end(),
                     [&](std::string_view szEnd) { return std::string_view(szFolded).ends_with(szEnd); });
}

MediaFacts AssumedMediaFacts(const MediaNames& names, const std::string& szPath) {
  MediaFacts facts;
  facts.MediaType = IsVideoName(szPath) ? "video" : "audio";
  if (const auto lLength = names.LengthOf(szPath)) facts.Length = std::chrono::milliseconds(*lLength);
  return facts;
}

MediaFacts RecordedMediaFacts(Files& files, const MediaNames& names, const std::string& szPath) {
  MediaFacts facts = AssumedMediaFacts(names, szPath);
  if (const auto length = WaveLength(files, szPath)) facts.Length = length;
  return facts;
}

}  // namespace vex

#pragma once

#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "components/open/wire/FrameFile.h"

namespace vex {

/// Writes frame files for tests, right ones and, by setting what stands in the head, wrong ones.
struct FrameFileBuilder {
  int Major = 2;
  int Minor = 0;
  uint32_t StepMs = 25;
  uint32_t Channels = 0;  // 0: as many as the first frame has
  std::vector<std::vector<uint8_t>> Frames;
  FrameCompression Compression = FrameCompression::None;
  size_t FramesPerBlock = 3;
  size_t StreamsPerBlock = 1;
  size_t PaddingBlocks = 0;
  std::vector<FrameRange> Ranges;
  std::vector<std::pair<std::string, std::string>> Headers;  // two letters, data

  [[nodiscard]] std::string Build() const {
    std::string szBlocks;
    std::string szData;
    const size_t blocks = BuildData(szBlocks, szData);
    std::string szRanges;
    for (const FrameRange& range : Ranges) {
      Number(szRanges, range.First, 3);
      Number(szRanges, range.Count, 3);
    }
    const std::string szVariable = BuildHeaders();
    const size_t fixed = Major == 2 ? 32 + szBlocks.size() + szRanges.size() : 28;
    const size_t head = (fixed + szVariable.size() + 3) / 4 * 4;

    std::string szFile = "PSEQ";
    Number(szFile, head, 2);
    Number(szFile, static_cast<size_t>(Minor), 1);
    Number(szFile, static_cast<size_t>(Major), 1);
    Number(szFile, fixed, 2);
    Number(szFile, Channels != 0 || Frames.empty() ? Channels : Frames[0].size(), 4);
    Number(szFile, Frames.size(), 4);
    Number(szFile, StepMs, 1);
    Number(szFile, 0, 1);
    if (Major == 2) {
      Number(szFile, static_cast<size_t>(Compression) | (blocks >> 8 << 4), 1);
      Number(szFile, blocks & 0xFF, 1);
      Number(szFile, Ranges.size(), 1);
      Number(szFile, 0, 9);
      szFile += szBlocks + szRanges;
    } else {
      Number(szFile, 0, 8);
    }
    szFile += szVariable;
    szFile.resize(head, '\0');
    return szFile + szData;
  }

  static void Number(std::string& szText, size_t value, size_t size) {
    for (size_t i = 0; i < size; ++i)
      szText.push_back(i < 8 ? static_cast<char>(value >> (8 * i) & 0xFF) : '\0');
  }

  static std::string Compress(const std::string& szPlain, FrameCompression compression) {
    if (compression == FrameCompression::Zstd) {
      std::string szPacked(ZSTD_compressBound(szPlain.size()), '\0');
      szPacked.resize(ZSTD_compress(szPacked.data(), szPacked.size(), szPlain.data(), szPlain.size(), 3));
      return szPacked;
    }
    const auto plain = static_cast<uLong>(szPlain.size());  // of 32 bits on some machines
    uLongf size = compressBound(plain);
    std::string szPacked(size, '\0');
    if (compress(reinterpret_cast<Bytef*>(szPacked.data()), &size,
                 reinterpret_cast<const Bytef*>(szPlain.data()), plain) != Z_OK)
      throw std::runtime_error("compress");
    szPacked.resize(size);
    return szPacked;
  }

 private:
  [[nodiscard]] std::string BuildHeaders() const {
    std::string szVariable;
    for (const auto& [szCode, szText] : Headers) {
      Number(szVariable, szText.size() + 4, 2);
      szVariable += szCode + szText;
    }
    return szVariable;
  }

  size_t BuildData(std::string& szBlocks, std::string& szData) const {
    size_t blocks = 0;
    for (size_t first = 0; first < Frames.size(); first += FramesPerBlock) {
      std::string szPlain;
      for (size_t frame = first; frame < std::min(first + FramesPerBlock, Frames.size()); ++frame)
        szPlain.append(Frames[frame].begin(), Frames[frame].end());
      if (Compression == FrameCompression::None) {
        szData += szPlain;
        continue;
      }
      std::string szPacked;
      const size_t part = szPlain.size() / StreamsPerBlock + 1;
      for (size_t at = 0; at < szPlain.size(); at += part)
        szPacked += Compress(szPlain.substr(at, part), Compression);
      Number(szBlocks, first, 4);
      Number(szBlocks, szPacked.size(), 4);
      szData += szPacked;
      ++blocks;
    }
    for (size_t i = 0; i < PaddingBlocks; ++i) Number(szBlocks, 0, 8);
    return blocks + PaddingBlocks;
  }
};

}  // namespace vex

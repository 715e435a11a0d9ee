#include "components/open/wire/FrameFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <span>

#include "basic/Error.h"
#include "tests/wire/FrameFileBuilder.h"

namespace vex {
namespace {

using testing::HasSubstr;

std::span<const uint8_t> Bytes(const std::string& szFile) {
  return {reinterpret_cast<const uint8_t*>(szFile.data()), szFile.size()};
}

FrameHeader Parse(const std::string& szFile) {
  const size_t head = FrameHeadSize(Bytes(szFile));
  return ParseFrameHeader(Bytes(szFile).first(std::min(head, szFile.size())), szFile.size(), "tree.fseq");
}

std::string Refusal(const std::string& szFile) {
  try {
    (void)Parse(szFile);
  } catch (const Error& error) {
    EXPECT_EQ(error.Source, "Sequence.Load");
    EXPECT_THAT(error.Description, HasSubstr("tree.fseq"));
    return error.Description;
  }
  return {};
}

FrameFileBuilder Frames(size_t frames = 5, size_t channels = 4) {
  FrameFileBuilder builder;
  for (size_t i = 0; i < frames; ++i) builder.Frames.emplace_back(channels, static_cast<uint8_t>(i + 1));
  return builder;
}

std::string With(std::string szFile, size_t at, char value) {
  szFile[at] = value;
  return szFile;
}

TEST(FrameFile, IsToldByItsFirstLetters) {
  EXPECT_TRUE(IsFrameFile(Bytes("PSEQ..")));
  EXPECT_FALSE(IsFrameFile(Bytes("FSEQ..")));
  EXPECT_FALSE(IsFrameFile(Bytes("{\"form")));
  EXPECT_FALSE(IsFrameFile(Bytes("PSE")));
}

TEST(FrameFile, Version1) {
  FrameFileBuilder builder = Frames();
  builder.Major = 1;
  builder.StepMs = 50;
  builder.Headers = {{"mf", std::string("C:\\music\\carol.mp3\0", 19)}};
  const FrameHeader header = Parse(builder.Build());
  EXPECT_EQ(header.ChannelCount, 4U);
  EXPECT_EQ(header.FrameCount, 5U);
  EXPECT_EQ(header.StepMs, 50U);
  EXPECT_EQ(header.DataOffset, 52U);
  EXPECT_EQ(header.Media, "C:\\music\\carol.mp3");
  EXPECT_EQ(header.Compression, FrameCompression::None);
  ASSERT_EQ(header.Ranges.size(), 1U);
  EXPECT_EQ(header.Ranges[0].First, 0U);
  EXPECT_EQ(header.Ranges[0].Count, 4U);
}

TEST(FrameFile, Version2WithBlocksRangesAndHeaders) {
  FrameFileBuilder builder = Frames();
  builder.Minor = 2;
  builder.Compression = FrameCompression::Zstd;
  builder.PaddingBlocks = 2;
  builder.Ranges = {{10, 1}, {100, 3}};
  builder.Headers = {{"sp", "maker"}, {"mf", std::string("a.ogg\0rest", 10)}, {"", ""}};
  const FrameHeader header = Parse(builder.Build());
  EXPECT_EQ(header.Compression, FrameCompression::Zstd);
  EXPECT_EQ(header.Media, "a.ogg");
  ASSERT_EQ(header.Blocks.size(), 2U);
  EXPECT_EQ(header.Blocks[0].FirstFrame, 0U);
  EXPECT_EQ(header.Blocks[0].Offset, header.DataOffset);
  EXPECT_EQ(header.Blocks[1].FirstFrame, 3U);
  EXPECT_EQ(header.Blocks[1].Offset, header.DataOffset + header.Blocks[0].Length);
  ASSERT_EQ(header.Ranges.size(), 2U);
  EXPECT_EQ(header.Ranges[1].First, 100U);
  EXPECT_EQ(header.Ranges[1].Count, 3U);
}

TEST(FrameFile, BlockCountHasTwelveBitsFromMinorVersion1On) {
  FrameFileBuilder builder = Frames(300);
  builder.Minor = 1;
  builder.FramesPerBlock = 1;
  builder.Compression = FrameCompression::Zlib;
  EXPECT_EQ(Parse(builder.Build()).Blocks.size(), 300U);
}

TEST(FrameFile, RefusesDamage) {
  const std::string szPlain = Frames().Build();
  EXPECT_EQ(Refusal(szPlain), "");
  EXPECT_THAT(Refusal(With(szPlain, 7, 3)), HasSubstr("version 3"));
  EXPECT_THAT(Refusal(With(szPlain, 10, 0)), HasSubstr("no channels"));
  EXPECT_THAT(Refusal(With(szPlain, 14, 0)), HasSubstr("no frames"));
  EXPECT_THAT(Refusal(With(szPlain, 18, 0)), HasSubstr("no length"));
  EXPECT_THAT(Refusal(With(szPlain, 13, 127)), HasSubstr("more channels"));
  EXPECT_THAT(Refusal(With(szPlain, 8, 5)), HasSubstr("head is damaged"));
  EXPECT_THAT(Refusal(With(szPlain, 20, 3)), HasSubstr("compression is not known"));
  EXPECT_THAT(Refusal(With(szPlain, 20, 1)), HasSubstr("has no blocks"));
  EXPECT_THAT(Refusal(With(szPlain, 22, 9)), HasSubstr("head is too short"));
  EXPECT_THAT(Refusal(szPlain.substr(0, szPlain.size() - 1)), HasSubstr("shorter than its frames"));
  EXPECT_THAT(Refusal(szPlain.substr(0, 20)), HasSubstr("head is too short"));
}

TEST(FrameFile, RefusesAHeadThatEndsBeforeItsFixedPart) {
  const std::string szPlain = Frames().Build();
  for (char size = 0; size < 22; ++size) EXPECT_NE(Refusal(With(szPlain, 4, size)), "") << int{size};
}

TEST(FrameFile, RefusesBlocksOutOfOrderOrBeyondTheEnd) {
  FrameFileBuilder builder = Frames(9);
  builder.Compression = FrameCompression::Zlib;
  const std::string szFile = builder.Build();
  EXPECT_EQ(Refusal(szFile), "");
  EXPECT_THAT(Refusal(With(szFile, 32, 1)), HasSubstr("out of order")) << "the first begins late";
  EXPECT_THAT(Refusal(With(szFile, 48, 3)), HasSubstr("out of order")) << "two begin together";
  EXPECT_THAT(Refusal(With(szFile, 48, 9)), HasSubstr("out of order")) << "one begins behind the end";
  EXPECT_THAT(Refusal(szFile.substr(0, szFile.size() - 1)), HasSubstr("beyond the file's end"));
}

TEST(FrameFile, RefusesRangesThatDoNotMakeUpAFrame) {
  FrameFileBuilder builder = Frames();
  builder.Ranges = {{0, 2}, {8, 1}};
  EXPECT_THAT(Refusal(builder.Build()), HasSubstr("ranges"));
}

TEST(FrameFile, RefusesAMediaNameWithoutItsEnd) {
  FrameFileBuilder builder = Frames();
  builder.Headers = {{"mf", "carol.ogg"}};
  EXPECT_THAT(Refusal(builder.Build()), HasSubstr("media name"));
}

TEST(FrameFile, RefusesAHeaderThatReachesIntoTheFrames) {
  FrameFileBuilder builder = Frames();
  builder.Headers = {{"sp", "maker"}};
  EXPECT_THAT(Refusal(With(builder.Build(), 32, 100)), HasSubstr("reaches into the frames"));
}

class BlockDecoderTest : public testing::TestWithParam<FrameCompression> {};

std::string Decoded(BlockDecoder& decoder, const std::string& szPacked, size_t wanted, size_t pieceIn,
                    size_t pieceOut) {
  std::string szPlain(wanted, '\0');
  std::span<uint8_t> out(reinterpret_cast<uint8_t*>(szPlain.data()), wanted);
  std::span<const uint8_t> in;
  size_t at = 0;
  while (!out.empty()) {
    if (in.empty() && at < szPacked.size()) {
      in = Bytes(szPacked).subspan(at, std::min(pieceIn, szPacked.size() - at));
      at += in.size();
    }
    std::span<uint8_t> part = out.first(std::min(pieceOut, out.size()));
    const size_t before = in.size() + part.size();
    const size_t partSize = part.size();
    if (!decoder.Decode(in, part)) return "damaged";
    if (in.size() + part.size() == before && at == szPacked.size()) return "short";
    out = out.subspan(partSize - part.size());
  }
  return szPlain;
}

TEST_P(BlockDecoderTest, DecodesInPiecesOfAnySize) {
  std::string szPlain;
  for (size_t i = 0; i < 20000; ++i) szPlain.push_back(static_cast<char>(i * i / 7));
  const std::string szPacked = FrameFileBuilder::Compress(szPlain, GetParam());
  const auto decoder = BlockDecoder::New(GetParam());
  for (const size_t pieceIn : {size_t{1}, size_t{7}, size_t{100000}})
    for (const size_t pieceOut : {size_t{1}, size_t{512}, size_t{100000}}) {
      decoder->Begin();
      EXPECT_EQ(Decoded(*decoder, szPacked, szPlain.size(), pieceIn, pieceOut), szPlain);
    }
}

TEST_P(BlockDecoderTest, ReadsSeveralStreamsAsOne) {
  const std::string szPacked =
      FrameFileBuilder::Compress("jingle ", GetParam()) + FrameFileBuilder::Compress("bells", GetParam());
  const auto decoder = BlockDecoder::New(GetParam());
  decoder->Begin();
  EXPECT_EQ(Decoded(*decoder, szPacked, 12, 5, 3), "jingle bells");
}

TEST_P(BlockDecoderTest, TellsDamageAndBeginsAnew) {
  const std::string szPacked = FrameFileBuilder::Compress("jingle bells", GetParam());
  std::string szDamaged = szPacked;
  szDamaged[0] = static_cast<char>(~szDamaged[0]);
  const auto decoder = BlockDecoder::New(GetParam());
  decoder->Begin();
  EXPECT_EQ(Decoded(*decoder, szDamaged, 12, 100, 100), "damaged");
  decoder->Begin();
  EXPECT_EQ(Decoded(*decoder, szPacked, 12, 100, 100), "jingle bells");
  decoder->Begin();
  EXPECT_EQ(Decoded(*decoder, szPacked, 13, 100, 100), "short");
}

INSTANTIATE_TEST_SUITE_P(All, BlockDecoderTest,
                         testing::Values(FrameCompression::Zstd, FrameCompression::Zlib));

}  // namespace
}  // namespace vex

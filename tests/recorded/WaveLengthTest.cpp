#include <gtest/gtest.h>

#include "components/recorded/MediaFacts.h"
#include "host/virtual/VirtualHost.h"

namespace vex {
namespace {

using std::chrono::milliseconds;

constexpr char Path[] = "C:\\songs\\carol.wav";

std::string Number(uint32_t value) {
  std::string szBytes;
  for (int i = 0; i < 4; ++i) szBytes.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
  return szBytes;
}

std::string Chunk(const std::string& szLetters, const std::string& szBody) {
  return szLetters + Number(static_cast<uint32_t>(szBody.size())) + szBody +
         std::string(szBody.size() % 2, '\0');
}

std::string Format(uint32_t bytesPerSecond) {
  return Chunk("fmt ", std::string(8, '\1') + Number(bytesPerSecond) + std::string(4, '\1'));
}

std::string Wave(const std::string& szChunks) {
  return "RIFF" + Number(static_cast<uint32_t>(szChunks.size() + 4)) + "WAVE" + szChunks;
}

class WaveLengthTest : public testing::Test {
 protected:
  std::optional<Elapsed> Length(const std::string& szContents) {
    m_Host.Files().Put(Path, szContents);
    return WaveLength(m_Host.Files(), Path);
  }

  VirtualHost m_Host;
};

TEST_F(WaveLengthTest, IsWhatTheHeaderTells) {
  EXPECT_EQ(Length(Wave(Format(8000) + Chunk("data", std::string(12000, 's')))), milliseconds(1500));
  EXPECT_EQ(Length(Wave(Format(8000) + Chunk("data", ""))), milliseconds(0));
}

TEST_F(WaveLengthTest, OtherChunksAreSteppedOverAtEvenPlaces) {
  const std::string szChunks = Chunk("LIST", "odd") + Format(1000) + Chunk("fact", "four") +
                               Chunk("data", std::string(250, 's')) + Chunk("LIST", "more");
  EXPECT_EQ(Length(Wave(szChunks)), milliseconds(250));
}

TEST_F(WaveLengthTest, SoundThatIsPromisedAndMissingIsNotCounted) {
  const std::string szWhole = Wave(Format(1000) + Chunk("data", std::string(3000, 's')));
  EXPECT_EQ(Length(szWhole.substr(0, szWhole.size() - 1000)), milliseconds(2000));
}

TEST_F(WaveLengthTest, AFileCutOffBeforeItsSoundHasNone) {
  const std::string szWhole = Wave(Format(1000) + Chunk("data", ""));
  for (size_t size = 0; size < szWhole.size(); ++size)
    EXPECT_EQ(Length(szWhole.substr(0, size)), std::nullopt) << size;
}

TEST_F(WaveLengthTest, WhatIsNoWaveFileHasNone) {
  const std::string szData = Chunk("data", std::string(100, 's'));
  EXPECT_EQ(Length("RIFX" + Wave(Format(1000) + szData).substr(4)), std::nullopt);
  EXPECT_EQ(Length(Wave(szData)), std::nullopt) << "its sound comes before its format";
  EXPECT_EQ(Length(Wave(Format(0) + szData)), std::nullopt);
  EXPECT_EQ(Length(Wave(Chunk("fmt ", "short") + szData)), std::nullopt);
  EXPECT_EQ(Length(std::string(1000, 'x')), std::nullopt);
  EXPECT_EQ(WaveLength(m_Host.Files(), "C:\\songs\\none.wav"), std::nullopt);
}

TEST_F(WaveLengthTest, ChunksLongerThanAnyFileEndTheSearch) {
  EXPECT_EQ(Length(Wave("junk" + Number(0xFFFFFFFFU) + Format(1000))), std::nullopt);
}

TEST_F(WaveLengthTest, AFileThatCannotTellLastsAsLongAsItsSequence) {
  MediaNames names;
  m_Host.Files().Put(Path, "no wave file");
  EXPECT_EQ(RecordedMediaFacts(m_Host.Files(), names, Path).Length, std::nullopt);
  names.Learn(Path, "carol.wav", 2500);
  EXPECT_EQ(RecordedMediaFacts(m_Host.Files(), names, Path).Length, milliseconds(2500));
  m_Host.Files().Put(Path, Wave(Format(1000) + Chunk("data", std::string(700, 's'))));
  EXPECT_EQ(RecordedMediaFacts(m_Host.Files(), names, Path).Length, milliseconds(700));
}

TEST(MediaFacts, VideoIsKnownByTheEndOfItsName) {
  const MediaNames names;
  for (const char* szName : {"a.avi", "a.MP4", "a.b.wmv", "C:\\x\\a.Mpg"})
    EXPECT_EQ(AssumedMediaFacts(names, szName).MediaType, "video") << szName;
  for (const char* szName : {"a.ogg", "avi", "a.mp4.wav", "a.mpeg", ""})
    EXPECT_EQ(AssumedMediaFacts(names, szName).MediaType, "audio") << szName;
}

TEST(MediaNames, TheLatestNameOfAPathCounts) {
  MediaNames names;
  EXPECT_EQ(names.NameOf(Path), Path);
  EXPECT_EQ(names.LengthOf(Path), std::nullopt);
  names.Learn(Path, "carol.wav", 1000);
  names.Learn(Path, "CAROL.WAV", std::nullopt);
  EXPECT_EQ(names.NameOf(Path), "CAROL.WAV");
  EXPECT_EQ(names.LengthOf(Path), std::nullopt);
}

}  // namespace
}  // namespace vex

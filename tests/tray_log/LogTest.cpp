#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>
#include <vector>

#include "host/virtual/VirtualFiles.h"
#include "tray/log/LogReader.h"
#include "tray/log/LogWriter.h"
#include "tray/log/RotatedFile.h"

namespace vex::test {
namespace {

constexpr const char* Path = "Z:\\state\\vexmonitor\\log";
const DateTime Eve = DateTime::FromParts(2026, 12, 24, 18, 0, 0);

LogLine Line(const std::string& szText, int64_t second = 0, int32_t lLevel = 1) {
  return {Eve.PlusSeconds(second), lLevel, szText, 1, Eve.PlusSeconds(second)};
}

std::vector<LogLine> ReadAll(Files& files, int64_t* damaged = nullptr) {
  std::vector<LogLine> lines;
  LogReader reader(files, Path);
  reader.Read([&](const LogLine& line) { lines.push_back(line); });
  if (damaged != nullptr) *damaged = reader.Damaged();
  return lines;
}

std::vector<std::string> Texts(const std::vector<LogLine>& lines) {
  std::vector<std::string> texts;
  for (const LogLine& line : lines) texts.push_back(line.Text);
  return texts;
}

std::string Contents(Files& files, const std::string& szPath = Path) {
  std::string szContents;
  files.Read(szPath, szContents);
  return szContents;
}

using testing::Test;

TEST(Log, KeepsLinesWithFullDateAndTime) {
  VirtualFiles files;
  LogWriter writer(files, Path, {});
  writer.Add(Line("Schedule loaded"));
  writer.Add(Line("Cannot read show file: f\xC3\xBCr.shw", 5, 3));
  ASSERT_TRUE(writer.Save());
  EXPECT_EQ(
      Contents(files),
      "{\"time\":\"2026-12-24 18:00:00\",\"level\":1,\"text\":\"Schedule loaded\"}\n"
      "{\"time\":\"2026-12-24 18:00:05\",\"level\":3,\"text\":\"Cannot read show file: f\xC3\xBCr.shw\"}\n");
}

TEST(Log, CountsRepeatsInPlaceOfRepeatingThem) {
  VirtualFiles files;
  LogWriter writer(files, Path, {});
  EXPECT_TRUE(writer.Add(Line("Cannot read show file: eve.shw", 0, 3)));
  size_t size = 0;
  for (int64_t second = 1; second <= 9999; ++second) {
    EXPECT_FALSE(writer.Add(Line("Cannot read show file: eve.shw", second, 3)));
    ASSERT_TRUE(writer.Save());
    size = Contents(files).size();
  }
  EXPECT_LT(size, 200u);
  const auto lines = ReadAll(files);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].Count, 10000);
  EXPECT_EQ(lines[0].Time, Eve);
  EXPECT_EQ(lines[0].Last, Eve.PlusSeconds(9999));
}

TEST(Log, SameTextOfAnotherLevelIsNoRepeat) {
  VirtualFiles files;
  LogWriter writer(files, Path, {});
  writer.Add(Line("late"));
  EXPECT_TRUE(writer.Add(Line("late", 0, 3)));
}

TEST(Log, RepeatsStandWithTheLineTheyRepeat) {
  VirtualFiles files;
  LogWriter writer(files, Path, {});
  writer.Add(Line("a"));
  writer.Add(Line("a", 1));
  writer.Add(Line("b", 2));
  writer.Add(Line("a", 3));
  writer.Add(Line("a", 4));
  writer.Add(Line("a", 5));
  ASSERT_TRUE(writer.Save());
  const auto lines = ReadAll(files);
  EXPECT_EQ(Texts(lines), (std::vector<std::string>{"a", "b", "a"}));
  EXPECT_EQ(lines[0].Count, 2);
  EXPECT_EQ(lines[1].Count, 1);
  EXPECT_EQ(lines[2].Count, 3);
}

TEST(Log, GoesOnInTheFileThatIsThere) {
  VirtualFiles files;
  {
    LogWriter writer(files, Path, {});
    writer.Add(Line("a"));
    writer.Save();
  }
  LogWriter writer(files, Path, {});
  writer.Add(Line("a", 60));
  ASSERT_TRUE(writer.Save());
  EXPECT_EQ(Texts(ReadAll(files)), (std::vector<std::string>{"a", "a"}));
}

TEST(Log, HalfALineOfAnEarlierEndSpoilsNothing) {
  VirtualFiles files;
  files.Put(Path, LogLineToJson(Line("a")) + "\n" + LogLineToJson(Line("b")).substr(0, 20));
  LogWriter writer(files, Path, {});
  writer.Add(Line("c", 60));
  ASSERT_TRUE(writer.Save());
  int64_t damaged = 0;
  EXPECT_EQ(Texts(ReadAll(files, &damaged)), (std::vector<std::string>{"a", "c"}));
  EXPECT_EQ(damaged, 1);
}

TEST(Log, DamagedLinesArePassedOver) {
  VirtualFiles files;
  files.Put(Path,
            "\n{\"count\":2,\"last\":\"2026-12-24 18:00:00\"}\n{}\nnull\n[1]\n{\"time\":1,\"text\":\"x\"}\n" +
                LogLineToJson(Line("good")) + "\n{\"time\":\"2026-13-24\",\"level\":1,\"text\":\"x\"}\n");
  int64_t damaged = 0;
  EXPECT_EQ(Texts(ReadAll(files, &damaged)), (std::vector<std::string>{"good"}));
  EXPECT_EQ(damaged, 6);
}

TEST(Log, RotatesBySizeAndRemovesTheOldest) {
  VirtualFiles files;
  LogWriter writer(files, Path, {200, 3});
  for (int i = 0; i < 12; ++i) writer.Add(Line("line " + std::to_string(i)));
  ASSERT_TRUE(writer.Save());
  EXPECT_LE(Contents(files).size(), 200u);
  EXPECT_TRUE(files.Exists(std::string(Path) + ".2"));
  EXPECT_FALSE(files.Exists(std::string(Path) + ".3"));
  const auto texts = Texts(ReadAll(files));
  ASSERT_GE(texts.size(), 6u);
  for (size_t i = 0; i < texts.size(); ++i)
    EXPECT_EQ(texts[i], "line " + std::to_string(12 - texts.size() + i));
}

TEST(Log, OneFileAloneBeginsAnew) {
  VirtualFiles files;
  LogWriter writer(files, Path, {200, 1});
  for (int i = 0; i < 4; ++i) writer.Add(Line("line " + std::to_string(i)));
  ASSERT_TRUE(writer.Save());
  EXPECT_FALSE(files.Exists(std::string(Path) + ".1"));
  EXPECT_EQ(Texts(ReadAll(files)).back(), "line 3");
}

TEST(Log, LineLongerThanAFileIsKept) {
  VirtualFiles files;
  LogWriter writer(files, Path, {100, 3});
  writer.Add(Line("a"));
  writer.Add(Line(std::string(300, 'b')));
  writer.Add(Line("c"));
  ASSERT_TRUE(writer.Save());
  EXPECT_EQ(Texts(ReadAll(files)).size(), 3u);
}

TEST(Log, CountStaysInTheFileOfItsLine) {
  VirtualFiles files;
  LogWriter writer(files, Path, {70, 3});
  writer.Add(Line("a"));
  for (int i = 1; i < 30; ++i) {
    writer.Add(Line("a", i));
    ASSERT_TRUE(writer.Save());
  }
  EXPECT_FALSE(files.Exists(std::string(Path) + ".1"));
  writer.Add(Line("b", 40));
  ASSERT_TRUE(writer.Save());
  const auto lines = ReadAll(files);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].Count, 30);
}

TEST(Log, ReadsOnWhereARotationWasCutShort) {
  VirtualFiles files;
  files.Put(Path, LogLineToJson(Line("c")) + "\n");
  files.Put(std::string(Path) + ".2", LogLineToJson(Line("b")) + "\n");
  files.Put(std::string(Path) + ".3", LogLineToJson(Line("a")) + "\n");
  EXPECT_EQ(Texts(ReadAll(files)), (std::vector<std::string>{"a", "b", "c"}));
}

TEST(Log, NoLogIsSaidSo) {
  VirtualFiles files;
  LogReader reader(files, Path);
  EXPECT_FALSE(reader.Read([](const LogLine&) {}));
}

TEST(Log, FullDiskKeepsLinesWaiting) {
  VirtualFiles files;
  LogWriter writer(files, Path, {});
  writer.Add(Line("a"));
  ASSERT_TRUE(writer.Save());
  files.FailWrites(Path, "Disk full");
  writer.Add(Line("b", 1));
  writer.Add(Line("b", 2));
  EXPECT_FALSE(writer.Save());
  writer.Add(Line("c", 3));
  EXPECT_FALSE(writer.Flush());
  files.HealWrites(Path);
  EXPECT_TRUE(writer.Flush());
  int64_t damaged = 0;
  const auto lines = ReadAll(files, &damaged);
  EXPECT_EQ(Texts(lines), (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(lines[1].Count, 2);
  EXPECT_EQ(damaged, 0);
}

TEST(Log, WhatADiskThatStaysFullCostsIsSaid) {
  VirtualFiles files;
  files.FailWrites(Path, "Disk full");
  LogWriter writer(files, Path, {});
  for (int i = 0; i < 6000; ++i) writer.Add(Line(std::string(1000, 'x') + std::to_string(i)));
  EXPECT_FALSE(writer.Save());
  files.HealWrites(Path);
  EXPECT_TRUE(writer.Save());
  const auto lines = ReadAll(files);
  ASSERT_GT(lines.size(), 3000u);
  EXPECT_NE(lines[0].Text.find("lines were lost here"), std::string::npos);
  EXPECT_EQ(lines[0].Level, 3);
  EXPECT_EQ(std::stoul(lines[0].Text) + lines.size() - 1, 6000u);
}

TEST(Log, RotationThatFailsLosesNothing) {
  VirtualFiles files;
  LogWriter writer(files, Path, {100, 3});
  writer.Add(Line("line 0"));
  writer.Save();
  files.FailWrites(std::string(Path) + ".1");
  writer.Add(Line("line 1"));
  EXPECT_FALSE(writer.Save());
  files.HealWrites(std::string(Path) + ".1");
  EXPECT_TRUE(writer.Save());
  EXPECT_EQ(Texts(ReadAll(files)), (std::vector<std::string>{"line 0", "line 1"}));
}

class Following : public Test {
 protected:
  std::vector<LogLine> Look(LogFollower& follower) {
    std::vector<LogLine> lines;
    follower.Look([&](const LogLine& line) { lines.push_back(line); });
    return lines;
  }
  VirtualFiles m_Files;
};

TEST_F(Following, GivesWhatComes) {
  LogWriter writer(m_Files, Path, {});
  writer.Add(Line("before"));
  writer.Save();
  LogFollower follower(m_Files, Path);
  EXPECT_TRUE(Look(follower).empty());
  writer.Add(Line("a"));
  writer.Add(Line("b"));
  writer.Save();
  EXPECT_EQ(Texts(Look(follower)), (std::vector<std::string>{"a", "b"}));
  EXPECT_TRUE(Look(follower).empty());
}

TEST_F(Following, BeginsBeforeThereIsALog) {
  LogFollower follower(m_Files, Path);
  LogWriter writer(m_Files, Path, {});
  writer.Add(Line("a"));
  writer.Save();
  EXPECT_EQ(Look(follower).size(), 1u);
}

TEST_F(Following, GivesCountsThatGrow) {
  LogWriter writer(m_Files, Path, {});
  writer.Add(Line("a"));
  writer.Save();
  LogFollower follower(m_Files, Path);
  for (int64_t count = 2; count <= 11; ++count) {
    writer.Add(Line("a", count));
    writer.Save();
    const auto lines = Look(follower);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].Count, count);
    EXPECT_TRUE(Look(follower).empty());
  }
  writer.Add(Line("b", 20));
  writer.Save();
  EXPECT_EQ(Texts(Look(follower)), (std::vector<std::string>{"b"}));
}

TEST_F(Following, ReadsOnThroughARotation) {
  LogWriter writer(m_Files, Path, {200, 3});
  writer.Add(Line("line 0"));
  writer.Save();
  LogFollower follower(m_Files, Path);
  std::vector<std::string> seen;
  for (int i = 1; i < 40; ++i) {
    writer.Add(Line("line " + std::to_string(i)));
    writer.Save();
    if (i % 2 != 0) continue;
    for (const std::string& szText : Texts(Look(follower))) seen.push_back(szText);
  }
  for (const std::string& szText : Texts(Look(follower))) seen.push_back(szText);
  ASSERT_EQ(seen.size(), 39u);
  EXPECT_EQ(seen.front(), "line 1");
  EXPECT_EQ(seen.back(), "line 39");
}

/// Whatever texts come, however often each, whenever they are saved and the writer begins anew: what is read
/// is what came, in its order.
TEST(LogProperty, EveryLineIsReadWithItsCount) {
  rc::check([] {
    VirtualFiles files;
    auto writer = std::make_unique<LogWriter>(files, Path, RotationLimits{300, 1000});
    std::vector<LogLine> came;
    const auto steps = *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 8));
    bool boolNew = true;
    for (size_t i = 0; i < steps.size(); ++i) {
      const int step = steps[i];
      if (step == 7) {
        writer->Save();
        writer = std::make_unique<LogWriter>(files, Path, RotationLimits{300, 1000});
        boolNew = true;
      } else if (step == 6) {
        RC_ASSERT(writer->Save());
      } else {
        const LogLine line =
            Line("text " + std::string(static_cast<size_t>(step) * 7, 'x'), static_cast<int64_t>(i));
        const bool boolRepeats = !boolNew && came.back().Text == line.Text;
        RC_ASSERT(writer->Add(line) == !boolRepeats);
        if (boolRepeats) {
          ++came.back().Count;
          came.back().Last = line.Last;
        } else {
          came.push_back(line);
        }
        boolNew = false;
      }
    }
    RC_ASSERT(writer->Save());
    RC_ASSERT(ReadAll(files) == came);
  });
}

}  // namespace
}  // namespace vex::test

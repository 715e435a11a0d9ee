#include "tools/timeline/ShowContents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/virtual/VirtualHost.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

const char* const Eve =
    "((0,1,2,0,,(s.vexseq),T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,(s.vexseq),T,F,F),"
    "(0,1,2,2,c.vexseq,(m.vexseq),T,F,F),,(2,0,1,0,,,T,F,F),,0,,F)";

class ShowContentsTest : public testing::Test {
 protected:
  void SetUp() override {
    Host.Files().Put("D:\\eve.shw", Eve);
    Host.Registry().SetText("Software\\Brillara\\Shared", "AudioPath", "D:\\");
    Host.Registry().SetText("Software\\Brillara\\Shared", "NonAudioPath", "D:\\");
    for (const char* szName : {"s", "c"})
      Host.Files().Put(std::string("D:\\") + szName + ".vexseq",
                       R"({"format":"vexseq","version":1,"duration":1})");
    Host.Files().Put("D:\\m.vexseq", R"({"format":"vexseq","version":1,"duration":1,"media":"song.ogg"})");
    Host.Files().Put("D:\\song.ogg", "music");
  }
  [[nodiscard]] std::vector<std::string> Troubles(const std::string& szShow = "eve.shw") {
    return ShowContents(Host.Files(), Host.Registry(), "D:\\").Troubles(szShow);
  }

  VirtualHost Host;
};

TEST_F(ShowContentsTest, NoneWhereAllIsThere) {
  EXPECT_THAT(Troubles(), IsEmpty());
}

TEST_F(ShowContentsTest, AFileWithoutAShowIsTold) {
  Host.Files().Put("D:\\eve.shw", "(,,,,,,,0,,F)");
  EXPECT_THAT(Troubles(), ElementsAre("show \"eve.shw\": its file holds no show"));
}

TEST_F(ShowContentsTest, AMissingShowIsNamedWithItsFolder) {
  EXPECT_THAT(Troubles("gone.shw"),
              ElementsAre("show \"gone.shw\": its file is missing or cannot be read; put it into the "
                          "user data folder \"D:\\\" or correct the schedule"));
}

TEST_F(ShowContentsTest, ADamagedShowIsTold) {
  Host.Files().Put("D:\\eve.shw", "((0,1");
  EXPECT_THAT(Troubles(), ElementsAre(HasSubstr("show \"eve.shw\": its file is damaged: ")));
}

TEST_F(ShowContentsTest, AMissingSequenceIsToldOnceForTheShow) {
  ASSERT_TRUE(Host.Files().Remove("D:\\s.vexseq"));
  EXPECT_THAT(Troubles(),
              ElementsAre(HasSubstr("show \"eve.shw\": Sequence file \"s.vexseq\": File not found")));
}

TEST_F(ShowContentsTest, AMissingSequenceIsToldWithThePlacesWhereItBelongs) {
  ASSERT_TRUE(Host.Files().Remove("D:\\s.vexseq"));
  EXPECT_THAT(Troubles(), ElementsAre(EndsWith("(looked for at \"D:\\s.vexseq\")")));
  Host.Registry().SetText("Software\\Brillara\\Shared", "AudioPath", "E:\\");
  EXPECT_THAT(Troubles().front(), EndsWith("(looked for at \"D:\\s.vexseq\" and \"E:\\s.vexseq\")"));
}

TEST_F(ShowContentsTest, ASongIsLookedIntoWhereThatIsWanted) {
  ShowContents contents(Host.Files(), Host.Registry(), "D:\\");
  std::vector<std::string> asked;
  contents.LookIntoSongs([&](const std::string& szPath) {
    asked.push_back(szPath);
    return asked.size() == 1 ? std::string("no music") : std::string();
  });
  EXPECT_THAT(contents.Troubles("eve.shw"),
              ElementsAre("show \"eve.shw\": song \"song.ogg\" of sequence \"m.vexseq\" cannot be played: no "
                          "music (\"D:\\song.ogg\")"));
  EXPECT_THAT(contents.Troubles("eve.shw"), IsEmpty());
  ASSERT_TRUE(Host.Files().Remove("D:\\song.ogg"));
  EXPECT_THAT(contents.Troubles("eve.shw"), ElementsAre(HasSubstr("does not exist")));
  EXPECT_THAT(asked, ElementsAre("D:\\song.ogg", "D:\\song.ogg"));
}

TEST_F(ShowContentsTest, AMissingCleanUpIsTold) {
  ASSERT_TRUE(Host.Files().Remove("D:\\c.vexseq"));
  EXPECT_THAT(Troubles(), ElementsAre(HasSubstr("Sequence file \"c.vexseq\"")));
}

TEST_F(ShowContentsTest, ADamagedSequenceIsTold) {
  Host.Files().Put("D:\\s.vexseq", "{");
  EXPECT_THAT(Troubles(), ElementsAre(HasSubstr("s.vexseq")));
}

TEST_F(ShowContentsTest, AMissingSongIsToldWithItsSequenceAndPlace) {
  ASSERT_TRUE(Host.Files().Remove("D:\\song.ogg"));
  EXPECT_THAT(Troubles(),
              ElementsAre("show \"eve.shw\": song \"song.ogg\" of sequence \"m.vexseq\" does not exist at "
                          "\"D:\\song.ogg\""));
}

}  // namespace
}  // namespace vex

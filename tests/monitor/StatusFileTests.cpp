#include "monitor/StatusFile.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <nlohmann/json.hpp>

#include "host/CodePage.h"
#include "host/virtual/VirtualFiles.h"

namespace vex {
namespace {

constexpr char Path[] = "C:\\run\\status.json";

PlayerStatus Playing() {
  PlayerStatus status;
  status.Pid = 4711;
  status.Started = DateTime::FromParts(2026, 12, 24, 17, 59, 56);
  status.Ready = true;
  status.Link = true;
  status.Current = "(eve.shw,(F,,F,),0,F)";
  status.Playing = {{"Background", "glow.fseq"}, {"Musical", "F\xfcr Elise.vexseq"}};
  status.Media = "D:\\music\\F\xfcr Elise.ogg";
  status.LastError = PlayerStatus::Failure{DateTime::FromParts(2026, 12, 24, 18, 0, 1), "said \"no\"\t\x01"};
  return status;
}

TEST(StatusFile, SaysEverythingInUtf8) {
  EXPECT_EQ(PlayerStatusToJson(Playing()),
            "{\"pid\":4711,\"started\":\"2026-12-24 17:59:56\",\"ready\":true,\"noSchedule\":false,"
            "\"shuttingDown\":false,\"link\":true,\"current\":\"(eve.shw,(F,,F,),0,F)\",\"next\":\"\","
            "\"playing\":[{\"play\":\"Background\",\"file\":\"glow.fseq\"},"
            "{\"play\":\"Musical\",\"file\":\"F\xc3\xbcr Elise.vexseq\"}],"
            "\"media\":\"D:\\\\music\\\\F\xc3\xbcr Elise.ogg\","
            "\"lastError\":{\"time\":\"2026-12-24 18:00:01\",\"text\":\"said \\\"no\\\"\\u0009\\u0001\"}}\n");
}

TEST(StatusFile, APlayerThatHasNothingToSayHasEmptyTextsAndNulls) {
  const auto json = nlohmann::json::parse(PlayerStatusToJson(PlayerStatus()));
  EXPECT_EQ(json["current"], "");
  EXPECT_EQ(json["next"], "");
  EXPECT_TRUE(json["playing"].is_array());
  EXPECT_TRUE(json["playing"].empty());
  EXPECT_TRUE(json["media"].is_null());
  EXPECT_TRUE(json["lastError"].is_null());
  EXPECT_EQ(json.size(), 11U);
}

TEST(StatusFile, AnyTextComesThrough) {
  EXPECT_TRUE(rc::check([](const std::string& szText) {
    PlayerStatus status;
    status.Next = szText;
    status.Playing = {{"Musical", szText}};
    const auto json = nlohmann::json::parse(PlayerStatusToJson(status));
    RC_ASSERT(json["next"].get<std::string>() == AnsiToUtf8(szText));
    RC_ASSERT(json["playing"][0]["file"].get<std::string>() == AnsiToUtf8(szText));
  }));
}

class StatusFileTest : public testing::Test {
 protected:
  StatusFileTest() { m_Files.Put("C:\\run\\other", ""); }
  std::string Contents() {
    std::string szText;
    return m_Files.Read(Path, szText) ? szText : "none";
  }
  VirtualFiles m_Files;
};

TEST_F(StatusFileTest, IsWrittenOnlyWhenItSaysSomethingElse) {
  StatusFile file(m_Files, Path);
  EXPECT_EQ(Contents(), "none");
  file.Update(Playing());
  EXPECT_EQ(Contents(), PlayerStatusToJson(Playing()));
  m_Files.Remove(Path);
  file.Update(Playing());
  EXPECT_EQ(Contents(), "none");
  PlayerStatus status = Playing();
  status.ShuttingDown = true;
  file.Update(status);
  EXPECT_EQ(Contents(), PlayerStatusToJson(status));
}

TEST_F(StatusFileTest, IsTakenAwayAtTheEnd) {
  {
    StatusFile file(m_Files, Path);
    file.Update(Playing());
  }
  EXPECT_EQ(Contents(), "none");
}

TEST_F(StatusFileTest, IsTriedAgainAfterAWriteThatFailed) {
  StatusFile file(m_Files, Path);
  m_Files.FailWrites(Path);
  file.Update(Playing());
  EXPECT_EQ(Contents(), "none");
  m_Files.HealWrites(Path);
  file.Update(Playing());
  EXPECT_EQ(Contents(), PlayerStatusToJson(Playing()));
}

}  // namespace
}  // namespace vex

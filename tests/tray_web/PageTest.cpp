#include "tests/tray_web/Visit.h"

namespace vex {
namespace {

using nlohmann::json;

class Page : public Visit {};

TEST_F(Page, IsServedWithItsFilesAndTheirTypes) {
  for (const auto& [szPath, szType] : {std::pair{"/", "text/html"},
                                       {"/page.css", "text/css"},
                                       {"/page.js", "text/javascript"},
                                       {"/icon.svg", "image/svg+xml"}}) {
    const auto result = Get(szPath);
    ASSERT_TRUE(result) << szPath;
    EXPECT_EQ(result->status, 200) << szPath;
    EXPECT_EQ(result->get_header_value("Content-Type").rfind(szType, 0), 0U) << szPath;
    EXPECT_GT(result->body.size(), 100U) << szPath;
  }
}

TEST_F(Page, NamesNoAddressOutside) {
  for (const char* szPath : {"/", "/page.css", "/page.js"}) {
    const auto szBody = Get(szPath)->body;
    EXPECT_EQ(szBody.find("https://"), std::string::npos) << szPath;
    EXPECT_EQ(szBody.find("src=\"//"), std::string::npos) << szPath;
  }
}

TEST_F(Page, AllAnswersCarryTheHeadersThatKeepABrowserIn) {
  for (const char* szPath : {"/", "/api/state", "/api/week", "/healthz", "/nowhere"}) {
    const auto result = Get(szPath);
    const auto szPolicy = result->get_header_value("Content-Security-Policy");
    EXPECT_EQ(szPolicy.rfind("default-src 'none'; script-src 'self';", 0), 0U) << szPath;
    EXPECT_EQ(szPolicy.find("unsafe"), std::string::npos) << szPath;
    EXPECT_NE(szPolicy.find("frame-ancestors 'none'"), std::string::npos) << szPath;
    EXPECT_EQ(result->get_header_value("X-Content-Type-Options"), "nosniff") << szPath;
    EXPECT_EQ(result->get_header_value("Cache-Control"), "no-store") << szPath;
    EXPECT_FALSE(result->has_header("Access-Control-Allow-Origin")) << szPath;
  }
}

TEST_F(Page, HandsOnWhatTheSiteSays) {
  TheSite->Alter([](FakeSite& site) { site.StateText = R"({"light":"playing"})"; });
  EXPECT_EQ(Get("/api/state")->body, R"({"light":"playing"})");
  EXPECT_EQ(Get("/api/state")->get_header_value("Content-Type"), "application/json");
  EXPECT_EQ(Get("/api/week")->get_header_value("Content-Type"), "image/svg+xml");
  EXPECT_EQ(Get("/metrics")->body, "vextray_up 1\n");
  EXPECT_EQ(Get("/api/history")->body, "[]");
  EXPECT_EQ(JsonAt("/api/shows").size(), 2U);
}

TEST_F(Page, LinesAreAsManyAsAskedForWithinABound) {
  (void)Get("/api/lines?most=7");
  EXPECT_EQ(TheSite->Most(), 7U);
  (void)Get("/api/lines?most=99999999");
  EXPECT_EQ(TheSite->Most(), 2000U);
  (void)Get("/api/lines?most=many");
  EXPECT_EQ(TheSite->Most(), 200U);
  (void)Get("/api/lines");
  EXPECT_EQ(TheSite->Most(), 200U);
}

TEST_F(Page, HealthIsAStatusAndAReason) {
  EXPECT_EQ(Get("/healthz")->status, 200);
  EXPECT_EQ(Get("/healthz")->body, "ok\n");
  TheSite->Alter([](FakeSite& site) { site.Why = "no packets since 18:00"; });
  EXPECT_EQ(Get("/healthz")->status, 503);
  EXPECT_EQ(Get("/healthz")->body, "trouble: no packets since 18:00\n");
}

TEST_F(Page, AFailureOfTheSiteIsToldWithoutItsWords) {
  TheSite->Alter([](FakeSite& site) { site.Throws = true; });
  const auto result = Get("/api/state");
  EXPECT_EQ(result->status, 500);
  EXPECT_EQ(result->body.find("secret"), std::string::npos);
  for (const auto& [szName, szValue] : result->headers)
    EXPECT_EQ(szValue.find("secret"), std::string::npos) << szName;
}

TEST_F(Page, EachButtonIsOneAction) {
  const auto headers = AsPage();
  for (const char* szAction : {"clear", "reload", "link on", "link off"}) {
    const auto result = Post("/api/do", json{{"action", szAction}}.dump(), headers);
    EXPECT_EQ(result->status, 200) << szAction;
    EXPECT_EQ(json::parse(result->body)["text"], "Done.");
  }
  Post("/api/do", json{{"action", "play"}, {"show", "eve.shw"}, {"seconds", 90}}.dump(), headers);
  const auto done = TheSite->Done();
  ASSERT_EQ(done.size(), 5U);
  EXPECT_EQ(done[0].Kind, Action::What::Clear);
  EXPECT_EQ(done[1].Kind, Action::What::Reload);
  EXPECT_EQ(done[2].Kind, Action::What::LinkOn);
  EXPECT_EQ(done[3].Kind, Action::What::LinkOff);
  EXPECT_EQ(done[4].Kind, Action::What::Play);
  EXPECT_EQ(done[4].Show, "eve.shw");
  EXPECT_EQ(done[4].Seconds, 90);
}

TEST_F(Page, WhatThePlayerRefusesIsNoSuccess) {
  TheSite->Alter([](FakeSite& site) { site.Answer = {false, "No player is running."}; });
  const auto result = Post("/api/do", R"({"action":"clear"})", AsPage());
  EXPECT_EQ(result->status, 409);
  EXPECT_EQ(json::parse(result->body)["text"], "No player is running.");
}

TEST_F(Page, OnlyShowsOfTheListArePlayed) {
  const auto headers = AsPage();
  for (const char* szShow : {"", "other.shw", "../eve.shw", "(eve.shw,(F,,F,),2,F)"}) {
    EXPECT_EQ(Post("/api/do", json{{"action", "play"}, {"show", szShow}}.dump(), headers)->status, 400)
        << szShow;
  }
  EXPECT_TRUE(TheSite->Done().empty());
}

TEST_F(Page, AShowPlaysNoLongerThanAWeekAndNoShorterThanNothing) {
  const auto headers = AsPage();
  Post("/api/do", R"({"action":"play","show":"eve.shw","seconds":-5})", headers);
  Post("/api/do", R"({"action":"play","show":"eve.shw","seconds":99999999999})", headers);
  Post("/api/do", R"({"action":"play","show":"eve.shw","seconds":"long"})", headers);
  const auto done = TheSite->Done();
  ASSERT_EQ(done.size(), 3U);
  EXPECT_EQ(done[0].Seconds, 0);
  EXPECT_EQ(done[1].Seconds, 7 * 86400);
  EXPECT_EQ(done[2].Seconds, 0);
}

TEST_F(Page, BodiesThatAreNoActionChangeNothing) {
  const auto headers = AsPage();
  for (const std::string szBody :
       {"", "[]", "null", "{", R"({"action":7})", R"({"action":"STOP"})", R"("stop")"}) {
    EXPECT_EQ(Post("/api/do", szBody, headers)->status, 400) << szBody;
  }
  EXPECT_EQ(Post("/api/do", std::string(8000, '['), headers)->status, 400);
  EXPECT_TRUE(TheSite->Done().empty());
}

TEST_F(Page, ToStopIsAskedTwice) {
  const auto headers = AsPage();
  const auto first = Post("/api/do", R"({"action":"stop"})", headers);
  EXPECT_EQ(first->status, 409);
  EXPECT_TRUE(TheSite->Done().empty());
  const std::string szAgain = json::parse(first->body)["again"];

  const auto wrong = Post("/api/do", R"({"action":"stop","again":"guess"})", headers);
  EXPECT_EQ(wrong->status, 409);
  EXPECT_EQ(Post("/api/do", json{{"action", "stop"}, {"again", szAgain}}.dump(), headers)->status, 409)
      << "a wrong answer makes a new question";
  EXPECT_TRUE(TheSite->Done().empty());

  const std::string szThird = json::parse(Post("/api/do", R"({"action":"stop"})", headers)->body)["again"];
  EXPECT_EQ(Post("/api/do", json{{"action", "stop"}, {"again", szThird}}.dump(), headers)->status, 200);
  ASSERT_EQ(TheSite->Done().size(), 1U);
  EXPECT_EQ(TheSite->Done()[0].Kind, Action::What::Stop);
  EXPECT_EQ(Post("/api/do", json{{"action", "stop"}, {"again", szThird}}.dump(), headers)->status, 409)
      << "the answer is good once";
}

TEST_F(Page, StartsStopsAndStartsAgain) {
  TheServer.Stop();
  EXPECT_EQ(TheServer.Port(), 0);
  TheServer.Stop();
  TheServer.Publish("line", "{}");
  TheServer.Start("127.0.0.1", 0, {});
  EXPECT_EQ(Get("/")->status, 200);
}

TEST_F(Page, ATakenPortIsNamedWithARemedy) {
  Server second(TheSite);
  try {
    second.Start("127.0.0.1", TheServer.Port(), {});
    FAIL() << "two servers on one port";
  } catch (const Error& error) {
    EXPECT_NE(error.Description.find(std::to_string(TheServer.Port())), std::string::npos)
        << error.Description;
    EXPECT_NE(error.Description.find("Address already in use"), std::string::npos) << error.Description;
    EXPECT_NE(error.Description.find("--listen ADDRESS:PORT"), std::string::npos) << error.Description;
  }
  EXPECT_EQ(second.Port(), 0);
}

}  // namespace
}  // namespace vex

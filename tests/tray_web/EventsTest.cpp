#include <future>
#include <thread>

#include "tests/tray_web/Visit.h"
#include "tray/web/EventHub.h"

namespace vex {
namespace {

constexpr std::chrono::milliseconds AtOnce{0};
constexpr std::chrono::seconds Patience{20};

std::string Taken(EventHub::Listener& listener) {
  std::string szEvents;
  listener.Next(szEvents, AtOnce);
  return szEvents;
}

size_t CountOf(const std::string& szText, const std::string& szPart) {
  size_t count = 0;
  for (auto at = szText.find(szPart); at != std::string::npos; at = szText.find(szPart, at + 1)) count++;
  return count;
}

TEST(EventHub, EveryPageGetsEverythingInOrder) {
  EventHub hub(4);
  const auto first = hub.Join();
  const auto second = hub.Join();
  hub.Publish("state", "{\"a\":1}", "");
  hub.Publish("line", "{\"b\":2}", "");
  const std::string szExpected = "event: state\ndata: {\"a\":1}\n\nevent: line\ndata: {\"b\":2}\n\n";
  EXPECT_EQ(Taken(*first), szExpected);
  EXPECT_EQ(Taken(*second), szExpected);
  EXPECT_EQ(Taken(*first), "");
}

TEST(EventHub, ASlowPageGetsTheNewestStateAndTheNewestLightsOfEachUniverse) {
  EventHub hub(1);
  const auto page = hub.Join();
  for (int i = 0; i < 1000; i++) {
    hub.Publish("state", std::to_string(i), "");
    hub.Publish("lights", "[1," + std::to_string(i) + "]", "1");
    hub.Publish("lights", "[2," + std::to_string(i) + "]", "2");
  }
  EXPECT_EQ(Taken(*page),
            "event: state\ndata: 999\n\nevent: lights\ndata: [1,999]\n\nevent: lights\ndata: [2,999]\n\n");
}

TEST(EventHub, ASlowPageLosesOldLinesAndIsToldHowMany) {
  EventHub hub(1);
  const auto page = hub.Join();
  hub.Publish("state", "{}", "");
  for (int i = 0; i < 250; i++) hub.Publish("line", std::to_string(i), "");
  const auto szEvents = Taken(*page);
  EXPECT_EQ(szEvents.find("event: lost\ndata: {\"lines\":50}\n\n"), 0U);
  EXPECT_EQ(CountOf(szEvents, "event: line\n"), 200U);
  EXPECT_EQ(szEvents.find("data: 49\n"), std::string::npos);
  EXPECT_NE(szEvents.find("data: 50\n"), std::string::npos);
  EXPECT_NE(szEvents.find("event: state\n"), std::string::npos);
  hub.Publish("line", "1", "");
  EXPECT_EQ(Taken(*page), "event: line\ndata: 1\n\n") << "told once";
}

TEST(EventHub, TooManyUniversesAreLeftOut) {
  EventHub hub(1);
  const auto page = hub.Join();
  for (int i = 0; i < 5000; i++) hub.Publish("lights", "{}", std::to_string(i));
  EXPECT_EQ(CountOf(Taken(*page), "event: lights\n"), 128U);
}

TEST(EventHub, ALineBreakEndsNoEvent) {
  EXPECT_EQ(AsEvent("state", "{\r\n\"a\":\n1}\n\nevent: line\ndata: x"),
            "event: state\ndata: {  \"a\": 1}  event: line data: x\n\n");
}

TEST(EventHub, HasRoomForSoManyAndGivesItBack) {
  EventHub hub(2);
  const auto first = hub.Join();
  const auto second = hub.Join();
  EXPECT_EQ(hub.Join(), nullptr);
  hub.Leave(first);
  EXPECT_EQ(hub.Count(), 1U);
  EXPECT_NE(hub.Join(), nullptr);
}

TEST(EventHub, ClosingWakesEveryoneAndNobodyJoinsAfter) {
  EventHub hub(2);
  const auto page = hub.Join();
  auto ended = std::async(std::launch::async, [&page] {
    std::string szEvents;
    return page->Next(szEvents, Patience);
  });
  hub.Close();
  EXPECT_FALSE(ended.get());
  EXPECT_EQ(hub.Join(), nullptr);
}

/// Over real connections.
class Events : public Visit {
 protected:
  /// Listens until check() is content with what has come, or the server ends it.
  template <class Check>
  std::future<std::string> Listen(Check check, const httplib::Headers& headers = {}) {
    return std::async(std::launch::async, [this, check, headers] {
      std::string szCome;
      httplib::Client client("127.0.0.1", TheServer.Port());
      client.set_read_timeout(Patience);
      client.Get("/api/events", headers, [&szCome, &check](const char* bytes, size_t size) {
        szCome.append(bytes, size);
        return !check(szCome);
      });
      return szCome;
    });
  }

  void WaitForListeners(size_t count) const {
    while (TheServer.Listeners() != count) std::this_thread::yield();
  }
};

TEST_F(Events, BeginWithTheStateAndGoOn) {
  TheSite->Alter([](FakeSite& site) { site.StateText = R"({"light":"playing"})"; });
  auto come =
      Listen([](const std::string& szCome) { return szCome.find("event: line") != std::string::npos; });
  WaitForListeners(1);
  TheServer.Publish("line", R"({"text":"Starting"})");
  const auto szCome = come.get();
  EXPECT_NE(szCome.find("event: state\ndata: {\"light\":\"playing\"}\n\n"), std::string::npos) << szCome;
  EXPECT_NE(szCome.find("event: line\ndata: {\"text\":\"Starting\"}\n\n"), std::string::npos) << szCome;
}

TEST_F(Events, FiftyPagesAtOnce) {
  std::vector<std::future<std::string>> pages;
  for (int i = 0; i < 50; i++) {
    pages.push_back(
        Listen([](const std::string& szCome) { return szCome.find("the end") != std::string::npos; }));
  }
  WaitForListeners(50);
  EXPECT_EQ(Get("/")->status, 200) << "and others are served beside them";
  TheServer.Publish("line", R"({"text":"the end"})");
  for (auto& page : pages) EXPECT_NE(page.get().find("the end"), std::string::npos);
}

TEST_F(Events, TooManyPagesAreToldSo) {
  std::vector<std::future<std::string>> pages;
  for (int i = 0; i < 64; i++) pages.push_back(Listen([](const std::string&) { return false; }));
  WaitForListeners(64);
  const auto refused = Get("/api/events");
  EXPECT_EQ(refused->status, 503);
  EXPECT_EQ(refused->get_header_value("Retry-After"), "10");
  EXPECT_EQ(Get("/api/state")->status, 200);
  TheServer.Stop();
  for (auto& page : pages) page.get();
}

TEST_F(Events, StoppingEndsThemAtOnce) {
  auto come = Listen([](const std::string&) { return false; });
  WaitForListeners(1);
  TheServer.Stop();
  EXPECT_EQ(come.wait_for(Patience), std::future_status::ready);
}

}  // namespace
}  // namespace vex

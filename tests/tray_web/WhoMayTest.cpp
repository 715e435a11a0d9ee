#include <thread>

#include "tests/tray_web/Visit.h"
#include "tray/web/Addresses.h"
#include "tray/web/Guards.h"

namespace vex {
namespace {

using nlohmann::json;

constexpr const char* Clear = R"({"action":"clear"})";

/// Without passwords, on loopback.
class WhoMay : public Visit {};

TEST_F(WhoMay, APageOfAnotherNameIsRefused) {
  for (const char* szHost :
       {"evil.example", "evil.example:8410", "127.0.0.1.evil.example", "localhost.evil.example",
        "192.168.1.20", "[2001:db8::1]", "127.0.0.1:80x", "127.0.0.1 evil.example", "[::1", "a@127.0.0.1"}) {
    EXPECT_EQ(StatusOf("GET /api/state HTTP/1.1\r\nHost: " + std::string(szHost) + "\r\n\r\n"), 421)
        << szHost;
  }
  for (const char* szHost : {"127.0.0.1", "localhost", "LOCALHOST:8410", "[::1]:8410", "127.0.0.2:1"}) {
    EXPECT_EQ(StatusOf("GET /api/state HTTP/1.1\r\nHost: " + std::string(szHost) + "\r\n\r\n"), 200)
        << szHost;
  }
}

TEST_F(WhoMay, ARequestNamesOneHost) {
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\n\r\n"), 400);
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nHost: evil.example\r\n\r\n"), 400);
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\nHost:\r\n\r\n"), 421);
}

TEST_F(WhoMay, AChangeComesFromOurOwnPage) {
  auto headers = AsPage();
  const auto with = [&headers](const char* szName, const std::string& szValue) {
    auto changed = headers;
    changed.erase(szName);
    if (!szValue.empty()) changed.emplace(szName, szValue);
    return changed;
  };
  for (const std::string szOrigin :
       {"", "null", "http://evil.example", "http://127.0.0.1:1", "http://127.0.0.1", "ftp://127.0.0.1",
        "https://evil.example/http://127.0.0.1"}) {
    EXPECT_EQ(Post("/api/do", Clear, with("Origin", szOrigin))->status, 403) << szOrigin;
  }
  EXPECT_EQ(Post("/api/do", Clear, with("Sec-Fetch-Site", "cross-site"))->status, 403);
  EXPECT_EQ(Post("/api/do", Clear, with("Sec-Fetch-Site", "same-site"))->status, 403);
  EXPECT_TRUE(TheSite->Done().empty());
  EXPECT_EQ(Post("/api/do", Clear, with("Sec-Fetch-Site", "same-origin"))->status, 200);
}

TEST_F(WhoMay, AChangeBringsTheTokenOfThePage) {
  auto headers = AsPage();
  headers.erase("X-Vex-Token");
  EXPECT_EQ(Post("/api/do", Clear, headers)->status, 403);
  headers.emplace("X-Vex-Token", std::string(64, '0'));
  EXPECT_EQ(Post("/api/do", Clear, headers)->status, 403);
  EXPECT_TRUE(TheSite->Done().empty());
}

TEST_F(WhoMay, AChangeIsJsonWhichNoFormCanSend) {
  for (const char* szType :
       {"text/plain", "application/x-www-form-urlencoded", "multipart/form-data; boundary=x"}) {
    EXPECT_EQ(Post("/api/do", Clear, AsPage(), szType)->status, 403) << szType;
  }
  EXPECT_TRUE(TheSite->Done().empty());
}

TEST_F(WhoMay, NothingIsChangedByLooking) {
  EXPECT_EQ(Get("/api/do")->status, 404);
  EXPECT_EQ(Get("/api/do?action=clear")->status, 404);
  EXPECT_EQ(Post("/api/state", Clear, AsPage())->status, 405);
  EXPECT_EQ(Post("/elsewhere", Clear, AsPage())->status, 404);
  EXPECT_TRUE(TheSite->Done().empty());
}

/// Another site cannot read what it has a browser fetch here, but each fetch would hold a place of the
/// page's.
TEST_F(WhoMay, NothingIsFetchedForAPageOfAnotherSite) {
  for (const char* szPath :
       {"/api/events", "/api/state", "/api/week", "/api/session", "/metrics", "/healthz"}) {
    EXPECT_EQ(Get(szPath, {{"Sec-Fetch-Site", "cross-site"}})->status, 403) << szPath;
    EXPECT_EQ(Get(szPath, {{"Sec-Fetch-Site", "same-site"}})->status, 403) << szPath;
  }
  for (const char* szSite : {"same-origin", "none"})
    EXPECT_EQ(Get("/api/state", {{"Sec-Fetch-Site", szSite}})->status, 200) << szSite;
  EXPECT_EQ(Get("/", {{"Sec-Fetch-Site", "cross-site"}})->status, 200)
      << "a link to the page is none of that";
}

TEST_F(WhoMay, ManyWhoSayNothingDoNotKeepOthersOut) {
  std::vector<int> slow;
  for (int i = 0; i < 200; i++) {
    slow.push_back(Connect());
    ::send(slow.back(), "GET / HT", 8, MSG_NOSIGNAL);
  }
  httplib::Client client("127.0.0.1", TheServer.Port());
  client.set_read_timeout(std::chrono::seconds{3});  // less than a slow one is left alone when nobody waits
  const auto result = client.Get("/healthz");
  ASSERT_TRUE(result) << httplib::to_string(result.error());
  EXPECT_EQ(result->status, 200);
  for (const int socket : slow) ::close(socket);
}

TEST_F(WhoMay, HeadIsAnsweredLikeGetWithoutABody) {
  for (const char* szPath : {"/", "/api/state", "/metrics"}) {
    const auto szAnswer = Raw("HEAD " + std::string(szPath) + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
    EXPECT_EQ(szAnswer.find("HTTP/1.1 200"), 0U) << szPath;
    EXPECT_TRUE(szAnswer.ends_with("\r\n\r\n")) << szPath;
  }
}

TEST_F(WhoMay, HeadersOfAnswersTakeNothingFromTheRequest) {
  const auto szAnswer = Raw("GET /x%0d%0aSet-Cookie:%20vextray=1 HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
  EXPECT_EQ(szAnswer.find("HTTP/1.1 404"), 0U);
  EXPECT_EQ(szAnswer.find("Set-Cookie"), std::string::npos);
}

TEST_F(WhoMay, HeadsAreBounded) {
  const std::string szStart = "GET / HTTP/1.1\r\nHost: 127.0.0.1\r\n";
  EXPECT_EQ(StatusOf(szStart + "X: " + std::string(9000, 'x') + "\r\n\r\n"), 431);
  EXPECT_EQ(StatusOf(szStart + std::string(1 << 20, 'x')), 431) << "without an end";
  std::string szMany = szStart;
  for (int i = 0; i < 70; i++) szMany += "X" + std::to_string(i) + ": 1\r\n";
  EXPECT_EQ(StatusOf(szMany + "\r\n"), 431);
  EXPECT_EQ(StatusOf("GET /" + std::string(2000, 'a') + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n"), 414);
  EXPECT_EQ(StatusOf(szStart), 408) << "half a head";
  EXPECT_EQ(StatusOf(szStart + "\r\n"), 200);
}

TEST_F(WhoMay, BodiesAreBounded) {
  auto headers = AsPage();
  std::string szHead = "POST /api/do HTTP/1.1\r\nHost: " + Host() + "\r\nContent-Type: application/json\r\n";
  for (const auto& [szName, szValue] : headers) szHead += szName + ": " + szValue + "\r\n";
  const auto status = [this, &szHead](const std::string& szMore, const std::string& szBody) {
    return StatusOf(szHead + szMore + "\r\n" + szBody);
  };
  EXPECT_EQ(status("Content-Length: 18\r\n", Clear), 200) << "the request itself is good";
  EXPECT_EQ(status("Content-Length: 9000\r\n", std::string(9000, ' ')), 413);
  EXPECT_EQ(status("Content-Length: 99999999999999999999999999\r\n", ""), 413);
  EXPECT_EQ(status("Content-Length: -1\r\n", ""), 400);
  EXPECT_EQ(status("Content-Length: 0x12\r\n", Clear), 400);
  EXPECT_EQ(status("Content-Length: 18\r\nContent-Length: 2\r\n", Clear), 400);
  EXPECT_EQ(status("", Clear), 411);
  EXPECT_EQ(status("Transfer-Encoding: chunked\r\n", "12\r\n" + std::string(Clear) + "\r\n0\r\n\r\n"), 411);
  EXPECT_EQ(status("Content-Length: 18\r\nTransfer-Encoding: chunked\r\n", Clear), 411);
  EXPECT_EQ(status("Content-Length: 18\r\nContent-Encoding: gzip\r\n", Clear), 415)
      << "few bytes that become many";
  EXPECT_EQ(status("Content-Length: 18\r\nContent-Encoding: br\r\n", Clear), 415);
  EXPECT_EQ(TheSite->Done().size(), 1U);
}

TEST_F(WhoMay, AConnectionCarriesOneRequest) {
  const std::string szOne = "GET /healthz HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
  const auto szAnswer = Raw(szOne + szOne);
  EXPECT_EQ(szAnswer.find("HTTP/1.1 200"), 0U);
  EXPECT_EQ(szAnswer.find("HTTP/1.1", 1), std::string::npos);
  EXPECT_NE(szAnswer.find("Connection: close"), std::string::npos);
}

TEST_F(WhoMay, OtherMethodsAndOtherWordsAreRefused) {
  for (const char* szMethod : {"PUT", "DELETE", "OPTIONS", "TRACE", "CONNECT", "PATCH", "PRI", "get"}) {
    EXPECT_EQ(StatusOf(std::string(szMethod) + " / HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n"), 405) << szMethod;
  }
  for (const char* szLine : {"GET / HTTP/2.0", "GET /", "GET", "", "GET  / HTTP/1.1",
                             "GET http://127.0.0.1/ HTTP/1.1", "GET / x HTTP/1.1", " GET / HTTP/1.1"}) {
    EXPECT_EQ(StatusOf(std::string(szLine) + "\r\nHost: 127.0.0.1\r\n\r\n"), 400) << szLine;
  }
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\nHost: 127.0.0.1\n\n\r\n\r\n"), 400) << "line feeds alone";
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\nHost : 127.0.0.1\r\n\r\n"), 400) << "a blank before the colon";
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\n folded\r\n\r\n"), 400);
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nX: a" + std::string(1, '\0') + "b\r\n\r\n"), 400)
      << "a zero byte";
}

TEST_F(WhoMay, NoFileBesideThePageIsServed) {
  for (const char* szPath : {"/index.html/", "/../../etc/passwd", "/%2e%2e/%2e%2e/etc/passwd", "/page.js/..",
                             "//etc/passwd", "/page.js%00.html", "/PAGE.JS"}) {
    EXPECT_EQ(StatusOf("GET " + std::string(szPath) + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n"), 404) << szPath;
  }
}

TEST_F(WhoMay, AThousandRangesAreOnePage) {
  std::string szRanges = "bytes=0-0";
  for (int i = 0; i < 1000; i++) szRanges += ",0-9";
  const auto szAnswer = Raw("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nRange: " + szRanges + "\r\n\r\n");
  EXPECT_EQ(szAnswer.find("HTTP/1.1 200"), 0U);
  EXPECT_EQ(szAnswer.find("multipart/byteranges"), std::string::npos);
}

TEST(WhoMayListen, OthersThanThisMachineNeedPasswords) {
  for (const char* szAddress : {"0.0.0.0", "192.168.1.20", "::", "2001:db8::1"}) {
    Server server(std::make_shared<FakeSite>());
    EXPECT_THROW(server.Start(szAddress, 0, {}), Error) << szAddress;
    EXPECT_EQ(server.Port(), 0);
    EXPECT_NE(ListenNotice(szAddress).find("TLS belongs to a reverse proxy"), std::string::npos);
  }
  for (const char* szAddress : {"127.0.0.1", "::1", "localhost"})
    EXPECT_EQ(ListenNotice(szAddress), "") << szAddress;
  Server server(std::make_shared<FakeSite>());
  EXPECT_THROW(server.Start("show.example.org", 0, {}), Error) << "a name is no address";
  EXPECT_THROW(server.Start("", 0, {}), Error);
}

/// A proxy on this machine hands on what the whole world asks.
TEST(WhoMayListen, AProxysNameNeedsPasswordsOnThisMachineToo) {
  Server server(std::make_shared<FakeSite>());
  try {
    server.Start("127.0.0.1", 0, {"", {"show.example.org"}});
    FAIL() << "everybody may change";
  } catch (const Error& error) {
    EXPECT_NE(error.Description.find("show.example.org"), std::string::npos) << error.Description;
    EXPECT_NE(error.Description.find("--password-file"), std::string::npos) << error.Description;
  }
}

TEST(WhoMayListen, AddressesInTheClothesOfVersion6AreWhatTheyAre) {
  EXPECT_TRUE(IsLoopback("::ffff:127.0.0.1"));
  for (const char* szAddress : {"::ffff:0.0.0.0", "::ffff:192.168.1.20", "::ffff:127.0.0.1.evil.example",
                                "::ffff:", "::127.0.0.1", "127.1", "0x7f000001", "2130706433", "127.0.0.1 "})
    EXPECT_FALSE(IsLoopback(szAddress)) << szAddress;
  Server server(std::make_shared<FakeSite>());
  EXPECT_THROW(server.Start("::ffff:0.0.0.0", 0, {}), Error);
}

}  // namespace
}  // namespace vex

#include <future>
#include <thread>

#include "tests/tray_web/Visit.h"

namespace vex {
namespace {

using nlohmann::json;

constexpr const char* Clear = R"({"action":"clear"})";

/// Hashes take 64 MB and a while; one pair serves all tests.
const std::string& BothPasswords() {
  static const std::string szText = "# made by hand\n\n" + Passwords::Line(Role::Control, "correct horse") +
                                    "\n" + Passwords::Line(Role::View, "looking only") + "\n";
  return szText;
}

class Passworded : public Visit {
 protected:
  void SetUp() override { TheServer.Start("127.0.0.1", 0, {File.Path, {"show.example.org"}}); }

  httplib::Result TryPassword(const std::string& szPassword, const httplib::Headers& more = {}) {
    auto headers = AsPage();
    for (const auto& header : more) headers.insert(header);
    return Post("/api/login", json{{"password", szPassword}}.dump(), headers);
  }

  /// The cookie that a browser would send after logging in.
  std::string LogIn(const std::string& szPassword) {
    const auto szCookie = TryPassword(szPassword)->get_header_value("Set-Cookie");
    return szCookie.substr(0, szCookie.find(';'));
  }

  PrivateFile File{BothPasswords()};
};

TEST_F(Passworded, WithoutOneNothingIsToldAndNothingDone) {
  for (const char* szPath :
       {"/api/state", "/api/lines", "/api/history", "/api/shows", "/api/week", "/api/events", "/metrics"}) {
    EXPECT_EQ(Get(szPath)->status, 401) << szPath;
  }
  EXPECT_EQ(Post("/api/do", Clear, AsPage())->status, 401);
  EXPECT_TRUE(TheSite->Done().empty());
  EXPECT_EQ(Get("/")->status, 200) << "the page itself knows nothing";
  EXPECT_EQ(JsonAt("/api/session")["role"], "none");
}

TEST_F(Passworded, HealthTellsStrangersNoReason) {
  TheSite->Alter([](FakeSite& site) { site.Why = "no packets of eve.shw"; });
  EXPECT_EQ(Get("/healthz")->body, "trouble\n");
  EXPECT_EQ(Get("/healthz", {{"Cookie", LogIn("looking only")}})->body, "trouble: no packets of eve.shw\n");
}

TEST_F(Passworded, TheFirstMayChange) {
  const auto szCookie = LogIn("correct horse");
  EXPECT_EQ(JsonAt("/api/session", {{"Cookie", szCookie}})["role"], "control");
  EXPECT_EQ(Get("/api/state", {{"Cookie", szCookie}})->status, 200);
  EXPECT_EQ(Post("/api/do", Clear, AsPage(szCookie))->status, 200);
}

TEST_F(Passworded, TheSecondMayLookOnly) {
  const auto szCookie = LogIn("looking only");
  EXPECT_EQ(JsonAt("/api/session", {{"Cookie", szCookie}})["role"], "view");
  EXPECT_EQ(Get("/api/state", {{"Cookie", szCookie}})->status, 200);
  EXPECT_EQ(Post("/api/do", Clear, AsPage(szCookie))->status, 403);
  EXPECT_TRUE(TheSite->Done().empty());
}

TEST_F(Passworded, TheCookieIsForTheServerAlone) {
  const auto szCookie = TryPassword("correct horse")->get_header_value("Set-Cookie");
  EXPECT_NE(szCookie.find("; HttpOnly"), std::string::npos) << szCookie;
  EXPECT_NE(szCookie.find("; SameSite=Strict"), std::string::npos) << szCookie;
  EXPECT_EQ(szCookie.find("; Secure"), std::string::npos) << "a browser would drop it without TLS";
  const auto szBehindProxy =
      TryPassword("correct horse", {{"X-Forwarded-Proto", "https"}})->get_header_value("Set-Cookie");
  EXPECT_NE(szBehindProxy.find("; Secure"), std::string::npos) << szBehindProxy;
}

TEST_F(Passworded, TheTokenIsTheSessionsOwn) {
  const auto szCookie = LogIn("correct horse");
  auto headers = AsPage();  // a stranger's token
  headers.emplace("Cookie", szCookie);
  EXPECT_EQ(Post("/api/do", Clear, headers)->status, 403);
  auto other = AsPage(LogIn("correct horse"));
  other.erase("Cookie");
  other.emplace("Cookie", szCookie);
  EXPECT_EQ(Post("/api/do", Clear, other)->status, 403);
  EXPECT_TRUE(TheSite->Done().empty());
}

TEST_F(Passworded, MadeUpCookiesOpenNothing) {
  for (const std::string& szCookie : {std::string("vextray="), "vextray=" + std::string(64, '0'),
                                      std::string("vextray"), std::string("x=y; vextray=1")}) {
    EXPECT_EQ(Get("/api/state", {{"Cookie", szCookie}})->status, 401) << szCookie;
  }
  const auto szCookie = LogIn("correct horse");
  EXPECT_EQ(Get("/api/state", {{"Cookie", "a=b; " + szCookie + "; c=d"}})->status, 200) << "among others";
}

TEST_F(Passworded, LoggingOutEndsTheSession) {
  const auto szCookie = LogIn("correct horse");
  const auto result = Post("/api/logout", "{}", AsPage(szCookie));
  EXPECT_EQ(result->status, 200);
  EXPECT_NE(result->get_header_value("Set-Cookie").find("Max-Age=0"), std::string::npos);
  EXPECT_EQ(Get("/api/state", {{"Cookie", szCookie}})->status, 401);
}

TEST_F(Passworded, LoggingOutEndsWhatThePageHears) {
  const auto szCookie = LogIn("looking only");
  auto heard = std::async(std::launch::async, [&] {
    return Raw("GET /api/events HTTP/1.1\r\nHost: " + Host() + "\r\nCookie: " + szCookie + "\r\n\r\n", true);
  });
  while (TheServer.Listeners() == 0) std::this_thread::yield();
  ASSERT_EQ(Post("/api/logout", "{}", AsPage(szCookie))->status, 200);
  TheServer.Publish("line", R"({"text":"not for strangers"})");
  const auto szHeard = heard.get();
  EXPECT_NE(szHeard.find("text/event-stream"), std::string::npos);
  EXPECT_EQ(szHeard.find("not for strangers"), std::string::npos);
  EXPECT_EQ(Get("/api/events", {{"Cookie", szCookie}})->status, 401);
}

TEST_F(Passworded, LoggingInIsGuardedLikeAnyChange) {
  auto headers = AsPage();
  headers.erase("Origin");
  EXPECT_EQ(Post("/api/login", R"({"password":"correct horse"})", headers)->status, 403);
  headers = AsPage();
  headers.erase("X-Vex-Token");
  EXPECT_EQ(Post("/api/login", R"({"password":"correct horse"})", headers)->status, 403);
}

TEST_F(Passworded, GuessingIsSlowed) {
  for (int i = 0; i < 5; i++) EXPECT_EQ(TryPassword("guess " + std::to_string(i))->status, 401) << i;
  const auto refused = TryPassword("guess 6");
  EXPECT_EQ(refused->status, 429);
  EXPECT_GT(std::stoi(refused->get_header_value("Retry-After")), 20);
  EXPECT_EQ(TryPassword("correct horse")->status, 429) << "the right one is not looked at either";
  EXPECT_EQ(TryPassword("correct horse", {{"X-Forwarded-For", "192.0.2.1, 192.0.2.7"}})->status, 200)
      << "behind a proxy each guest counts for himself";
}

TEST_F(Passworded, AGuestCannotSayWhoHeIs) {
  const auto guess = [this](int i) {
    return TryPassword("guess", {{"X-Forwarded-For", "192.0.2." + std::to_string(i)},
                                 {"X-Forwarded-For", "198.51.100.1"}})
        ->status;
  };
  for (int i = 0; i < 5; i++) EXPECT_EQ(guess(i), 401);
  EXPECT_EQ(guess(6), 429) << "the header that the proxy added is the last one";
}

TEST_F(Passworded, WithoutAProxyNobodyIsForwarded) {
  TheServer.Start("127.0.0.1", 0, {File.Path, {}});
  for (int i = 0; i < 5; i++)
    (void)TryPassword("guess", {{"X-Forwarded-For", "192.0.2." + std::to_string(i)}});
  EXPECT_EQ(TryPassword("guess", {{"X-Forwarded-For", "192.0.2.9"}})->status, 429);
}

/// A session that somebody else put into the browser does not become the owner's by logging in.
TEST_F(Passworded, ALoginIsANewSessionAndEndsTheFormer) {
  const auto szFormer = LogIn("looking only");
  const auto szPut = "vextray=" + std::string(64, 'a');
  const auto result = Post("/api/login", R"({"password":"correct horse"})", AsPage(szFormer));
  ASSERT_EQ(result->status, 200);
  const auto szCookie = result->get_header_value("Set-Cookie");
  EXPECT_EQ(szCookie.find(szFormer), std::string::npos);
  EXPECT_EQ(Get("/api/state", {{"Cookie", szFormer}})->status, 401);
  const auto planted = Post("/api/login", R"({"password":"correct horse"})", AsPage(szPut));
  EXPECT_EQ(planted->get_header_value("Set-Cookie").find(szPut), std::string::npos);
  EXPECT_EQ(Get("/api/state", {{"Cookie", szPut}})->status, 401);
}

TEST_F(Passworded, TheCookieNamesNoOtherMachine) {
  const auto szCookie = TryPassword("correct horse")->get_header_value("Set-Cookie");
  EXPECT_EQ(szCookie.find("Domain"), std::string::npos) << szCookie;
  EXPECT_NE(szCookie.find("; Path=/"), std::string::npos) << szCookie;
}

TEST_F(Passworded, WhoIsInStaysInWhileOthersGuess) {
  const auto szCookie = LogIn("correct horse");
  for (int i = 0; i < 6; i++) (void)TryPassword("guess");
  EXPECT_EQ(Post("/api/do", Clear, AsPage(szCookie))->status, 200);
}

TEST_F(Passworded, ProgramsLookByBasicAuthorization) {
  const auto basic = [](const std::string& szPassword) {
    return httplib::Headers{httplib::make_basic_authentication_header("prometheus", szPassword)};
  };
  EXPECT_EQ(Get("/metrics", basic("looking only"))->status, 200);
  EXPECT_EQ(Get("/metrics", basic("wrong"))->status, 401);
  EXPECT_EQ(Get("/metrics", {{"Authorization", "Basic !!!"}})->status, 401);
  auto headers = AsPage();
  headers.insert(httplib::make_basic_authentication_header("x", "correct horse"));
  EXPECT_EQ(Post("/api/do", Clear, headers)->status, 401) << "a browser would send it along unasked";
  EXPECT_TRUE(TheSite->Done().empty());
}

TEST_F(Passworded, AProxysNameIsOursWhenItWasNamed) {
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\nHost: show.example.org\r\n\r\n"), 200);
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\nHost: Show.Example.org:443\r\n\r\n"), 200);
  EXPECT_EQ(StatusOf("GET / HTTP/1.1\r\nHost: other.example.org\r\n\r\n"), 421);
}

TEST(PasswordFile, IsPrivateOrRefused) {
  namespace fs = std::filesystem;
  const PrivateFile file(BothPasswords());
  EXPECT_NO_THROW(Passwords{file.Path});
  for (const auto more :
       {fs::perms::group_read, fs::perms::others_read, fs::perms::group_write, fs::perms::owner_exec}) {
    fs::permissions(file.Path, fs::perms::owner_read | fs::perms::owner_write | more);
    try {
      Passwords read(file.Path);
      FAIL() << "others may touch it";
    } catch (const Error& error) {
      EXPECT_NE(error.Description.find("chmod 600"), std::string::npos) << error.Description;
    }
  }
  EXPECT_THROW(Passwords{"/nowhere/at/all"}, Error);
  EXPECT_THROW(Passwords{testing::TempDir()}, Error);
}

TEST(PasswordFile, IsJudgedByWhatIsOpenedNotByItsName) {
  namespace fs = std::filesystem;
  const PrivateFile file(BothPasswords());
  const auto szLink = file.Path + ".link";
  fs::remove(szLink);
  fs::create_symlink(file.Path, szLink);
  EXPECT_NO_THROW(Passwords{szLink});
  fs::permissions(file.Path, fs::perms::group_read, fs::perm_options::add);
  EXPECT_THROW(Passwords{szLink}, Error) << "the link's own mode tells nothing";
  fs::remove(szLink);
  ASSERT_EQ(::mkfifo(szLink.c_str(), 0600), 0);
  EXPECT_THROW(Passwords{szLink}, Error) << "and a pipe holds nobody up";
  fs::remove(szLink);
}

TEST(PasswordFile, OfAnotherUserIsRefused) {
  const PrivateFile file(BothPasswords());
  if (::chown(file.Path.c_str(), 12345, 12345) != 0) GTEST_SKIP() << "only root gives files away";
  EXPECT_THROW(Passwords{file.Path}, Error);
}

TEST(PasswordFile, WithoutAnEndIsRefused) {
  const PrivateFile file(std::string(1 << 20, '#'));
  EXPECT_THROW(Passwords{file.Path}, Error);
}

TEST(PasswordFile, WhatItHoldsIsToldByLine) {
  const auto complaint = [](const std::string& szText) {
    const PrivateFile file(szText);
    try {
      Passwords read(file.Path);
      return std::string("none");
    } catch (const Error& error) {
      return error.Description;
    }
  };
  const auto szLine = Passwords::Line(Role::View, "a");
  EXPECT_NE(complaint("").find("holds no password"), std::string::npos);
  EXPECT_NE(complaint("# nothing\n").find("holds no password"), std::string::npos);
  EXPECT_NE(complaint("control plain text\n").find("line 1: this is no argon2 hash"), std::string::npos);
  EXPECT_NE(complaint(szLine + "\nadmin x\n").find("line 2: expected"), std::string::npos);
  EXPECT_NE(complaint(szLine + "\n" + szLine).find("line 2: a second password"), std::string::npos);
  EXPECT_EQ(complaint(szLine + "\r\n"), "none");
}

TEST(PasswordFile, TellsWhosePasswordItIs) {
  const PrivateFile file(BothPasswords());
  const Passwords passwords(file.Path);
  EXPECT_EQ(passwords.Of("correct horse"), Role::Control);
  EXPECT_EQ(passwords.Of("looking only"), Role::View);
  EXPECT_EQ(passwords.Of("correct horse "), Role::None);
  EXPECT_EQ(passwords.Of(""), Role::None);
  EXPECT_EQ(passwords.Of(std::string(5000, 'x')), Role::None);
  EXPECT_THROW((void)Passwords::Line(Role::Control, ""), Error);
  EXPECT_THROW((void)Passwords::Line(Role::None, "x"), Error);
}

}  // namespace
}  // namespace vex

#pragma once

#include <gtest/gtest.h>
#include <httplib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "basic/Error.h"
#include "tests/tray_web/FakeSite.h"
#include "tray/web/Passwords.h"
#include "tray/web/Server.h"

namespace vex {

/// A server on loopback with a fake site behind it, and ways to visit it: as a page would, and byte by byte.
class Visit : public testing::Test {
 protected:
  void SetUp() override { TheServer.Start("127.0.0.1", 0, {}); }

  [[nodiscard]] std::string Host() const { return "127.0.0.1:" + std::to_string(TheServer.Port()); }
  [[nodiscard]] std::string Origin() const { return "http://" + Host(); }

  httplib::Result Get(const std::string& szPath, const httplib::Headers& headers = {}) {
    httplib::Client client("127.0.0.1", TheServer.Port());
    return client.Get(szPath, headers);
  }

  [[nodiscard]] nlohmann::json JsonAt(const std::string& szPath, const httplib::Headers& headers = {}) {
    const auto result = Get(szPath, headers);
    return result ? nlohmann::json::parse(result->body) : nlohmann::json();
  }

  /// The headers that our own page sends with a change.
  [[nodiscard]] httplib::Headers AsPage(const std::string& szCookie = {}) {
    httplib::Headers headers{{"Origin", Origin()}};
    if (!szCookie.empty()) headers.emplace("Cookie", szCookie);
    headers.emplace("X-Vex-Token", JsonAt("/api/session", headers)["token"].get<std::string>());
    return headers;
  }

  httplib::Result Post(const std::string& szPath, const std::string& szBody, const httplib::Headers& headers,
                       const std::string& szType = "application/json") {
    httplib::Client client("127.0.0.1", TheServer.Port());
    return client.Post(szPath, headers, szBody, szType);
  }

  /// What comes back for these bytes, up to the end of the connection; the server ends it where it stays
  /// open on this side.
  [[nodiscard]] std::string Raw(const std::string& szBytes, bool boolStaysOpen = false) const {
    const int socket = Connect();
    std::string szAnswer;
    ::send(socket, szBytes.data(), szBytes.size(), MSG_NOSIGNAL);
    if (!boolStaysOpen) ::shutdown(socket, SHUT_WR);
    char some[4096];
    for (ssize_t count = 0; (count = ::recv(socket, some, sizeof(some), 0)) > 0;) {
      szAnswer.append(some, static_cast<size_t>(count));
    }
    ::close(socket);
    return szAnswer;
  }

  [[nodiscard]] int Connect() const {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(TheServer.Port()));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    return socket;
  }

  [[nodiscard]] int StatusOf(const std::string& szBytes) const {
    const auto szAnswer = Raw(szBytes);
    return szAnswer.rfind("HTTP/1.1 ", 0) == 0 ? std::stoi(szAnswer.substr(9, 3)) : 0;
  }

  std::shared_ptr<FakeSite> TheSite = std::make_shared<FakeSite>();
  Server TheServer{TheSite};
};

/// A file of this test alone, gone with it.
class PrivateFile {
 public:
  explicit PrivateFile(const std::string& szText) {
    std::ofstream(Path) << szText;
    std::filesystem::permissions(Path,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  }
  ~PrivateFile() { std::filesystem::remove(Path); }
  PrivateFile(const PrivateFile&) = delete;
  PrivateFile& operator=(const PrivateFile&) = delete;

  const std::string Path = testing::TempDir() + "vextray-" + std::to_string(::getpid()) + "-" +
                           testing::UnitTest::GetInstance()->current_test_info()->name();
};

}  // namespace vex

// The door of the tray's web server: any bytes as a request, and any bytes as the body of a change that is
// our page's own. Whatever comes, the answer is whole or none, and the player is asked for nothing that the
// page does not offer.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tray/web/Desk.h"

namespace {

using namespace vex;

/// A request out of memory; its answer is kept.
class MemoryConnection final : public Connection {
 public:
  explicit MemoryConnection(std::string szBytes) : m_Bytes(std::move(szBytes)) {}

  [[nodiscard]] bool is_readable() const override { return true; }
  [[nodiscard]] bool is_writable() const override { return true; }
  ssize_t write(const char* bytes, size_t size) override {
    Answer.append(bytes, size);
    return static_cast<ssize_t>(size);
  }
  void get_remote_ip_and_port(std::string& szAddress, int& port) const override {
    szAddress = "127.0.0.1";
    port = 1;
  }
  void get_local_ip_and_port(std::string& szAddress, int& port) const override {
    get_remote_ip_and_port(szAddress, port);
  }
  [[nodiscard]] socket_t socket() const override { return -1; }

  std::string Answer;

 protected:
  /// In pieces, as a network brings them.
  ssize_t Receive(char* bytes, size_t size) override {
    const auto count = std::min({size, m_Bytes.size() - m_At, size_t{97}});
    std::memcpy(bytes, m_Bytes.data() + m_At, count);
    m_At += count;
    return static_cast<ssize_t>(count);
  }

 private:
  std::string m_Bytes;
  size_t m_At = 0;
};

class FuzzSite final : public Site {
 public:
  bool Guarded = true;

  std::string State() override { return "{}"; }
  std::string Metrics() override { return "up 1\n"; }
  bool Healthy(std::string&) override { return true; }
  std::string Week() override { return "<svg/>"; }
  std::string Lines(size_t) override { return "[]"; }
  std::string History() override { return "[]"; }
  std::string Shows() override { return R"(["eve.shw"])"; }
  Outcome Do(const Action& action) override {
    if (Guarded) std::abort();                            // nobody knows the token
    if (action.Kind == Action::What::Stop) std::abort();  // nobody was asked before
    if (action.Kind == Action::What::Play && (action.Show != "eve.shw" || action.Seconds < 0)) std::abort();
    return {true, "Done."};
  }
};

struct Stage {
  std::shared_ptr<FuzzSite> Site = std::make_shared<FuzzSite>();
  std::shared_ptr<Doorman> Door = std::make_shared<Doorman>(Guards{}, true);
  std::shared_ptr<EventHub> Hub = std::make_shared<EventHub>(4);
  Desk TheDesk{Site, Door, Hub};
  HttpServer Http{1};
  std::string Token = Door->Look(httplib::Request()).Token;

  Stage() {
    Hub->Close();  // a page that listens would listen for ever
    TheDesk.Serve(Http);
  }

  void Ask(const std::string& szBytes) {
    MemoryConnection connection(szBytes);
    Http.Serve(connection);
    const auto& szAnswer = connection.Answer;
    if (szAnswer.empty()) return;
    if (szAnswer.rfind("HTTP/1.1 ", 0) != 0 || szAnswer.find("\r\n\r\n") == std::string::npos) std::abort();
    if (szAnswer.find("Connection: close") == std::string::npos) std::abort();
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Stage stage;
  const std::string szBytes(reinterpret_cast<const char*>(data), size);
  stage.Site->Guarded = true;
  stage.Ask(szBytes);
  stage.Site->Guarded = false;
  stage.Ask(
      "POST /api/do HTTP/1.1\r\nHost: localhost\r\nOrigin: http://localhost\r\nContent-Type: "
      "application/json\r\nX-Vex-Token: " +
      stage.Token + "\r\nContent-Length: " + std::to_string(size) + "\r\n\r\n" + szBytes);
  return 0;
}

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/CodePage.h"
#include "host/Host.h"
#include "settings/LibRegistryVex.h"
#include "tray/watch/TrayRequests.h"
#include "tray/watch/TraySite.h"
#include "tray/watch/Watchman.h"
#include "tray/web/Addresses.h"
#include "tray/web/Passwords.h"
#include "tray/web/Server.h"

namespace {

constexpr const char* Description =
    "Keep the log of VexMonitor, watch whether its shows really play, and show both on a page.\n\n"
    "  vextray                                 the page is at http://127.0.0.1:8410\n"
    "  vextray --on-trouble /home/me/ring.sh   runs that with \"begin\" or \"end\" and what is missing\n"
    "  vextray --listen 0.0.0.0 --password-file /home/me/.vextray-passwords\n"
    "  vextray --hash-password control >> /home/me/.vextray-passwords   asks for the password\n"
    "  vextray --listen off                    no page; read the log with vexctl log and vexctl history\n\n"
    "It takes the tray program's place and finds the player in VEX_RUNTIME_DIR (default\n"
    "$XDG_RUNTIME_DIR/vexmonitor, else /tmp/vexmonitor-UID), whenever that comes or goes. Log and history "
    "lie in\n"
    "$XDG_STATE_HOME/vexmonitor (default ~/.local/state/vexmonitor). Ctrl-C ends it.\n"
    "Exit status: 0 ended, 1 could not begin, 2 wrong usage.";

constexpr int ExitDone = 0;
constexpr int ExitCannot = 1;
constexpr int ExitUsage = 2;

struct Options {
  std::string Listen = "127.0.0.1:8410";
  vex::Guards Doors;
  std::string OnTrouble;
  std::string HashPassword;
  uint64_t LogKilobytes = 1024;
  int32_t LogFiles = 10;
  bool Packets = true;
  vex::SoundBy Sound = vex::SoundBy::Auto;
};

void AddOptions(CLI::App& app, Options& options) {
  const std::map<std::string, bool> packets{{"auto", true}, {"off", false}};
  const std::map<std::string, vex::SoundBy> sound{{"auto", vex::SoundBy::Auto},
                                                  {"card", vex::SoundBy::Card},
                                                  {"lights", vex::SoundBy::Lights},
                                                  {"off", vex::SoundBy::Nothing}};
  constexpr int32_t mostKilobytes = 1 << 20;
  app.add_option("--listen", options.Listen,
                 "where the page is, ADDRESS or ADDRESS:PORT, or \"off\" (default 127.0.0.1:8410); other "
                 "than this machine's own "
                 "address only with --password-file");
  app.add_option("--password-file", options.Doors.szPasswordFile,
                 "the passwords of the page, a line of --hash-password for each; mode 0600");
  app.add_option("--name", options.Doors.Names,
                 "a name by which a proxy reaches the page; may be given several times");
  app.add_option("--hash-password", options.HashPassword,
                 "print the line of --password-file for the password on standard input, and end")
      ->check(CLI::IsMember({"control", "view"}));
  app.add_option(
      "--on-trouble", options.OnTrouble,
      "run this once when trouble begins and once when it ends, with \"begin\" or \"end\" and what is "
      "missing behind it");
  app.add_option("--log-size", options.LogKilobytes, "kilobytes of a file of the log (default 1024)")
      ->check(CLI::Range(1, mostKilobytes));
  app.add_option("--log-files", options.LogFiles, "files of the log that are kept (default 10)")
      ->check(CLI::Range(1, vex::RotatedFile::MostFiles));
  app.add_option("--packets", options.Packets,
                 "auto: look for the player's packets on the network; off: leave them out of the light")
      ->transform(CLI::CheckedTransformer(packets));
  app.add_option("--sound", options.Sound,
                 "what tells that the sound moves: card, lights (levels that follow it), off, or auto: the "
                 "card where "
                 "there is one")
      ->transform(CLI::CheckedTransformer(sound));
}

int HashPassword(const std::string& szWho) {
  std::string szPassword;
  std::cerr << "password: ";
  std::getline(std::cin, szPassword);
  std::cout << vex::Passwords::Line(szWho == "control" ? vex::Role::Control : vex::Role::View, szPassword)
            << "\n";
  return ExitDone;
}

/// "ADDRESS:PORT", or an address alone, which has the usual port; raises a usage error for anything else.
std::pair<std::string, int> AddressAndPort(const std::string& szListen) {
  constexpr const char* usualPort = "8410";
  const size_t lastColon = szListen.rfind(':');
  const bool boolAddress6 =
      szListen.ends_with(']') || (szListen.find(':') != lastColon && !szListen.starts_with('['));
  const bool boolAlone = lastColon == std::string::npos || boolAddress6;
  const size_t colon = boolAlone ? szListen.size() : lastColon;
  const std::string szPort = boolAlone ? usualPort : szListen.substr(colon + 1);
  constexpr size_t mostDigits = 5;
  constexpr int mostPort = 65535;
  const bool boolNumber =
      !szPort.empty() && szPort.size() <= mostDigits &&
      std::ranges::all_of(szPort, [](char digit) { return digit >= '0' && digit <= '9'; });
  std::string szAddress = szListen.substr(0, colon);
  if (szAddress.starts_with('[') && szAddress.ends_with(']'))
    szAddress = szAddress.substr(1, szAddress.size() - 2);
  if (!boolNumber || std::stoi(szPort) > mostPort ||
      (!vex::IsAddress(szAddress) && !vex::IsLoopback(szAddress)))
    throw CLI::ValidationError("--listen",
                               "\"" + szListen + "\" is no ADDRESS or ADDRESS:PORT, as 127.0.0.1:8410");
  return {szAddress, std::stoi(szPort)};
}

std::string Base64(std::span<const uint8_t> bytes) {
  constexpr char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string szText;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t here = std::min<size_t>(3, bytes.size() - i);
    uint32_t three = 0;
    for (size_t j = 0; j < 3; ++j) three = three << 8U | (j < here ? bytes[i + j] : 0U);
    for (size_t j = 0; j < 4; ++j) szText += j <= here ? letters[three >> (18 - 6 * j) & 63U] : '=';
  }
  return szText;
}

std::string LightsToJson(const vex::HeardUniverse& heard) {
  return nlohmann::json{{"universe", heard.Universe},
                        {"protocol", heard.Protocol == vex::LightProtocol::Sacn ? "sacn" : "artnet"},
                        {"slots", Base64(heard.Slots)}}
      .dump();
}

/// The watchman with the page before it.
class Tray {
 public:
  Tray(vex::Host& host, const Options& options)
      : m_Host(host),
        m_Watchman(host, {{options.LogKilobytes * 1024, options.LogFiles},
                          options.Packets,
                          options.Sound,
                          CommandOf(options.OnTrouble)}),
        m_Site(std::make_shared<vex::TraySite>(host,
                                               [this](const vex::Action& action) {
                                                 return vex::AskPlayer(m_Watchman.Channel(), m_Host, action);
                                               })),
        m_Server(m_Site),
        m_WeekTimer(host.EventLoop().NewTimer(vex::TimerOrder::Component)) {
    m_Watchman.StateLooked = [this](const vex::TrayState& state) {
      m_Site->Put(state);
      if (m_Server.Listeners() > 0) m_Server.Publish("state", vex::StateToJson(state));
    };
    m_Watchman.LineCame = [this](const vex::LogLine& line) {
      const uint64_t number = m_Site->Put(line);
      if (m_Server.Listeners() > 0) m_Server.Publish("line", vex::LineForPage(line, number));
    };
    m_Watchman.HistoryChanged = [this](const vex::HistoryShelf& history) { m_Site->Put(history); };
    m_Watchman.LightsChanged = [this](const vex::HeardUniverse& heard) {
      if (m_Server.Listeners() == 0) return;
      m_Server.Publish(
          "lights", LightsToJson(heard),
          std::to_string(heard.Universe) + (heard.Protocol == vex::LightProtocol::Sacn ? "s" : "a"));
    };
    m_Watchman.PlayerCame = [this] { PutWeek(); };
  }

  void Run(const Options& options) {
    constexpr int32_t weekMs = 60'000;
    m_Host.OnTerminate([this] { m_Host.EventLoop().Quit(); });
    PutWeek();
    m_Site->Put(m_Watchman.History());
    m_Watchman.Begin();
    if (options.Listen != "off") {
      const auto [szAddress, port] = AddressAndPort(options.Listen);
      m_Server.Start(szAddress, port, options.Doors);
      const std::string szNotice = vex::ListenNotice(szAddress);
      if (!szNotice.empty()) std::cerr << "vextray: " << szNotice << "\n";
      const bool boolAddress6 = szAddress.find(':') != std::string::npos;
      std::cout << "vextray listens at http://" << (boolAddress6 ? "[" + szAddress + "]" : szAddress) << ":"
                << m_Server.Port() << std::endl;
    }
    m_WeekTimer->Interval(weekMs);
    m_WeekTimer->Tick([this] { PutWeek(); });
    m_WeekTimer->Enabled(true);
    m_Host.EventLoop().Run();
    m_Site->Close();
    m_Server.Stop();
    m_Watchman.End();
  }

 private:
  static std::string CommandOf(const std::string& szUtf8) {
    std::string szCommand;
    if (!vex::Utf8ToAnsi(szUtf8, szCommand))
      throw CLI::ValidationError("--on-trouble", "the command holds a character outside Windows-1252");
    return szCommand;
  }
  void PutWeek() { m_Site->PutWeek(vex::WeekPicture(m_Host), vex::ShowNames(m_Host)); }

  vex::Host& m_Host;
  vex::Watchman m_Watchman;
  std::shared_ptr<vex::TraySite> m_Site;
  vex::Server m_Server;
  std::unique_ptr<vex::Timer> m_WeekTimer;
};

int Run(int argc, char** argv) {
  const auto host = vex::NativeHost();
  host->DriveTable([&registry = host->Registry()](char letter) {
    return vex::GetProductString(registry, std::string(1, letter), "Drives", "");
  });
  Options options;
  CLI::App app(Description, "vextray");
  AddOptions(app, options);
  app.failure_message([](const CLI::App*, const CLI::Error& error) {
    return std::string("vextray: ") + error.what() + "; see vextray --help\n";
  });
  try {
    std::vector<std::string> arguments = host->Arguments(argc, argv);
    if (!arguments.empty()) arguments.erase(arguments.begin());
    std::ranges::reverse(arguments);
    app.parse(arguments);
    if (!options.HashPassword.empty()) return HashPassword(options.HashPassword);
    if (options.Listen != "off") (void)AddressAndPort(options.Listen);
    Tray(*host, options).Run(options);
    return ExitDone;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? ExitDone : ExitUsage;
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "vextray: " << error.what() << "\n";
    return ExitCannot;
  }
}

#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "components/open/wire/UniversePacket.h"
#include "host/virtual/VirtualHost.h"
#include "monitor/Msg.h"
#include "monitor/VexMessage.h"
#include "tray/log/LogReader.h"
#include "tray/watch/Watchman.h"

namespace vex::test {

constexpr uint32_t Loopback = 0x7F000001;

/// A machine in memory on which the test is the player, its lights and its sound card, and a watchman looks.
class Evening : public testing::Test {
 protected:
  Evening() {
    const std::string szKey = "Software\\Brillara\\";
    Host.Registry().SetText(szKey + "Output", "Host", "127.0.0.1");
    Host.Registry().SetText(szKey + "Shared", "AudioPath", "Z:\\songs\\");
    Host.Registry().SetText(szKey + "Shared", "NonAudioPath", "Z:\\songs\\");
    Host.Registry().SetText("Software\\Brillara", "UserDataPath", "Z:\\shows\\");
    Host.Files().Put("Z:\\songs\\carol.vexseq", R"({"format":"vexseq","version":1,"duration":60,"events":[
        {"kind":"main","network":0,"unit":1,"circuit":1,"start":1.0,"from":100,"to":100}]})");
  }

  void Begin() {
    TheWatchman = std::make_unique<Watchman>(Host, Options);
    TheWatchman->StateLooked = [this](const TrayState& state) { State = state; };
    TheWatchman->LineCame = [this](const LogLine& line) { Lines.push_back(line); };
    TheWatchman->HistoryChanged = [this](const HistoryShelf&) { ++HistoryTold; };
    TheWatchman->LightsChanged = [this](const HeardUniverse& heard) { Lights.push_back(heard.Slots[0]); };
    TheWatchman->Begin();
  }
  /// The watch has begun, and the player has come and is known to it.
  void BeginBesideAPlayer() {
    Begin();
    StartPlayer();
    Seconds(2);
  }
  void Seconds(int64_t seconds) { Host.EventLoop().Advance(seconds * 1000); }

  // The player.

  void StartPlayer() {
    Player = Host.Windows().NewMainWindow();
    auto procedure = std::make_shared<WindowProcedure>([this](const WindowMessage& message) {
      Asked.push_back(CopyDataToString(message.Copy));
      TrayHandle = static_cast<WindowHandle>(message.wParam);
      if (Answers) SendVexMessage(Host.Windows(), Player, TrayHandle, MessageCurrentShow, "");
      return intptr_t{1};
    });
    Host.Windows().ExchangeProcedure(Player, procedure);
    Says();
  }
  void EndPlayer() {
    Host.Windows().DestroyWindow(Player);
    (void)Host.Files().Remove(Host.PlayerFinder().StatusFile());
  }
  void Tell(const std::string& szLine) {
    SendVexMessage(Host.Windows(), Player, TrayHandle, MessageStatus, szLine);
  }
  /// What status.json says: the sequences that play and the song.
  void Says(const std::vector<std::string>& playing = {}, const std::string& szMedia = {},
            const std::string& szError = {}) {
    nlohmann::json sequences = nlohmann::json::array();
    for (const std::string& szFile : playing) sequences.push_back({{"play", "Musical"}, {"file", szFile}});
    const nlohmann::json status{
        {"pid", 1},
        {"started", "2026-12-24 17:00:00"},
        {"ready", true},
        {"noSchedule", false},
        {"shuttingDown", false},
        {"link", true},
        {"current", playing.empty() ? "" : "(eve.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)"},
        {"next", "(late.shw,(T,2026-12-24 23:00:00,F,),1,F)"},
        {"playing", sequences},
        {"media", szMedia.empty() ? nlohmann::json(nullptr) : nlohmann::json(szMedia)},
        {"lastError", szError.empty() ? nlohmann::json(nullptr)
                                      : nlohmann::json{{"time", "2026-12-24 18:00:00"}, {"text", szError}}}};
    Host.Files().Put(Host.PlayerFinder().StatusFile(), status.dump());
  }

  // Its lights and its sound card.

  void Light(uint8_t level, uint16_t universe = 1, const std::string& szName = "VexMonitor") {
    UniversePacket packet = UniversePacket::E131({Uuid{}, szName, 100}, universe);
    packet.Slots()[0] = level;
    Host.Datagrams().Deliver({Loopback, E131Port}, {Loopback, 1}, packet.Bytes());
  }
  /// Lights as a player sends them, ten times a second.
  void Shine(int64_t seconds) {
    for (int64_t i = 0; i < seconds * 10; ++i) {
      Light(static_cast<uint8_t>(1 + i % 200));
      Host.EventLoop().Advance(100);
    }
  }

  [[nodiscard]] bool Said(const std::string& szText) const {
    for (const LogLine& line : Lines) {
      if (line.Text.find(szText) != std::string::npos) return true;
    }
    return false;
  }
  [[nodiscard]] std::vector<std::string> Commands() {
    std::vector<std::string> commands;
    for (const auto& started : Host.Processes().Starts()) commands.push_back(started.CommandLine);
    return commands;
  }

  VirtualHost Host;
  WatchmanOptions Options;
  WindowHandle Player = 0;
  WindowHandle TrayHandle = 0;
  bool Answers = true;
  std::vector<std::string> Asked;
  TrayState State;
  std::vector<LogLine> Lines;
  std::vector<uint8_t> Lights;
  int32_t HistoryTold = 0;
  std::unique_ptr<Watchman> TheWatchman;
};

}  // namespace vex::test

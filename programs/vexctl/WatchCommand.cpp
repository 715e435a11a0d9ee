#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "host/CodePage.h"
#include "monitor/Msg.h"
#include "programs/vexctl/ControlCommands.h"
#include "programs/vexctl/PlayerChannel.h"

namespace vex {

namespace {

/// The tray's part for as long as the command runs: registers with the player, and again when a player
/// comes back, and prints what it is told.
class Watcher {
 public:
  explicit Watcher(CommandContext& context) : m_Context(context), m_Channel(context.Machine) {
    auto procedure = std::make_shared<WindowProcedure>([this](const WindowMessage& message) {
      if (message.uMsg == WM_COPYDATA && message.Copy) Print(CopyDataToString(message.Copy));
      return intptr_t{1};
    });
    context.Machine.Windows().ExchangeProcedure(m_Channel.Own(), procedure);
  }

  void Run() {
    EventLoop& loop = m_Context.Machine.EventLoop();
    m_Context.Machine.OnTerminate([&loop] { loop.Quit(); });
    Register(m_Channel.Player());
    const auto timer = loop.NewTimer(TimerOrder::Component);
    constexpr int32_t lookMs = 1000;
    timer->Interval(lookMs);
    timer->Tick([this] { LookForPlayer(); });
    timer->Enabled(true);
    loop.Run();
  }

 private:
  void Register(WindowHandle player) {
    m_Player = player;
    SendVexMessage(m_Context.Machine.Windows(), m_Channel.Own(), player, MessageTrayWindow, "");
  }

  void LookForPlayer() {
    const WindowHandle player = m_Context.Machine.PlayerFinder().FindPlayer();
    if (player == m_Player) return;
    if (player == 0) {
      Note("the player has ended");
      m_Player = 0;
    } else {
      Note("a player has come");
      Register(player);
    }
  }

  void Print(const std::string& szMessage) {
    const std::string szText = MessageTextOf(szMessage);
    switch (MessageTypeOf(szMessage)) {
      case MessageStatus:
        PrintLines(szText);
        break;
      case MessageCurrentShow:
        PrintLine("current", szText);
        break;
      case MessageNextShow:
        PrintLine("next", szText);
        break;
      case MessageInitialized:
        PrintLine("initialized", szText);
        break;
      default:
        break;
    }
    std::cout.flush();
  }

  void PrintLines(const std::string& szBlock) {
    size_t from = 0;
    while (from <= szBlock.size()) {
      const size_t end = std::min(szBlock.find("\r\n", from), szBlock.size());
      PrintLine("status", szBlock.substr(from, end - from));
      from = end + 2;
    }
  }

  void PrintLine(const char* szKind, const std::string& szText) {
    const std::string szUtf8 = AnsiToUtf8(szText);
    if (m_Context.Json) {
      std::cout << nlohmann::ordered_json{{"kind", szKind}, {"text", szUtf8}}.dump() << "\n";
    } else if (std::string_view(szKind) == "status") {
      std::cout << szUtf8 << "\n";
    } else {
      std::cout << "[" << szKind << "] " << (szUtf8.empty() ? "-" : szUtf8) << "\n";
    }
  }

  void Note(const char* szText) {
    if (!m_Context.Json) std::cerr << "vexctl: " << szText << "\n";
  }

  CommandContext& m_Context;
  PlayerChannel m_Channel;
  WindowHandle m_Player = 0;
};

}  // namespace

void AddWatchCommand(CLI::App& app, CommandContext& context) {
  app.add_subcommand("watch", "Take the tray's place: print status lines and show reports until interrupted")
      ->callback([&context] { Watcher(context).Run(); });
}

}  // namespace vex

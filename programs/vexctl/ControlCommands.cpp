#include "programs/vexctl/ControlCommands.h"

#include <iostream>
#include <memory>
#include <string>

#include "monitor/VexMessage.h"
#include "programs/vexctl/PlayerChannel.h"

namespace vex {

namespace {

void Tell(CommandContext& context, int32_t lMessageType, const std::string& szText, const char* szDone) {
  PlayerChannel(context.Machine).Send(lMessageType, szText);
  if (context.Json) {
    std::cout << "{\"ok\":true}\n";
  } else {
    std::cout << szDone << "\n";
  }
}

}  // namespace

void AddControlCommands(CLI::App& app, CommandContext& context) {
  app.add_subcommand("reload", "Have the player read both schedule files again")->callback([&context] {
    Tell(context, MessageReloadSchedules, "", "asked to reload the schedules");
  });

  auto* const link = app.add_subcommand("link", "Switch the network link (triggers from outside) on or off");
  auto state = std::make_shared<std::string>();
  link->add_option("STATE", *state, "on or off")->required()->check(CLI::IsMember({"on", "off"}));
  link->callback([&context, state] {
    const bool boolOn = *state == "on";
    Tell(context, MessageNetworkLink, boolOn ? "ON" : "OFF",
         boolOn ? "asked to switch the link on" : "asked to switch the link off");
  });

  auto* const schedules =
      app.add_subcommand("schedules", "Have a player started with /noschedule follow the schedules");
  auto follow = std::make_shared<std::string>();
  schedules->add_option("STATE", *follow, "on")->required()->check(CLI::IsMember({"on"}));
  schedules->callback(
      [&context, follow] { Tell(context, MessageLeaveNoSchedule, "", "asked to follow the schedules"); });

  auto* const shutdown =
      app.add_subcommand("shutdown", "End the player, after the show's shutdown sequences");
  auto now = std::make_shared<bool>(false);
  shutdown->add_flag("--now", *now, "end at once, leaving the show where it is");
  shutdown->callback([&context, now] {
    Tell(context, *now ? MessageShutdown : MessageGracefulShutdown, "",
         *now ? "asked to end at once" : "asked to end when the show has been brought to its end");
  });
}

}  // namespace vex

#include <cstdint>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <string>

#include "basic/Error.h"
#include "components/open/wire/OscTrigger.h"
#include "host/CodePage.h"
#include "monitor/Installation.h"
#include "programs/vexctl/ControlCommands.h"
#include "programs/vexctl/PlayerChannel.h"

namespace vex {
namespace {

constexpr uint32_t Loopback = 0x7F000001;

/// A player whose link is off would not hear the trigger.
void RequireLink(Host& host) {
  static_cast<void>(PlayerChannel(host).Player());
  std::string szStatus;
  if (!host.Files().Read(host.PlayerFinder().StatusFile(), szStatus)) return;
  const auto status = nlohmann::ordered_json::parse(szStatus, nullptr, false);
  if (status.is_object() && status.contains("link") && status["link"] == false)
    throw CommandFailure(ExitCannot, "the player's link is off, so it hears no triggers; see vexctl link on");
}

/// The trigger is sent from this machine to itself, so the link must take it from there.
void RequireTakenFromHere(Datagrams& datagrams, const std::string& szRemoteHost) {
  uint32_t remote = 0;
  if (datagrams.Resolve(szRemoteHost, remote) && (remote == 0 || remote == Loopback)) return;
  throw CommandFailure(ExitCannot, "the link takes triggers from " + AnsiToUtf8(szRemoteHost) +
                                       " only (RemoteHost in XLK), not from this machine");
}

void Press(CommandContext& context, const OscTrigger& trigger) {
  Host& host = context.Machine;
  static_cast<void>(SystemText(trigger.Name, "the trigger's name"));
  RequireLink(host);
  Installation installation(host.Registry(), host.Files(), host.Processes(), host.MessageBoxes());
  RequireTakenFromHere(host.Datagrams(), installation.RemoteHost());
  const auto bytes = WriteOscTrigger(trigger);
  const Datagram datagram{{Loopback, static_cast<uint16_t>(installation.LocalPort())}, bytes};
  const int32_t lCode = host.Datagrams().NewSender(0)->Send(std::span(&datagram, 1));
  if (lCode != 0)
    throw CommandFailure(ExitCannot, "the trigger cannot be sent: " + host.Datagrams().Describe(lCode));
  std::cout << (context.Json ? "{\"ok\":true}" : "trigger sent") << "\n";
}

}  // namespace

void AddTriggerCommand(CLI::App& app, CommandContext& context) {
  auto* const command =
      app.add_subcommand("trigger",
                         "Press an input, as a button or a sensor on the lighting network would\n\n"
                         "The player's link must be on (vexctl link on).\n\n"
                         "Example: vexctl trigger 0 1 3 \"Front door\"");
  auto trigger = std::make_shared<OscTrigger>();
  command->add_option("NETWORK", trigger->Network, "lighting network, from 0")->required();
  command->add_option("UNIT", trigger->Unit, "unit on the network")->required();
  command->add_option("INPUT", trigger->Input, "input of the unit")->required();
  command->add_option("NAME", trigger->Name, "name for the log");
  command->callback([&context, trigger] { Press(context, *trigger); });
}

}  // namespace vex

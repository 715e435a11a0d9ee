#pragma once

#include <CLI/CLI.hpp>

#include "programs/vexctl/Command.h"

namespace vex {

/// reload, link on|off, schedules on, shutdown [--now]: one message to the running player each.
void AddControlCommands(CLI::App& app, CommandContext& context);
/// play SHOW and clear: shows on demand.
void AddDemandCommands(CLI::App& app, CommandContext& context);
/// trigger NETWORK UNIT INPUT [NAME]: an input fires.
void AddTriggerCommand(CLI::App& app, CommandContext& context);
/// status: what the running player says of itself in its status file.
void AddStatusCommand(CLI::App& app, CommandContext& context);
/// watch: takes the tray's place and prints what it is told.
void AddWatchCommand(CLI::App& app, CommandContext& context);

}  // namespace vex

#pragma once

#include <CLI/CLI.hpp>

#include "programs/vexctl/Command.h"

namespace vex {

/// timeline: what the schedules have in force between two moments, as a table, as JSON or as a picture.
void AddTimelineCommand(CLI::App& app, CommandContext& context);
/// why: what is in force at a moment, and why nothing else is.
void AddWhyCommand(CLI::App& app, CommandContext& context);

/// rehearse: the real player on a virtual clock.
void AddRehearseCommand(CLI::App& app, CommandContext& context);

}  // namespace vex

#pragma once

#include <CLI/CLI.hpp>

#include "programs/vexctl/Command.h"

namespace vex {

/// check FILE...: whether files are sound.
void AddCheckCommand(CLI::App& app, CommandContext& context);
/// doctor: whether this machine is ready for the season.
void AddDoctorCommand(CLI::App& app, CommandContext& context);
/// week list|add|remove|fits: the weekly schedule.
void AddWeekCommand(CLI::App& app, CommandContext& context);
/// year list|add|remove: the dated schedule.
void AddYearCommand(CLI::App& app, CommandContext& context);
/// show export|import: a show as JSON.
void AddShowCommand(CLI::App& app, CommandContext& context);

}  // namespace vex

#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "programs/vexctl/Command.h"

namespace vex {

/// log [--since T] [--level N] [--follow]: the lines that vextray has kept.
void AddLogCommand(CLI::App& app, CommandContext& context);

/// Where the log is kept, as the system writes paths.
[[nodiscard]] std::string LogPath(Host& host);

}  // namespace vex

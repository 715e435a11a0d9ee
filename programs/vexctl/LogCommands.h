#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "programs/vexctl/Command.h"

namespace vex {

/// log [--since T] [--level N] [--follow]: the lines that vextray has kept.
void AddLogCommand(CLI::App& app, CommandContext& context);

/// history: the shows that have played.
void AddHistoryCommand(CLI::App& app, CommandContext& context);
/// Where vextray keeps its file of that name, as the system writes paths.
[[nodiscard]] std::string StatePath(Host& host, const char* szName);

}  // namespace vex

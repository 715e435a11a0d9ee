#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "programs/vexctl/FileAnswer.h"

namespace vex {

/// What the commands that list and change a schedule have in common.
struct ScheduleOptions {
  std::string File;
  bool NoReload = false;
};

/// --file and --no-reload; they may stand before or behind the word for what to do.
void AddScheduleOptions(CLI::App& command, ScheduleOptions& options, const char* szDefaultFile);

/// Where the settings name no user data folder there is no schedule to read, and none can be written.
enum class ScheduleUse { Read, Write };

/// The file given, else the one in the user data folder. Raises CommandFailure where it cannot be written.
[[nodiscard]] NamedFile ScheduleFile(CommandContext& context, const ScheduleOptions& options,
                                     const char* szDefaultFile, ScheduleUse use);

/// Tells what has come of a change; after a success the running player is asked to reload.
void PrintChange(CommandContext& context, const ScheduleOptions& options, const NamedFile& file,
                 FileKind kind, const FileOutcome& outcome);

/// A show's name as the schedules keep it; wrong usage for an empty one, which would be no show.
[[nodiscard]] std::string ShowFromArgument(const std::string& szArgument);

}  // namespace vex

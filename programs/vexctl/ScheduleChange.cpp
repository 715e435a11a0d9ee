#include "programs/vexctl/ScheduleChange.h"

#include <exception>
#include <iostream>

#include "host/CodePage.h"
#include "monitor/VexMessage.h"
#include "programs/vexctl/PlayerChannel.h"
#include "programs/vexctl/ScheduleFiles.h"

namespace vex {

namespace {

/// The change stands whether or not the player hears of it, so a failure here is none of the command's.
void AskToReload(CommandContext& context) {
  try {
    if (context.Machine.PlayerFinder().FindPlayer() == 0) return;
    PlayerChannel(context.Machine).Send(MessageReloadSchedules, "");
    if (!context.Json) std::cout << "asked the running player to reload the schedules\n";
  } catch (const std::exception& error) {
    std::cerr << "vexctl: warning: the file is written, but the running player could not be asked to reload: "
              << error.what() << "; see vexctl reload\n";
  }
}

}  // namespace

void AddScheduleOptions(CLI::App& command, ScheduleOptions& options, const char* szDefaultFile) {
  command.add_option(
      "--file", options.File,
      std::string("the schedule file (default: ") + szDefaultFile + " in the user data folder)");
  command.add_flag("--no-reload", options.NoReload, "do not ask the running player to reload after a change");
}

NamedFile ScheduleFile(CommandContext& context, const ScheduleOptions& options, const char* szDefaultFile,
                       ScheduleUse use) {
  if (!options.File.empty()) return FileFromArgument(context, options.File);
  const std::string szFolder = UserDataFolder(context);
  if (szFolder.empty() && use == ScheduleUse::Read) return {szDefaultFile, ""};
  if (szFolder.empty())
    throw CommandFailure(ExitCannot,
                         "the settings name no user data folder; run VexPostInstall once, or give --file");
  const std::string szPath = szFolder + szDefaultFile;
  return {context.Machine.Files().HostPath(szPath), szPath};
}

void PrintChange(CommandContext& context, const ScheduleOptions& options, const NamedFile& file,
                 FileKind kind, const FileOutcome& outcome) {
  if (outcome.Failure) {
    PrintFailure(context, file, kind, outcome);
    return;
  }
  PrintDone(context, outcome, outcome.Words);
  std::cout.flush();
  if (!options.NoReload) AskToReload(context);
}

std::string ShowFromArgument(const std::string& szArgument) {
  if (szArgument.empty()) throw CommandFailure(ExitUsage, "the show's name is empty");
  return SystemText(szArgument, "the show's name");
}

}  // namespace vex

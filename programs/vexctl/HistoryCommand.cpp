#include <iostream>
#include <string>

#include "host/Host.h"
#include "programs/vexctl/LogCommands.h"
#include "tray/history/History.h"
#include "tray/log/LogLine.h"

namespace vex {

namespace {

void Print(const PlayedShow& show) {
  std::cout << FormatDateTime(show.From) << " to "
            << (show.To ? FormatDateTime(*show.To) : std::string("now                ")) << "  "
            << Printable(show.Show) << (show.Broken ? " (broken off)" : "") << "\n";
  for (const auto& song : show.Songs)
    std::cout << "    " << FormatDateTime(song.Time) << "  " << Printable(song.File) << "\n";
  for (const auto& error : show.Errors) {
    std::cout << "    " << FormatDateTime(error.Time) << " ! " << Printable(error.Text);
    if (error.Count > 1) std::cout << " (" << error.Count << " times)";
    std::cout << "\n";
  }
}

}  // namespace

void AddHistoryCommand(CLI::App& app, CommandContext& context) {
  app.add_subcommand(
         "history",
         "Which shows have played, from when to when, with their songs and errors\n\n"
         "vextray keeps it in $XDG_STATE_HOME/vexmonitor/history. A show is broken off when the player\n"
         "went before the show's end.\n\n"
         "Examples: vexctl history\n"
         "          vexctl --json history          a JSON object for each show")
      ->callback([&context] {
        const std::string szPath = StatePath(context.Machine, "history");
        HistoryShelf shelf;
        if (!ReadHistory(context.Machine.Files(), szPath, shelf)) {
          throw CommandFailure(ExitCannot, "there is no history at " +
                                               context.Machine.Files().HostPath(szPath) +
                                               "; vextray keeps it, from its first show on");
        }
        for (const PlayedShow& show : shelf.Shows()) {
          if (context.Json)
            std::cout << PlayedShowToJson(show) << "\n";
          else
            Print(show);
        }
      });
}

}  // namespace vex

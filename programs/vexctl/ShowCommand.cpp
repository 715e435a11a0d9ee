#include <iostream>
#include <memory>
#include <string>

#include "host/CodePage.h"
#include "programs/vexctl/AuthoringCommands.h"
#include "programs/vexctl/FileAnswer.h"
#include "programs/vexctl/ShowTroubles.h"
#include "tools/authoring/ShowJson.h"

namespace vex {
namespace {

struct ShowOptions {
  std::string File;
  std::string Json;
};

void Export(CommandContext& context, const ShowOptions& options) {
  const NamedFile file = FileFromArgument(context, options.File);
  const FileOutcome outcome = ExportShow(context.Machine.Files(), file.Path, !context.Json);
  if (outcome.Failure)
    PrintFailure(context, file, FileKind::Show, outcome);
  else
    std::cout << outcome.Text << "\n";
}

void Import(CommandContext& context, const ShowOptions& options) {
  const NamedFile json = FileFromArgument(context, options.Json);
  const NamedFile file = FileFromArgument(context, options.File);
  const ShowImport import = ImportShow(context.Machine.Files(), json.Path, file.Path);
  if (import.Failure) {
    PrintFailure(context, import.JsonRead ? file : json, FileKind::Show, import);
    return;
  }
  PrintDone(context, import, file.Given + " is written");
  if (!context.Json) ShowTroubles(context, SongLook::Exists).Print(file.Path);
}

}  // namespace

void AddShowCommand(CLI::App& app, CommandContext& context) {
  auto* const show = app.add_subcommand(
      "show",
      "Take a show out as JSON, and make a show file of JSON\n\n"
      "A show has five playlists (startup, main, musical, background, shutdown), interactive groups and a\n"
      "startup trigger; what the JSON leaves out is as in a new show. A playlist has \"sequences\", a list "
      "of\n"
      "names, and options; musical ones have \"musicalType\" 1 (in order) or 2 (by chance) and \"delay\"\n"
      "(seconds between songs), the main one \"animationType\" 1 (one after the other) or 2 (all at once).\n"
      "export prints all there is. The smallest show with a song:\n\n"
      "  { \"format\": \"vexshow\", \"musical\": { \"sequences\": [\"carol.vexseq\"] } }\n\n"
      "Examples: vexctl show import eve.json eve.shw\n"
      "          vexctl show export eve.shw > eve.json");
  show->require_subcommand(1);
  auto options = std::make_shared<ShowOptions>();
  auto* const exported = show->add_subcommand("export",
                                              "Print a show file as JSON (with --json in one line)\n\n"
                                              "Example: vexctl show export eve.shw > eve.json");
  exported->add_option("FILE", options->File, "the show file")->required();
  exported->callback([&context, options] { Export(context, *options); });
  auto* const import = show->add_subcommand("import",
                                            "Write a show file, whole or not at all\n\n"
                                            "Example: vexctl show import eve.json eve.shw");
  import->add_option("JSON", options->Json, "the JSON file; /dev/stdin reads what is piped in")->required();
  import->add_option("FILE", options->File, "the show file to write")->required();
  import->callback([&context, options] { Import(context, *options);
});
}  // namespace vex

}  // namespace vex

#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/CodePage.h"
#include "programs/vexctl/AuthoringCommands.h"
#include "programs/vexctl/FileAnswer.h"
#include "programs/vexctl/ShowTroubles.h"

namespace vex {
namespace {

struct CheckOptions {
  std::vector<std::string> Files;
  std::string As;
};

FileKind KindToReadAs(const CheckOptions& options, const NamedFile& file) {
  static const std::map<std::string, FileKind> kinds{
      {"list", FileKind::List}, {"week", FileKind::Week}, {"year", FileKind::Year}, {"show", FileKind::Show}};
  return options.As.empty() ? KindOfFile(file.Path) : kinds.at(options.As);
}

void PrintJson(const NamedFile& file, FileKind kind, const CheckedFile& checked) {
  auto line = AboutFile(file, kind, true);
  if (kind == FileKind::List) {
    auto fields = nlohmann::ordered_json::array();
    for (const std::string& szField : checked.Fields) fields.push_back(AnsiToUtf8(szField));
    line["fields"] = fields;
  } else {
    line["text"] = AnsiToUtf8(checked.Text);
  }
  std::cout << line.dump() << "\n";
}

/// What the player would miss stands below; the file itself is sound.
void PrintWords(const ShowTroubles& troubles, const NamedFile& file, FileKind kind,
                const CheckedFile& checked) {
  std::cout << file.Given << ": " << KindWord(kind) << ", sound\n";
  if (kind == FileKind::List) {
    for (const std::string& szField : checked.Fields) std::cout << "  " << AnsiToUtf8(szField) << "\n";
  }
  for (const std::string& szLine : checked.LeftOut) std::cout << "  but " << AnsiToUtf8(szLine) << "\n";
  if (kind == FileKind::Show) troubles.Print(file.Path);
}

void Check(CommandContext& context, const CheckOptions& options) {
  std::vector<NamedFile> named;
  for (const std::string& szFile : options.Files) named.push_back(FileFromArgument(context, szFile));
  const ShowTroubles troubles(context, SongLook::Plays);
  for (const NamedFile& file : named) {
    const FileKind kind = KindToReadAs(options, file);
    const CheckedFile checked = CheckFile(context.Machine.Files(), file.Path, kind);
    if (checked.Failure)
      PrintFailure(context, file, kind, checked);
    else if (context.Json)
      PrintJson(file, kind, checked);
    else
      PrintWords(troubles, file, kind, checked);
  }
}

}  // namespace

void AddCheckCommand(CLI::App& app, CommandContext& context) {
  auto* const check = app.add_subcommand(
      "check",
      "Whether files are sound: each is read as the player would read it\n\n"
      "weeksched.qsc is read as the weekly schedule, yearsched.qsc as the dated one, any other as a show.\n"
      "Of a sound show it also tells which sequences and songs are missing or damaged. A file that is not\n"
      "sound is told on standard error, with the place of the damage, and ends with status 1.\n\n"
      "Examples: vexctl check *.shw weeksched.qsc yearsched.qsc\n"
      "          vexctl --json check --as week old-week.txt");
  auto options = std::make_shared<CheckOptions>();
  check->add_option("FILE", options->Files, "files to check")->required();
  check->add_option("--as", options->As, "read them as list, week, year or show, whatever their names")
      ->check(CLI::IsMember({"list", "week", "year", "show"}));
  check->callback([&context, options] { Check(context, *options); });
}

}  // namespace vex

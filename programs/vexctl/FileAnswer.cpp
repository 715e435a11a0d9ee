#include "programs/vexctl/FileAnswer.h"

#include <algorithm>
#include <iostream>

#include "host/CodePage.h"

namespace vex {

namespace {

/// Damaged files hold line ends where nobody expects them, and the terminal's own commands.
std::string OneLine(std::string szText) {
  std::ranges::replace_if(
      szText, [](char character) { return static_cast<unsigned char>(character) < ' '; }, ' ');
  return AnsiToUtf8(szText);
}

std::string NumberAndSource(const Error& error) {
  return " (number " + std::to_string(error.Number) + (error.Source.empty() ? "" : ", " + error.Source) + ")";
}

}  // namespace

NamedFile FileFromArgument(CommandContext& context, const std::string& szArgument) {
  if (szArgument.empty()) throw CommandFailure(ExitUsage, "a file's name is empty");
  static_cast<void>(SystemText(szArgument, "the file's name"));
  return {szArgument, context.Machine.Files().SystemPath(szArgument)};
}

const char* KindWord(FileKind kind) {
  switch (kind) {
    case FileKind::List:
      return "list";
    case FileKind::Week:
      return "week";
    case FileKind::Year:
      return "year";
    case FileKind::Show:
      break;
  }
  return "show";
}

nlohmann::ordered_json AboutFile(const NamedFile& file, FileKind kind, bool boolOk) {
  return {{"file", file.Given}, {"kind", KindWord(kind)}, {"ok", boolOk}};
}

std::string FailureLine(const std::string& szFile, const Error& error, const std::string& szWords) {
  return szFile + ": " +
         OneLine(error.Description + NumberAndSource(error) + (szWords.empty() ? "" : ": ") + szWords);
}

void PrintFailure(CommandContext& context, const NamedFile& file, FileKind kind, const FileOutcome& outcome) {
  const Error& error = *outcome.Failure;
  context.Status = ExitCannot;
  if (context.Json) {
    auto line = AboutFile(file, kind, false);
    line["number"] = error.Number;
    line["source"] = AnsiToUtf8(error.Source);
    line["description"] = AnsiToUtf8(error.Description);
    std::cout << line.dump() << "\n" << std::flush;
  }
  std::cerr << "vexctl: " << FailureLine(file.Given, error, outcome.Words) << "\n";
}

void PrintDone(const CommandContext& context, const FileOutcome& outcome, const std::string& szWords) {
  if (context.Json) {
    std::cout << nlohmann::ordered_json{{"ok", true}, {"text", AnsiToUtf8(outcome.Text)}}.dump() << "\n";
  } else {
    std::cout << AnsiToUtf8(szWords) << "\n";
  }
}

}  // namespace vex

#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "programs/vexctl/Command.h"
#include "tools/authoring/CheckFile.h"

namespace vex {

/// A file of this machine that was named on the command line: how the user wrote it, and its path inside.
struct NamedFile {
  std::string Given;
  std::string Path;
};

/// Wrong usage for an empty name and for a character that the system does not know.
[[nodiscard]] NamedFile FileFromArgument(CommandContext& context, const std::string& szArgument);

[[nodiscard]] const char* KindWord(FileKind kind);

/// {"file":...,"kind":...,"ok":...}: how every answer about a file begins.
[[nodiscard]] nlohmann::ordered_json AboutFile(const NamedFile& file, FileKind kind, bool boolOk);

/// "FILE: description (number N, source): words", one line whatever a damaged file has put into it.
[[nodiscard]] std::string FailureLine(const std::string& szFile, const Error& error,
                                      const std::string& szWords);

/// Tells of a failure: the error object with --json, and always one line on standard error. The command's
/// status becomes 1.
void PrintFailure(CommandContext& context, const NamedFile& file, FileKind kind, const FileOutcome& outcome);

/// {"ok":true,"text":...} with --json, else the words.
void PrintDone(const CommandContext& context, const FileOutcome& outcome, const std::string& szWords);

}  // namespace vex

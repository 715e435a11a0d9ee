#include "tools/authoring/FileOutcome.h"

namespace vex {

namespace {

/// The platform's numbers for a file that cannot be written, and for a folder that is not there.
constexpr int32_t FileAccessError = 75;
constexpr int32_t PathNotFound = 76;
constexpr const char* PathNotFoundWords = "Path not found";

[[noreturn]] void CannotRead(const std::string& szReason) {
  throw Error(ErrorFileNotFound, "", szReason);
}

}  // namespace

bool MissingFile(const std::string& szReason) {
  return szReason == PlatformError(ErrorFileNotFound).Description || szReason == PathNotFoundWords;
}

std::string ReadText(Files& files, const std::string& szPath) {
  std::string szText;
  std::string szReason;
  if (!files.Read(szPath, szText, &szReason)) CannotRead(szReason);
  return szText;
}

std::string ReadTextIfThere(Files& files, const std::string& szPath) {
  std::string szText;
  std::string szReason;
  if (files.Read(szPath, szText, &szReason)) return szText;
  if (!MissingFile(szReason)) CannotRead(szReason);
  return "";
}

FileOutcome NotWritten(const std::string& szReason) {
  FileOutcome outcome;
  if (MissingFile(szReason)) {
    outcome.Failure = Error(PathNotFound, "", PathNotFoundWords);
    outcome.Words = "the folder does not exist; make it first";
  } else {
    outcome.Failure = Error(FileAccessError, "", szReason);
    outcome.Words = "the file is as it was; see whether its folder may be written to and its disk has room";
  }
  return outcome;
}

}  // namespace vex

#include "components/recorded/Recorder.h"

#include <filesystem>
#include <fstream>
#include <utility>

#include "host/Files.h"

namespace vex {

namespace {

/// Opened by a name in plain text, a stream takes the machine's own code page where it has one.
std::filesystem::path PathOf(const std::string& szUtf8) {
  return std::u8string(szUtf8.begin(), szUtf8.end());
}

}  // namespace

Recorder::Recorder(const Clock& clock, Sink sink, Filter wanted)
    : m_Clock(clock), m_Sink(std::move(sink)), m_Wanted(std::move(wanted)) {}

JsonLine Recorder::CallLine(std::string_view szKind, std::string_view szCall) const {
  JsonLine line(m_Clock, szKind);
  line.Add("call", std::string(szCall));
  return line;
}

void Recorder::Sequence(std::string_view szCall, const std::string& szFile) {
  if (Wanted("seq", szCall)) m_Sink("seq", szCall, CallLine("seq", szCall).Add("file", szFile));
}

void Recorder::MediaOpen(const std::string& szFile) {
  if (Wanted("media", "open")) m_Sink("media", "open", CallLine("media", "open").Add("file", szFile));
}

void Recorder::Media(std::string_view szCall) {
  if (Wanted("media", szCall)) m_Sink("media", szCall, CallLine("media", szCall));
}

void Recorder::InputOutput(std::string_view szCall, const std::vector<JsonValue>& arguments) {
  if (Wanted("io", szCall)) m_Sink("io", szCall, CallLine("io", szCall).Add("args", arguments));
}

void Recorder::Window(std::string_view szCall) {
  if (Wanted("window", szCall)) m_Sink("window", szCall, CallLine("window", szCall));
}

void Recorder::Shell(const std::string& szCommandLine) {
  if (Wanted("shell", "")) m_Sink("shell", "", JsonLine(m_Clock, "shell").Add("commandLine", szCommandLine));
}

Recorder::Sink FileSink(Files& files, const std::string& szPath) {
  auto stream = std::make_shared<std::ofstream>();
  return [&files, szPath, stream](std::string_view, std::string_view, const JsonLine& line) {
    // Opened late, so that a program that ends before it has anything to write leaves an older file alone.
    if (!stream->is_open()) stream->open(PathOf(files.HostPath(szPath)), std::ios::binary | std::ios::trunc);
    *stream << line.Text() << '\n' << std::flush;
  };
}

}  // namespace vex

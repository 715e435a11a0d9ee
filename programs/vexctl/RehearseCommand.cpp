#include <algorithm>
#include <chrono>
#include <iostream>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "host/CodePage.h"
#include "host/Files.h"
#include "host/RegistryText.h"
#include "player/StatusReport.h"
#include "programs/vexctl/MediaLook.h"
#include "programs/vexctl/ProgressBar.h"
#include "programs/vexctl/ScheduleCommands.h"
#include "programs/vexctl/ScheduleFiles.h"
#include "settings/LibRegistryVex.h"
#include "tools/rehearsal/Narrator.h"
#include "tools/rehearsal/Rehearsal.h"
#include "tools/rehearsal/RehearsalInputs.h"

namespace vex {
namespace {

struct RehearseOptions {
  std::string From;
  std::string Until;
  std::string Settings;
  std::string Inputs;
  std::vector<std::string> Only;
  uint64_t Seed = 1;
  std::optional<uint64_t> Faults;
  bool NoSchedule = false;
  bool AssumeMedia = false;
  bool Summary = false;
  bool Strict = false;
};

const std::set<std::string> Kinds{"log",   "sent", "seq",  "media", "io",   "window",
                                  "shell", "box",  "send", "flush", "fault"};

std::string ReadRequired(Files& files, const std::string& szFile) {
  std::string szText;
  std::string szReason;
  if (!files.Read(files.SystemPath(szFile), szText, &szReason))
    throw CommandFailure(ExitCannot, szFile + ": " + szReason);
  return szText;
}

/// The player's settings where none are given; what is not there leaves every value at its default, as for
/// the player.
RegistryText ReadSettings(CommandContext& context, const RehearseOptions& options) {
  Files& files = context.Machine.Files();
  std::string szText;
  const std::string szFile = options.Settings.empty() ? context.Machine.SettingsFile() : options.Settings;
  if (szFile.empty()) return context.Machine.ExportSettings(ProductKeyPath(""));
  if (!options.Settings.empty())
    szText = ReadRequired(files, szFile);
  else
    static_cast<void>(files.Read(files.SystemPath(szFile), szText));
  RegistryText settings(szText);
  for (const RegistryTextError& error : settings.Errors())
    std::cerr << "vexctl: " << szFile << ":" << error.Line << ": " << error.Message << "\n";
  return settings;
}

/// Drives are those of the settings that are rehearsed.
void TakeDrivesFrom(CommandContext& context, std::shared_ptr<const RegistryText> settings) {
  context.Machine.DriveTable([settings](char letter) {
    const auto* const value = settings->Find("Software\\Brillara\\Drives", std::string(1, letter));
    return value != nullptr && value->Kind == RegistryKind::String ? value->Text : std::string();
  });
}

std::vector<RehearsalInput> ReadInputs(Files& files, const std::string& szFile, DateTime from) {
  if (szFile.empty()) return {};
  const auto beside = [&](const std::string& szPath) { return files.HostPathBeside(szFile, szPath); };
  try {
    return ReadRehearsalInputs(ReadRequired(files, szFile), from, beside);
  } catch (const InputsError& error) {
    throw CommandFailure(ExitCannot, szFile + ", " + error.what());
  }
}

/// What songs last and are, asked of what would play them. Where that cannot be told the player would do the
/// same as here, but whoever rehearses should know why.
class SongLengths {
 public:
  SongLengths(CommandContext& context, const RegistryText& settings)
      : m_Look(context, MediaSetting(settings)) {}

  MediaFacts Of(const std::string& szPath) {
    const ProbedMedia media = m_Look.Look(szPath);
    MediaFacts facts{media.MediaType, media.Length, {}};
    if (!media.Failure.empty()) facts.Errors.push_back(media.Failure);
    if (media.Blind)
      TellOnce("", "the lengths of songs cannot be found: " + media.Failure + "; see --assume-media");
    else if (media.Failure.empty() && !media.Length)
      TellOnce(szPath, AnsiToUtf8(szPath) + ": its length cannot be found; it plays until it is stopped");
    return facts;
  }

 private:
  static std::string MediaSetting(const RegistryText& settings) {
    const auto* const value = settings.Find(ProductKeyPath("Components"), "Media");
    return value != nullptr && value->Kind == RegistryKind::String ? value->Text : std::string();
  }
  void TellOnce(const std::string& szAbout, const std::string& szWhat) {
    if (m_Told.insert(szAbout).second) std::cerr << "vexctl: warning: " << szWhat << "\n";
  }

  MediaLook m_Look;
  std::set<std::string> m_Told;
};

class Printer {
 public:
  explicit Printer(const std::vector<std::string>& only) : m_Only(only.begin(), only.end()) {}

  /// Without a choice everything but the lighting events and their flushes.
  [[nodiscard]] bool Prints(const RehearsalEvent& event) const {
    if (m_Only.empty()) return event.Call != "send" && event.Call != "flush";
    return m_Only.contains(event.Kind) || m_Only.contains(event.Call);
  }

 private:
  std::set<std::string, std::less<>> m_Only;
};

/// Some faults in a short evening, and not so many in a long one that its shows come to nothing.
Elapsed BetweenFaults(DateTime from, DateTime until) {
  constexpr int64_t lFaults = 8;
  constexpr int64_t lShortest = 30;
  constexpr int64_t lLongest = 900;
  return std::chrono::seconds(std::clamp(until.SecondsSince(from) / lFaults, lShortest, lLongest));
}

int Rehearse(CommandContext& context, const RehearseOptions& options) {
  for (const std::string& szKind : options.Only) {
    if (!Kinds.contains(szKind))
      throw CommandFailure(
          ExitUsage,
          "--only: there is no kind \"" + szKind +
              "\"; possible are log, sent, seq, media, io, send, flush, window, shell, box, fault");
  }
  Files& files = context.Machine.Files();
  const auto settings = std::make_shared<const RegistryText>(ReadSettings(context, options));
  TakeDrivesFrom(context, settings);
  RehearsalOptions rehearsal;
  rehearsal.From = ParseMoment(options.From, "--from");
  rehearsal.Until = ParseMoment(options.Until, "--until");
  rehearsal.NoSchedule = options.NoSchedule;
  rehearsal.Seed = options.Seed;
  rehearsal.AssumeMedia = options.AssumeMedia;
  rehearsal.Faults = options.Faults;
  rehearsal.MeanBetweenFaults = BetweenFaults(rehearsal.From, rehearsal.Until);
  rehearsal.Watch = options.Faults.has_value();
  auto inputs = ReadInputs(files, options.Inputs, rehearsal.From);
  if (rehearsal.From >= rehearsal.Until) throw CommandFailure(ExitUsage, "--until is not after --from");

  const Printer printer(options.Only);
  const auto printed = [&](const char* szKind, const char* szCall) {
    return context.Json && !options.Summary &&
           printer.Prints({.Kind = szKind, .Call = szCall, .Level = 0, .Text = "", .Play = "", .File = ""});
  };
  rehearsal.DetailIsRead = printed("log", "");
  rehearsal.LightingIsRead = printed("io", "send") || printed("io", "flush");

  SongLengths lengths(context, *settings);
  Rehearsal evening(files, *settings, rehearsal, std::move(inputs),
                    [&lengths](const std::string& szPath) { return lengths.Of(szPath); });
  ProgressBar bar(context.Machine);
  const auto print = [&bar](const std::string& szLine) {
    bar.MakeRoom();
    std::cout << szLine << "\n";
  };
  const bool boolTells = !context.Json && !options.Summary;
  const auto tell = [&print](const std::string& szLine) { print(AnsiToUtf8(szLine)); };
  Narrator narrator([&evening] { return evening.Now(); }, boolTells ? tell : Narrator::Teller());
  evening.Write(
      [&](const RehearsalEvent& event) {
        narrator.Hear(event);
        return context.Json && !options.Summary && printer.Prints(event);
      },
      [&print](const JsonLine& line) { print(line.Text()); });
  if (bar.Wanted()) evening.Progress([&](double part) { bar.Show(part, FormatDate(evening.Now())); });
  evening.Run();
  bar.Clear();
  narrator.Finish();
  if (!context.Json || options.Summary)
    std::cout << narrator.Summary(rehearsal.From, rehearsal.Until) << "\n";
  std::cout.flush();
  const auto broken = evening.Broken();
  for (const std::string& szWhat : broken) std::cerr << "vexctl: must not be: " << szWhat << "\n";
  if (!broken.empty()) return ExitCannot;
  return options.Strict && narrator.Errors() > 0 ? ExitCannot : ExitDone;
}

}  // namespace

void AddRehearseCommand(CLI::App& app, CommandContext& context) {
  auto* const rehearse = app.add_subcommand(
      "rehearse",
      "Play an evening, or a season, on a virtual clock and tell what happens\n\n"
      "The real player from its start-up on, with the settings, schedules, shows and sequences of this "
      "machine;\n"
      "no light is lit, no sound is heard, no program is started. The same input gives the same output.\n\n"
      "Examples: vexctl rehearse --from \"2026-12-24 17:00\" --until \"2026-12-25 00:00\"\n"
      "          vexctl rehearse --from \"2026-11-20 00:00\" --until \"2027-01-06 00:00\" --summary "
      "--strict");
  auto options = std::make_shared<RehearseOptions>();
  rehearse->add_option("--from", options->From, "when the player is started, as 2026-12-24 17:00[:05]")
      ->required();
  rehearse->add_option("--until", options->Until, "when the rehearsal ends")->required();
  rehearse->add_option("--settings", options->Settings, "settings file (default: the player's settings)");
  rehearse->add_flag("--noschedule", options->NoSchedule, "shows on demand only");
  rehearse->add_option("--inputs", options->Inputs, "what happens from outside: a JSON object a line");
  rehearse->add_option("--seed", options->Seed, "of the songs drawn by chance (default 1)");
  rehearse->add_option(
      "--faults", options->Faults,
      "make devices and files fail at random, by this seed, tell each fault, and look whether "
      "what must hold still holds (status 1 where it does not)");
  rehearse->add_flag("--assume-media", options->AssumeMedia, "songs and videos need not be there");
  rehearse
      ->add_option("--only", options->Only,
                   "with --json, print these kinds of lines: log,sent,seq,media,io,...")
      ->delimiter(',');
  rehearse->add_flag("--summary", options->Summary, "print only the counts at the end");
  rehearse->add_flag("--strict", options->Strict, "end with status 1 when anything failed");
  rehearse->callback([&context, options] { context.Status = Rehearse(context, *options); });
}

}  // namespace vex

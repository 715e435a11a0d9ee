#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "basic/DateTime.h"
#include "components/recorded/JsonLine.h"
#include "components/recorded/MediaFacts.h"
#include "host/Clock.h"
#include "tools/rehearsal/RehearsalInputs.h"

namespace vex {

class Files;
class RegistryText;

/// What is to be rehearsed. The run covers [From, Until).
struct RehearsalOptions {
  DateTime From;
  DateTime Until;
  bool NoSchedule = false;
  uint64_t Seed = 1;
  /// Media need not exist: each lasts as long as its sequence, and is video if its name says so.
  bool AssumeMedia = false;
  /// Devices and files fail at random, by this seed.
  std::optional<uint64_t> Faults;
  Elapsed MeanBetweenFaults = std::chrono::minutes(15);
  /// Whether what must hold in every evening is looked after; see Broken.
  bool Watch = false;
  /// Whether anybody reads lines of level 0, and lighting events with their flushes. What nobody reads is
  /// left out together with the work for it; everything else stays the same to the millisecond. With faults,
  /// or watched, nothing is left out.
  bool DetailIsRead = true;
  bool LightingIsRead = true;
  /// Ticks each millisecond and beats each second, as if nobody knew that nothing is due; to compare with.
  bool EveryTick = false;
};

/// One thing that happened, before it is written as a line: so that what nobody wants to read costs nothing.
struct RehearsalEvent {
  std::string_view Kind;  ///< log, sent, seq, media, io, window, shell, box or fault
  std::string_view Call;  ///< of seq, media, io, window and fault
  /// Only of a log line.
  int32_t Level = 0;
  std::string_view Text;
  std::string_view Play;  ///< empty without a sequence
  std::string_view File;
};

/// An evening, or a season, in a moment: the real shell and player from start-up on, on a virtual machine,
/// with the open sequence engine and devices that write down. Nothing leaves the machine: no packet, no
/// program, no message box. Files are read from the real machine, each once, and never written; only a copy
/// among the inputs changes one, and that only here. The same options, inputs and files always give the same.
///
/// A quiet stretch costs nothing but its heartbeats; where nobody reads the detail, nothing.
class Rehearsal {
 public:
  /// Whether a thing is wanted as a line.
  using Filter = std::function<bool(const RehearsalEvent& event)>;
  using LineSink = std::function<void(const JsonLine& line)>;

  /// What is asked of a media file that exists when media are not assumed; the path is one of the system's.
  using MediaLibrary = std::function<MediaFacts(const std::string& szPath)>;

  /// The files outlive the rehearsal.
  Rehearsal(Files& files, const RegistryText& settings, const RehearsalOptions& options,
            std::vector<RehearsalInput> inputs, MediaLibrary library);
  ~Rehearsal();
  Rehearsal(const Rehearsal&) = delete;
  Rehearsal& operator=(const Rehearsal&) = delete;

  /// Asked for each thing that happens, in order; a thing that is wanted then comes as a line.
  void Write(Filter filter, LineSink sink);

  /// Told now and then, how much of the run is behind, 0 to 1.
  void Progress(std::function<void(double part)> progress);

  /// The wall clock.
  [[nodiscard]] DateTime Now() const;

  /// Start-up, then everything until the end or the unload. Called once.
  void Run();

  /// What should have held and did not, once it has run; needs the watch.
  [[nodiscard]] std::vector<std::string> Broken() const;

 private:
  class Stage;
  std::unique_ptr<Stage> m_Stage;
};

}  // namespace vex

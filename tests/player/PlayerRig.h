#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "basic/DateTime.h"
#include "host/RegistryText.h"
#include "host/virtual/VirtualHost.h"
#include "player/ShowPlayer.h"
#include "schedule/MonitoredShowEvent.h"
#include "settings/LibNetworks.h"
#include "show/Show.h"
#include "show/ShowFunctions.h"
#include "tests/player/FakeDevices.h"
#include "time/TimeRange.h"

namespace vex::test {

/// The text of a show, part by part; what is not set is empty.
struct ShowText {
  std::vector<std::string> Startup;
  std::vector<std::string> Shutdown;
  std::vector<std::string> Animation;
  int32_t AnimationType = 1;
  std::vector<std::string> Songs;
  int32_t MusicalType = 1;
  int32_t Delay = 0;
  std::string CleanUp;
  bool BackToBack = false;
  bool WithReplacement = false;
  std::vector<std::string> Background;
  std::string Groups;
  int32_t StartupType = 0;
  std::string StartupTrigger;
  bool Preload = false;

  [[nodiscard]] std::string Text() const;
};

/// The text of an interactive group of one trigger an entry: {{"(3,Door,1,0)", {"a", "b"}}, ...}.
struct GroupEntry {
  std::string Trigger;
  std::vector<std::string> Sequences;
};
std::string GroupText(bool boolIndependent, bool boolInterruptible, const std::vector<GroupEntry>& entries);

/// A player on the virtual host with fake devices; all that is said stands in Lines, and with the
/// milliseconds since the start in Timed.
class PlayerRig : public StatusReport {
 public:
  explicit PlayerRig(uint64_t seed = 1);
  ~PlayerRig() override;

  void LogMessage(int32_t lLevel, const std::string& szText, const SequencePlayInfo* playInfo) override;
  void ReportShowsToTray(bool boolForce) override;

  /// Makes the player and its networks; called by the first Give, or by hand after changed settings.
  void MakePlayer();
  /// A show with its monitored event: 2026-12-24 18:00 to 22:00, weekly, unless told otherwise.
  static std::shared_ptr<Show> MakeShow(const ShowText& text, const std::string& szFilename = "eve.shw",
                                        int32_t lScheduleType = 0);
  static void SetRange(Show& show, std::optional<DateTime> start, std::optional<DateTime> end);
  void Give(const ShowText& text, const std::string& szFilename = "eve.shw") {
    Give(MakeShow(text, szFilename));
  }
  void Give(std::shared_ptr<Show> show);
  /// Takes over settings as a settings file has them.
  void Settings(const std::string& szText) { Host.Registry().Load(RegistryText(szText)); }
  void Run(int64_t milliseconds);
  void Press(int32_t lInput, const std::string& szName = "Button");
  /// Adds sequences of that length.
  void Sequences(std::initializer_list<const char*> names, int32_t lDurationMs = 1000,
                 const std::string& szMedia = "");

  /// The lines that begin so, level 0 lines left out unless asked for by their level.
  [[nodiscard]] Transcript LinesOf(const std::string& szStart) const;
  [[nodiscard]] bool Has(const std::string& szLine) const;
  [[nodiscard]] int64_t TimeOf(const std::string& szLine) const;
  /// Log lines of level 1 and 3 only.
  [[nodiscard]] Transcript Course() const;
  void Forget();

  VirtualHost Host;
  FakeEngine::Library Library;
  Transcript Lines;
  std::vector<std::pair<int64_t, std::string>> Timed;
  Networks NetworkSettings;
  std::shared_ptr<FakeChannelIO> Lights;
  std::shared_ptr<FakeMediaPlayer> Media;
  std::shared_ptr<FakeWindow> Window;
  std::unique_ptr<Timer> ShowTimer;
  std::unique_ptr<ShowPlayer> Player;
  bool FailNewSequence = false;

 private:
  void NoteTimes();

  uint64_t m_Seed;
};

}  // namespace vex::test

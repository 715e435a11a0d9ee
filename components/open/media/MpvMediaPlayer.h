#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "components/open/media/MpvCore.h"
#include "components/open/media/MpvMediaItem.h"
#include "components/open/media/MpvWindow.h"
#include "components/open/media/PositionLine.h"
#include "host/Clock.h"
#include "host/EventLoop.h"
#include "player/devices/MediaPlayer.h"

namespace vex {

class Files;
class Registry;

/// What stands in the settings about media.
struct MpvSettings {
  /// Milliseconds by which sound is later than the library tells.
  int32_t MediaOffset = 0;
  /// The library's sound drivers, "pulse,alsa" say; empty for its own choice.
  std::string AudioOutput;
  /// Milliseconds for which a file may open, or stand still, before it counts as failed.
  int32_t PatienceMs = 30000;
};

/// Reads the product subkeys "Output" ("MediaOffset") and "Components" ("AudioOutput").
[[nodiscard]] MpvSettings ReadMpvSettings(Registry& registry);

/// The media player on the media library. It never waits for the library: while something plays it asks for
/// the position every 20 ms and tells it along a line between the answers; everything else comes as events.
/// Pictures are shown in its window, and only decoded while that is to be seen.
///
///     Stopped --Play--> Opening --sound begins--> Playing --end--> Stopped
///                          |                         |
///                          +--------> Failing <------+
///                                        | the reasons have been gathered: ErrorEvent, then Stopped
///
/// Every Play begins a new run; what the library still says about an earlier one is passed over. Played
/// before the core is ready, a file waits as Opening.
class MpvMediaPlayer final : public MediaPlayer {
 public:
  MpvMediaPlayer(const Clock& clock, EventLoop& loop, Files& files, const MpvSettings& settings);
  ~MpvMediaPlayer() override;
  MpvMediaPlayer(const MpvMediaPlayer&) = delete;
  MpvMediaPlayer& operator=(const MpvMediaPlayer&) = delete;

  [[nodiscard]] std::shared_ptr<MediaItem> NewMedia(const std::string& szUrl) override;
  void CurrentMedia(std::shared_ptr<MediaItem> media) override;
  [[nodiscard]] std::shared_ptr<MediaItem> CurrentMedia() override { return m_Media; }
  [[nodiscard]] double CurrentPosition() override;
  void CurrentPosition(double seconds) override;
  void Play() override;
  void Stop() override;
  [[nodiscard]] int32_t PlayState() override;
  [[nodiscard]] int32_t ErrorCount() override { return static_cast<int32_t>(m_Errors.size()); }
  [[nodiscard]] std::string ErrorDescription(int32_t lIndex) override;
  void ClearErrorQueue() override { m_Errors.clear(); }
  void FullScreen(bool boolFullScreen) override { m_Window->FullScreen(boolFullScreen); }
  void MediaExpected() override { m_Core.Make(); }
  [[nodiscard]] NextDue WhenPositionReaches(int32_t lMilliseconds) override;
  [[nodiscard]] NextDue NextStateChange() override { return NextDue::Never(); }

  /// The window in which it shows pictures.
  [[nodiscard]] const std::shared_ptr<MpvWindow>& Window() const { return m_Window; }

 private:
  enum class Phase { Stopped, Opening, Playing, Failing };
  enum class Reply : uint64_t { None, Load, Position, Tracks, Decided, Gathered };

  // The run.
  void Load();
  void EndRun(Phase phase);
  void BeginFailing(const std::string& szReason);
  void ReportFailure();
  void RaiseChanged();
  [[nodiscard]] uint64_t Number(Reply reply) const { return m_Run << 8 | static_cast<uint64_t>(reply); }

  [[nodiscard]] bool CoreIsAtThisRun() const { return m_Entry != 0 && m_CoreEntry == m_Entry; }

  // What the core says.
  void CoreReady(const std::string& szFailure);
  void CoreEvent(const mpv_event& event);
  void CoreDrained();
  void Loaded(const mpv_event& event);
  void Preloaded(uint64_t hook);
  void TracksKnown(const mpv_event& event);
  void ContinueOpening();
  void Restarted();
  void FileEnded(const mpv_event_end_file& end);
  void LogLine(const mpv_event_log_message& message);
  void PropertyChanged(const mpv_event_property& property);

  // The position.
  void AskPosition();
  void CoreStuck(const std::string& szReason);
  void LeaveCore();
  void PositionKnown(const mpv_event& event);
  [[nodiscard]] Elapsed Offset() const { return std::chrono::milliseconds(m_Settings.MediaOffset); }

  const Clock& m_Clock;
  Files& m_Files;
  MpvSettings m_Settings;
  std::unique_ptr<Timer> m_AskTimer;
  MpvCore m_Core;
  std::shared_ptr<MpvWindow> m_Window;

  std::shared_ptr<MpvMediaItem> m_Media;
  Elapsed m_StartPosition{0};
  std::vector<std::string> m_Errors;

  Phase m_Phase = Phase::Stopped;
  uint64_t m_Run = 0;
  int64_t m_Entry = 0;      // the library's number of what this run plays, 0 while it is not known
  int64_t m_CoreEntry = 0;  // the number of what the library is at
  uint64_t m_Hook = 0;      // at which the library waits for a decision, 0 for none
  bool m_HasAudio = true;
  bool m_Gathered = false;  // all log lines of a failure have been written
  std::string m_FailureReason;
  std::vector<std::string> m_LogLines;
  bool m_SilenceTold = false;
  bool m_BlindnessTold = false;

  PositionLine m_Line;
  Elapsed m_Asked{0};
  double m_LastAnswer = -1;
  int32_t m_StillTicks = 0;  // since the position moved; only those in which the program itself was running
  bool m_PositionUnderWay = false;
};

}  // namespace vex

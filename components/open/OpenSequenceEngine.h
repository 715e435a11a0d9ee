#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "components/open/OpenSequence.h"
#include "components/open/SequenceCursor.h"
#include "host/Clock.h"
#include "host/EventLoop.h"
#include "player/devices/SequenceEngine.h"

namespace vex {

/// The open components' engine object of one sequence: a cue file or a frame file. Prepared without media it
/// plays by its own clock from its start and sends what is due through the control itself, the first events
/// in Start, the others in a timer of its own that sleeps until the next one. Prepared with media it hands
/// out what the music's position has reached, until it is stopped.
///
/// What starts exactly at the end is still played. A round of a loop begins where the one before ended, not
/// when somebody looked. A failure while playing by its own clock (a damaged frame, a control that refuses)
/// ends the sequence and is raised by the next PlayState.
///
/// Where nobody sees the events (ChannelIO::EventsAreSeen) none is worked out, unless one of them would fail.
class OpenSequenceEngine final : public SequenceEngine {
 public:
  OpenSequenceEngine(vex::Clock& clock, EventLoop& eventLoop, Files& files, SequencePathFinder fullPath);
  ~OpenSequenceEngine() override;
  OpenSequenceEngine(const OpenSequenceEngine&) = delete;
  OpenSequenceEngine& operator=(const OpenSequenceEngine&) = delete;

  void AttachControl(std::shared_ptr<ChannelIO> cio) override { m_CIO = std::move(cio); }
  void Load(const std::string& szFilename) override;
  /// How much faster than written the sequence runs by its own clock; music sets its own pace.
  void PlayRate(double rate) override;
  /// Held until the next PrepareForPlay.
  void PlayOptions(bool boolLoopAtEnd, bool boolLightsOffAtEnd) override;
  void PrepareForPlay(bool boolHasMedia) override;
  void Start() override;
  void Stop() override;
  [[nodiscard]] int32_t PlayState() override;
  [[nodiscard]] std::string MediaFile() override;
  /// An OpenShellCommand.
  [[nodiscard]] std::any ShellCommand() override;
  [[nodiscard]] bool UsesNetwork(NetworkKind kind) override;
  void InitMusicSync(int32_t lMilliseconds) override;
  void SyncToMusic(int32_t lMilliseconds) override;
  [[nodiscard]] bool GetEvent(LightingEvent& event) override;

  [[nodiscard]] NextDue NextEventDue() override;
  [[nodiscard]] NextDue NextStateChange() override;
  [[nodiscard]] std::optional<int32_t> Length() override;

 private:
  struct Options {
    bool LoopAtEnd = false;
    bool LightsOffAtEnd = true;
  };

  void m_Timer_Tick();

  [[nodiscard]] bool PlaysByClock() const { return m_Playing && !m_HasMedia; }
  [[nodiscard]] std::chrono::nanoseconds RoundLength() const;
  [[nodiscard]] std::chrono::nanoseconds Position(Elapsed now) const;
  [[nodiscard]] Elapsed MomentOf(std::chrono::nanoseconds position) const;
  [[nodiscard]] bool NobodySees();
  void PlayPass();
  void PlayUntil(Elapsed now);
  void BeginNextRound(Elapsed now);
  void SendDue();
  void Send(const LightingEvent& event);
  void Sleep();
  void Close();
  void SendLightsOff();
  void FlushSent();

  vex::Clock& m_Clock;
  EventLoop& m_EventLoop;
  Files& m_Files;
  SequencePathFinder m_FullPath;
  std::shared_ptr<ChannelIO> m_CIO;          // may be empty: nothing is sent then
  std::unique_ptr<OpenSequence> m_Sequence;  // empty until loaded
  std::unique_ptr<SequenceCursor> m_Cursor;  // empty until loaded
  std::unique_ptr<Timer> m_Timer;            // empty until first played by its own clock

  Options m_NextOptions;
  Options m_Options;
  double m_Rate = 1.0;
  bool m_HasMedia = false;
  bool m_Playing = false;
  bool m_Sent = false;             // something waits for the flush
  bool m_Unseen = false;           // what is due is not even worked out
  std::optional<bool> m_Harmless;  // all frames can be read; looked at only where it matters
  Elapsed m_RoundStart{0};
  LightingEvent m_Event;  // used again for each event, so that playing allocates nothing
  std::exception_ptr m_Failure;
};

}  // namespace vex

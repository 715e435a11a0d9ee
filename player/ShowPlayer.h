#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "basic/Collection.h"
#include "host/Clock.h"
#include "host/Timer.h"
#include "player/RandomNumbers.h"
#include "player/SequencePlayInfo.h"
#include "player/StatusReport.h"
#include "player/devices/Devices.h"
#include "player/devices/frmMediaPlayer.h"
#include "settings/LibNetworks.h"
#include "settings/VideoPreferences.h"

namespace vex {

class Files;
class Playlist;
class Processes;
class Registry;
class Show;
class Trigger;

/// What a player is made with. The references outlive it.
struct PlayerSurroundings {
  StatusReport& Report;
  Clock& Time;
  Processes& Programs;
  Registry& Settings;
  Networks& NetworkSettings;
  Devices Components;
  /// Draws the songs of shuffled playlists; one seed replays one run.
  uint64_t Seed = 0;
  /// The form on which the media player stands.
  std::shared_ptr<frmMediaPlayer> MediaForm;
};

/// Plays one show at a time. The shell says which show should be playing by setting NextShow; everything
/// else happens in the tick of the show timer and in the events of the I/O control and the media player.
/// A show goes through fixed phases: waiting for its startup trigger, startup, main (animation, musical and
/// interactive together, background under them), shutdown. Each tick starts what waits in the start queue,
/// checks what plays, and then feeds the phase that is due.
///
/// After a tick in which nothing happened the player tells its timer until when nothing can happen; every
/// event from outside wakes the timer. A tick each millisecond would show the same.
class ShowPlayer {
 public:
  using SequenceReference = std::shared_ptr<SequencePlayInfo>;
  using SequenceList = Collection<SequenceReference>;

  explicit ShowPlayer(PlayerSurroundings surroundings);
  /// Stops playback; the status report is told that no show is current.
  ~ShowPlayer();
  ShowPlayer(const ShowPlayer&) = delete;
  ShowPlayer& operator=(const ShowPlayer&) = delete;

  /// Takes the show timer, the I/O control and the media player, and configures and opens the networks.
  /// Raises what the control raises.
  void InitControls(Timer& showTimer, std::shared_ptr<ChannelIO> cio, std::shared_ptr<MediaPlayer> wmp);

  /// The show being played, empty for none.
  [[nodiscard]] const std::shared_ptr<Show>& CurrentShow() const { return m_CurrentShow; }
  /// The show that is to follow, empty for none.
  [[nodiscard]] const std::shared_ptr<Show>& NextShow() const { return m_NextShow; }
  void NextShow(std::shared_ptr<Show> show);

  /// The sequences that have been started and not yet ended.
  [[nodiscard]] const SequenceList& Playing() const { return m_Playing; }
  /// The one whose media file the media player plays, or empty.
  [[nodiscard]] const SequenceReference& MediaHolder() const { return m_MediaHolder; }

  /// The tick of the show timer.
  void m_ShowTimer_Timer();

 private:
  enum class MusicalStep { Pick = 0, CleanUp = 1, Delay = 2 };

  /// What the walk over the playing list found.
  struct PlayingNow {
    bool Startup = false;
    bool Animation = false;
    bool Music = false;
    bool FirstMusicHoldsMedia = false;
    bool Shutdown = false;
  };

  /// All that is forgotten between two shows.
  struct ShowState {
    SequenceList Background;
    SequenceList Startup;
    SequenceList Animation;
    SequenceList MusicalMaster;
    SequenceList MusicalWorking;
    SequenceList CleanUp;
    SequenceList Shutdown;
    /// One entry a group, each one entry a trigger, each that trigger's sequences.
    Collection<Collection<SequenceList>> Interactive;
    int32_t AnimationType = 0;
    int32_t MusicalType = 0;
    int32_t MusicalDelay = 0;  // seconds
    int32_t AnimationIndex = 1;
    int32_t MusicalIndex = 1;
    int32_t CleanUpIndex = 1;
    MusicalStep Step = MusicalStep::Pick;
    bool Delaying = false;
    int32_t DelayEnd = 0;  // seconds since midnight; may lie beyond it
    bool BackgroundEnabled = false;
    bool MainEnabled = false;
    bool InteractiveRegistered = false;
    bool InteractiveLogged = false;
    bool ShutdownMode = false;
    bool NonBackgroundStopped = false;
  };

  // Settings and networks.
  void ReadSettings(Registry& settings, Networks& networks);
  void OpenNetwork(int32_t lNetwork, std::optional<bool> boolForPlay);
  void OpenMainNetworksForPlay();
  void OpenNetworksUsedBy(SequencePlayInfo& sequence);

  // The show.
  void CurrentShow(std::shared_ptr<Show> show);
  [[nodiscard]] bool GoesOnWith(const std::shared_ptr<Show>& show);
  void EnterShutdownMode();
  void StartShow();
  void DecideStartMode();
  void ResetShowState();
  void WakeTimer();

  // Building a show's lists.
  void BuildLists();
  [[nodiscard]] SequenceReference NewSequence(int32_t lPlayType, const std::string& szFilename,
                                              bool boolLightsOffAtEnd, bool boolLoopAtEnd);
  void BuildList(const Playlist& playlist, int32_t lPlayType, bool boolLoopAtEnd, SequenceList& list);
  void BuildMusical(const Playlist& playlist);
  void BuildInteractive();

  // The tick.
  void Tick();
  [[nodiscard]] PlayingNow CheckPlaying();
  void NotePlaying(const SequenceReference& sequence, PlayingNow& now) const;
  void FeedShow(const PlayingNow& now);
  void FeedShutdown(const PlayingNow& now);
  void StopNonBackground();
  void StopEverything();
  void FinishShow();

  // The phases.
  void QueueSequence(SequenceList& list, int32_t lIndex, bool boolRemove);
  void QueueWholeList(SequenceList& list);
  void StartBackground();
  void NextAnimation();
  void NextMusical();
  void MusicalCleanUp();
  void MusicalDelay();
  void MusicalPick();
  [[nodiscard]] int32_t ShuffledIndex();

  // One sequence.
  void StartNextQueued();
  void DropFailed(const SequencePlayInfo& sequence);
  [[nodiscard]] bool MakeRoomFor(const SequenceReference& sequence);
  void TakeMediaPlayer(const SequenceReference& sequence, const std::string& szMediaFilename);
  [[nodiscard]] bool CheckSequence(const SequenceReference& sequence);
  [[nodiscard]] bool SyncSequence(const SequenceReference& sequence);
  void SendDueEvents(SequencePlayInfo& sequence);
  void SendEvent(const LightingEvent& event);
  void ReleaseMediaOf(const SequenceReference& sequence);

  // Triggers.
  void RegisterStartupTrigger();
  void RegisterInteractiveTriggers();
  void ClearTriggers();
  void m_CIO_TriggerDetected(const NamedProperties& input);
  [[nodiscard]] bool ServeStartupTrigger(const Trigger& detected);
  void ServeInteractiveTriggers(const Trigger& detected);
  void StopGroupSequences(const std::shared_ptr<InteractiveGroup>& group);

  // The media player and its window.
  void m_WMP_OpenStateChange(int32_t lNewState);
  void m_WMP_Error();
  [[nodiscard]] std::string MediaErrorText();
  void ShowVideoWindow();
  void HideVideoWindow();

  // Ticks left out.
  void SleepUntilSomethingIsDue();
  [[nodiscard]] NextDue NextTickDue();
  [[nodiscard]] NextDue DelayEndDue() const;

  void Log(int32_t lLevel, const std::string& szText, const SequencePlayInfo* sequence = nullptr);

  StatusReport& m_Report;
  Clock& m_Clock;
  SequenceSurroundings m_SequenceSurroundings;
  std::shared_ptr<ShellCommandManager> m_ShellCommands;
  std::shared_ptr<frmMediaPlayer> m_MediaForm;
  Timer* m_ShowTimer = nullptr;
  std::shared_ptr<ChannelIO> m_CIO;
  std::shared_ptr<MediaPlayer> m_WMP;
  RandomNumbers m_Random;

  std::shared_ptr<Show> m_CurrentShow;
  std::shared_ptr<Show> m_NextShow;
  ShowState m_State;
  SequenceList m_StartQueue;
  SequenceList m_Playing;
  SequenceReference m_MediaHolder;
  /// For the back-to-back rule; outlives the show it belonged to, but does not keep its sequence alive.
  std::weak_ptr<SequencePlayInfo> m_LastMusical;
  bool m_TriggersRegistered = false;
  /// Something happened in this tick, so that the next one may find something to do.
  bool m_Busy = false;
  LightingEvent m_Event;  // filled anew for each event, so that its text keeps its memory

  std::array<int16_t, 4> m_NetworkValue{};
  std::array<uint8_t, 4> m_NetworkPort{};
  bool m_NetworkFlag = false;
  uint8_t m_CourserPort = 0;
  uint8_t m_X10Port = 0;
  /// Set when the network has been opened for play; never cleared, so each is opened once a run.
  struct {
    bool Main = false;
    bool X10 = false;
    bool Courser = false;
  } m_Opened;
  VideoPreferences m_Video;
};

}  // namespace vex

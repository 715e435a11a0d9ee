#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "basic/DateTime.h"
#include "host/EventLoop.h"
#include "host/Windows.h"
#include "monitor/Installation.h"
#include "monitor/Msg.h"
#include "monitor/MsgHook.h"
#include "monitor/PendingStatus.h"
#include "monitor/Queue.h"
#include "monitor/ServiceReport.h"
#include "monitor/ShowsInForce.h"
#include "monitor/StatusFile.h"
#include "monitor/VexMessage.h"
#include "player/StatusReport.h"
#include "player/devices/Devices.h"
#include "player/devices/frmMediaPlayer.h"
#include "schedule/MonitoredShowEvent.h"
#include "settings/LibNetworks.h"
#include "show/ShowReader.h"

namespace vex {

class Error;
class MessageBoxes;
class Processes;
class ShowPlayer;
class SingleInstance;

/// What the shell is made with. The references outlive it.
struct MonitorSurroundings {
  Clock& Time;
  EventLoop& Loop;
  Windows& Desktop;
  Registry& Settings;
  Files& FileSystem;
  Processes& Programs;
  SingleInstance& Instance;
  MessageBoxes& Boxes;
  /// Makes the devices while the form loads; what it raises is the start-up message box.
  std::function<Devices()> NewDevices;
  /// Compared whole with "/noschedule".
  std::string CommandLine;
  /// Draws the songs of shuffled playlists.
  uint64_t Seed = 0;
  /// Where status.json lies, as the system writes paths; empty for no status file.
  std::string StatusFilename;
  int32_t Pid = 0;
  /// A rehearsal does without.
  bool CheckInstallation = true;
  /// Sees every line that has a text, level 0 and below too; may be empty.
  std::function<void(int32_t lLevel, const std::string& szText, const SequencePlayInfo*)> LogTrace;
  /// Heartbeats that would find everything as the one before did are left out. Only where time is virtual,
  /// a file that changes is told of with WakeHeartbeat, and nobody looks for the lines of level 0.
  bool HeartbeatsRest = false;
  /// Who looks after the player and is told how it is; null for nobody.
  ServiceManager* Service = nullptr;
};

/// The hidden main form: it owns everything else. It starts the player, decides once a second which show
/// event is in force, reads that show's file and hands the show to the player, takes messages of other
/// programs, reports to the tray, and shuts down on request.
///
///     loaded --4 s--> initialised (heartbeat) --> shutting down gracefully --> unloaded
///        any state --immediate shutdown--> unloaded
///
/// Everything runs on the loop's one thread. The form unloads once; after that nothing of it ticks and the
/// loop has been asked to end. The player exists from Form_Load to the unload, and so do the devices.
class frmMonitor final : public StatusReport {
 public:
  using EventReference = std::shared_ptr<MonitoredShowEvent>;

  explicit frmMonitor(MonitorSurroundings surroundings);
  ~frmMonitor() override;
  frmMonitor(const frmMonitor&) = delete;
  frmMonitor& operator=(const frmMonitor&) = delete;

  /// The program from its beginning to its end; returns its exit status.
  int32_t Run();

  void Form_Initialize();
  void Form_Load();
  /// Form_Unload once, and the end of the program; does nothing the second time.
  void Unload();
  [[nodiscard]] bool Unloaded() const { return m_Unloaded; }
  /// 0, or 1 where the program could not start.
  [[nodiscard]] int32_t ExitStatus() const { return m_ExitStatus; }

  [[nodiscard]] EventReference GetCurrentShowEvent(DateTime dtNow) const;
  [[nodiscard]] EventReference GetNextShowEvent(const EventReference& current,
                                                const EventReference& scheduled, DateTime dtNow) const;
  void PlayShowEvent(const EventReference& event);
  void LoadSchedules();
  /// Something outside that the heartbeat looks at may have changed; needed only where heartbeats rest.
  void WakeHeartbeat() { tmNextAction->Wake(); }
  void RequestGracefulShutdown();
  void RequestImmediateShutdown();
  void HandleShowOnDemand(const std::string& szText);

  void LogMessage(int32_t lLevel, const std::string& szText, const SequencePlayInfo* playInfo) override;
  void ReportShowsToTray(bool boolForce) override;
  void SetTrayWindow(WindowHandle hWnd);

  /// The form's own window, 0 before it is loaded.
  [[nodiscard]] WindowHandle hWnd() const { return m_hWnd; }
  [[nodiscard]] bool Initialized() const { return m_Initialized; }
  [[nodiscard]] bool ShuttingDown() const { return m_ShuttingDown; }
  [[nodiscard]] bool NoSchedule() const { return m_NoSchedule; }
  /// Empty before the form is loaded and after it has been unloaded.
  [[nodiscard]] const ShowPlayer* Player() const { return m_ShowPlayer.get(); }

  /// Captions of the form: the moment of the last window message, the window's handle, and a third.
  [[nodiscard]] const std::string& Label1() const { return m_Label1; }
  [[nodiscard]] const std::string& Label2() const { return m_Label2; }
  [[nodiscard]] const std::string& Label3() const { return m_Label3; }

 private:
  // What was last reported to the tray, as the texts that were sent; nothing for no event.
  struct Report {
    std::optional<std::string> Current;
    std::optional<std::string> Next;
    friend bool operator==(const Report&, const Report&) = default;
  };

  // Start-up and shutdown.
  void ParseCommandLine();
  void LoadForm();
  void HookWindow();
  void CreatePlayer();
  void ConfigureNetworkLink();
  void EnableNetworkLink(bool boolEnabled);
  void CloseAfterBox(const Error& error);
  void SendLastLines();
  void Form_Unload();
  void DisableTimers();
  [[nodiscard]] bool ShowIsPlaying() const;

  // Timers.
  void tmCIODelay_Timer();
  void tmNextAction_Timer();
  void tmrVexMsgQueue_Timer();
  void tmrUnloadGracefully_Timer();
  void Heartbeat();
  void RestUntilNextMoment();
  [[nodiscard]] bool HeartbeatMayRest() const;
  void HeartbeatFailed(const std::string& szDescription);

  // Messages.
  void m_FormHook_AfterMessage(const WindowMessage& message);
  void RestFromMessages(Elapsed begin);
  void HandleMessage(const VexMessage& message);
  [[nodiscard]] ShowsInForce InForce() const;

  // Status.
  bool SendToTray(int32_t lMessageType, const std::string& szText);
  bool SendStatusToVexTray(const std::string& szText);
  void TellLine(const std::string& szText);
  void FlushPendingStatus();
  void AnnounceToTray();
  void SendReport(bool boolForce);
  [[nodiscard]] Report WorkOutReport() const;
  void TakeOver(const Report& report);
  void StatusChanged();
  void WriteStatusFile();
  [[nodiscard]] PlayerStatus CurrentStatus();
  void NoteFailure(const std::string& szText);

  MonitorSurroundings m_Surroundings;
  Clock& m_Clock;
  Installation m_Installation;
  Networks m_Networks;
  ShowReader m_ShowReader;
  std::string m_ShowFileText;  // kept from tick to tick, so that its memory is used again

  Queue<VexMessage> m_MsgQueue;
  std::shared_ptr<Schedule> m_Schedule;
  std::shared_ptr<YearSchedule> m_YearSchedule;
  EventReference m_OnDemandEvent;
  bool m_NoSchedule = false;
  bool m_ShuttingDown = false;
  bool m_Initialized = false;
  bool m_AnnouncedToTray = false;
  WindowHandle m_TrayHwnd = 0;
  PendingStatus m_PendingStatus;
  std::optional<Report> m_LastReport;

  bool m_Unloaded = false;
  int32_t m_ExitStatus = 0;
  bool m_LinkEnabled = false;
  PlayerStatus m_Status;
  std::optional<StatusFile> m_StatusFile;
  std::optional<ServiceReport> m_ServiceReport;
  std::unique_ptr<Signal> m_StatusSignal;
  std::unique_ptr<Timer> m_StatusRest;  // enabled while the status file is left alone
  bool m_StatusStale = false;           // something has changed meanwhile

  WindowHandle m_hWnd = 0;
  std::string m_Label1;
  std::string m_Label2;
  std::string m_Label3;
  HookRecords m_HookRecords;
  std::unique_ptr<MsgHook> m_FormHook;

  std::unique_ptr<Timer> tmCIODelay;
  std::unique_ptr<Timer> tmNextAction;
  std::unique_ptr<Timer> tmrVexMsgQueue;
  std::unique_ptr<Timer> tmrShowPlayer;
  std::unique_ptr<Timer> tmrUnloadGracefully;

  Devices m_Devices;
  std::shared_ptr<frmMediaPlayer> m_MediaForm;
  std::shared_ptr<ChannelIO> m_CIO;
  std::unique_ptr<ShowPlayer> m_ShowPlayer;
};

}  // namespace vex

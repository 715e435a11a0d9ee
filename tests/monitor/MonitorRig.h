#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/virtual/VirtualHost.h"
#include "monitor/frmMonitor.h"
#include "tests/player/FakeDevices.h"

namespace vex::test {

/// The link to other machines written down as well, and able to fail.
class LinkedLights : public FakeChannelIO {
 public:
  explicit LinkedLights(Transcript& transcript) : FakeChannelIO(transcript), m_Lines(transcript) {}
  void SetLink(const std::string& szHost, int16_t localPort, int16_t remotePort) override;
  void SupportsSpecial(bool boolSupports) override;
  void LinkEnabled(bool boolEnabled) override;

  void ClearTriggers() override;

  std::string FailLink;
  int FailClearTriggers = 0;  ///< so many calls fail

 private:
  Transcript& m_Lines;
};

/// A window that tells whether it has been unloaded.
class FormWindow : public FakeWindow {
 public:
  explicit FormWindow(Transcript& transcript) : FakeWindow(transcript), m_Lines(transcript) {}
  bool Loaded() const override { return m_Loaded; }
  void Unload() override;

 private:
  Transcript& m_Lines;
  bool m_Loaded = true;
};

/// The text of a show with these sequences.
struct ShowFile {
  std::string Startup;
  std::string Animation;
  std::string Songs;
  std::string Shutdown;

  [[nodiscard]] std::string Text() const;
};

/// One entry of a schedule, "Thu 18:00:10" to "Thu 18:00:20" being (4, "18:00:10", "18:00:20").
struct WeekEntry {
  std::string Filename;
  int32_t Day;
  std::string Start;
  std::string End;
  int32_t EndDay = -1;  ///< -1 is the same day
};
[[nodiscard]] std::string WeekText(const std::vector<WeekEntry>& entries);
/// "hh:mm:ss" of the rig's evening.
[[nodiscard]] DateTime At(const std::string& szTime, int32_t lDay = 24);

/// The form with the real player on the virtual host with fake devices. It begins on Thursday, 24 December
/// 2026, 18:00:00; user data lie in D:\Data. A tray is there but has not made itself known.
class MonitorRig {
 public:
  explicit MonitorRig(VirtualPlayerLock lock = std::make_shared<const void*>(nullptr));

  /// Makes the form and loads it.
  void Load();
  /// Makes the form only.
  void Make();
  /// Load, and five seconds: the first heartbeat has been.
  void Start();
  void Run(int64_t milliseconds) { Host.EventLoop().Advance(milliseconds); }
  /// Moves to that time of the evening.
  void RunUntil(const std::string& szTime);
  /// Sends and lets the queue's timer tick.
  void Send(int32_t lType, const std::string& szText = "", WindowHandle sender = 0);
  /// Sends alone.
  void Post(int32_t lType, const std::string& szText = "", WindowHandle sender = 0);
  void KnowTray();

  void Week(const std::vector<WeekEntry>& entries);
  void Year(const std::vector<std::pair<std::string, std::vector<WeekEntry>>>& days);
  void Show(const std::string& szFilename, const ShowFile& show);

  /// What the tray got, as the payload reads.
  [[nodiscard]] std::vector<std::string> Tray();
  /// The tray's messages of one type, without their two digits.
  [[nodiscard]] std::vector<std::string> Tray(int32_t lType);
  void ForgetTray() { Host.Windows().ForgetReceived(TrayHwnd); }
  /// Log lines as level, blank and text; level 0 left out.
  [[nodiscard]] std::vector<std::string> Log() const;
  [[nodiscard]] bool Logged(const std::string& szLine) const;
  /// The lines of devices that begin so.
  [[nodiscard]] std::vector<std::string> Calls(const std::string& szStart) const;
  [[nodiscard]] std::vector<std::string> Boxes();
  [[nodiscard]] std::string CurrentFilename() const;
  [[nodiscard]] std::string Status();

  VirtualHost Host;
  std::string CommandLine;
  bool CheckInstallation = false;
  bool StatusFile = false;
  bool HeartbeatsRest = false;
  std::function<void()> FailDevices;
  Windows* Desktop = nullptr;  ///< in place of the host's
  Clock* Time = nullptr;       ///< in place of the host's
  FakeEngine::Library Library;
  Transcript Lines;
  std::shared_ptr<LinkedLights> Lights;
  std::shared_ptr<FakeMediaPlayer> Media;
  std::shared_ptr<FormWindow> Window;
  WindowHandle TrayHwnd = 0;
  std::vector<std::string> AllLines;
  std::unique_ptr<frmMonitor> Monitor;
};

}  // namespace vex::test

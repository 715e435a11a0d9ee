#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "components/recorded/RecordedChannelIO.h"
#include "components/recorded/RecordedMediaPlayer.h"
#include "components/recorded/SequenceFaults.h"
#include "host/virtual/VirtualHost.h"
#include "monitor/frmMonitor.h"

namespace vex::test {

/// The whole player on a virtual machine: the real shell and player, the open sequence engine on files in
/// memory, recorded lights and media. Every line that is written, sent or asked of a device stands in Lines,
/// with the wall clock's time in front.
class EveningRig {
 public:
  explicit EveningRig(DateTime dtStart = DateTime::FromParts(2026, 12, 24, 17, 59, 50), uint64_t seed = 1);
  ~EveningRig();

  /// A cue file that lasts so long, with media where named; each lights one circuit at its start.
  void Sequence(const std::string& szName, double seconds, const std::string& szMedia = "");
  void ShowFile(const std::string& szName, const std::string& szText);
  void WeekSchedule(const std::string& szText);
  void YearSchedule(const std::string& szText);

  /// Makes and loads the form.
  void Start(const std::string& szCommandLine = "");
  void RunFor(int64_t milliseconds) { Host.EventLoop().Advance(milliseconds); }
  /// A message from another program's window, put in the player's queue.
  void Message(int32_t lType, const std::string& szText = "", WindowHandle sender = 7);

  /// Lines of the log of level 1 and 3, with their times, or without.
  [[nodiscard]] std::vector<std::string> Log() const;
  [[nodiscard]] std::vector<std::string> LogWithoutTime() const;

  VirtualHost Host;
  /// The seams that the player is given, those of the host unless a test puts its own before them.
  vex::EventLoop* Loop = &Host.EventLoop();
  vex::Windows* Desktop = &Host.Windows();
  vex::Registry* Settings = &Host.Registry();
  vex::Files* FileSystem = &Host.Files();
  vex::Processes* Programs = &Host.Processes();
  vex::SingleInstance* Instance = &Host.SingleInstance();
  /// Has its way with the devices before the player gets them; may be empty.
  std::function<void(Devices&)> WrapDevices;
  /// Where the status file lies; empty for none.
  std::string StatusFilename;
  /// Called with each line of the log, behind WriteDown; may be empty.
  std::function<void()> Traced;
  std::vector<std::string> Lines;
  std::shared_ptr<SequenceFaults> Faults = std::make_shared<SequenceFaults>();
  std::shared_ptr<RecordedChannelIO> Lights;
  std::shared_ptr<RecordedMediaPlayer> Media;
  std::unique_ptr<frmMonitor> Form;

 private:
  [[nodiscard]] Devices MakeDevices();
  void WriteDown(const std::string& szLine);

  uint64_t m_Seed;
};

}  // namespace vex::test

#include "tests/monitor/MonitorRig.h"

#include <algorithm>
#include <utility>

#include "player/PlayType.h"
#include "player/SequencePlayInfo.h"
#include "player/ShowPlayer.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "show/Show.h"
#include "time/WeekTimeFunctions.h"

namespace vex::test {

namespace {

constexpr char Product[] = "Software\\Brillara";
constexpr char StatusPath[] = "C:\\run\\status.json";

WeekTime::Reference WeekTimeOf(int32_t lDay, const std::string& szTime) {
  const DateTime dtTime = At(szTime);
  return NewWeekTime(lDay, dtTime.Hour(), dtTime.Minute(), dtTime.Second());
}

void AddEntries(Schedule& schedule, const std::vector<WeekEntry>& entries) {
  for (const auto& entry : entries) {
    schedule.AddShowEventByFile(entry.Filename, WeekTimeOf(entry.Day, entry.Start),
                                WeekTimeOf(entry.EndDay < 0 ? entry.Day : entry.EndDay, entry.End));
  }
}

std::string MusicalText(const std::string& szNames) {
  return szNames.empty() ? "(2,0,1,0,,)" : "(0,1,2,0,,(" + szNames + "))";
}

}  // namespace

void LinkedLights::SetLink(const std::string& szHost, int16_t localPort, int16_t remotePort) {
  m_Lines.push_back("link " + szHost + " " + std::to_string(localPort) + " " + std::to_string(remotePort));
  if (!FailLink.empty()) throw Error(8006, "ChannelIO", FailLink);
}

void LinkedLights::SupportsSpecial(bool boolSupports) {
  m_Lines.push_back(std::string("link special ") + (boolSupports ? "yes" : "no"));
}

void LinkedLights::ClearTriggers() {
  if (FailClearTriggers > 0 && FailClearTriggers-- > 0) throw Error(1, "ChannelIO", "triggers stuck");
  FakeChannelIO::ClearTriggers();
}

void LinkedLights::LinkEnabled(bool boolEnabled) {
  m_Lines.push_back(std::string("link ") + (boolEnabled ? "on" : "off"));
}

void FormWindow::Unload() {
  m_Lines.push_back("window unload");
  m_Loaded = false;
}

std::string ShowFile::Text() const {
  const std::string szAnimation = Animation.empty() ? "(1,0,1,0,,)" : "(1,0,1,0,,(" + Animation + "))";
  return "(" + MusicalText(Startup) + "," + MusicalText(Shutdown) + "," + szAnimation + "," +
         MusicalText(Songs) + ",)\r\n";
}

std::string WeekText(const std::vector<WeekEntry>& entries) {
  Schedule schedule;
  AddEntries(schedule, entries);
  return ScheduleToText(schedule) + "\r\n";
}

DateTime At(const std::string& szTime, int32_t lDay) {
  return ParseDateTime("2026-12-" + std::to_string(lDay) + " " + szTime);
}

MonitorRig::MonitorRig(VirtualPlayerLock lock) : Host(DateTime::FromParts(2026, 12, 24, 18, 0, 0), lock) {
  Lights = std::make_shared<LinkedLights>(Lines);
  Media = std::make_shared<FakeMediaPlayer>(Lines, Host.Clock());
  Window = std::make_shared<FormWindow>(Lines);
  TrayHwnd = Host.Windows().NewForeignWindow();
  Host.Registry().SetText(Product, "UserDataPath", "D:\\Data");
  Host.Files().Put("C:\\run\\other", "");
}

void MonitorRig::Make() {
  auto newDevices = [this] {
    if (FailDevices) FailDevices();
    Devices devices;
    devices.Lights = Lights;
    devices.Media = Media;
    devices.Window = Window;
    devices.ShellCommands = std::make_shared<FakeShellCommands>();
    devices.NewSequence = [this] { return std::make_shared<FakeEngine>(Lines, Host.Clock(), Library); };
    return devices;
  };
  auto trace = [this](int32_t lLevel, const std::string& szText, const SequencePlayInfo* playInfo) {
    std::string szLine = std::to_string(lLevel) + " " + szText;
    if (playInfo) szLine += " " + PlayTypeWord(playInfo->PlayType()) + ": " + playInfo->Filename();
    AllLines.push_back(szLine);
  };
  Monitor = std::make_unique<frmMonitor>(MonitorSurroundings{
      Time ? *Time : Host.Clock(), Host.EventLoop(), Desktop ? *Desktop : Host.Windows(), Host.Registry(),
      Host.Files(), Host.Processes(), Host.SingleInstance(), Host.MessageBoxes(), newDevices, CommandLine, 1,
      StatusFile ? StatusPath : "", 4711, CheckInstallation, trace, HeartbeatsRest});
}

void MonitorRig::Load() {
  Make();
  Monitor->Form_Initialize();
  Monitor->Form_Load();
}

void MonitorRig::Start() {
  Load();
  Run(5000);
}

void MonitorRig::RunUntil(const std::string& szTime) {
  Run(At(szTime).SecondsSince(Host.Clock().Now()) * 1000);
}

void MonitorRig::Post(int32_t lType, const std::string& szText, WindowHandle sender) {
  SendVexMessage(Host.Windows(), sender, Monitor->hWnd(), lType, szText);
}

void MonitorRig::Send(int32_t lType, const std::string& szText, WindowHandle sender) {
  Post(lType, szText, sender);
  Run(1);
}

void MonitorRig::KnowTray() {
  Send(MessageTrayWindow, "", TrayHwnd);
}

void MonitorRig::Week(const std::vector<WeekEntry>& entries) {
  Host.Files().Put("D:\\Data\\weeksched.qsc", WeekText(entries));
}

void MonitorRig::Year(const std::vector<std::pair<std::string, std::vector<WeekEntry>>>& days) {
  YearSchedule year;
  for (const auto& [szDate, entries] : days) {
    auto day = std::make_shared<Schedule>();
    AddEntries(*day, entries);
    year.AddSchedule(YearSchedule::DateStringToDate(szDate), day);
  }
  Host.Files().Put("D:\\Data\\yearsched.qsc", YearScheduleToText(year) + "\r\n");
}

void MonitorRig::Show(const std::string& szFilename, const ShowFile& show) {
  Host.Files().Put("D:\\Data\\" + szFilename, show.Text());
}

std::vector<std::string> MonitorRig::Tray() {
  std::vector<std::string> payloads;
  for (const auto& message : Host.Windows().Received(TrayHwnd)) {
    payloads.push_back(message.Bytes.substr(0, message.Bytes.size() - 1));
  }
  return payloads;
}

std::vector<std::string> MonitorRig::Tray(int32_t lType) {
  std::vector<std::string> texts;
  for (const auto& szPayload : Tray()) {
    if (MessageTypeOf(szPayload) == lType) texts.push_back(MessageTextOf(szPayload));
  }
  return texts;
}

std::vector<std::string> MonitorRig::Log() const {
  std::vector<std::string> lines;
  std::copy_if(AllLines.begin(), AllLines.end(), std::back_inserter(lines),
               [](const std::string& szLine) { return szLine[0] != '0'; });
  return lines;
}

bool MonitorRig::Logged(const std::string& szLine) const {
  return std::find(AllLines.begin(), AllLines.end(), szLine) != AllLines.end();
}

std::vector<std::string> MonitorRig::Calls(const std::string& szStart) const {
  std::vector<std::string> lines;
  std::copy_if(Lines.begin(), Lines.end(), std::back_inserter(lines),
               [&](const std::string& szLine) { return szLine.starts_with(szStart); });
  return lines;
}

std::vector<std::string> MonitorRig::Boxes() {
  std::vector<std::string> boxes;
  for (const auto& box : Host.MessageBoxes().Shown()) boxes.push_back(box.Title + ": " + box.Text);
  return boxes;
}

std::string MonitorRig::CurrentFilename() const {
  const ShowPlayer* player = Monitor->Player();
  return player && player->CurrentShow() ? player->CurrentShow()->Monitoring()->Filename() : "";
}

std::string MonitorRig::Status() {
  std::string szText;
  return Host.Files().Read(StatusPath, szText) ? szText : "none";
}

}  // namespace vex::test

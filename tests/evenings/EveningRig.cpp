#include "tests/evenings/EveningRig.h"

#include "components/open/OpenSequenceEngine.h"
#include "components/open/OpenShellCommandManager.h"
#include "components/recorded/MediaFacts.h"
#include "components/recorded/RecordedMediaWindow.h"
#include "components/recorded/RecordedSequenceEngine.h"
#include "components/recorded/RecordedShellCommandManager.h"
#include "components/recorded/Recorder.h"
#include "player/PlayType.h"
#include "player/SequencePlayInfo.h"
#include "settings/LibFile.h"

namespace vex::test {

namespace {

constexpr const char* Product = "Software\\Brillara";
constexpr const char* Shared = "Software\\Brillara\\Shared";

}  // namespace

EveningRig::EveningRig(DateTime dtStart, uint64_t seed) : Host(dtStart), m_Seed(seed) {
  Host.Registry().SetText(Product, "UserDataPath", "D:\\data");
  Host.Registry().SetText(Shared, "NonAudioPath", "D:\\seq");
  Host.Registry().SetText(Shared, "AudioPath", "D:\\audio");
  Host.Files().MakeFolder("D:\\data");
}

EveningRig::~EveningRig() {
  Form.reset();
}

void EveningRig::WriteDown(const std::string& szLine) {
  Lines.push_back(Host.Clock().Milliseconds() + " " + szLine);
}

void EveningRig::Sequence(const std::string& szName, double seconds, const std::string& szMedia) {
  std::string szText = R"({"format":"vexseq","version":1,"duration":)" + std::to_string(seconds);
  if (!szMedia.empty()) szText += R"(,"media":")" + szMedia + "\"";
  szText += R"(,"events":[{"unit":1,"circuit":1,"start":0,"end":0.5,"from":0,"to":100},)"
            R"({"unit":1,"circuit":2,"start":0.25,"end":0.25,"from":50,"to":50}]})";
  Host.Files().Put("D:\\seq\\" + szName, szText);
}

void EveningRig::ShowFile(const std::string& szName, const std::string& szText) {
  Host.Files().Put("D:\\data\\" + szName, szText + "\r\n");
}

void EveningRig::WeekSchedule(const std::string& szText) {
  Host.Files().Put("D:\\data\\weeksched.qsc", szText + "\r\n");
}

void EveningRig::YearSchedule(const std::string& szText) {
  Host.Files().Put("D:\\data\\yearsched.qsc", szText + "\r\n");
}

Devices EveningRig::MakeDevices() {
  const auto recorder = std::make_shared<Recorder>(
      Host.Clock(),
      [this](std::string_view, std::string_view, const JsonLine& line) { WriteDown(line.Text()); });
  const auto names = std::make_shared<MediaNames>();
  Lights = std::make_shared<RecordedChannelIO>(recorder);
  Media = std::make_shared<RecordedMediaPlayer>(
      Host.Clock(), *Loop, recorder, [names](const std::string& szPath) { return names->NameOf(szPath); },
      [names](const std::string& szPath) {
        MediaFacts facts = AssumedMediaFacts(*names, szPath);
        if (!facts.Length) facts.Errors.emplace_back("file not found");
        return facts;
      });
  Faults->Injected = [this] { Media->Changed(); };
  const auto find = [this](const std::string& szName, bool boolIsAudio) {
    return FullSequencePath(*Settings, szName, boolIsAudio);
  };
  const SequenceRecording recording{recorder, names, Faults,
                                    [find](const std::string& szName) { return find(szName, true); }};
  Devices devices;
  devices.Lights = Lights;
  devices.NewSequence = [this, recording, find] {
    return std::make_shared<RecordedSequenceEngine>(
        std::make_shared<OpenSequenceEngine>(Host.Clock(), *Loop, *FileSystem, find), recording);
  };
  devices.ShellCommands =
      std::make_shared<RecordedShellCommandManager>(std::make_shared<OpenShellCommandManager>(), recorder);
  devices.Media = Media;
  devices.Window = std::make_shared<RecordedMediaWindow>(recorder);
  if (WrapDevices) WrapDevices(devices);
  return devices;
}

void EveningRig::Start(const std::string& szCommandLine) {
  MonitorSurroundings surroundings{.Time = Host.Clock(),
                                   .Loop = *Loop,
                                   .Desktop = *Desktop,
                                   .Settings = *Settings,
                                   .FileSystem = *FileSystem,
                                   .Programs = *Programs,
                                   .Instance = *Instance,
                                   .Boxes = Host.MessageBoxes(),
                                   .NewDevices = [this] { return MakeDevices(); },
                                   .CommandLine = szCommandLine,
                                   .Seed = m_Seed,
                                   .StatusFilename = StatusFilename,
                                   .CheckInstallation = false,
                                   .LogTrace = nullptr};
  surroundings.LogTrace = [this](int32_t lLevel, const std::string& szText,
                                 const SequencePlayInfo* playInfo) {
    std::string szLine = "log " + std::to_string(lLevel) + " " + szText;
    if (playInfo) szLine += " " + PlayTypeWord(playInfo->PlayType()) + ": " + playInfo->Filename();
    WriteDown(szLine);
    if (Traced) Traced();
  };
  Host.Windows().Sent([this](WindowHandle, const VirtualWindows::Message& message) {
    WriteDown("sent " + message.Bytes.substr(0, message.Bytes.find('\0')));
  });
  Form = std::make_unique<frmMonitor>(std::move(surroundings));
  Form->Form_Initialize();
  Form->Form_Load();
}

void EveningRig::Message(int32_t lType, const std::string& szText, WindowHandle sender) {
  Host.Windows().NewForeignWindow(sender);
  SendVexMessage(Host.Windows(), sender, Form->hWnd(), lType, szText);
}

std::vector<std::string> EveningRig::Log() const {
  std::vector<std::string> found;
  constexpr size_t timeLength = 24;  // with the blank behind it
  for (const auto& szLine : Lines) {
    if (szLine.compare(timeLength, 6, "log 1 ") == 0 || szLine.compare(timeLength, 6, "log 3 ") == 0) {
      found.push_back(szLine.substr(11, 13) + szLine.substr(timeLength + 6));
    }
  }
  return found;
}

std::vector<std::string> EveningRig::LogWithoutTime() const {
  std::vector<std::string> found;
  for (const auto& szLine : Log()) found.push_back(szLine.substr(13));
  return found;
}

}  // namespace vex::test

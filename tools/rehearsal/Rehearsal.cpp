#include "tools/rehearsal/Rehearsal.h"

#include <utility>

#include "components/open/OpenSequenceEngine.h"
#include "components/open/OpenShellCommandManager.h"
#include "components/recorded/RecordedChannelIO.h"
#include "components/recorded/RecordedMediaPlayer.h"
#include "components/recorded/RecordedMediaWindow.h"
#include "components/recorded/RecordedSequenceEngine.h"
#include "components/recorded/RecordedShellCommandManager.h"
#include "components/recorded/Recorder.h"
#include "components/recorded/SequenceFaults.h"
#include "host/RegistryText.h"
#include "host/virtual/VirtualHost.h"
#include "monitor/Installation.h"
#include "monitor/ShowFile.h"
#include "monitor/frmMonitor.h"
#include "player/PlayType.h"
#include "player/SequencePlayInfo.h"
#include "settings/LibFile.h"
#include "show/Show.h"
#include "show/ShowFunctions.h"
#include "tools/faults/FaultyDevices.h"
#include "tools/faults/FaultyHost.h"
#include "tools/faults/RandomFaults.h"
#include "tools/rehearsal/Invariants.h"

namespace vex {
namespace {

constexpr int32_t NoType = 0;

RehearsalEvent DeviceEvent(std::string_view szKind, std::string_view szCall) {
  return {.Kind = szKind, .Call = szCall, .Level = 0, .Text = "", .Play = "", .File = ""};
}

JsonValue TextOrNull(std::string_view szText) {
  if (szText.empty()) return nullptr;
  return std::string(szText);
}

/// The type's two digits.
int32_t TypeOf(const std::string& szPayload) {
  if (szPayload.size() < 2) return NoType;
  return (szPayload[0] - '0') * 10 + (szPayload[1] - '0');
}

}  // namespace

/// The virtual machine with everything on it, and the one place at which all that happens passes by.
class Rehearsal::Stage {
 public:
  Stage(vex::Files& files, const RegistryText& settings, const RehearsalOptions& options,
        std::vector<RehearsalInput> inputs, MediaLibrary library)
      : m_Options(options), m_Inputs(std::move(inputs)), m_Library(std::move(library)), m_Host(options.From) {
    m_Host.Registry().Load(settings);
    m_Host.Files().FallThrough(&files);
    m_Host.EventLoop().EveryTick(options.EveryTick);
    m_Host.MessageBoxes().OnShow([this](const VirtualMessageBoxes::Box& box) { NoteBox(box); });
    // What the machine writes down for tests is let go at once, for a season is long.
    m_Host.Processes().OnStart(
        [this](const VirtualProcesses::Started&) { m_Host.Processes().ForgetStarts(); });
    m_Host.Windows().Sent([this](WindowHandle hWnd, const VirtualWindows::Message& message) {
      NoteSent(message);
      m_Host.Windows().ForgetReceived(hWnd);
    });
    if (m_Options.Faults || m_Options.Watch) m_Options.DetailIsRead = m_Options.LightingIsRead = true;
    if (m_Options.Faults) PlanFaults(*m_Options.Faults);
    if (m_Options.Watch)
      m_Invariants.emplace(m_Host.Clock(), [this](const std::string& szShow) { return LightsOffOf(szShow); });
  }
  ~Stage() { m_Silent = true; }

  [[nodiscard]] DateTime Now() { return m_Host.Clock().Now(); }

  void Run() {
    m_Silent = !Wants;
    MakeForm();
    m_Form->Form_Initialize();
    if (!m_Form->Unloaded()) m_Form->Form_Load();
    for (const RehearsalInput& input : m_Inputs)
      m_Host.EventLoop().At(std::chrono::milliseconds(input.AtMs), [this, &input] { Happen(input); });
    if (!m_Form->Unloaded()) Advance();
    m_Silent = true;
    if (m_Invariants) m_Invariants->Finish();
  }

  [[nodiscard]] std::vector<std::string> Broken() const {
    return m_Invariants ? m_Invariants->Broken() : std::vector<std::string>();
  }

  Filter Wants;
  LineSink Sink;
  std::function<void(double)> Progress;

 private:
  /// In stretches where somebody waits to be told how far it is.
  void Advance() {
    constexpr int64_t perSecond = 1000;
    constexpr int64_t stretches = 2000;
    const int64_t last = m_Options.Until.SecondsSince(m_Options.From) * perSecond - 1;
    for (int64_t done = 1; Progress && done < stretches; ++done) {
      if (!m_Host.EventLoop().AdvanceTo(std::chrono::milliseconds(last / stretches * done))) return;
      Progress(static_cast<double>(done) / stretches);
    }
    m_Host.EventLoop().AdvanceTo(std::chrono::milliseconds(last));
  }

  /// Makes the line only where somebody wants it.
  template <class Make>
  void Note(const RehearsalEvent& event, Make make) {
    if (m_Silent) return;
    if (m_Invariants) m_Invariants->Hear(event, [&] { return make().Text(); });
    if (Wants(event)) Sink(make());
  }

  void NoteFault(std::string_view szCall, std::string_view szFile) {
    Note({"fault", szCall, 0, "", "", szFile}, [&] {
      return JsonLine(m_Host.Clock(), "fault")
          .Add("call", std::string(szCall))
          .Add("file", TextOrNull(szFile));
    });
  }

  void PlanFaults(uint64_t seed) {
    m_Faults = std::make_unique<RandomFaults>(
        m_Host.Clock(), seed, m_Options.MeanBetweenFaults,
        [this](std::string_view szCall, std::string_view szFile) { NoteFault(szCall, szFile); });
    m_FaultyFiles = std::make_unique<FaultyFiles>(m_Host.Files(), *m_Faults);
  }
  [[nodiscard]] vex::Files& FileSystem() {
    if (m_FaultyFiles) return *m_FaultyFiles;
    return m_Host.Files();
  }

  /// Looked at apart from the player, so that it changes nothing in what fails.
  [[nodiscard]] bool LightsOffOf(const std::string& szShow) {
    std::string szText;
    Installation installation(m_Host.Registry(), m_Host.Files(), m_Host.Processes(), m_Host.MessageBoxes());
    if (!ReadShowFile(m_Host.Files(), installation.UserDataPath(), szShow, szText)) return false;
    const auto show = ShowFromText(szText);
    return show && PutsItsLightsOut(*show);
  }

  void NoteLog(int32_t lLevel, const std::string& szText, const SequencePlayInfo* playInfo) {
    const std::string szPlay = playInfo ? PlayTypeWord(playInfo->PlayType()) : "";
    const std::string szFile = playInfo ? playInfo->Filename() : "";
    Note({"log", "", lLevel, szText, szPlay, szFile}, [&] {
      JsonLine line(m_Host.Clock(), "log");
      line.Add("level", lLevel).Add("text", szText);
      line.Add("play", TextOrNull(szPlay));
      return line.Add("file", playInfo ? JsonValue(szFile) : JsonValue(nullptr));
    });
  }

  void NoteSent(const VirtualWindows::Message& message) {
    const std::string szPayload = message.Bytes.substr(0, message.Bytes.find('\0'));
    Note({.Kind = "sent", .Call = "", .Level = 0, .Text = szPayload, .Play = "", .File = ""}, [&] {
      return JsonLine(m_Host.Clock(), "sent")
          .Add("type", TypeOf(szPayload))
          .Add("text", szPayload.size() < 2 ? std::string() : szPayload.substr(2));
    });
  }

  void NoteBox(const VirtualMessageBoxes::Box& box) {
    Note({.Kind = "box", .Call = "", .Level = 0, .Text = box.Text, .Play = "", .File = ""},
         [&] { return JsonLine(m_Host.Clock(), "box").Add("title", box.Title).Add("text", box.Text); });
  }

  void MakeForm() {
    m_Form = std::make_unique<frmMonitor>(MonitorSurroundings{
        .Time = m_Host.Clock(),
        .Loop = m_Host.EventLoop(),
        .Desktop = m_Host.Windows(),
        .Settings = m_Host.Registry(),
        .FileSystem = FileSystem(),
        .Programs = m_Host.Processes(),
        .Instance = m_Host.SingleInstance(),
        .Boxes = m_Host.MessageBoxes(),
        .NewDevices = [this] { return MakeDevices(); },
        .CommandLine = m_Options.NoSchedule ? "/noschedule" : "",
        .Seed = m_Options.Seed,
        .StatusFilename = "",
        .Pid = 0,
        .CheckInstallation = false,
        .LogTrace = [this](int32_t lLevel, const std::string& szText,
                           const SequencePlayInfo* playInfo) { NoteLog(lLevel, szText, playInfo); },
        .HeartbeatsRest = !m_Options.DetailIsRead});
  }

  [[nodiscard]] MediaFacts FactsOf(const MediaNames& names, const std::string& szPath) {
    if (m_Options.AssumeMedia) return AssumedMediaFacts(names, szPath);
    if (const auto length = WaveLength(m_Host.Files(), szPath)) return {"audio", length, {}};
    return m_Library(szPath);
  }

  Devices MakeDevices() {
    const auto recorder = std::make_shared<Recorder>(
        m_Host.Clock(),
        [this](std::string_view szKind, std::string_view szCall, const JsonLine& line) {
          if (m_Invariants) {
            m_Invariants->Hear(DeviceEvent(szKind, szCall), [&line] { return line.Text(); });
            if (!Wants(DeviceEvent(szKind, szCall))) return;
          }
          Sink(line);
        },
        [this](std::string_view szKind, std::string_view szCall) {
          return !m_Silent && (m_Invariants || Wants(DeviceEvent(szKind, szCall)));
        });
    const auto names = std::make_shared<MediaNames>();
    const auto find = [this](const std::string& szName, bool boolIsAudio) {
      return FullSequencePath(m_Host.Registry(), szName, boolIsAudio);
    };
    m_Lights = std::make_shared<RecordedChannelIO>(recorder, m_Options.LightingIsRead);
    m_Media = std::make_shared<RecordedMediaPlayer>(
        m_Host.Clock(), m_Host.EventLoop(), recorder,
        [names](const std::string& szPath) { return names->NameOf(szPath); },
        [this, names](const std::string& szPath) { return FactsOf(*names, szPath); });
    m_Injected->Injected = [this] {
      if (m_Media->Changed) m_Media->Changed();
    };
    const SequenceRecording recording{recorder, names, m_Injected,
                                      [find](const std::string& szName) { return find(szName, true); }};
    Devices devices;
    devices.Lights = m_Lights;
    devices.NewSequence = [this, recording, find] {
      return std::make_shared<RecordedSequenceEngine>(
          std::make_shared<OpenSequenceEngine>(m_Host.Clock(), m_Host.EventLoop(), FileSystem(), find),
          recording);
    };
    devices.ShellCommands =
        std::make_shared<RecordedShellCommandManager>(std::make_shared<OpenShellCommandManager>(), recorder);
    devices.Media = m_Media;
    devices.Window = std::make_shared<RecordedMediaWindow>(recorder);
    if (m_Faults) WrapDevices(devices, *m_Faults);
    return devices;
  }

  void Happen(const RehearsalInput& input) {
    if (m_Form->Unloaded()) return;
    std::visit([this](const auto& what) { Do(what); }, input.What);
  }

  void Do(const InputMessage& message) {
    if (message.Sender != 0 && !m_Host.Windows().Exists(message.Sender))
      m_Host.Windows().NewForeignWindow(message.Sender);
    static_cast<void>(
        SendVexMessage(m_Host.Windows(), message.Sender, m_Form->hWnd(), message.Type, message.Text));
  }
  void Do(const InputTrigger& trigger) {
    if (m_Lights) m_Lights->Press(trigger.Network, trigger.Unit, trigger.Input, trigger.Name);
  }
  /// A file that is not there takes the other one away.
  void Do(const InputCopy& copy) {
    VirtualFiles& files = m_Host.Files();
    std::string szContents;
    if (files.Read(files.SystemPath(copy.From), szContents))
      files.Put(files.SystemPath(copy.To), szContents);
    else
      static_cast<void>(files.Remove(files.SystemPath(copy.To)));
    m_Form->WakeHeartbeat();
  }
  void Do(const InputMediaError& error) {
    if (m_Media) m_Media->InjectErrors(error.Descriptions);
  }
  void Do(const InputSequenceError& error) { m_Injected->Inject(error.File, error.Call, error.Text); }
  void Do(const InputClock& clock) { m_Host.Clock().SetWallClock(clock.To); }

  RehearsalOptions m_Options;
  std::vector<RehearsalInput> m_Inputs;
  MediaLibrary m_Library;
  VirtualHost m_Host;
  std::optional<Invariants> m_Invariants;
  std::unique_ptr<RandomFaults> m_Faults;      // empty where nothing is to fail
  std::unique_ptr<FaultyFiles> m_FaultyFiles;  // the same
  std::shared_ptr<SequenceFaults> m_Injected = std::make_shared<SequenceFaults>();
  std::shared_ptr<RecordedChannelIO> m_Lights;
  std::shared_ptr<RecordedMediaPlayer> m_Media;
  bool m_Silent = false;
  std::unique_ptr<frmMonitor> m_Form;
};

Rehearsal::Rehearsal(Files& files, const RegistryText& settings, const RehearsalOptions& options,
                     std::vector<RehearsalInput> inputs, MediaLibrary library)
    : m_Stage(std::make_unique<Stage>(files, settings, options, std::move(inputs), std::move(library))) {}

Rehearsal::~Rehearsal() = default;

void Rehearsal::Write(Filter filter, LineSink sink) {
  m_Stage->Wants = std::move(filter);
  m_Stage->Sink = std::move(sink);
}

void Rehearsal::Progress(std::function<void(double part)> progress) {
  m_Stage->Progress = std::move(progress);
}

DateTime Rehearsal::Now() const {
  return m_Stage->Now();
}

void Rehearsal::Run() {
  m_Stage->Run();
}

std::vector<std::string> Rehearsal::Broken() const {
  return m_Stage->Broken();
}

}  // namespace vex

#include "tests/faults/FaultEvening.h"

#include <exception>
#include <memory>

#include "components/open/OpenChannelIO.h"
#include "tests/evenings/EveningRig.h"
#include "tools/faults/FaultyDevices.h"
#include "tools/faults/FaultyHost.h"
#include "tools/faults/NthFault.h"

namespace vex::test {

namespace {

constexpr const char* StatusFilename = "D:\\data\\status.json";

std::string ScheduledShow() {
  return "((0,1,2,0,,(s.vexseq),T,F,F),(0,1,2,0,,(end.vexseq),T,F,F),(1,0,1,0,,(a1.vexseq,a2.vexseq),T,F,F),"
         "(0,1,2,1,c.vexseq,(m1.vexseq,m2.vexseq),T,F,F),,(2,0,1,0,,(bg.vexseq),T,F,F),"
         "((1,,F,T,T,Buttons,((x.vexseq,(3,Door,1,0),y.vexseq)),T)),5,(9,Start,1,0),F)";
}

/// Everything that an evening needs, one seam of it behind a wrapper.
class FaultEvening {
 public:
  FaultEvening(Seam seam, int64_t failAt)
      : m_Rig(DateTime::FromParts(2026, 12, 24, 17, 59, 55)),
        m_Plan(m_Rig.Host.Clock(), failAt),
        m_Seam(seam) {
    Furnish();
    WrapHost();
    m_Rig.WrapDevices = [this](Devices& devices) { Wrap(devices); };
    m_Rig.StatusFilename = StatusFilename;
    if (seam == Seam::Log) m_Rig.Traced = [this] { m_Plan.Check("LogTrace"); };
  }

  FaultOutcome Play();

 private:
  void Furnish();
  void WrapHost();
  void Wrap(Devices& devices);
  void PlanTheEvening();
  void At(int64_t milliseconds, std::function<void()> what) {
    m_Rig.Host.EventLoop().At(std::chrono::milliseconds(milliseconds), std::move(what));
  }
  [[nodiscard]] std::vector<std::string> SeenOf(const std::string& szShow) const;
  [[nodiscard]] bool Told() const;

  EveningRig m_Rig;
  NthFault m_Plan;
  Seam m_Seam;
  FaultyFiles m_Files{m_Rig.Host.Files(), m_Plan};
  FaultyRegistry m_Registry{m_Rig.Host.Registry(), m_Plan};
  FaultyWindows m_Windows{m_Rig.Host.Windows(), m_Plan,
                          m_Seam == Seam::GoneTray ? SendResult::Gone : SendResult::TooLong};
  FaultyProcesses m_Processes{m_Rig.Host.Processes(), m_Plan};
  FaultySingleInstance m_Instance{m_Rig.Host.SingleInstance(), m_Plan};
  FaultyEventLoop m_Loop{m_Rig.Host.EventLoop(), m_Plan};
  FaultyDatagrams m_Datagrams{m_Rig.Host.Datagrams(), m_Plan};
};

// Thursday 18:00:01, 18:00:12 and 18:00:22, four seconds each.
void FaultEvening::Furnish() {
  m_Rig.WeekSchedule(
      "((410405,2,(,0,one.shw),410401),(410416,2,(,0,two.shw),410412),(410426,2,(,0,three.shw),410422))");
  for (const char* szName : {"one.shw", "two.shw", "three.shw"}) m_Rig.ShowFile(szName, ScheduledShow());
  m_Rig.ShowFile("demand.shw",
                 "((0,1,0,0,,,T,F,F),(0,1,0,0,,,T,F,F),(1,0,1,0,,(a2.vexseq),T,F,F),(0,1,2,1,,,T,F,F),,(2,0,"
                 "0,0,,,T,F,F),,0,,F)");
  m_Rig.Sequence("s.vexseq", 0.3);
  m_Rig.Sequence("end.vexseq", 0.3);
  m_Rig.Host.Files().Put("D:\\seq\\a1.vexseq",
                         R"({"format":"vexseq","version":1,"duration":0.6,)"
                         R"("shellCommand":{"commandLine":"notify-send lights","windowStyle":1},)"
                         R"("events":[{"unit":1,"circuit":9,"start":0,"end":0.2,"from":0,"to":100}]})");
  m_Rig.Sequence("a2.vexseq", 0.5);
  m_Rig.Sequence("c.vexseq", 0.2);
  m_Rig.Sequence("m1.vexseq", 0.7, "one.mp4");
  m_Rig.Sequence("m2.vexseq", 0.6, "two.ogg");
  m_Rig.Sequence("x.vexseq", 0.4, "jingle.ogg");
  m_Rig.Sequence("y.vexseq", 0.4);
  m_Rig.Sequence("bg.vexseq", 0.5);
}

void FaultEvening::WrapHost() {
  switch (m_Seam) {
    case Seam::FileSystem:
      m_Rig.FileSystem = &m_Files;
      break;
    case Seam::Settings:
      m_Rig.Settings = &m_Registry;
      break;
    case Seam::GoneTray:
    case Seam::LongMessage:
      m_Rig.Desktop = &m_Windows;
      break;
    case Seam::Programs:
      m_Rig.Programs = &m_Processes;
      break;
    case Seam::Instance:
      m_Rig.Instance = &m_Instance;
      break;
    case Seam::Loop:
      m_Rig.Loop = &m_Loop;
      break;
    default:
      break;
  }
}

void FaultEvening::Wrap(Devices& devices) {
  switch (m_Seam) {
    case Seam::Network:
      devices.Lights = std::make_shared<OpenChannelIO>(m_Rig.Host.Clock(), m_Rig.Host.EventLoop(),
                                                       m_Datagrams, OutputSettings{}, "machine");
      break;
    case Seam::Lights:
      devices.Lights = std::make_shared<FaultyChannelIO>(devices.Lights, m_Plan);
      break;
    case Seam::Engine:
      devices.NewSequence = [this, newSequence = devices.NewSequence] {
        m_Plan.Check("newSequence");
        return std::make_shared<FaultySequenceEngine>(newSequence(), m_Plan);
      };
      break;
    case Seam::ShellCommands:
      devices.ShellCommands = std::make_shared<FaultyShellCommandManager>(devices.ShellCommands, m_Plan);
      break;
    case Seam::Media:
      devices.Media = std::make_shared<FaultyMediaPlayer>(devices.Media, m_Plan);
      break;
    case Seam::Window:
      devices.Window = std::make_shared<FaultyMediaWindow>(devices.Window, m_Plan);
      break;
    default:
      break;
  }
}

void FaultEvening::PlanTheEvening() {
  At(3000, [this] { m_Rig.Message(MessageTrayWindow); });
  for (const int64_t show : {6000, 17000, 27000}) {
    for (const int64_t press : {2400, 2500, 3600}) {
      At(show + press, [this] { m_Rig.Lights->Press(0, 1, 3, "Door"); });
    }
    At(show + 1500, [this] { m_Rig.Lights->Press(0, 1, 9, "Start"); });
  }
  At(7300, [this] { m_Rig.Media->InjectErrors({"codec not found"}); });
  At(11000, [this] { m_Rig.Message(MessageShowOnDemand, "(demand.shw,(F,,F,),2,F)"); });
  At(13000, [this] { m_Rig.Message(MessageShowOnDemand); });
  At(BeforeTwo, [this] {
    m_Rig.Message(MessageReloadSchedules);
    m_Rig.Message(MessageNetworkLink, "ON");
    m_Rig.Message(MessageTrayWindow);
  });
  At(BeforeThree, [this] {
    m_Rig.Message(MessageReloadSchedules);
    m_Rig.Message(MessageNetworkLink, "ON");
    m_Rig.Message(MessageTrayWindow);
  });
}

FaultOutcome FaultEvening::Play() {
  FaultOutcome outcome;
  try {
    m_Rig.Start();
    outcome.Started = !m_Rig.Form->Unloaded();
    if (outcome.Started) {
      PlanTheEvening();
      m_Rig.RunFor(AskedToEnd);
      outcome.EndedEarly = m_Rig.Form->Unloaded();
      outcome.Told = Told();
      if (!outcome.EndedEarly) m_Rig.Message(MessageGracefulShutdown);
      m_Rig.RunFor(3000);
    }
    outcome.Unloaded = m_Rig.Form->Unloaded();
    m_Rig.Form.reset();
  } catch (const std::exception& error) {
    outcome.Raised = error.what();
    if (outcome.Raised.empty()) outcome.Raised = "(without words)";
  }
  outcome.Struck = m_Plan.Struck;
  outcome.StruckAt = m_Plan.StruckAt;
  outcome.Calls = m_Plan.Calls();
  outcome.Boxes = m_Rig.Host.MessageBoxes().Shown().size();
  outcome.Two = SeenOf("two.shw");
  outcome.Three = SeenOf("three.shw");
  m_Rig.Form.reset();
  return outcome;
}

bool FaultEvening::Told() const {
  constexpr size_t timeLength = 24;
  for (const auto& szLine : m_Rig.Lines) {
    if (szLine.compare(timeLength, 6, "log 3 ") == 0 && szLine.find("codec not found") == std::string::npos) {
      return true;
    }
  }
  std::string szStatus;
  (void)m_Rig.FileSystem->Read(StatusFilename, szStatus);
  return szStatus.find(" failed\"") != std::string::npos || szStatus.find("too long") != std::string::npos;
}

// From the line of its start to the line of its end. Networks are opened when a run first needs them and
// reports are sent when they change, so neither belongs to one show.
std::vector<std::string> FaultEvening::SeenOf(const std::string& szShow) const {
  std::vector<std::string> seen;
  bool boolPlays = false;
  for (const auto& szLine : m_Rig.Lines) {
    if (szLine.find("Starting show: " + szShow) != std::string::npos) boolPlays = true;
    const bool boolOther =
        szLine.find(" sent ") != std::string::npos || szLine.find("openNetwork") != std::string::npos;
    if (boolPlays && !boolOther) seen.push_back(szLine);
    if (szLine.find("Finished show: " + szShow) != std::string::npos) boolPlays = false;
  }
  return seen;
}

}  // namespace

FaultOutcome PlayFaultEvening(Seam seam, int64_t failAt) {
  return FaultEvening(seam, failAt).Play();
}

}  // namespace vex::test

#include "tests/player/PlayerRig.h"

#include "show/lists/Serialize.h"

namespace vex::test {

namespace {

std::string Names(const std::vector<std::string>& names) {
  if (names.empty()) return "";
  FieldArray fields;
  for (const auto& szName : names) fields.Append(EscapeText(szName));
  return ListToText(fields);
}

std::string PlaylistText(int32_t lAnimation, int32_t lMusical, int32_t lType, int32_t lDelay,
                         const std::string& szCleanUp, const std::vector<std::string>& names,
                         bool boolBackToBack = false, bool boolReplacement = false) {
  FieldArray fields;
  for (const int32_t lNumber : {lAnimation, lMusical, lType, lDelay}) fields.Append(IntToText(lNumber));
  fields.Append(EscapeText(szCleanUp));
  fields.Append(Names(names));
  fields.Append("T");
  fields.Append(BoolToText(boolBackToBack));
  fields.Append(BoolToText(boolReplacement));
  return ListToText(fields);
}

}  // namespace

std::string ShowText::Text() const {
  FieldArray fields;
  fields.Append(PlaylistText(0, 1, 2, 0, "", Startup));
  fields.Append(PlaylistText(0, 1, 2, 0, "", Shutdown));
  fields.Append(PlaylistText(AnimationType, 0, 1, 0, "", Animation));
  fields.Append(PlaylistText(0, MusicalType, 2, Delay, CleanUp, Songs, BackToBack, WithReplacement));
  fields.Append("");
  fields.Append(PlaylistText(2, 0, 1, 0, "", Background));
  fields.Append(Groups);
  fields.Append(IntToText(StartupType));
  fields.Append(StartupTrigger);
  fields.Append(BoolToText(Preload));
  return ListToText(fields);
}

std::string GroupText(bool boolIndependent, bool boolInterruptible, const std::vector<GroupEntry>& entries) {
  FieldArray entryTexts;
  for (const auto& entry : entries) {
    FieldArray fields;
    fields.Append(EscapeText(entry.Sequences.front()));
    fields.Append(entry.Trigger);
    for (size_t i = 1; i < entry.Sequences.size(); ++i) fields.Append(EscapeText(entry.Sequences[i]));
    entryTexts.Append(ListToText(fields));
  }
  return "(1,," + BoolToText(boolIndependent) + "," + BoolToText(boolInterruptible) + ",T,Buttons," +
         ListToText(entryTexts) + ",T)";
}

PlayerRig::PlayerRig(uint64_t seed) : NetworkSettings(Host.Registry()), m_Seed(seed) {
  Host.Clock().SetWallClock(DateTime::FromParts(2026, 12, 24, 18, 0, 0));
  Lights = std::make_shared<FakeChannelIO>(Lines);
  Media = std::make_shared<FakeMediaPlayer>(Lines, Host.Clock());
  Window = std::make_shared<FakeWindow>(Lines);
  ShowTimer = Host.EventLoop().NewTimer(TimerOrder::tmrShowPlayer);
}

PlayerRig::~PlayerRig() {
  Player.reset();
}

void PlayerRig::LogMessage(int32_t lLevel, const std::string& szText, const SequencePlayInfo* playInfo) {
  std::string szLine = std::to_string(lLevel) + " " + szText;
  if (playInfo) szLine += " " + PlayTypeWord(playInfo->PlayType()) + ": " + playInfo->Filename();
  Lines.push_back(szLine);
  NoteTimes();
}

void PlayerRig::ReportShowsToTray(bool boolForce) {
  std::string szLine = boolForce ? "report forced" : "report";
  if (Player && Player->CurrentShow()) {
    const auto& event = *Player->CurrentShow()->Monitoring();
    szLine += " " + event.Filename() + (event.ShuttingDown() ? " shutting down" : "");
  }
  Lines.push_back(szLine);
}

void PlayerRig::MakePlayer() {
  Devices devices;
  devices.Lights = Lights;
  devices.Media = Media;
  devices.Window = Window;
  devices.ShellCommands = std::make_shared<FakeShellCommands>();
  devices.NewSequence = [this]() -> std::shared_ptr<SequenceEngine> {
    if (FailNewSequence) throw Error(429, "", "ActiveX component can't create object");
    return std::make_shared<FakeEngine>(Lines, Host.Clock(), Library);
  };
  Player = std::make_unique<ShowPlayer>(PlayerSurroundings{*this, Host.Clock(), Host.Processes(),
                                                           Host.Registry(), NetworkSettings, devices, m_Seed,
                                                           std::make_shared<frmMediaPlayer>(Window, Media)});
  Player->InitControls(*ShowTimer, Lights, Media);
}

std::shared_ptr<Show> PlayerRig::MakeShow(const ShowText& text, const std::string& szFilename,
                                          int32_t lScheduleType) {
  auto show = ShowFromText(text.Text());
  show->Monitoring()->Filename(szFilename);
  show->Monitoring()->ScheduleType(lScheduleType);
  SetRange(*show, DateTime::FromParts(2026, 12, 24, 18), DateTime::FromParts(2026, 12, 24, 22));
  return show;
}

void PlayerRig::SetRange(Show& show, std::optional<DateTime> start, std::optional<DateTime> end) {
  auto range = std::make_shared<TimeRange>();
  if (start) range->StartTime(*start);
  if (end) range->EndTime(*end);
  show.Monitoring()->Range(range);
}

void PlayerRig::Give(std::shared_ptr<Show> show) {
  if (!Player) MakePlayer();
  Player->NextShow(std::move(show));
}

void PlayerRig::Run(int64_t milliseconds) {
  Host.EventLoop().Advance(milliseconds);
  NoteTimes();
}

void PlayerRig::Press(int32_t lInput, const std::string& szName) {
  Lights->TriggerDetected(FakeInput(0, 1, lInput, szName));
}

void PlayerRig::Sequences(std::initializer_list<const char*> names, int32_t lDurationMs,
                          const std::string& szMedia) {
  for (const char* szName : names) {
    Library[szName].DurationMs = lDurationMs;
    Library[szName].Media = szMedia;
  }
}

Transcript PlayerRig::LinesOf(const std::string& szStart) const {
  Transcript found;
  for (const auto& szLine : Lines) {
    if (szLine.rfind(szStart, 0) == 0) found.push_back(szLine);
  }
  return found;
}

bool PlayerRig::Has(const std::string& szLine) const {
  for (const auto& szOne : Lines) {
    if (szOne == szLine) return true;
  }
  return false;
}

int64_t PlayerRig::TimeOf(const std::string& szLine) const {
  for (const auto& [milliseconds, szOne] : Timed) {
    if (szOne == szLine) return milliseconds;
  }
  return -1;
}

Transcript PlayerRig::Course() const {
  Transcript found;
  for (const auto& szLine : Lines) {
    if (szLine.rfind("1 ", 0) == 0 || szLine.rfind("3 ", 0) == 0) found.push_back(szLine);
  }
  return found;
}

void PlayerRig::Forget() {
  Lines.clear();
  Timed.clear();
}

// Device lines carry the time of the next log line or look, which is the same tick.
void PlayerRig::NoteTimes() {
  const int64_t now = std::chrono::duration_cast<std::chrono::milliseconds>(Host.Clock().Elapsed()).count();
  while (Timed.size() < Lines.size()) Timed.emplace_back(now, Lines[Timed.size()]);
}

}  // namespace vex::test

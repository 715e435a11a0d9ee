#include "components/recorded/RecordedSequenceEngine.h"

#include <utility>

namespace vex {

RecordedSequenceEngine::RecordedSequenceEngine(std::shared_ptr<SequenceEngine> engine,
                                               SequenceRecording recording)
    : m_Engine(std::move(engine)), m_Recording(std::move(recording)) {
  m_Engine->KeepAlive = [this] {
    if (KeepAlive) KeepAlive();
  };
}

RecordedSequenceEngine::~RecordedSequenceEngine() {
  m_Engine->KeepAlive = nullptr;
}

void RecordedSequenceEngine::Note(std::string_view szCall) {
  if (m_Recording.Lines) m_Recording.Lines->Sequence(szCall, m_Filename);
  Check(szCall);
}

void RecordedSequenceEngine::Check(std::string_view szCall) {
  if (m_Recording.Faults) m_Recording.Faults->Check(m_Filename, szCall);
}

void RecordedSequenceEngine::AttachControl(std::shared_ptr<ChannelIO> cio) {
  Check("attach");
  m_Engine->AttachControl(std::move(cio));
}

void RecordedSequenceEngine::Load(const std::string& szFilename) {
  m_Filename = szFilename;
  Note("load");
  m_Engine->Load(szFilename);
}

void RecordedSequenceEngine::PlayRate(double rate) {
  Check("rate");
  m_Engine->PlayRate(rate);
}

void RecordedSequenceEngine::PlayOptions(bool boolLoopAtEnd, bool boolLightsOffAtEnd) {
  Check("options");
  m_Engine->PlayOptions(boolLoopAtEnd, boolLightsOffAtEnd);
}

void RecordedSequenceEngine::PrepareForPlay(bool boolHasMedia) {
  Note("prepare");
  m_Engine->PrepareForPlay(boolHasMedia);
}

void RecordedSequenceEngine::Start() {
  Note("start");
  m_Engine->Start();
}

void RecordedSequenceEngine::Stop() {
  Note("stop");
  m_Engine->Stop();
}

int32_t RecordedSequenceEngine::PlayState() {
  Check("state");
  return m_Engine->PlayState();
}

std::string RecordedSequenceEngine::MediaFile() {
  Check("media");
  std::string szName = m_Engine->MediaFile();
  if (!szName.empty())
    m_Recording.Names->Learn(m_Recording.FullMediaPath(szName), szName, m_Engine->Length());
  return szName;
}

std::any RecordedSequenceEngine::ShellCommand() {
  Check("shell");
  return m_Engine->ShellCommand();
}

bool RecordedSequenceEngine::UsesNetwork(NetworkKind kind) {
  Check("uses");
  return m_Engine->UsesNetwork(kind);
}

void RecordedSequenceEngine::InitMusicSync(int32_t lMilliseconds) {
  Check("initSync");
  m_Engine->InitMusicSync(lMilliseconds);
}

void RecordedSequenceEngine::SyncToMusic(int32_t lMilliseconds) {
  Check("sync");
  m_Engine->SyncToMusic(lMilliseconds);
}

bool RecordedSequenceEngine::GetEvent(LightingEvent& event) {
  Check("event");
  return m_Engine->GetEvent(event);
}

NextDue RecordedSequenceEngine::NextEventDue() {
  return FailureWaits() ? NextDue::EveryTick() : m_Engine->NextEventDue();
}

NextDue RecordedSequenceEngine::NextStateChange() {
  return FailureWaits() ? NextDue::EveryTick() : m_Engine->NextStateChange();
}

bool RecordedSequenceEngine::FailureWaits() const {
  return m_Recording.Faults && m_Recording.Faults->Wait(m_Filename);
}

}  // namespace vex

#include "player/SequencePlayInfo.h"

#include "basic/Error.h"
#include "host/Processes.h"
#include "player/Handlers.h"

namespace vex {

SequencePlayInfo::SequencePlayInfo(const SequenceSurroundings& surroundings) : m_Surroundings(surroundings) {}

SequencePlayInfo::~SequencePlayInfo() {
  if (m_Sequence) m_Sequence->KeepAlive = nullptr;
}

void SequencePlayInfo::Filename(const std::string& szFilename) {
  m_Filename = szFilename;
  if (!m_Preload || m_Filename.empty()) return;
  try {
    Load();
  } catch (const Error& error) {
    ErrorText(error.Description);
  } catch (const std::exception& error) {
    ErrorText(error.what());
  }
}

void SequencePlayInfo::ErrorText(const std::string& szText) {
  m_ErrorText = szText;
  m_ErrorOccurred = true;
}

// The engine object is kept even when its load fails: a sequence is never loaded a second time, so one
// that could not be loaded ends at once whenever it comes round again.
void SequencePlayInfo::Load() {
  if (m_Sequence) return;
  m_Sequence = m_Surroundings.NewSequence();
  m_Sequence->KeepAlive = [this] { m_Sequence_KeepAlive(); };
  m_Surroundings.Report.LogMessage(StatusReport::LevelCourse, "Loading sequence: " + m_Filename, this);
  m_Sequence->AttachControl(m_CIO);
  m_Sequence->Load(m_Filename);
  m_Sequence->PlayRate(1.0);
}

void SequencePlayInfo::InitializeForPlay() {
  if (m_Filename.empty()) {
    ErrorText("No filename specified");
    return;
  }
  Load();
  const bool boolHasMedia = !MediaFilename().empty();
  m_Sequence->PlayOptions(m_LoopAtEnd, m_LightsOffAtEnd);
  m_Sequence->PrepareForPlay(boolHasMedia);
}

void SequencePlayInfo::StartPlay() {
  if (m_Sequence) m_Sequence->Start();
}

void SequencePlayInfo::StopPlay() {
  if (m_Sequence) m_Sequence->Stop();
}

int32_t SequencePlayInfo::SequencePlayState() {
  return m_Sequence ? m_Sequence->PlayState() : 0;
}

std::string SequencePlayInfo::MediaFilename() {
  const bool boolMayHaveMedia = m_PlayType == PlayInteractive || m_PlayType == PlayStartup ||
                                m_PlayType == PlayMusical || m_PlayType == PlayShutdown;
  if (!boolMayHaveMedia) return "";
  Load();
  return m_Surroundings.FullMediaPath(m_Sequence->MediaFile());
}

void SequencePlayInfo::InitMusicSync(int32_t lPosition) {
  if (m_Sequence) m_Sequence->InitMusicSync(lPosition);
}

void SequencePlayInfo::SyncToMusic(int32_t lMilliseconds) {
  if (m_Sequence) m_Sequence->SyncToMusic(lMilliseconds);
}

bool SequencePlayInfo::GetEvent(LightingEvent& event) {
  return m_Sequence && m_Sequence->GetEvent(event);
}

bool SequencePlayInfo::UsesVex() {
  return UsesNetwork(NetworkKind::Main);
}
bool SequencePlayInfo::UsesX10() {
  return UsesNetwork(NetworkKind::X10);
}
bool SequencePlayInfo::UsesCourser() {
  return UsesNetwork(NetworkKind::Courser);
}

bool SequencePlayInfo::UsesNetwork(NetworkKind kind) {
  return m_Sequence && m_Sequence->UsesNetwork(kind);
}

void SequencePlayInfo::ExecuteShellCommand(ShellCommandManager& manager) {
  if (!m_Sequence) return;
  const std::any command = m_Sequence->ShellCommand();
  if (!command.has_value()) return;
  const std::string szCommandLine = manager.CommandLineFor(command);
  const int32_t lWindowStyle = manager.WindowStyleFor(command);
  if (!szCommandLine.empty()) m_Surroundings.Programs.Start(szCommandLine, lWindowStyle);
}

NextDue SequencePlayInfo::NextEventDue() {
  return m_Sequence ? m_Sequence->NextEventDue() : NextDue::Never();
}

NextDue SequencePlayInfo::NextStateChange() {
  return m_Sequence ? m_Sequence->NextStateChange() : NextDue::Never();
}

void SequencePlayInfo::m_Sequence_KeepAlive() {
  GuardHandler(m_Surroundings.Report, "m_Sequence_KeepAlive", [this] {
    if (m_CIO) m_CIO->KeepAlive();
  });
}

}  // namespace vex

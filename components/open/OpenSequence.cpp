#include "components/open/OpenSequence.h"

#include <algorithm>
#include <array>

#include "basic/Error.h"
#include "components/open/wire/SequenceFileError.h"
#include "host/CodePage.h"
#include "host/Files.h"

namespace vex {
namespace {

/// Reads one sequence; the name is the one for messages.
class SequenceLoader {
 public:
  SequenceLoader(Files& files, const SequencePathFinder& fullPath, const std::string& szName)
      : m_Files(files), m_FullPath(fullPath), m_Name(szName) {}

  OpenSequence Load();

 private:
  void LoadFrames(std::unique_ptr<OpenFile> file, const std::string& szName);
  void LoadCues(OpenFile& file);
  void TakeEvents(std::vector<CueEvent>& events);
  void IndexCircuits();
  [[nodiscard]] std::string FindFrames(const std::string& szFrames) const;
  [[nodiscard]] std::string Find(const std::string& szName) const;
  [[nodiscard]] std::unique_ptr<OpenFile> Open(const std::string& szPath, const std::string& szName) const;
  [[nodiscard]] std::string SingleByte(const std::string& szUtf8, const std::string& szMember) const;

  Files& m_Files;
  const SequencePathFinder& m_FullPath;
  const std::string& m_Name;
  std::string m_Path;
  OpenSequence m_Sequence;
};

bool HoldsFrames(OpenFile& file, std::array<uint8_t, FrameProbeSize>& probe) {
  return file.ReadAt(0, probe) && IsFrameFile(probe);
}

Error NotFound(const std::string& szName) {
  return {ErrorFileNotFound, "Sequence.Load",
          "Sequence file \"" + szName +
              "\": File not found; put it into the sequence folder or the media folder, or correct its name"};
}

/// A media name's bytes as the header has them: UTF-8, or single bytes from older programs.
std::string MediaName(const std::string& szBytes) {
  std::string szName;
  return Utf8ToAnsi(szBytes, szName) ? szName : szBytes;
}

OpenSequence SequenceLoader::Load() {
  m_Path = Find(m_Name);
  if (m_Path.empty()) throw NotFound(m_Name);
  std::unique_ptr<OpenFile> file = Open(m_Path, m_Name);
  std::array<uint8_t, FrameProbeSize> probe{};
  if (HoldsFrames(*file, probe)) {
    LoadFrames(std::move(file), m_Name);
    m_Sequence.Media = MediaName(m_Sequence.Frames->Header().Media);
  } else {
    LoadCues(*file);
  }
  return std::move(m_Sequence);
}

void SequenceLoader::LoadFrames(std::unique_ptr<OpenFile> file, const std::string& szName) {
  constexpr const char* Remedy = "export the sequence again or copy the file once more";
  std::array<uint8_t, FrameProbeSize> probe{};
  if (!HoldsFrames(*file, probe)) throw SequenceFileError(szName, "it is no frame file", Remedy);
  std::vector<uint8_t> head(FrameHeadSize(probe));
  if (!file->ReadAt(0, head)) throw SequenceFileError(szName, "its head is too short", Remedy);

  FrameHeader header = ParseFrameHeader(head, file->Size(), szName);
  m_Sequence.Duration =
      std::chrono::milliseconds(int64_t{header.FrameCount} * static_cast<int64_t>(header.StepMs));
  m_Sequence.UsesMain = true;
  m_Sequence.Frames = std::make_unique<FrameReader>(std::move(file), std::move(header), szName);
}

void SequenceLoader::LoadCues(OpenFile& file) {
  std::string szText(static_cast<size_t>(file.Size()), '\0');
  if (!file.ReadAt(0, {reinterpret_cast<uint8_t*>(szText.data()), szText.size()}))
    throw SequenceFileError(m_Name, "it cannot be read", "see whether its disk is sound");
  CueFile cues = ParseCueFile(szText, m_Name);

  if (!cues.Frames.empty()) {
    const std::string szFrames = SingleByte(cues.Frames, "frames");
    const std::string szPath = FindFrames(szFrames);
    if (szPath.empty()) throw NotFound(szFrames);
    LoadFrames(Open(szPath, szFrames), szFrames);
  }
  if (cues.Duration) m_Sequence.Duration = *cues.Duration;
  m_Sequence.Media = SingleByte(cues.Media, "media");
  m_Sequence.ShellCommand = {SingleByte(cues.CommandLine, "shellCommand.commandLine"), cues.WindowStyle};
  for (const std::string& szCommand : cues.Commands)
    m_Sequence.Commands.push_back(SingleByte(szCommand, "command"));
  TakeEvents(cues.Events);
  IndexCircuits();
}

void SequenceLoader::TakeEvents(std::vector<CueEvent>& events) {
  for (const CueEvent& event : events) {
    m_Sequence.UsesMain = m_Sequence.UsesMain || event.Kind == CueKind::Main;
    m_Sequence.UsesX10 = m_Sequence.UsesX10 || event.Kind == CueKind::X10;
    m_Sequence.UsesCourser = m_Sequence.UsesCourser || event.Kind == CueKind::Courser;
  }
  std::erase_if(events, [](const CueEvent& event) { return event.Kind != CueKind::Main; });
  std::stable_sort(events.begin(), events.end(),
                   [](const CueEvent& a, const CueEvent& b) { return a.Start < b.Start; });
  m_Sequence.Events = std::move(events);
}

void SequenceLoader::IndexCircuits() {
  auto& circuits = m_Sequence.Circuits;
  for (const CueEvent& event : m_Sequence.Events)
    circuits.push_back({event.Network, event.Unit, event.Circuit});
  std::sort(circuits.begin(), circuits.end());
  circuits.erase(std::unique(circuits.begin(), circuits.end()), circuits.end());
  circuits.shrink_to_fit();
  for (const CueEvent& event : m_Sequence.Events) {
    const auto circuit = std::lower_bound(circuits.begin(), circuits.end(),
                                          CircuitAddress{event.Network, event.Unit, event.Circuit});
    m_Sequence.EventCircuits.push_back(static_cast<uint32_t>(circuit - circuits.begin()));
  }
}

std::string SequenceLoader::FindFrames(const std::string& szFrames) const {
  std::string szPath = Find(szFrames);
  if (!szPath.empty()) return szPath;
  const size_t folder = FindLastInAnsi(m_Path, "\\/");
  if (folder == std::string::npos) return {};
  szPath = m_Path.substr(0, folder + 1) + szFrames;
  return m_Files.Exists(szPath) ? szPath : std::string();
}

std::string SequenceLoader::Find(const std::string& szName) const {
  for (const bool boolIsAudio : {false, true}) {
    std::string szPath = m_FullPath(szName, boolIsAudio);
    if (m_Files.Exists(szPath)) return szPath;
  }
  return {};
}

std::unique_ptr<OpenFile> SequenceLoader::Open(const std::string& szPath, const std::string& szName) const {
  std::unique_ptr<OpenFile> file = m_Files.Open(szPath);
  if (!file)
    throw SequenceFileError(szName, "it cannot be opened",
                            "see whether this user may read \"" + szPath + "\"");
  return file;
}

std::string SequenceLoader::SingleByte(const std::string& szUtf8, const std::string& szMember) const {
  std::string szText;
  if (Utf8ToAnsi(szUtf8, szText)) return szText;
  throw SequenceFileError(m_Name, "\"" + szMember + "\" has a character outside " + CodePageName(),
                          "write it without that character");
}

}  // namespace

OpenSequence LoadOpenSequence(Files& files, const SequencePathFinder& fullPath, const std::string& szName) {
  return SequenceLoader(files, fullPath, szName).Load();
}

}  // namespace vex

#include "tools/timeline/ShowContents.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "basic/Error.h"
#include "components/open/OpenSequence.h"
#include "host/Files.h"
#include "monitor/ShowFile.h"
#include "settings/LibFile.h"
#include "show/InteractiveGroup.h"
#include "show/Show.h"
#include "show/ShowFunctions.h"
#include "show/TriggeredSequences.h"

namespace vex {
namespace {

/// Every sequence of a show once, in the show's order.
class SequenceNames {
 public:
  explicit SequenceNames(const Show& show) {
    AddList(*show.Background());
    AddList(*show.Startup());
    AddList(*show.Main());
    AddList(*show.Musical());
    AddList(*show.Shutdown());
    for (const auto& group : show.InteractiveGroups()) {
      for (int32_t lEntry = 0; lEntry < group->Count(); ++lEntry) {
        for (const std::string_view szName : group->GetTriggeredSequences(lEntry)->Sequences()) Add(szName);
      }
    }
  }
  [[nodiscard]] const std::vector<std::string>& InOrder() const { return m_InOrder; }

 private:
  void AddList(const Playlist& playlist) {
    for (const std::string_view szName : playlist.List()) Add(szName);
    Add(playlist.CleanUp());
  }
  void Add(std::string_view szName) {
    if (!szName.empty() && m_Seen.emplace(szName).second) m_InOrder.emplace_back(szName);
  }

  std::set<std::string> m_Seen;
  std::vector<std::string> m_InOrder;
};

}  // namespace

ShowContents::ShowContents(Files& files, Registry& registry, std::string szUserDataPath)
    : m_Files(files), m_Registry(registry), m_UserDataPath(std::move(szUserDataPath)) {}

void ShowContents::LookIntoSongs(std::function<std::string(const std::string&)> songTrouble) {
  m_SongTrouble = std::move(songTrouble);
}

std::vector<std::string> ShowContents::Troubles(const std::string& szShow) const {
  const std::string szName = "show \"" + szShow + "\"";
  std::string szText;
  if (!ReadShowFile(m_Files, m_UserDataPath, szShow, szText))
    return {szName + ": its file is missing or cannot be read; put it into the user data folder \"" +
            m_UserDataPath + "\" or correct the schedule"};
  std::vector<std::string> troubles;
  try {
    const std::shared_ptr<Show> show = ShowFromText(szText);
    if (!show) return {szName + ": its file holds no show"};
    const SequenceNames sequences(*show);
    for (const std::string& szSequence : sequences.InOrder()) {
      const std::string szTrouble = SequenceTrouble(szSequence);
      if (!szTrouble.empty()) troubles.emplace_back(szName).append(": ").append(szTrouble);
    }
  } catch (const Error& error) {
    troubles.push_back(szName + ": its file is damaged: " + error.Description);
  }
  return troubles;
}

bool ShowContents::HasSongs(const std::string& szShow) const {
  std::string szText;
  if (!ReadShowFile(m_Files, m_UserDataPath, szShow, szText)) return false;
  try {
    const std::shared_ptr<Show> show = ShowFromText(szText);
    if (!show) return false;
    const SequenceNames sequences(*show);
    return std::ranges::any_of(sequences.InOrder(), [this](const std::string& szSequence) {
      try {
        return !Load(szSequence).Media.empty();
      } catch (const Error&) {
        return false;
      }
    });
  } catch (const Error&) {
    return false;
  }
}

OpenSequence ShowContents::Load(const std::string& szSequence) const {
  return LoadOpenSequence(
      m_Files,
      [this](const std::string& szName, bool boolIsAudio) {
        return FullSequencePath(m_Registry, szName, boolIsAudio);
      },
      szSequence);
}

std::string ShowContents::SequenceTrouble(const std::string& szSequence) const {
  try {
    const OpenSequence sequence = Load(szSequence);
    return sequence.Media.empty() ? std::string() : SongTrouble(sequence.Media, szSequence);
  } catch (const Error& error) {
    return error.Description + (error.Number == ErrorFileNotFound ? PlacesOf(szSequence) : "");
  }
}

/// Where the engine looks for a sequence.
std::string ShowContents::PlacesOf(const std::string& szSequence) const {
  const std::string szPath = FullSequencePath(m_Registry, szSequence, false);
  const std::string szAudioPath = FullSequencePath(m_Registry, szSequence, true);
  return " (looked for at \"" + szPath + "\"" +
         (szAudioPath == szPath ? "" : " and \"" + szAudioPath + "\"") + ")";
}

std::string ShowContents::SongTrouble(const std::string& szSong, const std::string& szSequence) const {
  const std::string szName = "song \"" + szSong + "\" of sequence \"" + szSequence + "\"";
  const std::string szPath = FullSequencePath(m_Registry, szSong, true);
  if (!FileExists(m_Files, szPath)) return szName + " does not exist at \"" + szPath + "\"";
  const std::string szWhy = m_SongTrouble ? m_SongTrouble(szPath) : std::string();
  return szWhy.empty() ? "" : szName + " cannot be played: " + szWhy + " (\"" + szPath + "\")";
}

}  // namespace vex

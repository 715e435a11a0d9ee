#include "show/PlainShow.h"

#include <utility>
#include <vector>

#include "show/PartsArena.h"
#include "show/PlainLists.h"
#include "show/ShowFunctions.h"

namespace vex {

namespace {

/// The show's readers, one for each kind of list, in the order of the text.
class PlainShowReader {
 public:
  explicit PlainShowReader(std::string_view szText) : m_Lists(szText) {}

  std::shared_ptr<Show> ReadShow() {
    m_Lists.Open();
    auto startup = NextPlaylist();
    auto shutdown = NextPlaylist();
    auto main = NextPlaylist();
    auto musical = NextPlaylist();
    if (!m_Lists.Scalar().empty()) return nullptr;  // the reserved field
    m_Lists.Comma();
    auto background = NextPlaylist();
    auto groups = ReadGroups();
    m_Lists.Comma();
    const int32_t lStartupType = m_Lists.Number();
    m_Lists.Comma();
    auto trigger = m_Lists.AtList() ? ReadTrigger() : NoTrigger();
    m_Lists.Comma();
    const bool boolPreload = m_Lists.Flag();
    m_Lists.Close();
    if (!m_Lists.Plain() || !m_Lists.AtEnd()) return nullptr;
    return NewShow(std::move(startup), std::move(shutdown), std::move(main), std::move(musical),
                   std::move(background), std::move(groups), lStartupType, std::move(trigger), boolPreload);
  }

 private:
  std::shared_ptr<Playlist> NextPlaylist() {
    auto playlist = ReadPlaylist();
    m_Lists.Comma();
    return playlist;
  }

  std::shared_ptr<Playlist> ReadPlaylist() {
    auto playlist = std::make_shared<Playlist>();
    m_Lists.Open();
    const int32_t lAnimationType = NextNumber();
    const int32_t lMusicalType = NextNumber();
    playlist->PlaylistType(NextNumber());
    playlist->AnimationType(lAnimationType);
    playlist->MusicalType(lMusicalType);
    playlist->Delay(NextNumber());
    playlist->CleanUp(NextText());
    ReadNames(playlist->List());
    m_Lists.Comma();
    playlist->LightsOffAtEnd(NextFlag());
    playlist->ShuffleAllowsBackToBack(NextFlag());
    playlist->ShuffleWithReplacement(m_Lists.Flag());
    m_Lists.Close();
    return playlist;
  }

  void ReadNames(StringCollection& names) {
    if (!m_Lists.AtList()) return ExpectEmpty();
    m_Lists.Open();
    m_Names.clear();
    size_t characters = 0;
    do {
      m_Names.push_back(m_Lists.Scalar());
      characters += m_Names.back().size();
    } while (m_Lists.More());
    names.Reserve(m_Names.size(), characters);
    names.AddEscaped(m_Names);
  }

  InteractiveGroupCollection ReadGroups() {
    InteractiveGroupCollection groups;
    if (!m_Lists.AtList()) {
      ExpectEmpty();
      return groups;
    }
    m_Lists.Open();
    do {
      groups.Add(ReadGroup());
    } while (m_Lists.More());
    return groups;
  }

  std::shared_ptr<InteractiveGroup> ReadGroup() {
    auto group = m_Arena->Make<InteractiveGroup>();
    m_Lists.Open();
    m_Lists.Scalar();  // the count; the entries count themselves
    m_Lists.Comma();
    group->Description(NextText());
    group->Independent(NextFlag());
    group->Interruptible(NextFlag());
    group->MusicalAllowed(NextFlag());
    group->Name(NextText());
    m_Lists.Open();
    m_Entries.clear();
    do {
      m_Entries.push_back(ReadEntry());
    } while (m_Lists.More());
    group->AddTriggeredSequences(m_Entries);
    m_Lists.Comma();
    group->LightsOffAtEnd(m_Lists.Flag());
    m_Lists.Close();
    return group;
  }

  std::shared_ptr<TriggeredSequences> ReadEntry() {
    auto entry = m_Arena->Make<TriggeredSequences>(m_Arena->Memory());
    m_Lists.Open();
    m_Names.assign(1, m_Lists.Scalar());
    m_Lists.Comma();
    entry->Trig(ReadTrigger());
    while (m_Lists.More()) m_Names.push_back(m_Lists.Scalar());
    entry->AddSequences(m_Names);  // as they stand, escapes and all
    return entry;
  }

  std::shared_ptr<Trigger> ReadTrigger() {
    auto trigger = m_Arena->Make<Trigger>();
    m_Lists.Open();
    trigger->InputNumber(NextNumber());
    trigger->Name(NextText());
    trigger->UnitId(NextNumber());
    trigger->Network(m_Lists.Number());
    m_Lists.Close();
    return trigger;
  }

  std::shared_ptr<Trigger> NoTrigger() {
    ExpectEmpty();
    return nullptr;
  }

  /// A list that holds nothing is written as an empty field; anything else there is not plain.
  void ExpectEmpty() {
    if (!m_Lists.Scalar().empty()) m_Lists.Stop();
  }

  int32_t NextNumber() {
    const int32_t lNumber = m_Lists.Number();
    m_Lists.Comma();
    return lNumber;
  }
  std::string NextText() {
    std::string szText = m_Lists.Text();
    m_Lists.Comma();
    return szText;
  }
  bool NextFlag() {
    const bool boolFlag = m_Lists.Flag();
    m_Lists.Comma();
    return boolFlag;
  }

  PlainLists m_Lists;
  PartsArena::Reference m_Arena = PartsArena::New();
  std::vector<std::string_view> m_Names;
  std::vector<std::shared_ptr<TriggeredSequences>> m_Entries;
};

}  // namespace

std::shared_ptr<Show> PlainShowFromText(std::string_view szText) {
  const size_t open = szText.find('(');
  const size_t close = szText.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || open > close) return nullptr;
  return PlainShowReader(szText.substr(open, close - open + 1)).ReadShow();
}

}  // namespace vex

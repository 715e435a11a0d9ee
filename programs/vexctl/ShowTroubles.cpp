#include "programs/vexctl/ShowTroubles.h"

#include <iostream>
#include <map>

#include "host/CodePage.h"
#include "programs/vexctl/MediaLook.h"
#include "programs/vexctl/ScheduleFiles.h"
#include "tools/timeline/ShowContents.h"

namespace vex {

class ShowTroubles::Songs {
 public:
  explicit Songs(CommandContext& context) : m_Look(context) {}

  const std::string& Trouble(const std::string& szPath) {
    const auto [found, boolNew] = m_Troubles.try_emplace(szPath);
    if (boolNew) found->second = m_Look.Look(szPath).Failure;
    return found->second;
  }

 private:
  MediaLook m_Look;
  std::map<std::string, std::string> m_Troubles;
};

ShowTroubles::ShowTroubles(CommandContext& context, SongLook look)
    : m_Context(context),
      m_Songs(look == SongLook::Plays ? std::make_shared<Songs>(context) : nullptr),
      m_UserDataPath(UserDataFolder(context)) {}

ShowTroubles::~ShowTroubles() = default;

std::vector<std::string> ShowTroubles::Of(const std::string& szShow) const {
  ShowContents contents(m_Context.Machine.Files(), m_Context.Machine.Registry(), m_UserDataPath);
  if (m_Songs)
    contents.LookIntoSongs([songs = m_Songs](const std::string& szPath) { return songs->Trouble(szPath); });
  return contents.Troubles(szShow);
}

void ShowTroubles::Print(const std::string& szShow) const {
  for (const std::string& szLine : Of(szShow)) std::cout << "  but " << AnsiToUtf8(szLine) << "\n";
}

}  // namespace vex

#include "components/recorded/MediaNames.h"

namespace vex {

void MediaNames::Learn(const std::string& szPath, const std::string& szName,
                       std::optional<int32_t> lLengthMs) {
  m_Entries[szPath] = Entry{szName, lLengthMs};
}

std::string MediaNames::NameOf(const std::string& szPath) const {
  const auto entry = m_Entries.find(szPath);
  return entry == m_Entries.end() ? szPath : entry->second.Name;
}

std::optional<int32_t> MediaNames::LengthOf(const std::string& szPath) const {
  const auto entry = m_Entries.find(szPath);
  return entry == m_Entries.end() ? std::nullopt : entry->second.LengthMs;
}

}  // namespace vex

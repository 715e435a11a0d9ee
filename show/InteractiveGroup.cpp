#include "show/InteractiveGroup.h"

#include <utility>

#include "basic/Error.h"

namespace vex {

namespace {

constexpr std::string_view MagicToyDescription =
    "Any unit/circuit in this group can be associated with any number of sequences, all of which will play "
    "simultaneously whenever that Unit/circuit is triggered.  If any sequences from this group were already "
    "playing, they will immediately stop.\r\n\r\n"
    "Only animation sequences can be used in this group - musical sequences cannot be used.";

// kept on purpose: "more than once sequence" is what people have always been shown.
constexpr std::string_view SoundboardDescription =
    "Only one sequence from this group can be playing at any given time.  If a unit/circuit from this group "
    "is triggered, but a sequence from this group is already playing, the playing sequence will immediately "
    "stop, and the sequence associated with the triggered unit/circuit will be played.\r\n\r\n"
    "If a unit/circuit in this group is associated with more than once sequence, then every time it is "
    "triggered, the next such sequence will be played, in a round-robin fashion.";

constexpr std::string_view JukeboxDescription =
    "Only one sequence from this group can be playing at any given time.  If a unit/circuit from this group "
    "is triggered, but a sequence from this group is already playing, the trigger will be ignored.\r\n\r\n"
    "If a unit/circuit in this group is associated with more than one sequence, then every time it is "
    "triggered, the next such sequence will be played, in a round-robin fashion (unless it is ignored "
    "because a sequence from this group is already playing).";

}  // namespace

void InteractiveGroup::LightsOffAtEnd(StoredBoolean lightsOff) {
  BreakSeal();
  m_LightsOffAtEnd = lightsOff;
}

void InteractiveGroup::Independent(StoredBoolean independent) {
  BreakSeal();
  m_Independent = independent;
  DeriveType();
}

void InteractiveGroup::Interruptible(StoredBoolean interruptible) {
  BreakSeal();
  m_Interruptible = interruptible;
  DeriveType();
}

void InteractiveGroup::MusicalAllowed(StoredBoolean musicalAllowed) {
  BreakSeal();
  m_MusicalAllowed = musicalAllowed;
  DeriveType();
}

void InteractiveGroup::Name(std::string szName) {
  BreakSeal();
  m_Name = std::move(szName);
}

void InteractiveGroup::Description(std::string szDescription) {
  BreakSeal();
  m_Description = std::move(szDescription);
}

const std::shared_ptr<TriggeredSequences>& InteractiveGroup::GetTriggeredSequences(int32_t lIndex) const {
  return m_Entries[Position(lIndex)];
}

void InteractiveGroup::AddTriggeredSequences(std::shared_ptr<TriggeredSequences> entry) {
  BreakSeal();
  m_Entries.push_back(std::move(entry));
}

void InteractiveGroup::AddTriggeredSequences(std::span<const std::shared_ptr<TriggeredSequences>> entries) {
  BreakSeal();
  m_Entries.insert(m_Entries.end(), entries.begin(), entries.end());
}

void InteractiveGroup::DeleteTriggeredSequence(int32_t lIndex) {
  const size_t position = Position(lIndex);
  BreakSeal();
  m_Entries.erase(m_Entries.begin() + static_cast<std::ptrdiff_t>(position));
}

bool InteractiveGroup::Triggered(const Trigger* trigger) const {
  for (const auto& entry : m_Entries) {
    if (Required(entry).Triggered(trigger)) return true;
  }
  return false;
}

void InteractiveGroup::Copy(const InteractiveGroup& other) {
  Description(other.Description());
  Independent(other.Independent());
  Interruptible(other.Interruptible());
  MusicalAllowed(other.MusicalAllowed());
  Name(other.Name());
  LightsOffAtEnd(other.LightsOffAtEnd());
  m_Entries.clear();
  for (int32_t lIndex = 0; lIndex < other.Count(); ++lIndex) {
    auto entry = std::make_shared<TriggeredSequences>();
    entry->Copy(Required(other.GetTriggeredSequences(lIndex)));
    AddTriggeredSequences(std::move(entry));
  }
}

void InteractiveGroup::PutUnder(const std::shared_ptr<ContentsSeal>& seal) {
  SealedPart::PutUnder(seal);
  for (const auto& entry : m_Entries) {
    if (entry) entry->PutUnder(seal);
  }
}

size_t InteractiveGroup::Position(int32_t lIndex) const {
  if (lIndex < 0 || lIndex >= Count()) throw PlatformError(ErrorSubscript);
  return static_cast<size_t>(lIndex);
}

void InteractiveGroup::DeriveType() {
  if (m_Independent.IsTrue() && m_Interruptible.IsTrue()) {
    m_TypeName = "Magic Toy";
    m_TypeDesc = MagicToyDescription;
  } else if (m_Independent.IsClear() && m_Interruptible.IsTrue()) {
    m_TypeName = "Soundboard";
    m_TypeDesc = SoundboardDescription;
  } else if (m_Independent.IsClear() && m_Interruptible.IsClear()) {
    m_TypeName = "Jukebox";
    m_TypeDesc = JukeboxDescription;
  } else {
    // kept on purpose: the description stays that of the type before.
    m_TypeName = "Interactive Group";
  }
}

}  // namespace vex

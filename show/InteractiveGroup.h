#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "basic/StoredBoolean.h"
#include "show/ContentsSeal.h"
#include "show/TriggeredSequences.h"

namespace vex {

/// A named set of inputs and their sequences that answer together: what a press may interrupt, whether
/// sequences play at once or take turns. Two of its flags make a type ("Jukebox", "Soundboard", ...) whose
/// name and description people are shown.
///
/// Name and description of the type follow from Independent and Interruptible at each assignment of one
/// of the three flags; before the first they are empty. A flag counts as set only when it holds -1 and as
/// clear only when it holds 0. Entries are counted from 0.
class InteractiveGroup : public SealedPart {
 public:
  InteractiveGroup() = default;
  InteractiveGroup(const InteractiveGroup&) = delete;
  InteractiveGroup& operator=(const InteractiveGroup&) = delete;

  [[nodiscard]] StoredBoolean LightsOffAtEnd() const { return m_LightsOffAtEnd; }
  void LightsOffAtEnd(StoredBoolean lightsOff);
  [[nodiscard]] std::string_view TypeName() const { return m_TypeName; }
  [[nodiscard]] std::string_view TypeDesc() const { return m_TypeDesc; }
  /// Sequences of one trigger play all at once.
  [[nodiscard]] StoredBoolean Independent() const { return m_Independent; }
  void Independent(StoredBoolean independent);
  /// A new trigger stops what the group is playing.
  [[nodiscard]] StoredBoolean Interruptible() const { return m_Interruptible; }
  void Interruptible(StoredBoolean interruptible);
  [[nodiscard]] StoredBoolean MusicalAllowed() const { return m_MusicalAllowed; }
  void MusicalAllowed(StoredBoolean musicalAllowed);
  [[nodiscard]] const std::string& Name() const { return m_Name; }
  void Name(std::string szName);
  [[nodiscard]] const std::string& Description() const { return m_Description; }
  void Description(std::string szDescription);

  /// Index 0 to Count - 1; raises ErrorSubscript outside.
  [[nodiscard]] const std::shared_ptr<TriggeredSequences>& GetTriggeredSequences(int32_t lIndex) const;
  void AddTriggeredSequences(std::shared_ptr<TriggeredSequences> entry);
  void AddTriggeredSequences(std::span<const std::shared_ptr<TriggeredSequences>> entries);
  void DeleteTriggeredSequence(int32_t lIndex);
  /// True when any entry is triggered; the first match ends the search.
  [[nodiscard]] bool Triggered(const Trigger* trigger) const;
  [[nodiscard]] int32_t Count() const { return static_cast<int32_t>(m_Entries.size()); }
  /// A deep copy: nothing is shared afterwards.
  void Copy(const InteractiveGroup& other);

  /// The entries as well.
  void PutUnder(const std::shared_ptr<ContentsSeal>& seal);

 private:
  [[nodiscard]] size_t Position(int32_t lIndex) const;
  void DeriveType();

  std::vector<std::shared_ptr<TriggeredSequences>> m_Entries;
  StoredBoolean m_Independent;
  StoredBoolean m_Interruptible;
  StoredBoolean m_MusicalAllowed = true;
  StoredBoolean m_LightsOffAtEnd = true;
  std::string m_Name;
  std::string m_Description;
  std::string_view m_TypeName;  // of texts that last as long as the program
  std::string_view m_TypeDesc;
};

}  // namespace vex

#pragma once

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>

#include "show/ContentsSeal.h"
#include "show/StringCollection.h"
#include "show/Trigger.h"

namespace vex {

/// One input of an interactive group with the sequences that it plays, and the position from which the
/// next one is taken when they take turns. Sequences are counted from 0 here.
class TriggeredSequences : public SealedPart {
 public:
  TriggeredSequences() = default;
  /// Keeps its names in that memory, which outlives the entry.
  explicit TriggeredSequences(std::pmr::memory_resource* memory) : m_Sequences(memory) {}
  TriggeredSequences(const TriggeredSequences&) = delete;
  TriggeredSequences& operator=(const TriggeredSequences&) = delete;

  void AddSequence(std::string_view szName);
  void AddSequences(std::span<const std::string_view> names);
  void ClearSequences();
  /// Trigger and names of the other, nothing shared; the round robin stays where it is. Raises
  /// ErrorObjectNotSet when the other has no trigger.
  void Copy(const TriggeredSequences& other);
  [[nodiscard]] int32_t NumSequences() const { return m_Sequences.Count(); }
  /// The index whose turn it is; reading it moves on to the next. 0 without sequences.
  [[nodiscard]] int32_t RoundRobinIndex();
  /// Index 0 to NumSequences - 1; raises ErrorSubscript outside.
  [[nodiscard]] std::string_view Sequence(int32_t lIndex) const;
  void Sequence(int32_t lIndex, std::string_view szName);
  void SetSequences(std::span<const std::string> names);
  [[nodiscard]] const StringCollection& Sequences() const { return m_Sequences; }
  /// May be empty.
  [[nodiscard]] const std::shared_ptr<Trigger>& Trig() const { return m_Trig; }
  void Trig(std::shared_ptr<Trigger> trig);
  /// True when trigger is this entry's input; raises ErrorObjectNotSet when the entry has no trigger.
  [[nodiscard]] bool Triggered(const Trigger* trigger) const;

  /// The trigger as well.
  void PutUnder(const std::shared_ptr<ContentsSeal>& seal);

 private:
  int32_t m_RoundRobin = 0;
  StringCollection m_Sequences;
  std::shared_ptr<Trigger> m_Trig;
};

}  // namespace vex

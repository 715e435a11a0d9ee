#include "show/TriggeredSequences.h"

#include <utility>

#include "basic/Error.h"
#include "basic/Number.h"

namespace vex {

void TriggeredSequences::AddSequence(std::string_view szName) {
  BreakSeal();
  m_Sequences.Add(szName);
}

void TriggeredSequences::AddSequences(std::span<const std::string_view> names) {
  BreakSeal();
  size_t characters = 0;
  for (const std::string_view szName : names) characters += szName.size();
  m_Sequences.Reserve(names.size(), characters);
  for (const std::string_view szName : names) m_Sequences.Add(szName);
}

void TriggeredSequences::ClearSequences() {
  BreakSeal();
  m_Sequences.Clear();
}

void TriggeredSequences::Copy(const TriggeredSequences& other) {
  auto trigger = std::make_shared<Trigger>();
  trigger->Copy(Required(other.Trig()));
  Trig(std::move(trigger));
  m_Sequences = other.m_Sequences;
}

int32_t TriggeredSequences::RoundRobinIndex() {
  const int32_t lTurn = m_RoundRobin < 0 || m_RoundRobin >= NumSequences() ? 0 : m_RoundRobin;
  const int32_t lNext = CheckedAdd(lTurn, 1);
  m_RoundRobin = lNext >= NumSequences() ? 0 : lNext;
  MarkPlayed();
  return lTurn;
}

std::string_view TriggeredSequences::Sequence(int32_t lIndex) const {
  return m_Sequences.Item(CheckedAdd(lIndex, 1));
}

void TriggeredSequences::Sequence(int32_t lIndex, std::string_view szName) {
  m_Sequences.Replace(CheckedAdd(lIndex, 1), szName);
  BreakSeal();
}

void TriggeredSequences::SetSequences(std::span<const std::string> names) {
  ClearSequences();
  for (const std::string& szName : names) AddSequence(szName);
}

void TriggeredSequences::Trig(std::shared_ptr<Trigger> trig) {
  BreakSeal();
  m_Trig = std::move(trig);
}

bool TriggeredSequences::Triggered(const Trigger* trigger) const {
  return Required(m_Trig).Equals(trigger);
}

void TriggeredSequences::PutUnder(const std::shared_ptr<ContentsSeal>& seal) {
  SealedPart::PutUnder(seal);
  if (m_Trig) m_Trig->PutUnder(seal);
}

}  // namespace vex

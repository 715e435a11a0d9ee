#include "show/InteractiveGroupFunctions.h"

#include "basic/Error.h"
#include "show/TriggeredSequencesFunctions.h"
#include "show/lists/Serialize.h"

namespace vex {

namespace {

std::string EntriesToText(const InteractiveGroup& group) {
  // kept on purpose: a group without entries cannot be written, though it can be read.
  if (group.Count() == 0) throw PlatformError(ErrorSubscript);
  FieldArray fields;
  for (int32_t lIndex = 0; lIndex < group.Count(); ++lIndex) {
    fields.Append(TriggeredSequencesToText(Required(group.GetTriggeredSequences(lIndex))));
  }
  return ListToText(fields);
}

}  // namespace

std::string InteractiveGroupToText(const InteractiveGroup& group) {
  FieldArray fields;
  fields.Append(IntToText(group.Count()));
  fields.Append(EscapeText(group.Description()));
  fields.Append(BoolToText(group.Independent().Value()));
  fields.Append(BoolToText(group.Interruptible().Value()));
  fields.Append(BoolToText(group.MusicalAllowed().Value()));
  fields.Append(EscapeText(group.Name()));
  fields.Append(EntriesToText(group));
  fields.Append(BoolToText(group.LightsOffAtEnd().Value()));
  return ListToText(fields);
}

std::shared_ptr<InteractiveGroup> InteractiveGroupFromText(std::string_view szText) {
  const FieldViews fields = SplitList(szText);
  auto group = std::make_shared<InteractiveGroup>();
  // Field 1, the count, is not looked at: the entries count themselves.
  group->Description(UnescapeText(fields.Element(2)));
  group->Independent(BoolFromText(fields.Element(3)));
  group->Interruptible(BoolFromText(fields.Element(4)));
  group->MusicalAllowed(BoolFromText(fields.Element(5)));
  group->Name(UnescapeText(fields.Element(6)));
  for (std::string_view szEntry : SplitList(fields.Element(7))) {
    group->AddTriggeredSequences(TriggeredSequencesFromText(szEntry));
  }
  if (fields.Length() >= 8) group->LightsOffAtEnd(BoolFromText(fields.Element(8)));
  return group;
}

}  // namespace vex

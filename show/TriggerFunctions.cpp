#include "show/TriggerFunctions.h"

#include "show/lists/Serialize.h"

namespace vex {

std::shared_ptr<Trigger> NewTrigger(int32_t lNetwork, int32_t lUnitId, int32_t lInputNumber,
                                    std::string szName) {
  auto trigger = std::make_shared<Trigger>();
  trigger->InputNumber(lInputNumber);
  trigger->Name(std::move(szName));
  trigger->UnitId(lUnitId);
  trigger->Network(lNetwork);
  return trigger;
}

std::string TriggerToText(const Trigger& trigger) {
  FieldArray fields;
  fields.Append(IntToText(trigger.InputNumber()));
  fields.Append(EscapeText(trigger.Name()));
  fields.Append(IntToText(trigger.UnitId()));
  fields.Append(IntToText(trigger.Network()));
  return ListToText(fields);
}

std::shared_ptr<Trigger> TriggerFromText(std::string_view szText) {
  const FieldViews fields = SplitList(szText);
  auto trigger = std::make_shared<Trigger>();
  trigger->InputNumber(IntFromText(fields.Element(1)));
  trigger->Name(UnescapeText(fields.Element(2)));
  trigger->UnitId(IntFromText(fields.Element(3)));
  trigger->Network(IntFromText(fields.Element(4)));
  return trigger;
}

}  // namespace vex

#include "show/Trigger.h"

namespace vex {

void Trigger::Copy(const Trigger& other) {
  UnitId(other.UnitId());
  InputNumber(other.InputNumber());
  Name(other.Name());
  Network(other.Network());
}

bool Trigger::Equals(const Trigger* other) const {
  return other != nullptr && m_UnitId == other->m_UnitId && m_InputNumber == other->m_InputNumber &&
         m_Network == other->m_Network;
}

}  // namespace vex

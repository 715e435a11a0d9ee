#pragma once

#include <cstdint>
#include <string>

#include "show/ContentsSeal.h"

namespace vex {

/// An input on the lighting network: a button or a sensor, told by network, unit and input number. Its
/// name is for people and no part of its identity.
class Trigger : public SealedPart {
 public:
  [[nodiscard]] int32_t InputNumber() const { return m_InputNumber; }
  void InputNumber(int32_t lInputNumber) {
    BreakSeal();
    m_InputNumber = lInputNumber;
  }
  [[nodiscard]] const std::string& Name() const { return m_Name; }
  void Name(std::string szName) {
    BreakSeal();
    m_Name = std::move(szName);
  }
  [[nodiscard]] int32_t Network() const { return m_Network; }
  void Network(int32_t lNetwork) {
    BreakSeal();
    m_Network = lNetwork;
  }
  [[nodiscard]] int32_t UnitId() const { return m_UnitId; }
  void UnitId(int32_t lUnitId) {
    BreakSeal();
    m_UnitId = lUnitId;
  }

  void Copy(const Trigger& other);
  /// The same input, whatever the names; false for no trigger.
  [[nodiscard]] bool Equals(const Trigger* other) const;

 private:
  int32_t m_InputNumber = 0;
  std::string m_Name;
  int32_t m_Network = 0;
  int32_t m_UnitId = 0;
};

}  // namespace vex

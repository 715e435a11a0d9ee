#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "basic/Error.h"
#include "player/devices/ChannelIO.h"

namespace vex {

/// An input that has fired, as the object with four properties that the control's trigger event passes.
class InputProperties final : public NamedProperties {
 public:
  InputProperties(int32_t lNetwork, int32_t lUnitId, int32_t lInputNumber, std::string szName)
      : m_Network(lNetwork), m_UnitId(lUnitId), m_InputNumber(lInputNumber), m_Name(std::move(szName)) {}

  [[nodiscard]] int32_t Integer(std::string_view szName) const override {
    if (szName == "Network") return m_Network;
    if (szName == "UnitId") return m_UnitId;
    if (szName == "InputNumber") return m_InputNumber;
    throw PlatformError(ErrorTypeMismatch);
  }
  [[nodiscard]] std::string Text(std::string_view szName) const override {
    if (szName == "Name") return m_Name;
    throw PlatformError(ErrorTypeMismatch);
  }

 private:
  int32_t m_Network;
  int32_t m_UnitId;
  int32_t m_InputNumber;
  std::string m_Name;
};

}  // namespace vex

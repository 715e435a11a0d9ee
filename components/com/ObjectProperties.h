#pragma once

#include <string>
#include <string_view>

#include "components/com/Variant.h"
#include "player/devices/ChannelIO.h"

namespace vex {

/// An object that a component passes or gives, read by property name. A property that it lacks is an error
/// that says whose object it is and which property.
class ObjectProperties final : public NamedProperties {
 public:
  /// szOwner: where the object comes from, for people.
  ObjectProperties(ComPointer<IDispatch> object, std::string szOwner);

  [[nodiscard]] int32_t Integer(std::string_view szName) const override { return Read(szName).AsLong(); }
  [[nodiscard]] std::string Text(std::string_view szName) const override { return Read(szName).AsText(); }
  [[nodiscard]] double Number(std::string_view szName) const { return Read(szName).AsDouble(); }

 private:
  [[nodiscard]] Variant Read(std::string_view szName) const;

  ComPointer<IDispatch> m_Object;
  std::string m_Owner;
};

}  // namespace vex

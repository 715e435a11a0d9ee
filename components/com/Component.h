#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "basic/Error.h"
#include "components/com/Variant.h"

namespace vex {

class Registry;

/// What one of the suite's components is called on this machine: its program id, and the member that fills
/// each role. Both stand in the product subkey "Components", the id under the component's name and a member
/// under "Component.Role", so that an installation whose components call things otherwise is adapted without
/// a new build; a role that is not named there is called as the role. Read once, at start.
struct ComponentNames {
  ComponentNames(Registry& settings, std::string szComponent, const std::string& szProgramId,
                 const std::vector<std::string>& roles);

  std::string Component;
  std::string ProgramId;
  std::map<std::string, std::string, std::less<>> Members;  // by role
};

/// One of the suite's components, created by its program id and called late bound, by name. The number behind
/// a name is asked for when the member is first needed and then kept.
///
/// A call raises what the component raises, to the word. A member that the component lacks is an error that
/// names component, member and program id.
class Component {
 public:
  using Arguments = std::initializer_list<Variant>;

  /// Raises Error with the program id where there is no such component.
  explicit Component(std::shared_ptr<const ComponentNames> names);

  /// Calls the member as method or property, whichever it is.
  Variant Call(std::string_view szRole, Arguments arguments = {});
  /// The same for a member that may be missing: no value then.
  std::optional<Variant> CallIfThere(std::string_view szRole, Arguments arguments = {});
  void PutProperty(std::string_view szRole, Variant value);

  [[nodiscard]] IDispatch* Object() const { return m_Object.Get(); }
  [[nodiscard]] const ComponentNames& Names() const { return *m_Names; }

 private:
  [[nodiscard]] const std::string& MemberOf(std::string_view szRole) const;
  /// DISPID_UNKNOWN for a member that is not there.
  [[nodiscard]] DISPID NumberOf(std::string_view szRole);
  /// False where the number turns out to belong to nothing that can be used so.
  [[nodiscard]] bool Invoke(std::string_view szRole, WORD kind, DISPPARAMS& parameters, Variant* result);
  [[nodiscard]] Error LacksMember(std::string_view szRole) const;

  ComApartment m_Apartment;
  std::shared_ptr<const ComponentNames> m_Names;
  ComPointer<IDispatch> m_Object;
  std::map<std::string, DISPID, std::less<>> m_Numbers;  // by role
};

}  // namespace vex

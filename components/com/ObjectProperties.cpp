#include "components/com/ObjectProperties.h"

#include <utility>

#include "components/com/ComFailure.h"
#include "components/com/ComText.h"

namespace vex {

ObjectProperties::ObjectProperties(ComPointer<IDispatch> object, std::string szOwner)
    : m_Object(std::move(object)), m_Owner(std::move(szOwner)) {
  if (!m_Object) throw PlatformError(ErrorObjectNotSet);
}

Variant ObjectProperties::Read(std::string_view szName) const {
  std::wstring szWide = WideOf(szName);
  LPOLESTR name = szWide.data();
  DISPID number = DISPID_UNKNOWN;
  HRESULT result = m_Object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &number);
  Variant value;
  EXCEPINFO raised{};
  if (SUCCEEDED(result)) {
    DISPPARAMS none{};
    result = m_Object->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                              &none, value.Put(), &raised, nullptr);
  }
  if (result == DISP_E_EXCEPTION) throw RaisedError(raised, m_Owner);
  if (FAILED(result)) {
    throw ComError(result, m_Owner,
                   "The property \"" + std::string(szName) + "\" of the object of " + m_Owner);
  }
  return value;
}

}  // namespace vex

#include "components/com/TriggerObject.h"

#include <array>

#include "components/com/ComText.h"
#include "show/Trigger.h"

namespace vex {
namespace {

enum Property : DISPID { Network = 1, UnitId, InputNumber, Name };
constexpr std::array<const wchar_t*, 4> PropertyNames = {L"Network", L"UnitId", L"InputNumber", L"Name"};

}  // namespace

TriggerObject::TriggerObject(const Trigger& trigger)
    : m_Network(trigger.Network()),
      m_UnitId(trigger.UnitId()),
      m_InputNumber(trigger.InputNumber()),
      m_Name(WideOf(trigger.Name())) {}

HRESULT TriggerObject::GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale, DISPID* numbers) {
  if (names == nullptr || numbers == nullptr || count == 0) return E_INVALIDARG;
  DispatchObject::GetIDsOfNames(id, names, count, locale, numbers);
  for (size_t i = 0; i < PropertyNames.size(); ++i)
    if (lstrcmpiW(names[0], PropertyNames[i]) == 0) numbers[0] = static_cast<DISPID>(i + 1);
  // Behind the property's own name arguments could be named, and it has none.
  return numbers[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT TriggerObject::Invoke(DISPID number, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                              EXCEPINFO*, UINT*) {
  if ((kind & DISPATCH_PROPERTYGET) == 0 || number < Network || number > Name) return DISP_E_MEMBERNOTFOUND;
  if (parameters != nullptr && parameters->cArgs != 0) return DISP_E_BADPARAMCOUNT;
  if (result == nullptr) return S_OK;
  VariantInit(result);
  if (number == Name) {
    result->bstrVal = SysAllocStringLen(m_Name.data(), static_cast<UINT>(m_Name.size()));
    if (result->bstrVal == nullptr) return E_OUTOFMEMORY;
    result->vt = VT_BSTR;
    return S_OK;
  }
  result->vt = VT_I4;
  result->lVal = number == Network ? m_Network : number == UnitId ? m_UnitId : m_InputNumber;
  return S_OK;
}

}  // namespace vex

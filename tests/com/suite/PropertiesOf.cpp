#include "tests/com/suite/PropertiesOf.h"

namespace suite {

PropertiesOf::~PropertiesOf() {
  for (auto& [name, value] : m_Values) VariantClear(&value);
}

HRESULT PropertiesOf::QueryInterface(REFIID id, void** object) {
  *object = nullptr;
  if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) return E_NOINTERFACE;
  *object = this;
  AddRef();
  return S_OK;
}

ULONG PropertiesOf::Release() {
  const ULONG left = --m_References;
  if (left == 0) delete this;
  return left;
}

HRESULT PropertiesOf::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* numbers) {
  for (size_t i = 0; i < m_Values.size(); ++i) {
    if (lstrcmpiW(names[0], m_Values[i].first.c_str()) != 0) continue;
    numbers[0] = static_cast<DISPID>(i);
    return S_OK;
  }
  return DISP_E_UNKNOWNNAME;
}

HRESULT PropertiesOf::Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                             UINT*) {
  return VariantCopy(result, &m_Values.at(static_cast<size_t>(number)).second);
}

}  // namespace suite

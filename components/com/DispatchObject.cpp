#include "components/com/DispatchObject.h"

namespace vex {

HRESULT DispatchObject::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch) && !AnswersTo(id)) return E_NOINTERFACE;
  *object = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

ULONG DispatchObject::Release() {
  const ULONG left = --m_References;
  if (left == 0) delete this;
  return left;
}

HRESULT DispatchObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT DispatchObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info != nullptr) *info = nullptr;
  return DISP_E_BADINDEX;
}

HRESULT DispatchObject::GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID, DISPID* numbers) {
  for (UINT i = 0; i < count; ++i) numbers[i] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

}  // namespace vex

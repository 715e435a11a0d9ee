#include "components/com/Variant.h"

#include <new>

#include "basic/Error.h"
#include "components/com/ComFailure.h"
#include "components/com/ComText.h"

namespace vex {
namespace {

constexpr LCID Neutral = LOCALE_INVARIANT;

}  // namespace

Variant::Variant(const Variant& other) : Variant() {
  if (FAILED(VariantCopy(&m_Value, const_cast<VARIANT*>(&other.m_Value)))) throw std::bad_alloc();
}

Variant Variant::Long(int32_t lValue) {
  Variant made(VT_I4);
  made.m_Value.lVal = lValue;
  return made;
}

Variant Variant::Integer(int16_t value) {
  Variant made(VT_I2);
  made.m_Value.iVal = value;
  return made;
}

Variant Variant::Byte(uint8_t value) {
  Variant made(VT_UI1);
  made.m_Value.bVal = value;
  return made;
}

Variant Variant::ByteAt(uint8_t& value) {
  Variant made(VT_UI1 | VT_BYREF);
  made.m_Value.pbVal = &value;
  return made;
}

Variant Variant::Double(double value) {
  Variant made(VT_R8);
  made.m_Value.dblVal = value;
  return made;
}

Variant Variant::Boolean(bool boolValue) {
  Variant made(VT_BOOL);
  made.m_Value.boolVal = boolValue ? VARIANT_TRUE : VARIANT_FALSE;
  return made;
}

Variant Variant::Text(std::string_view szText) {
  Variant made(VT_BSTR);
  const std::wstring szWide = WideOf(szText);
  made.m_Value.bstrVal = SysAllocStringLen(szWide.data(), static_cast<UINT>(szWide.size()));
  if (made.m_Value.bstrVal == nullptr) throw std::bad_alloc();
  return made;
}

Variant Variant::Object(IDispatch* object) {
  Variant made(VT_DISPATCH);
  made.m_Value.pdispVal = object;
  if (object != nullptr) object->AddRef();
  return made;
}

VARIANT* Variant::Put() {
  VariantClear(&m_Value);
  return &m_Value;
}

bool Variant::IsNothing() const {
  switch (m_Value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return true;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return m_Value.punkVal == nullptr;
    default:
      return false;
  }
}

Variant Variant::Converted(VARTYPE type) const {
  Variant converted;
  const HRESULT result =
      VariantChangeTypeEx(&converted.m_Value, const_cast<VARIANT*>(&m_Value), Neutral, 0, type);
  if (result == DISP_E_OVERFLOW) throw PlatformError(ErrorOverflow);
  if (FAILED(result)) throw PlatformError(ErrorTypeMismatch);
  return converted;
}

int32_t Variant::AsLong() const {
  return m_Value.vt == VT_I4 ? m_Value.lVal : Converted(VT_I4).m_Value.lVal;
}

double Variant::AsDouble() const {
  return m_Value.vt == VT_R8 ? m_Value.dblVal : Converted(VT_R8).m_Value.dblVal;
}

bool Variant::AsBoolean() const {
  return Converted(VT_BOOL).m_Value.boolVal != VARIANT_FALSE;
}

std::string Variant::AsText() const {
  return IsNothing() ? "" : TextOf(Converted(VT_BSTR).m_Value.bstrVal);
}

ComPointer<IDispatch> Variant::AsObject() const {
  if (IsNothing()) return {};
  auto object = ObjectIn(m_Value);
  if (!object) throw PlatformError(ErrorTypeMismatch);
  return object;
}

ComPointer<IDispatch> ObjectIn(const VARIANT& value) {
  if (value.vt == (VT_BYREF | VT_VARIANT))
    return value.pvarVal == nullptr ? ComPointer<IDispatch>() : ObjectIn(*value.pvarVal);
  const VARTYPE kind = value.vt & ~VT_BYREF;
  if (kind != VT_DISPATCH && kind != VT_UNKNOWN) return {};
  IUnknown* object = value.punkVal;
  if ((value.vt & VT_BYREF) != 0) object = value.ppunkVal == nullptr ? nullptr : *value.ppunkVal;
  return ComPointer<IUnknown>::Share(object).As<IDispatch>();
}

}  // namespace vex

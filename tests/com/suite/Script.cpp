#include "tests/com/suite/Script.h"

#include <cstdio>

#include "tests/com/suite/SuiteComponent.h"

namespace suite {
namespace {

std::string Number(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

/// The four properties by which an input is told, read as a component written for the suite reads them.
std::string DescribedProperties(IDispatch* object) {
  std::string described;
  for (const wchar_t* name : {L"Network", L"UNITID", L"inputNumber", L"Name"}) {
    auto* asked = const_cast<wchar_t*>(name);
    DISPID number = 0;
    if (FAILED(object->GetIDsOfNames(IID_NULL, &asked, 1, LOCALE_USER_DEFAULT, &number))) return "object";
    DISPPARAMS none{};
    VARIANT value;
    VariantInit(&value);
    if (FAILED(object->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value,
                              nullptr, nullptr)))
      return "object";
    described += (described.empty() ? "" : " ") + Described(value);
    VariantClear(&value);
  }
  return "{" + described + "}";
}

std::string DescribedObject(IDispatch* object) {
  if (object == nullptr) return "DISPATCH:none";
  const std::string component = ComponentOf(object);
  return "DISPATCH:" + (component.empty() ? DescribedProperties(object) : component);
}

}  // namespace

Script& TheScript() {
  static Script script;
  return script;
}

std::string Narrow(const wchar_t* text, size_t length) {
  std::string narrow;
  for (size_t i = 0; i < length; ++i) narrow += static_cast<char>(text[i]);
  return narrow;
}

std::string Described(const VARIANT& value) {
  switch (value.vt) {
    case VT_I4:
      return "I4:" + std::to_string(value.lVal);
    case VT_I2:
      return "I2:" + std::to_string(value.iVal);
    case VT_UI1:
      return "UI1:" + std::to_string(value.bVal);
    case VT_UI1 | VT_BYREF:
      return "UI1&:" + std::to_string(*value.pbVal);
    case VT_R8:
      return "R8:" + Number(value.dblVal);
    case VT_BOOL:
      return "BOOL:" + std::to_string(value.boolVal);
    case VT_BSTR:
      return "BSTR:" + Narrow(value.bstrVal, SysStringLen(value.bstrVal));
    case VT_DISPATCH:
      return DescribedObject(value.pdispVal);
    default:
      return "VT" + std::to_string(value.vt);
  }
}

}  // namespace suite

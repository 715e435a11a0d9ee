#include "components/com/Component.h"

#include <algorithm>
#include <utility>

#include "components/com/ComFailure.h"
#include "components/com/ComText.h"
#include "settings/LibRegistryVex.h"

namespace vex {
namespace {

constexpr const char* Subkey = "Components";
constexpr int32_t ErrorCannotCreate = 429;
constexpr int32_t ErrorNoSuchMember = 438;
constexpr int32_t ErrorWrongArgumentCount = 450;

ComPointer<IDispatch> Create(const ComponentNames& names) {
  CLSID classId{};
  ComPointer<IDispatch> object;
  HRESULT result = CLSIDFromProgID(WideOf(names.ProgramId).c_str(), &classId);
  if (SUCCEEDED(result)) {
    result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(object.Put()));
  }
  if (FAILED(result) || !object) {
    throw Error(ErrorCannotCreate, names.ProgramId,
                "The component " + names.Component + " (program id \"" + names.ProgramId +
                    "\") cannot be created: " + WordsFor(FAILED(result) ? result : E_NOINTERFACE));
  }
  return object;
}

}  // namespace

ComponentNames::ComponentNames(Registry& settings, std::string szComponent, const std::string& szProgramId,
                               const std::vector<std::string>& roles)
    : Component(std::move(szComponent)) {
  ProgramId = GetProductString(settings, Component, Subkey, szProgramId);
  for (const std::string& szRole : roles)
    Members[szRole] = GetProductString(settings, Component + "." + szRole, Subkey, szRole);
}

Component::Component(std::shared_ptr<const ComponentNames> names)
    : m_Names(std::move(names)), m_Object(Create(*m_Names)) {}

const std::string& Component::MemberOf(std::string_view szRole) const {
  const auto member = m_Names->Members.find(szRole);
  if (member == m_Names->Members.end()) throw PlatformError(ErrorInvalidCall);
  return member->second;
}

DISPID Component::NumberOf(std::string_view szRole) {
  const auto known = m_Numbers.find(szRole);
  if (known != m_Numbers.end()) return known->second;
  std::wstring szMember = WideOf(MemberOf(szRole));
  LPOLESTR name = szMember.data();
  DISPID number = DISPID_UNKNOWN;
  const HRESULT result = m_Object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &number);
  if (FAILED(result)) {
    number = DISPID_UNKNOWN;
    if (result != DISP_E_UNKNOWNNAME && result != DISP_E_MEMBERNOTFOUND)
      throw ComError(result, m_Names->ProgramId, m_Names->Component + "." + MemberOf(szRole));
  }
  m_Numbers.emplace(szRole, number);
  return number;
}

bool Component::Invoke(std::string_view szRole, WORD kind, DISPPARAMS& parameters, Variant* result) {
  const DISPID number = NumberOf(szRole);
  if (number == DISPID_UNKNOWN) return false;
  EXCEPINFO raised{};
  UINT argument = 0;
  const HRESULT code = m_Object->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                                        result == nullptr ? nullptr : result->Put(), &raised, &argument);
  if (SUCCEEDED(code)) return true;
  if (code == DISP_E_MEMBERNOTFOUND) return false;
  if (code == DISP_E_EXCEPTION) throw RaisedError(raised, m_Names->ProgramId);
  Error error = ComError(code, m_Names->ProgramId,
                         m_Names->Component + "." + MemberOf(szRole) + " (" + m_Names->ProgramId + ")");
  if (code == DISP_E_BADPARAMCOUNT) error.Number = ErrorWrongArgumentCount;
  throw error;
}

std::optional<Variant> Component::CallIfThere(std::string_view szRole, Arguments arguments) {
  std::vector<VARIANT> backwards;
  backwards.reserve(arguments.size());
  std::transform(std::rbegin(arguments), std::rend(arguments), std::back_inserter(backwards),
                 [](const Variant& argument) { return argument.Get(); });
  DISPPARAMS parameters{backwards.data(), nullptr, static_cast<UINT>(backwards.size()), 0};
  Variant result;
  if (!Invoke(szRole, DISPATCH_METHOD | DISPATCH_PROPERTYGET, parameters, &result)) return std::nullopt;
  return result;
}

Variant Component::Call(std::string_view szRole, Arguments arguments) {
  std::optional<Variant> result = CallIfThere(szRole, arguments);
  if (!result) throw LacksMember(szRole);
  return std::move(*result);
}

void Component::PutProperty(std::string_view szRole, Variant value) {
  VARIANT argument = value.Get();
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{&argument, &put, 1, 1};
  if (!Invoke(szRole, DISPATCH_PROPERTYPUT, parameters, nullptr)) throw LacksMember(szRole);
}

Error Component::LacksMember(std::string_view szRole) const {
  return {ErrorNoSuchMember, m_Names->ProgramId,
          "The component " + m_Names->Component + " (program id \"" + m_Names->ProgramId +
              "\") has no member \"" + MemberOf(szRole) + "\"; the value \"" + m_Names->Component + "." +
              std::string(szRole) + "\" in the subkey Components says what it is called there"};
}

}  // namespace vex

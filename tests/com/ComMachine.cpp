#include "tests/com/ComMachine.h"

#include <filesystem>

#include "components/com/SuiteDevices.h"
#include "tests/com/suite/SuiteClasses.h"

namespace vex::test {
namespace {

const std::string ClassesKey = "Software\\Classes\\";

std::string TextOfId(const CLSID& id) {
  wchar_t text[64] = {};
  StringFromGUID2(id, text, 64);
  return std::filesystem::path(text).string();
}

void SetText(HKEY root, const std::string& szKey, const char* szName, const std::string& szValue) {
  ASSERT_EQ(RegSetKeyValueA(root, szKey.c_str(), szName, REG_SZ, szValue.c_str(),
                            static_cast<DWORD>(szValue.size() + 1)),
            ERROR_SUCCESS);
}

void Delete(const std::string& szKey) {
  RegDeleteTreeA(HKEY_LOCAL_MACHINE, (ClassesKey + szKey).c_str());
  RegDeleteKeyA(HKEY_LOCAL_MACHINE, (ClassesKey + szKey).c_str());
}

}  // namespace

SuiteMachine::SuiteMachine() {
  const std::string szLibrary = (std::filesystem::current_path() / "com_tests_suite.dll").string();
  for (const suite::SuiteClass& known : suite::Classes) {
    const std::string szId = TextOfId(known.Id);
    const std::string szServer = ClassesKey + "CLSID\\" + szId + "\\InprocServer32";
    SetText(HKEY_LOCAL_MACHINE, ClassesKey + known.ProgramId + "\\CLSID", nullptr, szId);
    SetText(HKEY_LOCAL_MACHINE, szServer, nullptr, szLibrary);
    SetText(HKEY_LOCAL_MACHINE, szServer, "ThreadingModel", "Apartment");
  }
  SuiteReset();
  SuiteTakeCalls();
}

SuiteMachine::~SuiteMachine() {
  for (const suite::SuiteClass& known : suite::Classes) {
    Delete(known.ProgramId);
    Delete("CLSID\\" + TextOfId(known.Id));
  }
  EXPECT_EQ(SuiteObjects(), 0) << "a component is still held";
}

void SuiteMachine::Set(const std::string& szName, const std::string& szValue) {
  SetText(HKEY_CURRENT_USER, "Software\\Brillara\\Components", szName.c_str(), szValue);
}

void SuiteMachine::Remove(const std::string& szProgramId) {
  Delete(szProgramId);
}

Devices SuiteMachine::MakeDevices() {
  Devices devices;
  MakeSuiteLights(m_Registry, devices);
  return devices;
}

std::string Calls() {
  return SuiteTakeCalls();
}

HRESULT PropertiesObject::QueryInterface(REFIID id, void** object) {
  *object = nullptr;
  if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) return E_NOINTERFACE;
  *object = this;
  AddRef();
  return S_OK;
}

HRESULT PropertiesObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* numbers) {
  for (size_t i = 0; i < m_Properties.size(); ++i) {
    if (lstrcmpiW(names[0], m_Properties[i].first.c_str()) != 0) continue;
    numbers[0] = static_cast<DISPID>(i);
    return S_OK;
  }
  return DISP_E_UNKNOWNNAME;
}

HRESULT PropertiesObject::Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                 UINT*) {
  return VariantCopy(result, &m_Properties.at(static_cast<size_t>(number)).second);
}

VARIANT LongValue(int32_t lValue) {
  VARIANT value;
  value.vt = VT_I4;
  value.lVal = lValue;
  return value;
}

VARIANT DoubleValue(double number) {
  VARIANT value;
  value.vt = VT_R8;
  value.dblVal = number;
  return value;
}

VARIANT BooleanValue(bool boolValue) {
  VARIANT value;
  value.vt = VT_BOOL;
  value.boolVal = boolValue ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

VARIANT ObjectValue(IDispatch* object) {
  VARIANT value;
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  return value;
}

VARIANT TextValue(const wchar_t* szText) {
  VARIANT value;
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(szText);
  return value;
}

}  // namespace vex::test

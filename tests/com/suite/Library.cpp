#include <utility>

#include "tests/com/suite/Script.h"
#include "tests/com/suite/SuiteClasses.h"
#include "tests/com/suite/SuiteComponent.h"

// What the library offers: its classes, to whoever creates components, and its script, to the tests.

namespace suite {
namespace {

class Factory final : public IClassFactory {
 public:
  explicit Factory(const char* component) : m_Component(component) {}
  virtual ~Factory() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IClassFactory)) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  // It stands for as long as the library does.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override {
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    auto* const made = new SuiteComponent(m_Component);
    const HRESULT result = made->QueryInterface(id, object);
    made->Release();
    return result;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  const char* m_Component;
};

}  // namespace
}  // namespace suite

using suite::TheScript;

extern "C" {

HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
  for (const suite::SuiteClass& known : suite::Classes) {
    static std::map<const suite::SuiteClass*, suite::Factory> factories;
    if (!IsEqualCLSID(classId, known.Id)) continue;
    return factories.try_emplace(&known, known.Component).first->second.QueryInterface(id, object);
  }
  *object = nullptr;
  return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT WINAPI DllCanUnloadNow() {
  return S_FALSE;
}

const char* SuiteTakeCalls() {
  TheScript().Taken = std::exchange(TheScript().Calls, "");
  return TheScript().Taken.c_str();
}

void SuiteReset() {
  for (auto& [member, value] : TheScript().Results) VariantClear(&value);
  for (auto& [member, values] : TheScript().NextResults)
    for (VARIANT& value : values) VariantClear(&value);
  const long objects = TheScript().Objects;
  TheScript() = {};
  TheScript().Objects = objects;
}

long SuiteObjects() {
  return TheScript().Objects;
}

void SuiteReturn(const char* member, const VARIANT* value) {
  VARIANT& kept = TheScript().Results[member];
  VariantCopy(&kept, const_cast<VARIANT*>(value));
}

void SuiteReturnNext(const char* member, const VARIANT* value) {
  VARIANT& kept = TheScript().NextResults[member].emplace_back();
  VariantInit(&kept);
  VariantCopy(&kept, const_cast<VARIANT*>(value));
}

void SuiteRaise(const char* member, HRESULT code, WORD number, const wchar_t* source,
                const wchar_t* description, BOOL late) {
  suite::Raising& raising = TheScript().Raisings[member];
  raising = {code, number, {}, {}, late != FALSE};
  if (source != nullptr) raising.Source = source;
  if (description != nullptr) raising.Description = description;
}

void SuiteRename(const char* member, const char* name) {
  TheScript().Names[member] = name == nullptr ? std::nullopt : std::optional<std::string>(name);
}

void SuiteDeaf(const char* member) {
  TheScript().Deaf[member] = true;
}

void SuiteMovePorts(int delta) {
  TheScript().PortDelta = delta;
}

void SuiteMakeControl(const char* component) {
  TheScript().Controls[component] = true;
}

void SuitePassEvents(const char* component, SuiteEvents how) {
  TheScript().Events[component] = how;
}

HRESULT SuiteFire(const char* component, DISPID number, VARIANT* arguments, UINT count) {
  HRESULT result = S_FALSE;
  for (suite::SuiteComponent* object : suite::ObjectsOf(component))
    result = object->Fire(number, arguments, count);
  return result;
}

void SuiteHangUp(const char* component) {
  for (suite::SuiteComponent* object : suite::ObjectsOf(component)) object->HangUp();
}

}  // extern "C"

#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "components/com/ComPointer.h"
#include "host/win32/Win32Registry.h"
#include "player/devices/Devices.h"
#include "tests/com/suite/SuiteScript.h"
#include "tests/host_win32/WindowsMachine.h"

namespace vex::test {

/// A machine on which the tests' components are installed under the suite's program ids, for as long as this
/// lives: they stand in the registry where installed programs stand, the settings in an empty key.
class SuiteMachine {
 public:
  SuiteMachine();
  ~SuiteMachine();
  SuiteMachine(const SuiteMachine&) = delete;
  SuiteMachine& operator=(const SuiteMachine&) = delete;

  /// A value in the product subkey Components.
  void Set(const std::string& szName, const std::string& szValue);
  /// One of the three is not installed.
  void Remove(const std::string& szProgramId);
  [[nodiscard]] Registry& Settings() { return m_Registry; }
  [[nodiscard]] Devices MakeDevices();

 private:
  ComApartment m_Apartment;
  EmptyUserKey m_UserKey;
  Win32Registry m_Registry;
};

/// What was called since the last time, a line each.
std::string Calls();

/// An object with properties, as components pass it.
class PropertiesObject final : public IDispatch {
 public:
  explicit PropertiesObject(std::vector<std::pair<std::wstring, VARIANT>> properties)
      : m_Properties(std::move(properties)) {}
  virtual ~PropertiesObject() = default;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++m_References; }
  ULONG STDMETHODCALLTYPE Release() override { return --m_References; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* numbers) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override;
  [[nodiscard]] ULONG References() const { return m_References; }

 private:
  std::vector<std::pair<std::wstring, VARIANT>> m_Properties;
  ULONG m_References = 1;
};

VARIANT LongValue(int32_t lValue);
VARIANT DoubleValue(double value);
VARIANT BooleanValue(bool boolValue);
VARIANT ObjectValue(IDispatch* object);
/// Lives as long as the tests' program.
VARIANT TextValue(const wchar_t* szText);

}  // namespace vex::test

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/com/suite/SuiteScript.h"

namespace suite {

/// An object of properties, read by name, as components pass it.
class PropertiesOf final : public IDispatch {
 public:
  using Values = std::vector<std::pair<std::wstring, VARIANT>>;

  /// Takes the values over.
  explicit PropertiesOf(Values values) : m_Values(std::move(values)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++m_References; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* numbers) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override;

 private:
  virtual ~PropertiesOf();

  Values m_Values;
  ULONG m_References = 1;
};

}  // namespace suite

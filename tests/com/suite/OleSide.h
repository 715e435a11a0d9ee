#pragma once

#include "tests/com/suite/SuiteScript.h"
//
#include <ocidl.h>
#include <oleidl.h>

namespace suite {

class SuiteComponent;

/// What a component has more if it is a control, made to sit on a form: it writes down that it is given a
/// site, told to begin anew, and let go.
class OleSide final : public IOleObject, public IPersistStreamInit {
 public:
  explicit OleSide(SuiteComponent& owner) : m_Owner(owner) {}
  virtual ~OleSide() { SetSite(nullptr); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override;
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Close(DWORD) override;
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DoVerb(LONG, LPMSG, IOleClientSite*, LONG, HWND, LPCRECT) override;
  HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Update() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE IsUpToDate() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetUserType(DWORD, LPOLESTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetExtent(DWORD, SIZEL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD, SIZEL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Advise(IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD, DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE Load(IStream*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Save(IStream*, BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InitNew() override;

 private:
  void SetSite(IOleClientSite* site);
  void Write(const char* what) const;

  SuiteComponent& m_Owner;
  IOleClientSite* m_Site = nullptr;
};

}  // namespace suite

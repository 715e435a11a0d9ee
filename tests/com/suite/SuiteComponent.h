#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/com/suite/OleSide.h"
#include "tests/com/suite/SuiteScript.h"
//
#include <ocidl.h>
#include <olectl.h>

namespace suite {

class Point;

/// The members of the suite's components, as the table of roles has them.
const std::vector<std::string>& MembersOf(const std::string& component);
/// The interface of a component's events.
IID EventsOf(const std::string& component);
/// Which component an object is, empty for another's object.
std::string ComponentOf(IDispatch* object);
/// All objects of a component.
std::vector<class SuiteComponent*> ObjectsOf(const std::string& component);

/// A component that writes down its calls and answers as it has been told.
class SuiteComponent : public IDispatch, public IConnectionPointContainer, public IProvideClassInfo2 {
 public:
  explicit SuiteComponent(std::string component);
  virtual ~SuiteComponent();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++m_References; }
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* numbers) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* raised, UINT*) override;

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id, IConnectionPoint** point) override;
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* id) override;

  [[nodiscard]] const std::string& Component() const { return m_Component; }
  HRESULT Fire(DISPID number, VARIANT* arguments, UINT count);
  void HangUp();

 private:
  void Write(const std::string& member, WORD kind, const DISPPARAMS& parameters) const;

  std::string m_Component;
  ULONG m_References = 1;
  OleSide m_OleSide{*this};
  Point* m_Properties;
  Point* m_Events;
};

/// One of a component's connection points.
class Point : public IConnectionPoint {
 public:
  Point(SuiteComponent& owner, IID id) : m_Owner(owner), m_Id(id) {}
  virtual ~Point() { HangUp(); }

  // A point lives as long as its component and counts for it.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return m_Owner.AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return m_Owner.Release(); }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* id) override;
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

  HRESULT Fire(DISPID number, VARIANT* arguments, UINT count);
  void HangUp();
  [[nodiscard]] const IID& Id() const { return m_Id; }

 private:
  SuiteComponent& m_Owner;
  IID m_Id;
  std::map<DWORD, IDispatch*> m_Sinks;
  DWORD m_LastCookie = 0;
};

}  // namespace suite

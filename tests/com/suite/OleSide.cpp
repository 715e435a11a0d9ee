#include "tests/com/suite/OleSide.h"

#include "tests/com/suite/Script.h"
#include "tests/com/suite/SuiteComponent.h"

namespace suite {

HRESULT OleSide::QueryInterface(REFIID id, void** object) {
  return m_Owner.QueryInterface(id, object);
}

ULONG OleSide::AddRef() {
  return m_Owner.AddRef();
}

ULONG OleSide::Release() {
  return m_Owner.Release();
}

void OleSide::Write(const char* what) const {
  TheScript().Calls += m_Owner.Component() + " is " + what + "\n";
}

void OleSide::SetSite(IOleClientSite* site) {
  if (site != nullptr) site->AddRef();
  if (m_Site != nullptr) m_Site->Release();
  m_Site = site;
}

HRESULT OleSide::SetClientSite(IOleClientSite* site) {
  Write(site == nullptr ? "let go" : "seated");
  SetSite(site);
  return S_OK;
}

HRESULT OleSide::Close(DWORD) {
  Write("closed");
  return S_OK;
}

HRESULT OleSide::DoVerb(LONG, LPMSG, IOleClientSite*, LONG, HWND, LPCRECT) {
  Write("activated");
  return S_OK;
}

HRESULT OleSide::InitNew() {
  Write("begun anew");
  return S_OK;
}

}  // namespace suite

#include "components/com/ControlSite.h"

namespace vex {

HRESULT ControlSite::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IOleClientSite)) {
    *object = static_cast<IOleClientSite*>(this);
  } else if (IsEqualIID(id, IID_IOleWindow) || IsEqualIID(id, IID_IOleInPlaceSite) ||
             IsEqualIID(id, IID_IOleInPlaceSiteEx)) {
    *object = static_cast<IOleInPlaceSiteEx*>(this);
  } else if (IsEqualIID(id, IID_IOleInPlaceUIWindow) || IsEqualIID(id, IID_IOleInPlaceFrame)) {
    *object = static_cast<IOleInPlaceFrame*>(this);
  } else {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

ULONG ControlSite::Release() {
  const ULONG left = --m_References;
  if (left == 0) delete this;
  return left;
}

HRESULT ControlSite::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
  if (moniker != nullptr) *moniker = nullptr;
  return E_NOTIMPL;
}

HRESULT ControlSite::GetContainer(IOleContainer** container) {
  if (container != nullptr) *container = nullptr;
  return E_NOINTERFACE;
}

HRESULT ControlSite::GetWindow(HWND* window) {
  if (window == nullptr) return E_POINTER;
  *window = m_Window;
  return m_Window == nullptr ? E_FAIL : S_OK;
}

HRESULT ControlSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, LPRECT place,
                                      LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
  if (frame == nullptr || document == nullptr || place == nullptr || clip == nullptr) return E_POINTER;
  *document = nullptr;
  *frame = this;
  AddRef();
  GetClientRect(m_Window, place);
  *clip = *place;
  if (info != nullptr) {
    info->fMDIApp = FALSE;
    info->hwndFrame = m_Window;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
  }
  return S_OK;
}

HRESULT ControlSite::OnInPlaceActivateEx(BOOL* noRedraw, DWORD) {
  if (noRedraw != nullptr) *noRedraw = FALSE;
  return S_OK;
}

}  // namespace vex

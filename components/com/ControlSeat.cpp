#include "components/com/ControlSeat.h"

namespace vex {
namespace {

constexpr int HimetricPerInch = 2540;

/// Sizes of controls are told in hundredths of a millimetre.
SIZE Himetric(HWND window, int lWidth, int lHeight) {
  const HDC screen = GetDC(window);
  const int across = screen == nullptr ? 0 : GetDeviceCaps(screen, LOGPIXELSX);
  const int down = screen == nullptr ? 0 : GetDeviceCaps(screen, LOGPIXELSY);
  if (screen != nullptr) ReleaseDC(window, screen);
  constexpr int usual = 96;
  return {MulDiv(lWidth, HimetricPerInch, across > 0 ? across : usual),
          MulDiv(lHeight, HimetricPerInch, down > 0 ? down : usual)};
}

}  // namespace

void ControlSeat::Take(const ComPointer<IUnknown>& control, HWND window) {
  Leave();
  m_Control = control.As<IOleObject>();
  if (!m_Control) return;
  m_Window = window;
  m_Site = ComPointer<ControlSite>::Take(new ControlSite(window));
  m_Control->SetClientSite(m_Site.Get());
  const auto state = control.As<IPersistStreamInit>();
  if (state) state->InitNew();
  if (window == nullptr) return;
  RECT inside{};
  GetClientRect(window, &inside);
  m_Control->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, m_Site.Get(), 0, window, &inside);
  m_InPlace = control.As<IOleInPlaceObject>();
}

void ControlSeat::Leave() {
  if (m_InPlace) m_InPlace->InPlaceDeactivate();
  m_InPlace.Release();
  if (m_Control) {
    m_Control->Close(OLECLOSE_NOSAVE);
    m_Control->SetClientSite(nullptr);
  }
  m_Control.Release();
  if (m_Site) m_Site->WindowGone();
  m_Site.Release();
}

void ControlSeat::Move(const RECT& place) {
  SIZE extent = Himetric(m_Window, place.right - place.left, place.bottom - place.top);
  if (m_Control) m_Control->SetExtent(DVASPECT_CONTENT, &extent);
  if (m_InPlace) m_InPlace->SetObjectRects(&place, &place);
}

}  // namespace vex

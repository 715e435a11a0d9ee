#pragma once

#include "components/com/ComPointer.h"
#include "components/com/ControlSite.h"

namespace vex {

/// A control that sits where controls expect to sit: on a form. Some do their work only when somebody has
/// given them a site and told them to begin anew. One with a window of its own is activated on that of the
/// form; one that is not to be seen is given no window. What is no control at all is left as it is.
class ControlSeat {
 public:
  ControlSeat() = default;
  ~ControlSeat() { Leave(); }
  ControlSeat(const ControlSeat&) = delete;
  ControlSeat& operator=(const ControlSeat&) = delete;

  /// window may be null.
  void Take(const ComPointer<IUnknown>& control, HWND window);
  void Leave();
  /// Over this part of the window, in pixels.
  void Move(const RECT& place);

 private:
  ComApartment m_Apartment;
  HWND m_Window = nullptr;
  ComPointer<ControlSite> m_Site;
  ComPointer<IOleObject> m_Control;
  ComPointer<IOleInPlaceObject> m_InPlace;
};

}  // namespace vex

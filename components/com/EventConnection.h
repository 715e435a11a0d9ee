#pragma once

#include <functional>
#include <vector>

#include "components/com/ComPointer.h"

namespace vex {

/// The events of a component, from when this is made until it goes. A component without events, or that will
/// not pass them, is used without: Connected then says no. A component that hangs up by itself, or that still
/// raises an event after this has gone, does no harm.
///
/// The handler gets an event's number and its arguments in their order. What it throws stays here: the
/// component's own code stands between it and whoever could catch it.
class EventConnection {
 public:
  using Handler = std::function<void(DISPID, const std::vector<VARIANT>&)>;

  EventConnection() = default;
  /// The component's default events.
  EventConnection(IUnknown* source, Handler handler);
  ~EventConnection() { Close(); }
  EventConnection(const EventConnection&) = delete;
  EventConnection& operator=(const EventConnection&) = delete;

  /// Listens from now on to the events of one interface.
  void Listen(IUnknown* source, REFIID id, Handler handler);
  [[nodiscard]] bool Connected() const { return m_Cookie != 0; }
  void Close();

 private:
  class Sink;
  void Connect(Handler handler);

  ComApartment m_Apartment;
  ComPointer<IConnectionPoint> m_Point;
  Sink* m_Sink = nullptr;  // one reference is this object's
  DWORD m_Cookie = 0;
};

}  // namespace vex

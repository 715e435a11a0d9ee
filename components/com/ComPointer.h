#pragma once

#include <utility>

#include "components/com/ComHeaders.h"

namespace vex {

/// The component model on this thread: entered when it is made, left when it goes. Whatever holds an
/// interface holds one of these and declares it first, so that the last interface is let go before the model
/// is. Raises Error where the machine refuses.
class ComApartment {
 public:
  ComApartment();
  ~ComApartment();
  ComApartment(const ComApartment& other) : ComApartment() { static_cast<void>(other); }
  ComApartment& operator=(const ComApartment&) { return *this; }
};

/// A reference to an interface of a component; may be empty.
template <class Interface>
class ComPointer {
 public:
  ComPointer() = default;
  ~ComPointer() { Release(); }
  ComPointer(const ComPointer& other) : m_Pointer(other.m_Pointer) {
    if (m_Pointer != nullptr) m_Pointer->AddRef();
  }
  ComPointer(ComPointer&& other) noexcept : m_Pointer(std::exchange(other.m_Pointer, nullptr)) {}
  ComPointer& operator=(ComPointer other) noexcept {
    std::swap(m_Pointer, other.m_Pointer);
    return *this;
  }

  /// Shares what somebody else holds.
  [[nodiscard]] static ComPointer Share(Interface* pointer) {
    if (pointer != nullptr) pointer->AddRef();
    return Take(pointer);
  }
  /// Takes over a reference that has been counted already.
  [[nodiscard]] static ComPointer Take(Interface* pointer) {
    ComPointer taken;
    taken.m_Pointer = pointer;
    return taken;
  }

  [[nodiscard]] Interface* Get() const { return m_Pointer; }
  Interface* operator->() const { return m_Pointer; }
  explicit operator bool() const { return m_Pointer != nullptr; }

  /// Where a call puts the reference that it gives.
  [[nodiscard]] Interface** Put() {
    Release();
    return &m_Pointer;
  }
  void Release() {
    if (m_Pointer != nullptr) std::exchange(m_Pointer, nullptr)->Release();
  }

  /// Another interface of the same component; empty where it has none such.
  template <class Other>
  [[nodiscard]] ComPointer<Other> As() const {
    ComPointer<Other> other;
    if (m_Pointer != nullptr)
      m_Pointer->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.Put()));
    return other;
  }

 private:
  Interface* m_Pointer = nullptr;
};

}  // namespace vex

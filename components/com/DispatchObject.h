#pragma once

#include <atomic>

#include "components/com/ComHeaders.h"

namespace vex {

/// An object that this program hands to components: counted, and asked by name or number. It is made with one
/// reference and goes with the last one, whoever holds it.
class DispatchObject : public IDispatch {
 public:
  DispatchObject(const DispatchObject&) = delete;
  DispatchObject& operator=(const DispatchObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++m_References; }
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* numbers) override;

 protected:
  DispatchObject() = default;
  virtual ~DispatchObject() = default;

  /// Whether the object answers to one more interface, the one through which events are passed.
  [[nodiscard]] virtual bool AnswersTo(REFIID id) const {
    static_cast<void>(id);
    return false;
  }

 private:
  std::atomic<ULONG> m_References = 1;
};

}  // namespace vex

#pragma once

#include <string>

#include "components/com/DispatchObject.h"

namespace vex {

class Trigger;

/// A trigger as the I/O control is handed it: an object with the properties Network, UnitId, InputNumber and
/// Name, read by name in any case. The control may keep it for as long as it likes, so it is a copy.
class TriggerObject final : public DispatchObject {
 public:
  explicit TriggerObject(const Trigger& trigger);

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* numbers) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID id, LCID locale, WORD kind, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* raised, UINT* argument) override;

 private:
  int32_t m_Network;
  int32_t m_UnitId;
  int32_t m_InputNumber;
  std::wstring m_Name;
};

}  // namespace vex

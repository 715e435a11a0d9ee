#pragma once

#include <string>
#include <string_view>

#include "components/com/ComHeaders.h"

namespace vex {

/// Components speak wide text, the system single-byte text of the machine's ANSI code page. What a component
/// says beyond that page comes in as the nearest character, or a question mark.
[[nodiscard]] std::wstring WideOf(std::string_view szText);
/// Nothing is the empty text.
[[nodiscard]] std::string TextOf(const wchar_t* szWide, size_t length);
[[nodiscard]] std::string TextOf(BSTR szWide);

/// Text as components take it, let go when this goes.
class ComText {
 public:
  /// Raises Error when there is no room.
  explicit ComText(std::string_view szText);
  ~ComText() { SysFreeString(m_Text); }
  ComText(const ComText&) = delete;
  ComText& operator=(const ComText&) = delete;

  [[nodiscard]] BSTR Get() const { return m_Text; }

 private:
  BSTR m_Text;
};

}  // namespace vex

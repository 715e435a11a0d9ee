#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "basic/DateTime.h"
#include "basic/Error.h"
#include "show/lists/FieldViews.h"

namespace vex {

/// The one text format of every file and record: a parenthesised, comma-separated list whose fields are
/// escaped scalars or whole inner lists. Writers convert each field and join; readers split and convert
/// each field back, handing an inner list to its own reader. The four characters "*", "(", ")" and ","
/// stand in scalars as "*E", "*O", "*C" and "*S".

/// An array of field texts with an explicit lower bound. One that was never given a size has length 0.
template <class Text>
class TextArray {
 public:
  explicit TextArray(int32_t lLowerBound = 1) : m_LowerBound(lLowerBound) {}
  TextArray(int32_t lLowerBound, std::vector<Text> elements)
      : m_LowerBound(lLowerBound), m_Elements(std::move(elements)) {}

  [[nodiscard]] int32_t LowerBound() const { return m_LowerBound; }
  /// LowerBound - 1 when the array has no element.
  [[nodiscard]] int32_t UpperBound() const { return m_LowerBound + Length() - 1; }
  [[nodiscard]] int32_t Length() const { return static_cast<int32_t>(m_Elements.size()); }
  /// Raises ErrorSubscript outside the bounds.
  [[nodiscard]] const Text& Element(int32_t lIndex) const {
    if (lIndex < LowerBound() || lIndex > UpperBound()) throw PlatformError(ErrorSubscript);
    return m_Elements[static_cast<size_t>(lIndex - m_LowerBound)];
  }

  void Append(Text field) { m_Elements.push_back(std::move(field)); }
  void Clear() { m_Elements.clear(); }
  [[nodiscard]] auto begin() const { return m_Elements.begin(); }
  [[nodiscard]] auto end() const { return m_Elements.end(); }

 private:
  int32_t m_LowerBound;
  std::vector<Text> m_Elements;
};

using FieldArray = TextArray<std::string>;

[[nodiscard]] std::string ListToText(const FieldArray& fields);

/// Splits a list text into raw fields, not unescaped, in time linear in the text whatever the nesting.
/// Errors, all with source "Serialize.ListFromText": 1 "Badly formatted list, enclosing parens",
/// 2 "Badly formatted list, missing closing paren" (no ")" ahead at depth 0), 3 "Badly formatted list,
/// unexpected closing paren", 4 "Badly formatted list, missing closing paren" (an inner list never closes).
/// A list of 4 GiB or more raises ErrorOverflow.
[[nodiscard]] FieldArray ListFromText(std::string_view szText, int32_t lLowerBound = 1);
/// The same without copying: the views live as long as the text.
[[nodiscard]] FieldViews SplitList(std::string_view szText, int32_t lLowerBound = 1);

[[nodiscard]] std::string EscapeText(std::string_view szText);
[[nodiscard]] std::string UnescapeText(std::string_view szText);

[[nodiscard]] std::string IntToText(int32_t lValue);
/// Fractions are rounded down; ErrorTypeMismatch for no number, ErrorOverflow out of range.
[[nodiscard]] int32_t IntFromText(std::string_view szField);
/// "T" only for the canonical true, -1.
[[nodiscard]] std::string BoolToText(int32_t lStored);
[[nodiscard]] std::string BoolToText(bool boolValue);
/// True for "T" and "t", false for anything else; never fails.
[[nodiscard]] bool BoolFromText(std::string_view szField);
[[nodiscard]] std::string DateToText(DateTime dtValue);
/// ErrorTypeMismatch for text that is no date.
[[nodiscard]] DateTime DateFromText(std::string_view szField);

}  // namespace vex

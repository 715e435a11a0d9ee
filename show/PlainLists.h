#pragma once

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "show/lists/ListShape.h"
#include "show/lists/Serialize.h"

namespace vex {

/// A walk over nested lists from field to field. The first thing that is not plain ends the walk: from then
/// on fields are empty and lists have no more of them.
class PlainLists {
 public:
  explicit PlainLists(std::string_view szText) : m_Text(szText) {
    Fill();
    m_Next = FindNext();
  }

  [[nodiscard]] bool Plain() const { return m_Plain; }
  void Stop() { m_Plain = false; }
  /// True when the whole text has been walked over.
  [[nodiscard]] bool AtEnd() const { return m_At == m_Text.size(); }

  [[nodiscard]] bool AtList() const { return m_Plain && m_Next == m_At && Delimiter() == '('; }
  void Open() {
    if (!AtList()) return Stop();
    Advance();
  }
  /// After a field: whether another one follows in this list. If not, the list is left.
  bool More() {
    if (!m_Plain || m_At != m_Next || Delimiter() == '(' || AtEnd()) {
      Stop();
      return false;
    }
    const bool boolMore = Delimiter() == ',';
    Advance();
    return boolMore;
  }
  void Comma() {
    if (!More()) Stop();
  }
  void Close() {
    if (More()) Stop();
  }

  /// A field without an inner list, escapes and all.
  std::string_view Scalar() {
    if (!m_Plain || m_Next == m_Text.size() || Delimiter() == '(') {
      Stop();
      return {};
    }
    const std::string_view szField = m_Text.substr(m_At, m_Next - m_At);
    m_At = m_Next;
    return szField;
  }
  std::string Text() { return UnescapeText(Scalar()); }
  /// Decimal digits, perhaps a "-"; any other spelling of a number is not plain.
  int32_t Number() {
    const std::string_view szField = Scalar();
    int32_t lNumber = 0;
    const char* const end = szField.data() + szField.size();
    const auto result = std::from_chars(szField.data(), end, lNumber);
    if (result.ec != std::errc() || result.ptr != end) Stop();
    return lNumber;
  }
  bool Flag() {
    const std::string_view szField = Scalar();
    if (szField != "T" && szField != "F") Stop();
    return szField == "T";
  }

 private:
  [[nodiscard]] char Delimiter() const { return m_Next < m_Text.size() ? m_Text[m_Next] : '\0'; }
  void Advance() {
    m_At = m_Next + 1;
    m_Next = FindNext();
  }

  size_t FindNext() {
    while (m_Delimiters == 0) {
      m_Block += ListShape::BlockSize;
      if (m_Block >= m_Text.size()) return m_Text.size();
      Fill();
    }
    const size_t next = m_Block + static_cast<size_t>(std::countr_zero(m_Delimiters));
    m_Delimiters &= m_Delimiters - 1;
    return next;
  }
  void Fill() {
    std::array<char, ListShape::BlockSize> rest = {};
    const char* block = m_Text.data() + m_Block;
    if (m_Text.size() - m_Block < rest.size()) {
      m_Text.copy(rest.data(), rest.size(), m_Block);
      block = rest.data();
    }
    const ListShape shape = ShapeOf(block);
    m_Delimiters = shape.Commas | shape.Parens;
  }

  std::string_view m_Text;
  size_t m_At = 0;
  size_t m_Next = 0;  // the next "(", ")" or "," at or behind m_At
  size_t m_Block = 0;
  uint64_t m_Delimiters = 0;  // those of the block that are still to come
  bool m_Plain = true;
};

}  // namespace vex

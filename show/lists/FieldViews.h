#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "basic/Error.h"

namespace vex {

/// The fields of a split list as views into the text that was split, with an explicit lower bound; they
/// live as long as that text. One that was never given a size has length 0.
///
/// Between two fields stands one comma, so four bytes a field, the place of its end, say everything: a
/// long list of short fields must not cost a multiple of itself.
class FieldViews {
 public:
  explicit FieldViews(int32_t lLowerBound = 1) : m_LowerBound(lLowerBound) {}
  /// Field i of szBody ends before ends[i]; ends rise.
  FieldViews(int32_t lLowerBound, std::string_view szBody, std::vector<uint32_t> ends)
      : m_LowerBound(lLowerBound), m_Body(szBody), m_Ends(std::move(ends)) {}

  [[nodiscard]] int32_t LowerBound() const { return m_LowerBound; }
  /// LowerBound - 1 when there is no field.
  [[nodiscard]] int32_t UpperBound() const { return m_LowerBound + Length() - 1; }
  [[nodiscard]] int32_t Length() const { return static_cast<int32_t>(m_Ends.size()); }
  /// Raises ErrorSubscript outside the bounds.
  [[nodiscard]] std::string_view Element(int32_t lIndex) const {
    if (lIndex < LowerBound() || lIndex > UpperBound()) throw PlatformError(ErrorSubscript);
    return Field(static_cast<size_t>(lIndex - m_LowerBound));
  }

  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = std::string_view;
    using difference_type = std::ptrdiff_t;
    using pointer = const std::string_view*;
    using reference = std::string_view;

    Iterator(const FieldViews& fields, size_t index) : m_Fields(&fields), m_Index(index) {}
    std::string_view operator*() const { return m_Fields->Field(m_Index); }
    Iterator& operator++() {
      ++m_Index;
      return *this;
    }
    Iterator operator++(int) { return std::exchange(*this, Iterator(*m_Fields, m_Index + 1)); }
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    const FieldViews* m_Fields;
    size_t m_Index;
  };

  [[nodiscard]] Iterator begin() const { return {*this, 0}; }
  [[nodiscard]] Iterator end() const { return {*this, m_Ends.size()}; }

 private:
  [[nodiscard]] std::string_view Field(size_t index) const {
    const size_t start = index == 0 ? 0 : size_t{m_Ends[index - 1]} + 1;
    return m_Body.substr(start, m_Ends[index] - start);
  }

  int32_t m_LowerBound;
  std::string_view m_Body;
  std::vector<uint32_t> m_Ends;
};

}  // namespace vex

#pragma once

#include <array>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "basic/Error.h"
#include "show/ContentsSeal.h"

namespace vex {

/// An ordered collection of names, counted from 1, that keeps all of them in one text: a playlist of a
/// quarter of a million sequences is two blocks of memory, the few names of an input are one. Names come
/// back as views that live until the collection is changed.
class StringCollection : public SealedPart {
 public:
  /// The memory outlives the collection; a copy of the collection does not use it.
  explicit StringCollection(std::pmr::memory_resource* memory = std::pmr::get_default_resource())
      : m_Text(memory) {}

  [[nodiscard]] int32_t Count() const { return static_cast<int32_t>(m_Count); }
  [[nodiscard]] bool Empty() const { return m_Count == 0; }
  /// The name at lIndex, 1 to Count; raises ErrorSubscript outside.
  [[nodiscard]] std::string_view Item(int32_t lIndex) const { return View(Position(lIndex)); }

  void Add(std::string_view szName);
  /// Appends what each field of a list text unescapes to, in order.
  template <class Fields>
  void AddEscaped(const Fields& fields) {
    for (std::string_view szField : fields) AddEscapedField(szField);
  }
  /// Puts another name at lIndex, 1 to Count; raises ErrorSubscript outside.
  void Replace(int32_t lIndex, std::string_view szName);
  void Clear();
  /// Makes room for more names of so many characters in all, so that adding them moves nothing.
  void Reserve(size_t names, size_t characters);

  class Iterator {
   public:
    Iterator(const StringCollection& names, size_t position) : m_Names(&names), m_Position(position) {}
    std::string_view operator*() const { return m_Names->View(m_Position); }
    Iterator& operator++() {
      ++m_Position;
      return *this;
    }
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    const StringCollection* m_Names;
    size_t m_Position;
  };
  [[nodiscard]] Iterator begin() const { return {*this, 0}; }
  [[nodiscard]] Iterator end() const { return {*this, m_Count}; }

 private:
  struct Span {
    uint32_t Offset = 0;
    uint32_t Length = 0;
  };

  [[nodiscard]] size_t Position(int32_t lIndex) const {
    if (lIndex < 1 || lIndex > Count()) throw PlatformError(ErrorSubscript);
    return static_cast<size_t>(lIndex) - 1;
  }
  [[nodiscard]] const Span& At(size_t position) const {
    return position < FirstCount ? m_First[position] : m_Rest[position - FirstCount];
  }
  [[nodiscard]] std::string_view View(size_t position) const {
    const Span& span = At(position);
    return {m_Text.data() + span.Offset, span.Length};
  }
  [[nodiscard]] Span Append(std::string_view szName);
  void AddEscapedField(std::string_view szField);

  static constexpr size_t FirstCount = 3;

  std::pmr::string m_Text;
  std::array<Span, FirstCount> m_First = {};
  std::vector<Span> m_Rest;
  size_t m_Count = 0;
};

}  // namespace vex

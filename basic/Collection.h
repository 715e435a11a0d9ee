#pragma once

#include <cstdint>
#include <deque>
#include <utility>

#include "basic/Error.h"

namespace vex {

/// The system's ordered collection: items counted from 1, appended at the end, taken out anywhere. The
/// player's lists, the musical working list and the message queue are collections. Taking the first item
/// out costs the same whatever the length, since the start queue lives by it.
template <class T>
class Collection {
 public:
  void Add(T item) { m_Items.push_back(std::move(item)); }

  [[nodiscard]] int32_t Count() const { return static_cast<int32_t>(m_Items.size()); }
  [[nodiscard]] bool Empty() const { return m_Items.empty(); }

  /// The item at lIndex, 1 to Count; raises ErrorSubscript outside.
  [[nodiscard]] const T& Item(int32_t lIndex) const { return m_Items[Position(lIndex)]; }
  [[nodiscard]] T& Item(int32_t lIndex) { return m_Items[Position(lIndex)]; }

  /// Takes the item at lIndex out; raises ErrorSubscript outside 1 to Count.
  void Remove(int32_t lIndex) {
    m_Items.erase(m_Items.begin() + static_cast<std::ptrdiff_t>(Position(lIndex)));
  }

  void Clear() { m_Items.clear(); }

  [[nodiscard]] auto begin() const { return m_Items.begin(); }
  [[nodiscard]] auto end() const { return m_Items.end(); }
  [[nodiscard]] auto begin() { return m_Items.begin(); }
  [[nodiscard]] auto end() { return m_Items.end(); }

 private:
  [[nodiscard]] size_t Position(int32_t lIndex) const {
    if (lIndex < 1 || lIndex > Count()) throw PlatformError(ErrorSubscript);
    return static_cast<size_t>(lIndex) - 1;
  }

  std::deque<T> m_Items;
};

}  // namespace vex

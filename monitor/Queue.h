#pragma once

#include <cstdint>
#include <utility>

#include "basic/Collection.h"

namespace vex {

/// What arrives is kept here in order until it is dealt with: first in, first out. The shell keeps the
/// messages of other programs in one. Dequeue and Peek on an empty queue raise the collection's index error
/// (ErrorSubscript), so Count is tested first.
template <class T>
class Queue {
 public:
  void Enqueue(T item) { m_Items.Add(std::move(item)); }

  /// Takes the head out.
  T Dequeue() {
    T head = std::move(m_Items.Item(1));
    m_Items.Remove(1);
    return head;
  }

  [[nodiscard]] const T& Peek() const { return m_Items.Item(1); }
  [[nodiscard]] int32_t Count() const { return m_Items.Count(); }
  /// Drops all items.
  void Clear() { m_Items = Collection<T>(); }

 private:
  Collection<T> m_Items;
};

}  // namespace vex

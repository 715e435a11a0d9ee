#pragma once

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <utility>

namespace vex {

/// The memory in which the parts of one show are made: a show of many groups has hundreds of thousands of
/// small parts, which come and go together. A part may be kept longer than its show; the memory goes with
/// the last part. Parts live on the system's one thread, so counting them takes no lock.
class PartsArena {
 public:
  /// Lets go of the arena; the parts made in it stay.
  struct Release {
    void operator()(PartsArena* arena) const { arena->Drop(); }
  };
  using Reference = std::unique_ptr<PartsArena, Release>;

  [[nodiscard]] static Reference New() { return Reference(new PartsArena); }

  template <class Part, class... Arguments>
  [[nodiscard]] std::shared_ptr<Part> Make(Arguments&&... arguments) {
    return std::allocate_shared<Part>(Allocator<Part>(*this), std::forward<Arguments>(arguments)...);
  }
  /// For what a part made here keeps beside itself; it lives as long as the part.
  [[nodiscard]] std::pmr::memory_resource* Memory() { return &m_Memory; }

 private:
  template <class T>
  class Allocator {
   public:
    using value_type = T;

    explicit Allocator(PartsArena& arena) : m_Arena(&arena) {}
    template <class U>
    Allocator(const Allocator<U>& other) : m_Arena(other.m_Arena) {}

    [[nodiscard]] T* allocate(size_t count) {
      void* const memory = m_Arena->m_Memory.allocate(count * sizeof(T), alignof(T));
      ++m_Arena->m_Users;
      return static_cast<T*>(memory);
    }
    void deallocate(T*, size_t) { m_Arena->Drop(); }
    template <class U>
    bool operator==(const Allocator<U>& other) const {
      return m_Arena == other.m_Arena;
    }

   private:
    template <class U>
    friend class Allocator;
    PartsArena* m_Arena;
  };

  PartsArena() = default;
  ~PartsArena() = default;
  void Drop() {
    if (--m_Users == 0) delete this;
  }

  std::pmr::monotonic_buffer_resource m_Memory;
  size_t m_Users = 1;
};

}  // namespace vex

#include "tests/memory/LiveMemory.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

std::atomic<int64_t> liveBlocks{0};
std::atomic<int64_t> liveBytes{0};

/// In front of each block stands its size, as wide as the strictest alignment.
constexpr std::size_t Head = alignof(std::max_align_t);

}  // namespace

void* operator new(std::size_t size) {
  void* const block = std::malloc(Head + size);
  if (block == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  ++liveBlocks;
  liveBytes += static_cast<int64_t>(size);
  return static_cast<std::byte*>(block) + Head;
}

// Sanitizers bring a full set of their own; the kinds must not mix.
void* operator new[](std::size_t size) {
  return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
  return operator new(size, nothrow);
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  void* const block = static_cast<std::byte*>(memory) - Head;
  --liveBlocks;
  liveBytes -= static_cast<int64_t>(*static_cast<std::size_t*>(block));
  std::free(block);
}

void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

void operator delete[](void* memory) noexcept {
  operator delete(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
  operator delete(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
  operator delete(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  operator delete(memory);
}

namespace vex::test {

LiveMemory MemoryNow() {
  return {liveBlocks.load(), liveBytes.load()};
}

}  // namespace vex::test

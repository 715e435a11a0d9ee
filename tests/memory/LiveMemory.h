#pragma once

#include <cstdint>

namespace vex::test {

/// What this program holds of what it asked operator new for.
struct LiveMemory {
  int64_t Blocks = 0;
  int64_t Bytes = 0;
};

[[nodiscard]] LiveMemory MemoryNow();

}  // namespace vex::test

#include "host/DetachedThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

namespace vex::test {
namespace {

// Threads that end while others are being started: each runs its own work, once.
TEST(DetachedThread, ManyThatEndAtOnceAllRunTheirOwnWork) {
  constexpr int kThreads = 2000;
  constexpr int kAtOnce = 20;
  const auto sum = std::make_shared<std::atomic<int64_t>>(0);
  int64_t expected = 0;
  for (int i = 1; i <= kThreads; ++i) {
    StartDetached([sum, i] { *sum += i; });
    expected += i;
    if (i % kAtOnce == 0)
      while (*sum != expected) std::this_thread::yield();
  }
  EXPECT_EQ(*sum, expected);
}

}  // namespace
}  // namespace vex::test

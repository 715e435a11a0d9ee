#include "host/linux/LinuxDatagrams.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "host/linux/LinuxEventLoop.h"
#include "tests/host/DatagramsContract.h"

namespace vex::test {
namespace {

INSTANTIATE_TEST_SUITE_P(Linux, DatagramsContract,
                         testing::Values(NetworkFamily{
                             "Linux", [] { return std::make_unique<LinuxEventLoop>(); },
                             [] { return std::make_unique<LinuxDatagrams>(); }, EADDRINUSE}));

TEST(LinuxDatagrams, AProgramEndsAtOnceWhileTheNameServiceIsSilent) {
  constexpr unsigned patience = 20;
  EXPECT_EXIT(
      {
        alarm(patience);  // a program that waits for its thread is killed
        {
          LinuxEventLoop loop;
          const auto silent = [](const std::string&, uint32_t&) {
            while (true) pause();
            return false;
          };
          const ThreadedLookUp lookUp(loop, "tree.local", silent, [](std::optional<uint32_t>) {});
          loop.Pump();
        }
        exit(0);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace vex::test

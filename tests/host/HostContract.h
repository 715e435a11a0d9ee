#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "host/Host.h"

namespace vex::test {

/// One machine of a host family, brand new for every case.
class ContractMachine {
 public:
  virtual ~ContractMachine() = default;
  /// A program's host on this machine; several are several programs.
  [[nodiscard]] virtual std::unique_ptr<Host> NewHost() = 0;
  /// A folder that exists, is empty and can be written to, as the system writes paths, with its "\".
  [[nodiscard]] virtual std::string Folder() = 0;
  /// Lets time pass without the loop running, as a handler that takes long does.
  virtual void HoldUp(Host& host, int32_t lMilliseconds) = 0;
  /// The command line of a program that ends by itself at once.
  [[nodiscard]] virtual std::string ShortProgram() = 0;
};

/// A family by its name, and how a machine of it is made.
struct ContractFamily {
  std::string Name;
  std::function<std::unique_ptr<ContractMachine>()> NewMachine;
};

inline void PrintTo(const ContractFamily& family, std::ostream* out) {
  *out << family.Name;
}

/// What every host family keeps, told in order and counts alone, since on a real machine a tick may come as
/// late as it likes. A family runs the cases with
///
///     INSTANTIATE_TEST_SUITE_P(Virtual, HostContract, testing::Values(ContractFamily{...}));
class HostContract : public testing::TestWithParam<ContractFamily> {
 protected:
  using Milliseconds = std::chrono::milliseconds;

  [[nodiscard]] vex::EventLoop& Loop() { return m_Host->EventLoop(); }
  [[nodiscard]] vex::Clock& Clock() { return m_Host->Clock(); }

  [[nodiscard]] std::unique_ptr<Timer> NewTimer(int32_t lInterval, std::function<void()> handler,
                                                TimerOrder order = TimerOrder::Component) {
    auto timer = Loop().NewTimer(order);
    timer->Interval(lInterval);
    timer->Tick(std::move(handler));
    return timer;
  }

  /// Runs the loop until the condition holds; false when it does not within thousands of ticks.
  bool RunUntil(const std::function<bool()>& condition) {
    int32_t lChecks = 0;
    bool boolHolds = condition();
    if (boolHolds) return true;
    auto check = NewTimer(1, [&] {
      boolHolds = condition();
      if (boolHolds || ++lChecks > 5000) Loop().Quit();
    });
    check->Enabled(true);
    Loop().Run();
    return boolHolds;
  }

  void RunFor(int32_t lMilliseconds) {
    auto end = NewTimer(lMilliseconds, [&] { Loop().Quit(); });
    end->Enabled(true);
    Loop().Run();
  }

  std::unique_ptr<ContractMachine> m_Machine = GetParam().NewMachine();
  std::unique_ptr<Host> m_Host = m_Machine->NewHost();
};

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(HostContract);

}  // namespace vex::test

#include "tests/host/FilesContract.h"
#include "tests/host/ProgramsContract.h"
#include "tests/host/RegistryContract.h"
#include "tests/host/TimeContract.h"
#include "tests/host/WindowsContract.h"

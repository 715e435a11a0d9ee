#include "host/virtual/VirtualHost.h"
#include "tests/host/GrowingFilesContract.h"
#include "tests/host/HostContract.h"

namespace vex::test {
namespace {

class VirtualMachine final : public ContractMachine {
 public:
  std::unique_ptr<Host> NewHost() override {
    auto host = std::make_unique<VirtualHost>(DateTime::FromParts(2026, 12, 24, 18, 0, 59), m_Lock);
    host->Files().MakeFolder(Folder());
    return host;
  }
  std::string Folder() override { return "D:\\shows\\"; }
  void HoldUp(Host& host, int32_t lMilliseconds) override {
    auto& clock = dynamic_cast<VirtualClock&>(host.Clock());
    clock.MoveTo(clock.Elapsed() + std::chrono::milliseconds(lMilliseconds));
  }
  std::string ShortProgram() override { return "true"; }

 private:
  VirtualPlayerLock m_Lock = std::make_shared<const void*>(nullptr);
};

INSTANTIATE_TEST_SUITE_P(Virtual, HostContract,
                         testing::Values(ContractFamily{"Virtual",
                                                        [] { return std::make_unique<VirtualMachine>(); }}));

}  // namespace
}  // namespace vex::test

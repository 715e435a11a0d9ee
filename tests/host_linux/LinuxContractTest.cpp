#include <thread>

#include "tests/host/GrowingFilesContract.h"
#include "tests/host/HostContract.h"
#include "tests/host_linux/LinuxMachine.h"

namespace vex::test {
namespace {

class LinuxContractMachine final : public ContractMachine {
 public:
  std::unique_ptr<Host> NewHost() override { return m_Machine.NewHost(); }
  std::string Folder() override {
    const std::string szFolder = m_Machine.Folder() / "files";
    std::filesystem::create_directory(szFolder);
    return LinuxFiles().SystemPath(szFolder) + "\\";
  }
  void HoldUp(Host&, int32_t lMilliseconds) override {
    std::this_thread::sleep_for(std::chrono::milliseconds(lMilliseconds));
  }
  std::string ShortProgram() override { return "true"; }

 private:
  LinuxMachine m_Machine;
};

INSTANTIATE_TEST_SUITE_P(Linux, HostContract,
                         testing::Values(ContractFamily{
                             "Linux", [] { return std::make_unique<LinuxContractMachine>(); }}));

}  // namespace
}  // namespace vex::test

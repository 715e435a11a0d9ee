#include "host/win32/SocketLibrary.h"
#include "tests/host/DatagramsContract.h"
#include "tests/host_win32/WindowsMachine.h"

namespace vex::test {
namespace {

INSTANTIATE_TEST_SUITE_P(Win32, DatagramsContract,
                         testing::Values(NetworkFamily{
                             "Win32", [] { return std::make_unique<Win32EventLoop>(); },
                             [] { return std::make_unique<Win32Datagrams>(); }, WSAEADDRINUSE}));

TEST(Win32Datagrams, TheProgramDoesNotImportTheSocketLibrary) {
  const auto* const base = reinterpret_cast<const uint8_t*>(GetModuleHandleA(nullptr));
  const auto* const head = reinterpret_cast<const IMAGE_NT_HEADERS*>(
      base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
  const IMAGE_DATA_DIRECTORY& imports = head->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* import = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
  std::vector<std::string> names;
  for (; import->Name != 0; ++import) {
    names.emplace_back(reinterpret_cast<const char*>(base + import->Name));
    EXPECT_NE(_stricmp(names.back().c_str(), "ws2_32.dll"), 0);
  }
  EXPECT_FALSE(names.empty());
}

TEST(Win32Datagrams, AProgramEndsAtOnceWhileTheNameServiceIsSilent) {
  constexpr DWORD patience = 20000;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  std::string szCommand = CommandForPart("silent");
  ASSERT_NE(CreateProcessA(nullptr, szCommand.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                           &started),
            0);
  const Handle thread(started.hThread);
  const Handle process(started.hProcess);
  EXPECT_EQ(WaitForSingleObject(process.Get(), patience), WAIT_OBJECT_0);
  DWORD status = 1;
  GetExitCodeProcess(process.Get(), &status);
  EXPECT_EQ(status, 0U);
  TerminateProcess(process.Get(), 1);
}

}  // namespace
}  // namespace vex::test

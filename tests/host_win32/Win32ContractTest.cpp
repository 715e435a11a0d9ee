#include <thread>

#include "tests/host/HostContract.h"
#include "tests/host_win32/WindowsMachine.h"

namespace vex::test {
namespace {

/// The user's short time format for as long as it lives.
class ShortTimeFormat {
 public:
  explicit ShortTimeFormat(const wchar_t* szFormat) {
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTTIME, m_Before, 80);
    SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTTIME, szFormat);
  }
  ~ShortTimeFormat() { SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTTIME, m_Before); }
  ShortTimeFormat(const ShortTimeFormat&) = delete;
  ShortTimeFormat& operator=(const ShortTimeFormat&) = delete;

 private:
  wchar_t m_Before[80] = {};
};

class Win32ContractMachine final : public ContractMachine {
 public:
  std::unique_ptr<Host> NewHost() override { return std::make_unique<Win32Host>(); }
  std::string Folder() override { return m_Folder.Path(); }
  void HoldUp(Host&, int32_t lMilliseconds) override {
    std::this_thread::sleep_for(std::chrono::milliseconds(lMilliseconds));
  }
  std::string ShortProgram() override { return CommandForPart("nothing"); }

 private:
  TemporaryFolder m_Folder;
  ShortTimeFormat m_Format{L"HH:mm"};
  EmptyUserKey m_UserKey;
};

INSTANTIATE_TEST_SUITE_P(Win32, HostContract,
                         testing::Values(ContractFamily{
                             "Win32", [] { return std::make_unique<Win32ContractMachine>(); }}));

TEST(Win32Clock, ShortTimeIsTheUsersFormat) {
  const ShortTimeFormat format(L"'at' H");
  const Win32Clock clock;
  DateTime dtBefore;
  std::string szTime;
  do {
    dtBefore = clock.Now();
    szTime = clock.ShortTime();
  } while (clock.Now() != dtBefore);
  EXPECT_EQ(szTime, "at " + std::to_string(dtBefore.Hour()));
}

TEST(Win32Clock, AnEmptyFormatStillTellsHoursAndMinutes) {
  const ShortTimeFormat format(L"");
  const std::string szTime = Win32Clock().ShortTime();
  EXPECT_NE(szTime.find(':'), std::string::npos) << szTime;
  EXPECT_EQ(szTime.find(':'), szTime.rfind(':')) << szTime << " has seconds";
}

}  // namespace
}  // namespace vex::test

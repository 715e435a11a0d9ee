#include "components/ComponentTable.h"

#include "basic/Error.h"
#include "components/com/MediaControl.h"
#include "components/com/SuiteChannelIO.h"
#include "components/com/SuiteDevices.h"
#include "host/virtual/VirtualHost.h"
#include "tests/com/ComMachine.h"
#include "tests/com/StandInControl.h"

namespace vex::test {
namespace {

class WindowsTableTest : public testing::Test {
 protected:
  WindowsTableTest() : m_Host(DateTime::FromParts(2026, 12, 24, 18, 0, 0)) {}
  Devices Make() {
    return NewDevices({m_Host.Clock(),
                       m_Host.EventLoop(),
                       m_Host.Files(),
                       m_Host.Datagrams(),
                       m_Host.Registry(),
                       [](const std::string& szName, bool) { return szName; },
                       {}});
  }
  void Set(const char* szName, const char* szValue) {
    m_Host.Registry().SetText("Software\\Brillara\\Components", szName, szValue);
  }

  SuiteMachine m_Machine;
  StandInControl m_Media;
  VirtualHost m_Host;
};

TEST_F(WindowsTableTest, SuiteAndMediaControlAreWhatSilentSettingsMean) {
  const Devices devices = Make();
  EXPECT_NE(dynamic_cast<SuiteChannelIO*>(devices.Lights.get()), nullptr);
  EXPECT_NE(dynamic_cast<MediaControl*>(devices.Media.get()), nullptr);
  EXPECT_NE(dynamic_cast<ControlWindow*>(devices.Window.get()), nullptr);
  EXPECT_TRUE(devices.NewSequence());
  EXPECT_TRUE(devices.ShellCommands);
}

TEST_F(WindowsTableTest, BothAreNamedWithoutCase) {
  Set("Lights", "SUITE");
  Set("Media", "Wmp");
  const Devices devices = Make();
  EXPECT_NE(dynamic_cast<SuiteChannelIO*>(devices.Lights.get()), nullptr);
  EXPECT_NE(dynamic_cast<MediaControl*>(devices.Media.get()), nullptr);
}

TEST_F(WindowsTableTest, SuiteThatIsMissingIsNotReplaced) {
  m_Machine.Remove("VexChannelIO.ChannelIO");
  EXPECT_THROW((void)Make(), Error);
  Set("Lights", "open");
  EXPECT_EQ(dynamic_cast<SuiteChannelIO*>(Make().Lights.get()), nullptr);
}

TEST_F(WindowsTableTest, SuiteGoesWithRecordedMedia) {
  Set("Media", "recorded");
  Set("Recording", "D:\\lines.json");
  const Devices devices = Make();
  const auto engine = devices.NewSequence();
  Calls();
  engine->AttachControl(devices.Lights);
  engine->Start();
  EXPECT_EQ(Calls(), "SequenceEngine.AttachControl(DISPATCH:ChannelIO)\nSequenceEngine.Start()\n");
}

TEST_F(WindowsTableTest, SuiteIsInstalledWhenAllThreeAreUnderTheirNames) {
  EXPECT_TRUE(SuiteIsInstalled(m_Host.Registry()));
  Set("SequenceEngine", "Other.Sequence");
  EXPECT_FALSE(SuiteIsInstalled(m_Host.Registry()));
  Set("SequenceEngine", "VexChannelIO.ChannelIO");
  EXPECT_TRUE(SuiteIsInstalled(m_Host.Registry()));
  m_Machine.Remove("VEXSHELLCMDMGRLib.ShellCmdManager");
  EXPECT_FALSE(SuiteIsInstalled(m_Host.Registry()));
}

}  // namespace
}  // namespace vex::test

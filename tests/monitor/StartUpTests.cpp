#include <gtest/gtest.h>

#include "basic/Error.h"
#include "tests/monitor/MonitorRig.h"

namespace vex::test {
namespace {

using Lines = std::vector<std::string>;

TEST(StartUp, LogsItsCourse) {
  MonitorRig rig;
  rig.Start();
  EXPECT_EQ(rig.Log(), (Lines{"1 Show Player starting", "1 Schedule loaded", "1 Show Player initialized"}));
}

TEST(StartUp, WithNoScheduleSaysSoAndStillLoadsTheSchedules) {
  MonitorRig rig;
  rig.CommandLine = "/noschedule";
  rig.Load();
  EXPECT_TRUE(rig.Monitor->NoSchedule());
  EXPECT_EQ(rig.Log(), (Lines{"1 Show Player starting (for on demand shows)", "1 Schedule loaded"}));
}

TEST(StartUp, AnyOtherCommandLineUsesTheSchedules) {
  for (const char* szCommandLine : {"/noschedule ", " /noschedule", "/NoSchedule", "/noschedule /x", "-h"}) {
    MonitorRig rig;
    rig.CommandLine = szCommandLine;
    rig.Load();
    EXPECT_FALSE(rig.Monitor->NoSchedule()) << szCommandLine;
    EXPECT_EQ(rig.Log()[0], "1 Show Player starting");
  }
}

TEST(StartUp, IsInitialisedAfterFourSeconds) {
  MonitorRig rig;
  rig.Load();
  rig.Run(3999);
  EXPECT_FALSE(rig.Monitor->Initialized());
  rig.Run(1);
  EXPECT_TRUE(rig.Monitor->Initialized());
}

TEST(StartUp, NothingPlaysBeforeFiveSeconds) {
  MonitorRig rig;
  rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  rig.Show("eve.shw", {});
  rig.Load();
  rig.Run(4999);
  EXPECT_EQ(rig.CurrentFilename(), "");
  rig.Run(2);
  EXPECT_EQ(rig.CurrentFilename(), "eve.shw");
}

TEST(StartUp, CaptionsTellTheWindowAndTheLastMessage) {
  MonitorRig rig;
  rig.Load();
  EXPECT_NE(rig.Monitor->hWnd(), 0);
  EXPECT_EQ(rig.Monitor->Label1(), "");
  EXPECT_EQ(rig.Monitor->Label2(), std::to_string(rig.Monitor->hWnd()));
  EXPECT_EQ(rig.Monitor->Label3(), "");
  rig.Run(61000);
  rig.Host.Windows().Send({rig.Monitor->hWnd(), 15, 0, 0, nullptr});
  EXPECT_EQ(rig.Monitor->Label1(), "2026-12-24 18:01:01");
}

TEST(StartUp, ConfiguresTheNetworksBeforeTheLinkAndSwitchesTheLinkOffByDefault) {
  MonitorRig rig;
  rig.Load();
  EXPECT_EQ(rig.Calls("link"), (Lines{"link 127.0.0.1 3737 3738", "link special yes", "link off"}));
  EXPECT_EQ(rig.Lines.back(), "link off");
  EXPECT_FALSE(rig.Calls("io openNetwork").empty());
}

TEST(StartUp, SwitchesTheLinkAsItIsStored) {
  MonitorRig rig;
  rig.Host.Registry().SetLong("Software\\Brillara\\XLK", "On", 1);
  rig.Host.Registry().SetText("Software\\Brillara\\XLK", "RemoteHost", "10.0.0.7");
  rig.Host.Registry().SetLong("Software\\Brillara\\XLK", "SupportsSpecial", 0);
  rig.Load();
  EXPECT_EQ(rig.Calls("link"), (Lines{"link 10.0.0.7 3737 3738", "link special no", "link on"}));
}

TEST(StartUp, ASecondInstanceEndsSilentlyAndLeavesTheFirstAlone) {
  const auto lock = std::make_shared<const void*>(nullptr);
  MonitorRig first(lock);
  first.StatusFile = true;
  first.Start();
  MonitorRig second(lock);
  second.StatusFile = true;
  second.Make();
  EXPECT_EQ(second.Monitor->Run(), 0);
  EXPECT_TRUE(second.Monitor->Unloaded());
  EXPECT_EQ(second.Boxes(), Lines{});
  EXPECT_EQ(second.Host.Windows().MainWindow(), 0);
  EXPECT_EQ(second.Lines, Transcript{});
  EXPECT_EQ(second.Status(), "none");
  EXPECT_FALSE(first.Monitor->Unloaded());
}

TEST(StartUp, AFormThatIsAlreadyShuttingDownUnloads) {
  MonitorRig rig;
  rig.Make();
  rig.Monitor->Form_Initialize();
  rig.Monitor->RequestGracefulShutdown();
  rig.Monitor->Form_Load();
  EXPECT_TRUE(rig.Monitor->Unloaded());
  EXPECT_FALSE(rig.Logged("1 Show Player starting"));
}

TEST(StartUp, ACommPortThatIsOpenIsAMessageBoxAndTheEnd) {
  MonitorRig rig;
  rig.Lights->FailOpen = "comm port in use";
  rig.Make();
  EXPECT_EQ(rig.Monitor->Run(), 1);
  EXPECT_EQ(
      rig.Boxes(),
      Lines{": Shows can not be enabled because the comm port is already open.  If the Brillara Hardware "
            "Utility is running, shut it down and then enable shows."});
  EXPECT_TRUE(rig.Monitor->Unloaded());
}

TEST(StartUp, AnyOtherErrorIsAMessageBoxWithDescriptionAndSource) {
  MonitorRig rig;
  rig.FailDevices = [] { throw Error(429, "ComponentTable", "No such component"); };
  rig.Make();
  EXPECT_EQ(rig.Monitor->Run(), 1);
  EXPECT_EQ(rig.Boxes(),
            Lines{": Shows cannot be enabled because of an error.No such component/ComponentTable"});
}

TEST(StartUp, AFailureOfTheLanguageIsAMessageBoxToo) {
  MonitorRig rig;
  rig.FailDevices = [] { throw std::runtime_error("out of luck"); };
  rig.Make();
  EXPECT_EQ(rig.Monitor->Run(), 1);
  EXPECT_EQ(rig.Boxes(), Lines{": Shows cannot be enabled because of an error.out of luck/"});
}

TEST(StartUp, AWindowThatCannotBeMadeIsAMessageBox) {
  MonitorRig rig;
  rig.Host.Windows().FailNewWindow(98);
  rig.Make();
  EXPECT_EQ(rig.Monitor->Run(), 1);
  ASSERT_EQ(rig.Boxes().size(), 1U);
  EXPECT_EQ(rig.Boxes()[0],
            ": Shows cannot be enabled because of an error.Cannot make the window/Windows.NewWindow");
}

TEST(StartUp, ALinkThatFailsIsAMessageBox) {
  MonitorRig rig;
  rig.Lights->FailLink = "no network";
  rig.Make();
  EXPECT_EQ(rig.Monitor->Run(), 1);
  EXPECT_EQ(rig.Boxes(), Lines{": Shows cannot be enabled because of an error.no network/ChannelIO"});
  rig.Run(10000);
  EXPECT_FALSE(rig.Logged("1 Show Player initialized"));
}

TEST(StartUp, AScheduleThatCannotBeParsedIsAMessageBox) {
  MonitorRig rig;
  rig.Host.Files().Put("D:\\Data\\weeksched.qsc", "((a),b),c)");
  rig.Make();
  EXPECT_EQ(rig.Monitor->Run(), 1);
  ASSERT_EQ(rig.Boxes().size(), 1U);
  EXPECT_TRUE(rig.Boxes()[0].starts_with(": Shows cannot be enabled because of an error."));
  EXPECT_FALSE(rig.Logged("1 Schedule loaded"));
}

TEST(StartUp, AShutdownThatComesWhileTheBoxStandsUnloadsOnce) {
  MonitorRig rig;
  rig.Lights->FailLink = "no network";
  rig.Make();
  rig.Host.MessageBoxes().OnShow([&](const auto&) { rig.Send(MessageShutdown); });
  EXPECT_EQ(rig.Monitor->Run(), 1);
  EXPECT_EQ(std::count(rig.AllLines.begin(), rig.AllLines.end(), "1 Show Player shutting down"), 1);
}

TEST(StartUp, AnInvalidInstallationEndsTheProgramAtOnce) {
  MonitorRig rig;
  rig.CheckInstallation = true;
  rig.Make();
  EXPECT_EQ(rig.Monitor->Run(), 1);
  EXPECT_EQ(rig.Boxes(), Lines{"Brillara: Brillara is not correctly installed."});
  EXPECT_EQ(rig.AllLines, Lines{});
  EXPECT_EQ(rig.Lines, Transcript{});
}

TEST(StartUp, AValidInstallationGoesOn) {
  MonitorRig rig;
  rig.CheckInstallation = true;
  rig.Host.Registry().SetLong("Software\\Brillara", "PostInstall", 1);
  rig.Host.Registry().SetLong("Software\\Brillara", "PostInstallVer", 5);
  rig.Host.Registry().SetText("Software\\Brillara", "AppPath", "C:\\VexMonitor");
  rig.Start();
  EXPECT_TRUE(rig.Monitor->Initialized());
  EXPECT_EQ(rig.Monitor->ExitStatus(), 0);
}

TEST(StartUp, AFormThatIsDroppedWithoutUnloadGoesInSilence) {
  MonitorRig rig;
  rig.StatusFile = true;
  rig.Week({{"eve.shw", 4, "17:00:00", "22:00:00"}});
  rig.Show("eve.shw", {});
  rig.Start();
  rig.KnowTray();
  rig.Run(1000);
  ASSERT_EQ(rig.CurrentFilename(), "eve.shw");
  rig.ForgetTray();
  rig.AllLines.clear();
  rig.Monitor.reset();
  EXPECT_EQ(rig.Tray(), Lines{});
  EXPECT_EQ(rig.AllLines, Lines{});
  EXPECT_EQ(rig.Status(), "none");
  EXPECT_EQ(rig.Host.Windows().MainWindow(), 0);
}

}  // namespace
}  // namespace vex::test

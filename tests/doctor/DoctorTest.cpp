#include "tools/doctor/Doctor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "host/virtual/VirtualHost.h"

namespace vex {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Verdict = FacilityAnswer::Verdict;

const char* const Product = "Software\\Brillara";
const char* const Eve =
    "((0,1,2,0,,(s.vexseq),T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,,T,F,F),(0,1,2,0,,(m.vexseq),T,F,F),,"
    "(2,0,1,0,,,T,F,F),,0,,F)";

/// A machine on which all is well; each test breaks one thing.
class DoctorTest : public testing::Test {
 protected:
  void SetUp() override {
    Host.Files().ProgramFolder("C:\\VexMonitor");
    Host.Files().Put("C:\\VexMonitor\\VexPostInstall", "");
    Host.Files().Put("C:\\settings.reg", "REGEDIT4\r\n");
    Host.Files().Put("D:\\weeksched.qsc", "((424800,2,(,0,eve.shw),410400))\r\n");
    Host.Files().Put("D:\\yearsched.qsc", "((2026-12-24,((417600,2,(,0,D:\\eve.shw),414000))))\r\n");
    Host.Files().Put("D:\\eve.shw", Eve);
    Host.Files().Put("D:\\s.vexseq", R"({"format":"vexseq","version":1,"duration":1})");
    Host.Files().Put("D:\\m.vexseq", R"({"format":"vexseq","version":1,"duration":1,"media":"song.ogg"})");
    Host.Files().Put("D:\\song.ogg", "music");
    Set("AppPath", "", "C:\\VexMonitor\\");
    Set("PostInstall", "", 1);
    Set("PostInstallVer", "", 5);
    Set("UserDataPath", "", "D:\\");
    Set("AudioPath", "Shared", "D:\\");
    Set("NonAudioPath", "Shared", "D:\\");
    // The open components on every machine, whichever would be chosen there.
    Set("Lights", "Components", "open");
    Set("Media", "Components", "mpv");
    Player = 7;
  }
  static std::string Key(const std::string& szSubkey) {
    return std::string(Product) + (szSubkey.empty() ? "" : "\\" + szSubkey);
  }
  void Set(const char* szName, const char* szSubkey, const char* szText) {
    Host.Registry().SetText(Key(szSubkey), szName, szText);
  }
  void Set(const char* szName, const char* szSubkey, uint32_t number) {
    Host.Registry().SetLong(Key(szSubkey), szName, number);
  }
  [[nodiscard]] std::vector<Finding> All() {
    return Examine({Host.Clock(),
                    Host.EventLoop(),
                    Host.Files(),
                    Host.Registry(),
                    Host.Datagrams(),
                    Host.Facilities(),
                    Host.Processes(),
                    Host.MessageBoxes(),
                    "C:\\settings.reg",
                    Player,
                    SongTrouble,
                    {"", "", "", "start it so", "meet elsewhere"}});
  }
  /// "LEVEL FOUND" of a subject's lines.
  [[nodiscard]] std::vector<std::string> Of(const std::string& szSubject) {
    std::vector<std::string> lines;
    for (const Finding& finding : All()) {
      if (finding.Subject != szSubject) continue;
      EXPECT_EQ(finding.Remedy.empty(), finding.Level == FindingLevel::Good) << finding.Found;
      lines.push_back(std::string(LevelWord(finding.Level)) + " " + finding.Found);
    }
    return lines;
  }
  /// Only that subject is anything but good.
  void ExpectOnly(const std::string& szSubject) {
    for (const Finding& finding : All()) {
      if (finding.Subject != szSubject) {
        EXPECT_EQ(finding.Level, FindingLevel::Good) << finding.Subject << ": " << finding.Found;
      }
    }
  }

  VirtualHost Host;
  WindowHandle Player = 7;
  std::function<std::string(const std::string&)> SongTrouble;
};

TEST_F(DoctorTest, AGoodMachineHasAGoodLineForEachSubject) {
  std::vector<std::string> subjects;
  for (const Finding& finding : All()) {
    EXPECT_EQ(finding.Level, FindingLevel::Good) << finding.Subject << ": " << finding.Found;
    EXPECT_EQ(finding.Remedy, "");
    subjects.push_back(finding.Subject);
  }
  EXPECT_THAT(subjects,
              ElementsAre("account", "installation", "settings", "user data folder", "sequence folder",
                          "song folder", "weekly schedule", "dated schedule", "show D:\\eve.shw",
                          "show eve.shw", "rights", "components", "lights", "link", "sound", "display",
                          "clock", "disk space", "meeting place", "player"));
}

TEST_F(DoctorTest, AnAccountThatMayDoEverythingIsAWarning) {
  Host.Facilities().Account = {Verdict::No, "root"};
  EXPECT_THAT(Of("account"), ElementsAre(HasSubstr("warning this is root")));
  ExpectOnly("account");
}

TEST_F(DoctorTest, AnotherProgramFolderThanTheRecordedOneIsAWarning) {
  Set("AppPath", "", "C:\\Elsewhere\\");
  EXPECT_THAT(Of("installation"), ElementsAre(HasSubstr("warning the settings have no record")));
  ExpectOnly("installation");
}

TEST_F(DoctorTest, WithoutThePostInstallationProgramItIsBad) {
  Set("PostInstall", "", 0U);
  Host.Files().Remove("C:\\VexMonitor\\VexPostInstall");
  EXPECT_THAT(Of("installation"), ElementsAre(HasSubstr("bad VexPostInstall is missing in C:\\VexMonitor")));
}

TEST_F(DoctorTest, EachLineOfTheSettingsThatCannotBeReadIsBad) {
  Host.Files().Put("C:\\settings.reg", "REGEDIT4\n\n[HKEY_CURRENT_USER\\A]\n\"a\"=dword:zz\n\"b\"=\"open\n");
  EXPECT_THAT(Of("settings"), ElementsAre(HasSubstr("bad C:\\settings.reg line 4: "),
                                          HasSubstr("bad C:\\settings.reg line 5: ")));
  ExpectOnly("settings");
}

TEST_F(DoctorTest, MissingSettingsAreAWarning) {
  Host.Files().Remove("C:\\settings.reg");
  EXPECT_THAT(Of("settings"), ElementsAre(HasSubstr("warning there is no C:\\settings.reg")));
}

TEST_F(DoctorTest, LockedSettingsAreBad) {
  Host.Files().FailReads("C:\\settings.reg");
  EXPECT_THAT(Of("settings"), ElementsAre("bad C:\\settings.reg cannot be read: Permission denied"));
}

TEST_F(DoctorTest, NoUserDataFolderIsBadAndSchedulesAreNotAskedFor) {
  Set("UserDataPath", "", "");
  EXPECT_THAT(Of("user data folder"), ElementsAre("bad the settings name none"));
  EXPECT_THAT(Of("weekly schedule"), IsEmpty());
}

TEST_F(DoctorTest, AUserDataFolderThatIsNoneIsBad) {
  Host.Facilities().RightsOf["D:\\"] = FileRights{};
  EXPECT_THAT(Of("user data folder"), ElementsAre("bad D:\\ is no folder"));
  Host.Facilities().RightsOf["D:\\"] = FileRights{true, false, true, true, false, "player"};
  EXPECT_THAT(Of("user data folder"), ElementsAre("bad D:\\ is no folder"));
}

TEST_F(DoctorTest, AUserDataFolderOfSomebodyElseIsNamedWithItsOwner) {
  Host.Facilities().RightsOf["D:\\"] = FileRights{true, true, false, false, false, "eva"};
  EXPECT_THAT(Of("user data folder"), ElementsAre(AllOf(HasSubstr("bad "), HasSubstr("belongs to eva"))));
}

TEST_F(DoctorTest, AUserDataFolderThatCannotBeWrittenToIsAWarning) {
  Host.Facilities().RightsOf["D:\\"] = FileRights{true, true, true, false, false, "eva"};
  EXPECT_THAT(Of("user data folder"), ElementsAre(HasSubstr("warning D:\\ may not be written to")));
  ExpectOnly("user data folder");
}

TEST_F(DoctorTest, SequenceFoldersAreLookedAtEach) {
  Set("NonAudioPath", "Shared", "");
  Set("AudioPath", "Shared", "E:\\songs");
  Host.Facilities().RightsOf["E:\\songs\\"] = FileRights{};
  EXPECT_THAT(Of("sequence folder"), ElementsAre(HasSubstr("warning the settings name none")));
  EXPECT_THAT(Of("song folder"), ElementsAre("bad E:\\songs\\ is no folder"));
}

TEST_F(DoctorTest, ADamagedScheduleIsBadWithItsPlace) {
  Host.Files().Put("D:\\weeksched.qsc", "((424800,2,(,0,eve.shw)");
  EXPECT_THAT(Of("weekly schedule"), ElementsAre(HasSubstr("bad D:\\weeksched.qsc is damaged: ")));
  Host.Files().Put("D:\\yearsched.qsc", "((2026-13-24,((417600,2,(,0,x.shw),414000))))");
  EXPECT_THAT(Of("dated schedule"), ElementsAre(HasSubstr("bad D:\\yearsched.qsc is damaged: ")));
}

TEST_F(DoctorTest, AScheduleThatCannotBeReadIsBad) {
  Host.Files().FailReads("D:\\yearsched.qsc");
  EXPECT_THAT(Of("dated schedule"), ElementsAre("bad D:\\yearsched.qsc cannot be read: Permission denied"));
}

TEST_F(DoctorTest, AMissingScheduleIsAnEmptyOne) {
  Host.Files().Remove("D:\\yearsched.qsc");
  EXPECT_THAT(Of("dated schedule"), ElementsAre("good none; there is no D:\\yearsched.qsc"));
  EXPECT_THAT(Of("schedules"), IsEmpty());
}

TEST_F(DoctorTest, SchedulesWithoutAShowAreAWarning) {
  Host.Files().Remove("D:\\yearsched.qsc");
  Host.Files().Put("D:\\weeksched.qsc", "()");
  EXPECT_THAT(Of("schedules"), ElementsAre(HasSubstr("warning no show stands in them")));
}

TEST_F(DoctorTest, ADamagedScheduleIsNotCalledEmpty) {
  Host.Files().Remove("D:\\yearsched.qsc");
  Host.Files().Put("D:\\weeksched.qsc", "((");
  EXPECT_THAT(Of("schedules"), IsEmpty());
}

TEST_F(DoctorTest, AMissingShowIsBadAndSaysWhereItBelongs) {
  Host.Files().Put("D:\\weeksched.qsc", "((424800,2,(,0,gone.shw),410400))\r\n");
  EXPECT_THAT(Of("show gone.shw"), ElementsAre("bad its file is missing or cannot be read"));
  EXPECT_THAT(All(),
              Contains(Field(&Finding::Remedy, HasSubstr("put it into the user data folder \"D:\\\""))));
}

TEST_F(DoctorTest, EachMissingFileOfAShowIsBad) {
  Host.Files().Remove("D:\\s.vexseq");
  Host.Files().Remove("D:\\song.ogg");
  EXPECT_THAT(Of("show eve.shw"), ElementsAre(AllOf(HasSubstr("bad "), HasSubstr("s.vexseq")),
                                              HasSubstr("bad song \"song.ogg\" of sequence \"m.vexseq\"")));
}

TEST_F(DoctorTest, ASongThatCannotBePlayedIsBad) {
  SongTrouble = [](const std::string& szPath) { return szPath == "D:\\song.ogg" ? "no sound in it" : ""; };
  EXPECT_THAT(Of("show eve.shw"), ElementsAre(HasSubstr("cannot be played: no sound in it")));
}

TEST_F(DoctorTest, WhatOthersMayChangeIsAWarningEach) {
  for (const char* szPath : {"C:\\settings.reg", "D:\\eve.shw"})
    Host.Facilities().RightsOf[szPath] = FileRights{true, false, true, true, true, "eva"};
  EXPECT_THAT(Of("rights"), ElementsAre(HasSubstr("warning C:\\settings.reg (of eva)"),
                                        HasSubstr("warning D:\\eve.shw (of eva)"),
                                        HasSubstr("warning D:\\eve.shw (of eva)")));
}

TEST_F(DoctorTest, AComponentThatThereIsNotIsBad) {
  Set("Lights", "Components", "laser");
  EXPECT_THAT(Of("components"), ElementsAre(AllOf(HasSubstr("bad "), HasSubstr("\"laser\""))));
}

TEST_F(DoctorTest, RecordedComponentsAreAWarning) {
  Set("Lights", "Components", "Recorded");
  EXPECT_THAT(Of("components"), ElementsAre(HasSubstr("warning lights \"recorded\"")));
  EXPECT_THAT(Of("lights"), IsEmpty());
}

TEST_F(DoctorTest, TheWayToTheLightsIsAskedForWhereTheyGo) {
  Set("FirstUniverse", "Output", 300U);
  EXPECT_THAT(Of("lights"), ElementsAre("good E1.31 to multicast, by eth0"));
  EXPECT_EQ(Host.Facilities().AskedRoute, 0xEFFF012CU);
  Set("Protocol", "Output", "ArtNet");
  EXPECT_THAT(Of("lights"), ElementsAre("good Art-Net to broadcast, by eth0"));
  EXPECT_EQ(Host.Facilities().AskedRoute, 0xFFFFFFFFU);
  Set("Host", "Output", "10.0.0.5");
  Set("Interface", "Output", "10.0.0.1");
  EXPECT_THAT(Of("lights"), ElementsAre("good Art-Net to 10.0.0.5, by eth0"));
  EXPECT_EQ(Host.Facilities().AskedRoute, 0x0A000005U);
  EXPECT_EQ(Host.Facilities().AskedInterface, 0x0A000001U);
}

TEST_F(DoctorTest, NoWayToTheLightsIsBad) {
  Host.Facilities().Route = {Verdict::No, "Network is unreachable"};
  EXPECT_THAT(Of("lights"), ElementsAre("bad E1.31 to multicast has no way out: Network is unreachable"));
  ExpectOnly("lights");
}

TEST_F(DoctorTest, AWayThatCannotBeAskedForIsAWarning) {
  Host.Facilities().Route = {};
  EXPECT_THAT(Of("lights"), ElementsAre(HasSubstr("warning E1.31 to multicast")));
}

TEST_F(DoctorTest, LightsThatAreSentNowhereAreTold) {
  Set("Protocol", "Output", "none");
  EXPECT_THAT(Of("lights"), ElementsAre(HasSubstr("warning the protocol is \"none\"")));
  Set("Protocol", "Output", "smoke");
  EXPECT_THAT(Of("lights"), ElementsAre(HasSubstr("bad the protocol in the settings is not known")));
  Set("Protocol", "Output", "sacn");
  Set("Host", "Output", "unknown.example");
  EXPECT_THAT(Of("lights"), ElementsAre(HasSubstr("bad the name service does not know the host")));
  Set("Host", "Output", "");
  Set("Interface", "Output", "eth0");
  EXPECT_THAT(Of("lights"), ElementsAre("bad the interface \"eth0\" is no dotted address"));
}

TEST_F(DoctorTest, ALinkPortThatSomebodyHoldsIsBad) {
  Set("On", "XLK", 1U);
  Player = 0;
  EXPECT_THAT(Of("link"), ElementsAre("good on, port 3737, triggers from 127.0.0.1"));
  Host.Datagrams().FailNewReceiver(EADDRINUSE);
  EXPECT_THAT(Of("link"), ElementsAre(HasSubstr("bad port 3737 cannot be opened: ")));
}

TEST_F(DoctorTest, ThePortOfTheRunningPlayerIsNotTried) {
  Set("On", "XLK", 1U);
  Host.Datagrams().FailNewReceiver(EADDRINUSE);
  EXPECT_THAT(Of("link"), ElementsAre(HasSubstr("good on")));
}

TEST_F(DoctorTest, AnUnknownSenderOfTriggersIsBad) {
  Set("On", "XLK", 1U);
  Set("RemoteHost", "XLK", "button.example");
  EXPECT_THAT(Of("link"), ElementsAre(HasSubstr("bad the name service does not know")));
}

TEST_F(DoctorTest, SoundIsNeededForSongsOnly) {
  Host.Facilities().Sound = {Verdict::No, "there is no card"};
  EXPECT_THAT(Of("sound"), ElementsAre("bad there is no card"));
  ExpectOnly("sound");
  Host.Files().Put("D:\\m.vexseq", R"({"format":"vexseq","version":1,"duration":1})");
  EXPECT_THAT(Of("sound"), ElementsAre("good no scheduled show names a song"));
}

TEST_F(DoctorTest, SoundThatIsSwitchedOffOrCannotBeTriedIsAWarning) {
  Host.Facilities().Sound = {Verdict::Unknown, "another machine's server"};
  EXPECT_THAT(Of("sound"), ElementsAre("warning another machine's server"));
  Set("AudioOutput", "Components", "null");
  EXPECT_THAT(Of("sound"), ElementsAre(HasSubstr("warning the settings choose the output \"null\"")));
}

TEST_F(DoctorTest, NoDisplayIsAWarningWhereVideosAreWanted) {
  Host.Facilities().Screen = {Verdict::No, "nobody answers"};
  EXPECT_THAT(Of("display"), ElementsAre(HasSubstr("warning nobody answers")));
  ExpectOnly("display");
  Set("DisplayVideos", "Shared\\VideoPreferences", 0U);
  EXPECT_THAT(Of("display"), ElementsAre(HasSubstr("good none needed")));
  Set("DisplayVisualizations", "Shared\\VideoPreferences", 1U);
  EXPECT_THAT(Of("display"), ElementsAre(HasSubstr("warning nobody answers")));
}

TEST_F(DoctorTest, AClockThatNobodyKeepsIsAWarning) {
  Host.Facilities().Clock = {Verdict::No, "no time service"};
  EXPECT_THAT(Of("clock"), ElementsAre("warning no time service; it is 2026-12-24 18:00:00 here"));
  ExpectOnly("clock");
}

TEST_F(DoctorTest, AClockOfAnotherAgeIsBad) {
  VirtualHost old(DateTime::FromParts(1970, 1, 1));
  const auto findings = Examine({old.Clock(), old.EventLoop(), old.Files(), old.Registry(), old.Datagrams(),
                                 old.Facilities(), old.Processes(), old.MessageBoxes(), "", 0, nullptr});
  EXPECT_THAT(findings,
              Contains(AllOf(Field(&Finding::Subject, "clock"), Field(&Finding::Level, FindingLevel::Bad))));
}

TEST_F(DoctorTest, LittleSpaceIsAWarningAndHardlyAnyIsBad) {
  Host.Facilities().Disk = DiskSpace{200'000'000, false};
  EXPECT_THAT(Of("disk space"), ElementsAre("good 200 MB free at D:\\"));
  Host.Facilities().Disk = DiskSpace{199'999'999, false};
  EXPECT_THAT(Of("disk space"), ElementsAre("warning 199 MB free at D:\\"));
  Host.Facilities().Disk = DiskSpace{19'999'999, false};
  EXPECT_THAT(Of("disk space"), ElementsAre("bad 19 MB free at D:\\"));
  ExpectOnly("disk space");
}

TEST_F(DoctorTest, ADiskThatIsReadOnlyIsBad) {
  Host.Facilities().Disk = DiskSpace{100'000'000'000, true};
  EXPECT_THAT(Of("disk space"), ElementsAre(HasSubstr("bad D:\\ lies on a disk that is read-only")));
}

TEST_F(DoctorTest, AMeetingPlaceThatCannotBeUsedIsBad) {
  Host.Facilities().Meeting = {Verdict::No, "/tmp/x belongs to another user"};
  EXPECT_THAT(Of("meeting place"), ElementsAre("bad /tmp/x belongs to another user"));
  EXPECT_THAT(All(), Contains(Field(&Finding::Remedy, "meet elsewhere")));
  ExpectOnly("meeting place");
}

TEST_F(DoctorTest, APlayerThatDoesNotRunIsAWarning) {
  Player = 0;
  EXPECT_THAT(Of("player"), ElementsAre("warning no player is running"));
  EXPECT_THAT(All(), Contains(Field(&Finding::Remedy, "start it so")));
  ExpectOnly("player");
}

TEST_F(DoctorTest, AMachineThatCannotBeAskedIsNeverBad) {
  Facilities unknown;
  const auto findings =
      Examine({Host.Clock(), Host.EventLoop(), Host.Files(), Host.Registry(), Host.Datagrams(), unknown,
               Host.Processes(), Host.MessageBoxes(), "", 7, nullptr});
  for (const Finding& finding : findings) {
    EXPECT_NE(finding.Level, FindingLevel::Bad) << finding.Subject;
  }
}

}  // namespace
}  // namespace vex

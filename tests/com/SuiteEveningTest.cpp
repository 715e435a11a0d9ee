#include <memory>
#include <string>
#include <vector>

#include "components/com/SuiteDevices.h"
#include "host/virtual/VirtualHost.h"
#include "monitor/frmMonitor.h"
#include "player/SequencePlayInfo.h"
#include "schedule/ScheduleFunctions.h"
#include "tests/com/ComMachine.h"
#include "tests/com/StandInControl.h"
#include "time/WeekTimeFunctions.h"

// The whole player on a virtual clock with the tests' components under it: what they are asked, call by call,
// while shows start, play and end, and what people read when something is missing.

namespace vex::test {
namespace {

class SuiteEveningTest : public testing::Test {
 protected:
  SuiteEveningTest() : m_Host(DateTime::FromParts(2026, 12, 24, 18, 0, 0)) {
    m_Host.Registry().SetText("Software\\Brillara", "UserDataPath", "D:\\Data");
  }
  ~SuiteEveningTest() override { m_Monitor.reset(); }

  void Load() {
    const auto newDevices = [this] {
      Devices devices;
      MakeSuiteLights(m_Host.Registry(), devices);
      MakeMediaControl(m_Host.Clock(), m_Host.EventLoop(), devices);
      return devices;
    };
    const auto trace = [this](int32_t lLevel, const std::string& szText, const SequencePlayInfo*) {
      if (lLevel > 0) m_Log += std::to_string(lLevel) + " " + szText + "\n";
    };
    m_Monitor = std::make_unique<frmMonitor>(
        MonitorSurroundings{m_Host.Clock(), m_Host.EventLoop(), m_Host.Windows(), m_Host.Registry(),
                            m_Host.Files(), m_Host.Processes(), m_Host.SingleInstance(),
                            m_Host.MessageBoxes(), newDevices, "", 1, "", 4711, false, trace, false});
    m_Monitor->Form_Initialize();
    m_Monitor->Form_Load();
  }
  /// A show with one song, in force this evening.
  void PutShow() {
    Schedule week;
    week.AddShowEventByFile("eve.shw", NewWeekTime(4, 17, 0, 0), NewWeekTime(4, 22, 0, 0));
    m_Host.Files().Put("D:\\Data\\weeksched.qsc", ScheduleToText(week) + "\r\n");
    m_Host.Files().Put("eve.shw", "((2,0,1,0,,),(2,0,1,0,,),(1,0,1,0,,),(0,1,2,0,,(carol.seq)),)\r\n");
  }
  void Run(int64_t milliseconds) { m_Host.EventLoop().Advance(milliseconds); }
  std::string Box() {
    const auto& boxes = m_Host.MessageBoxes().Shown();
    return boxes.empty() ? "" : boxes.back().Title + "|" + boxes.back().Text;
  }

  SuiteMachine m_Machine;
  VirtualHost m_Host;
  StandInControl m_Media;
  std::string m_Log;
  std::unique_ptr<frmMonitor> m_Monitor;
};

TEST_F(SuiteEveningTest, StartUpConfiguresOpensAndLinksTheControl) {
  Load();
  std::string szWanted = "ChannelIO is listened to\n";
  for (int32_t lNetwork = 0; lNetwork < 4; ++lNetwork) {
    const std::string szNetwork = std::to_string(lNetwork);
    szWanted += "ChannelIO.ConfigureValue(I4:" + szNetwork + ", I2:2)\n" +
                "ChannelIO.ConfigureFlag(I4:" + szNetwork + ", BOOL:0)\n" +
                "ChannelIO.OpenNetwork(UI1:" + szNetwork + ", UI1&:" + (lNetwork == 0 ? "1" : "0") + ")\n";
  }
  szWanted +=
      "ChannelIO.ClearTriggers()\n"
      "ChannelIO.SetLink(BSTR:127.0.0.1, I2:3737, I2:3738)\n"
      "ChannelIO.SupportsSpecial = BOOL:-1\n"
      "ChannelIO.LinkEnabled = BOOL:0\n";
  EXPECT_EQ(Calls(), szWanted);
  EXPECT_EQ(Box(), "");
}

TEST_F(SuiteEveningTest, PortThatIsTakenIsToldInItsOwnWords) {
  SuiteRaise("ChannelIO.OpenNetwork", static_cast<HRESULT>(0x800A1F45), 0, L"VexChannelIO", L"busy", FALSE);
  Load();
  EXPECT_EQ(Box(),
            "|Shows can not be enabled because the comm port is already open.  If the Brillara Hardware "
            "Utility is running, shut it down and then enable shows.");
}

TEST_F(SuiteEveningTest, OtherErrorOfTheControlIsToldWithItsSource) {
  SuiteRaise("ChannelIO.SetLink", static_cast<HRESULT>(0x800A0005), 0, L"VexChannelIO", L"no such host",
             FALSE);
  Load();
  EXPECT_EQ(Box(), "|Shows cannot be enabled because of an error.no such host/VexChannelIO");
}

TEST_F(SuiteEveningTest, MissingControlOrManagerIsToldAtStartUp) {
  m_Machine.Remove("VexChannelIO.ChannelIO");
  Load();
  EXPECT_TRUE(
      Box().starts_with("|Shows cannot be enabled because of an error.The component ChannelIO "
                        "(program id \"VexChannelIO.ChannelIO\") cannot be created: "))
      << Box();
}

TEST_F(SuiteEveningTest, MissingManagerIsToldAtStartUp) {
  m_Machine.Remove("VEXSHELLCMDMGRLib.ShellCmdManager");
  Load();
  EXPECT_NE(Box().find("ShellCommandManager (program id \"VEXSHELLCMDMGRLib.ShellCmdManager\")"),
            std::string::npos)
      << Box();
}

/// The evening with the song under way.
class SuiteSongTest : public SuiteEveningTest {
 protected:
  void Start() {
    PutShow();
    const VARIANT media = TextValue(L"C:\\carol.wav");
    const VARIANT playing = LongValue(1);
    const VARIANT yes = BooleanValue(true);
    SuiteReturn("SequenceEngine.MediaFile", &media);
    SuiteReturn("SequenceEngine.PlayState", &playing);
    SuiteReturn("ChannelIO.AcceptsUnit", &yes);
    SuiteReturn("ChannelIO.AcceptsCircuit", &yes);
    m_Media.State = 3;
    Load();
    Run(4999);
    Calls();
    (void)m_Media.TakeCalls();
    while (m_Started.find("SequenceEngine.Start()\n") == std::string::npos &&
           m_Host.Clock().Elapsed() < std::chrono::seconds(9)) {
      Run(1);
      m_Started += Calls();
    }
  }

  std::string m_Started;
};

TEST_F(SuiteSongTest, SongIsLoadedPreparedAndStartedWithItsMedia) {
  Start();
  EXPECT_EQ(m_Started,
            "SequenceEngine is listened to\n"
            "SequenceEngine.AttachControl(DISPATCH:ChannelIO)\n"
            "SequenceEngine.Load(BSTR:carol.seq)\n"
            "SequenceEngine.PlayRate = R8:1\n"
            "SequenceEngine.MediaFile()\n"
            "SequenceEngine.PlayOptions(BOOL:0, BOOL:-1)\n"
            "SequenceEngine.PrepareForPlay(BOOL:-1)\n"
            "SequenceEngine.UsesNetwork(I4:3)\n"
            "SequenceEngine.UsesNetwork(I4:4)\n"
            "SequenceEngine.ShellCommand()\n"
            "SequenceEngine.MediaFile()\n"
            "SequenceEngine.InitMusicSync(I4:0)\n"
            "SequenceEngine.Start()\n"
            "SequenceEngine.PlayState()\n"
            "SequenceEngine.SyncToMusic(I4:0)\n"
            "SequenceEngine.GetEvent()\n"
            "SequenceEngine.PlayState()\n");
  EXPECT_EQ(m_Media.TakeCalls(),
            "newMedia(C:\\carol.wav)\n"
            "currentMedia = C:\\carol.wav\n"
            "currentPosition = 0.000000\n"
            "play\n");
}

TEST_F(SuiteSongTest, DueEventsGoFromTheEngineToTheControl) {
  Start();
  PropertiesObject event{{{L"Network", LongValue(0)},
                          {L"UnitId", LongValue(2)},
                          {L"Circuit", LongValue(5)},
                          {L"StartLevel", DoubleValue(0)},
                          {L"EndLevel", DoubleValue(100)},
                          {L"Command", TextValue(L"fade")},
                          {L"Rate", DoubleValue(2)},
                          {L"StartTime", LongValue(1000)},
                          {L"EndTime", LongValue(1500)}}};
  const VARIANT given = ObjectValue(&event);
  SuiteReturnNext("SequenceEngine.GetEvent", &given);
  m_Media.Position = 0.2504;
  Run(1);
  EXPECT_EQ(Calls(),
            "SequenceEngine.PlayState()\n"
            "SequenceEngine.SyncToMusic(I4:250)\n"
            "SequenceEngine.GetEvent()\n"
            "ChannelIO.AcceptsUnit(I4:0, I4:2)\n"
            "ChannelIO.AcceptsCircuit(I4:0, I4:2, I4:5)\n"
            "ChannelIO.SendEvent(I4:0, I4:2, I4:5, R8:0, R8:100, BSTR:fade, R8:2, I4:1000, I4:1500, I4:250)\n"
            "SequenceEngine.GetEvent()\n"
            "ChannelIO.Flush()\n"
            "SequenceEngine.PlayState()\n");
  Run(1);
  EXPECT_EQ(Calls(),
            "SequenceEngine.PlayState()\n"
            "SequenceEngine.SyncToMusic(I4:250)\n"
            "SequenceEngine.GetEvent()\n"
            "SequenceEngine.PlayState()\n")
      << "a component that cannot tell is asked every millisecond";
  EXPECT_EQ(event.References(), 1U);
}

TEST_F(SuiteSongTest, RefusedUnitIsNotAskedForItsCircuitAndStillFlushed) {
  Start();
  std::vector<std::pair<std::wstring, VARIANT>> properties;
  for (const wchar_t* szName :
       {L"Network", L"UnitId", L"Circuit", L"StartLevel", L"EndLevel", L"Rate", L"StartTime", L"EndTime"})
    properties.emplace_back(szName, LongValue(1));
  properties.emplace_back(L"Command", TextValue(L""));
  PropertiesObject event{properties};
  const VARIANT given = ObjectValue(&event);
  const VARIANT no = BooleanValue(false);
  SuiteReturnNext("SequenceEngine.GetEvent", &given);
  SuiteReturnNext("ChannelIO.AcceptsUnit", &no);
  Run(1);
  EXPECT_EQ(Calls(),
            "SequenceEngine.PlayState()\n"
            "SequenceEngine.SyncToMusic(I4:0)\n"
            "SequenceEngine.GetEvent()\n"
            "ChannelIO.AcceptsUnit(I4:1, I4:1)\n"
            "SequenceEngine.GetEvent()\n"
            "ChannelIO.Flush()\n"
            "SequenceEngine.PlayState()\n");
}

TEST_F(SuiteSongTest, EndOfTheMediaStopsTheSequence) {
  Start();
  Run(1);
  Calls();
  (void)m_Media.TakeCalls();
  m_Media.State = 1;
  Run(1);
  EXPECT_TRUE(
      Calls().starts_with("SequenceEngine.PlayState()\n"
                          "SequenceEngine.Stop()\n"
                          "SequenceEngine.PlayState()\n"));
  EXPECT_TRUE(m_Media.TakeCalls().starts_with("stop\n"));
}

TEST_F(SuiteSongTest, MediaErrorIsWrittenAndEndsTheSong) {
  Start();
  m_Media.Errors = {L"codec not found", L"no sound"};
  (void)m_Media.TakeCalls();
  m_Log.clear();
  m_Media.TellError();
  Run(1);
  EXPECT_TRUE(m_Log.starts_with(
      "3 WINDOWS MEDIA PLAYER ERROR (Error playing media file: codec not found / no sound): \n"))
      << m_Log;
  EXPECT_TRUE(m_Media.TakeCalls().starts_with("clearErrorQueue\nstop\n"));
}

TEST_F(SuiteSongTest, MediaErrorOfAControlWithoutAListIsWrittenAsFarAsItIsKnown) {
  m_Media.PlayResult = HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
  Start();
  Run(1);
  EXPECT_NE(m_Log.find("3 WINDOWS MEDIA PLAYER ERROR (Error playing media file: "), std::string::npos)
      << m_Log;
}

TEST_F(SuiteSongTest, VideoIsShownWhereItIsWantedAndFillsTheScreenWhereItIsWanted) {
  constexpr char key[] = "Software\\Brillara\\Shared\\VideoPreferences";
  m_Host.Registry().SetLong(key, "FullScreenVideo", 1);
  m_Host.Registry().SetLong(key, "MonitorX", 33);
  m_Media.MediaType = L"video";
  Start();
  (void)m_Media.TakeCalls();
  m_Media.TellOpenState(13);
  const HWND window = FindWindowA("VexMonitorVideo", "Brillara Video");
  ASSERT_NE(window, nullptr);
  EXPECT_NE(IsWindowVisible(window), FALSE);
  EXPECT_EQ(m_Media.TakeCalls(), "getItemInfo(MediaType)\nfullScreen = -1\n");
  RECT place{};
  GetWindowRect(window, &place);
  EXPECT_EQ(place.left, 33);
  m_Media.MediaType = L"Video";
  m_Media.TellOpenState(13);
  EXPECT_EQ(IsWindowVisible(window), FALSE) << "another case is another type";
}

/// The song is a film, and its window is looked for as the machine knows it.
class SuiteFilmTest : public SuiteSongTest {
 protected:
  void Open(const char* szPreference, int32_t lValue, const wchar_t* szType) {
    m_Host.Registry().SetLong("Software\\Brillara\\Shared\\VideoPreferences", szPreference, lValue);
    m_Media.MediaType = szType;
    Start();
    m_Log.clear();
    m_Media.TellOpenState(13);
  }
  static HWND Window() { return FindWindowA("VexMonitorVideo", "Brillara Video"); }
  static bool Seen() { return IsWindowVisible(Window()) != FALSE; }
};

TEST_F(SuiteFilmTest, FilmThatIsNotWantedIsNotSeen) {
  Open("DisplayVideos", 0, L"video");
  EXPECT_NE(Window(), nullptr);
  EXPECT_FALSE(Seen());
}

TEST_F(SuiteFilmTest, SongIsSeenOnlyWhereSongsAreDrawn) {
  Open("DisplayVisualizations", 0, L"audio");
  EXPECT_FALSE(Seen());
}

TEST_F(SuiteFilmTest, SongIsSeenWhereSongsAreDrawn) {
  Open("DisplayVisualizations", 1, L"audio");
  EXPECT_TRUE(Seen());
}

TEST_F(SuiteFilmTest, ControlWithoutKindsAndWithoutFullScreenPlaysOn) {
  m_Media.FullScreenResult = E_NOTIMPL;
  Open("DisplayVisualizations", 1, L"");
  m_Media.MediaType.reset();
  m_Media.TellOpenState(13);
  Run(1);
  EXPECT_TRUE(Seen());
  EXPECT_EQ(m_Log, "");
}

TEST_F(SuiteFilmTest, CloseBoxDoesNothingAndTheEndOfTheShowTakesTheWindowAway) {
  Open("DisplayVideos", 1, L"video");
  SendMessageA(Window(), WM_SYSCOMMAND, SC_CLOSE, 0);
  SendMessageA(Window(), WM_CLOSE, 0, 0);
  Run(10);
  EXPECT_TRUE(Seen());
  EXPECT_EQ(m_Log, "");
  const VARIANT stopped = LongValue(0);
  SuiteReturn("SequenceEngine.PlayState", &stopped);
  m_Monitor->RequestGracefulShutdown();
  Run(1000);
  EXPECT_EQ(Window(), nullptr);
  EXPECT_NE(m_Log.find("Show Player shutting down"), std::string::npos) << m_Log;
}

TEST_F(SuiteSongTest, KeepAliveOfTheEngineReachesTheControl) {
  Start();
  SuiteFire("SequenceEngine", 12, nullptr, 0);
  EXPECT_EQ(Calls(), "ChannelIO.KeepAlive()\n");
}

TEST_F(SuiteSongTest, InputReachesThePlayer) {
  Start();
  m_Log.clear();
  PropertiesObject input{{{L"Network", LongValue(0)},
                          {L"UnitId", LongValue(1)},
                          {L"InputNumber", LongValue(3)},
                          {L"Name", TextValue(L"Front door")}}};
  VARIANT argument = ObjectValue(&input);
  SuiteFire("ChannelIO", 1, &argument, 1);
  EXPECT_EQ(m_Log, "1 Trigger detected: Front door\n");
}

TEST_F(SuiteSongTest, ErrorOfTheEngineMarksTheSequence) {
  Start();
  SuiteRaise("SequenceEngine.SyncToMusic", E_FAIL, 0, nullptr, L"lost", FALSE);
  m_Log.clear();
  Run(1);
  EXPECT_TRUE(m_Log.starts_with("3 ERROR PLAYING SEQUENCE (lost):\n")) << m_Log;
}

TEST_F(SuiteSongTest, ShellCommandRuns) {
  const VARIANT command = LongValue(17);
  const VARIANT line = TextValue(L"calc.exe /x");
  const VARIANT style = LongValue(2);
  SuiteReturn("SequenceEngine.ShellCommand", &command);
  SuiteReturn("ShellCommandManager.CommandLineFor", &line);
  SuiteReturn("ShellCommandManager.WindowStyleFor", &style);
  Start();
  ASSERT_EQ(m_Host.Processes().Starts().size(), 1U);
  EXPECT_EQ(m_Host.Processes().Starts()[0].CommandLine, "calc.exe /x");
  EXPECT_EQ(m_Host.Processes().Starts()[0].WindowStyle, 2);
}

TEST_F(SuiteSongTest, MissingEngineFailsTheSequenceAndSaysWhich) {
  m_Machine.Remove("VEXSEQUENCELib.Sequence");
  Start();
  EXPECT_NE(
      m_Log.find("The component SequenceEngine (program id \"VEXSEQUENCELib.Sequence\") cannot be created: "),
      std::string::npos)
      << m_Log;
}

}  // namespace
}  // namespace vex::test

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "basic/Error.h"
#include "components/recorded/RecordedChannelIO.h"
#include "components/recorded/RecordedSequenceEngine.h"
#include "show/Trigger.h"
#include "tests/recorded/RecordingRig.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(RecordedChannelIO, WritesDownEveryCallWithItsArguments) {
  RecordingRig rig;
  RecordedChannelIO lights(rig.Recording);
  uint8_t port = 3;
  lights.ConfigureValue(0, -1);
  lights.ConfigureFlag(1, true);
  lights.OpenNetwork(2, port, std::nullopt);
  lights.OpenNetwork(2, port, true);
  lights.OpenX10(port);
  lights.OpenCourser(port);
  lights.ClearTriggers();
  lights.SetLink("127.0.0.1", 3737, -5);
  lights.SupportsSpecial(false);
  lights.LinkEnabled(true);
  lights.KeepAlive();
  lights.SendEvent(0, 1, 2, 0, 33.5, "fade", 1, 100, 200, 100);
  lights.Flush();
  EXPECT_THAT(rig.Lines,
              ElementsAre(R"({"kind":"io","call":"configureValue","args":[0,-1]})",
                          R"({"kind":"io","call":"configureFlag","args":[1,true]})",
                          R"({"kind":"io","call":"openNetwork","args":[2,3]})",
                          R"({"kind":"io","call":"openNetwork","args":[2,3,true]})",
                          R"({"kind":"io","call":"openX10","args":[3]})",
                          R"({"kind":"io","call":"openCourser","args":[3]})",
                          R"({"kind":"io","call":"clearTriggers","args":[]})",
                          R"({"kind":"io","call":"setLink","args":["127.0.0.1",3737,-5]})",
                          R"({"kind":"io","call":"supportsSpecial","args":[false]})",
                          R"({"kind":"io","call":"enableLink","args":[true]})",
                          R"({"kind":"io","call":"keepAlive","args":[]})",
                          R"({"kind":"io","call":"send","args":[0,1,2,0,33.5,"fade",1,100,200,100]})",
                          R"({"kind":"io","call":"flush","args":[]})"));
}

TEST(RecordedChannelIO, TakesWhatTheOpenControlTakes) {
  RecordingRig rig;
  RecordedChannelIO lights(rig.Recording);
  for (const auto& [lNumber, boolUnit, boolCircuit] : {std::tuple{0, false, false},
                                                       {1, true, true},
                                                       {64, true, true},
                                                       {65, false, true},
                                                       {512, false, true},
                                                       {513, false, false},
                                                       {-1, false, false}}) {
    EXPECT_EQ(lights.AcceptsUnit(0, lNumber), boolUnit) << lNumber;
    EXPECT_EQ(lights.AcceptsCircuit(0, 1, lNumber), boolCircuit) << lNumber;
  }
  EXPECT_THAT(rig.Lines, IsEmpty());
}

TEST(RecordedChannelIO, PressesReachThePlayerWhileTheLinkIsOn) {
  RecordingRig rig;
  RecordedChannelIO lights(rig.Recording);
  lights.Press(0, 1, 3, "Nobody listens");
  std::vector<std::string> pressed;
  lights.TriggerDetected = [&](const NamedProperties& input) { pressed.push_back(input.Text("Name")); };
  lights.Press(0, 1, 3, "Before");
  lights.LinkEnabled(true);
  lights.Press(0, 1, 3, "Front door");
  lights.LinkEnabled(false);
  lights.Press(0, 1, 3, "After");
  EXPECT_THAT(pressed, ElementsAre("Front door"));
}

TEST(Recorder, MakesNoLineThatNobodyWants) {
  VirtualHost host;
  std::vector<std::string> calls;
  Recorder recorder(
      host.Clock(),
      [&](std::string_view szKind, std::string_view szCall, const JsonLine&) {
        calls.push_back(std::string(szKind) + " " + std::string(szCall));
      },
      [](std::string_view szKind, std::string_view szCall) { return szKind != "io" || szCall != "send"; });
  EXPECT_FALSE(recorder.WantsInputOutput("send"));
  recorder.InputOutput("send", {int32_t{0}});
  recorder.InputOutput("flush", {});
  recorder.Shell("notify-send lights");
  recorder.Sequence("load", "carol.vexseq");
  EXPECT_THAT(calls, ElementsAre("io flush", "shell ", "seq load"));
}

/// A folder of the real machine, named with letters outside ASCII, that goes with everything in it.
class RealFolder {
 public:
  RealFolder() { std::filesystem::create_directories(m_Path); }
  ~RealFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
  }
  RealFolder(const RealFolder&) = delete;
  RealFolder& operator=(const RealFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& Path() const { return m_Path; }

 private:
  std::filesystem::path m_Path = std::filesystem::temp_directory_path() / u8"vex-F\u00FCr Elise";
};

TEST(Recorder, LinesAreInTheirFileWhenTheCallReturns) {
  const RealFolder folder;
  const std::u8string path = (folder.Path() / u8"geh\u00F6rt.txt").u8string();
  VirtualHost host;
  const std::string szPath = host.Files().SystemPath(std::string(path.begin(), path.end()));
  const auto contents = [&] {
    std::ifstream stream(std::filesystem::path(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  };
  std::ofstream(std::filesystem::path(path)) << "an older recording";
  Recorder recorder(host.Clock(), FileSink(host.Files(), szPath));
  EXPECT_EQ(contents(), "an older recording");
  recorder.Media("play");
  const std::string szFirst = contents();
  EXPECT_TRUE(szFirst.ends_with("\"kind\":\"media\",\"call\":\"play\"}\n")) << szFirst;
  recorder.Window("show");
  EXPECT_TRUE(contents().starts_with(szFirst));
  EXPECT_TRUE(contents().ends_with("\"kind\":\"window\",\"call\":\"show\"}\n")) << contents();
}

TEST(Recorder, LinesThatCannotBeWrittenAreLost) {
  const RealFolder folder;
  const std::filesystem::path path = folder.Path() / "none" / "recorded.txt";
  VirtualHost host;
  const std::u8string name = path.u8string();
  const std::string szPath = host.Files().SystemPath(std::string(name.begin(), name.end()));
  Recorder recorder(host.Clock(), FileSink(host.Files(), szPath));
  EXPECT_NO_THROW(recorder.Media("play"));
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(SequenceFaults, StrikeOnceEachInTheirOrder) {
  SequenceFaults faults;
  int injected = 0;
  faults.Injected = [&] { ++injected; };
  faults.Inject("carol.vexseq", "sync", "lost");
  faults.Inject("carol.vexseq", "sync", "lost again");
  EXPECT_EQ(injected, 2);
  EXPECT_TRUE(faults.Wait("carol.vexseq"));
  EXPECT_FALSE(faults.Wait("bells.vexseq"));
  faults.Check("carol.vexseq", "start");
  faults.Check("bells.vexseq", "sync");
  for (const char* szText : {"lost", "lost again"}) {
    try {
      faults.Check("carol.vexseq", "sync");
      FAIL();
    } catch (const Error& error) {
      EXPECT_EQ(error.Description, szText);
    }
  }
  faults.Check("carol.vexseq", "sync");
  EXPECT_FALSE(faults.Wait("carol.vexseq"));
}

}  // namespace
}  // namespace vex

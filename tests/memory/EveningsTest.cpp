#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "host/RegistryText.h"
#include "host/virtual/VirtualFiles.h"
#include "tests/memory/LiveMemory.h"
#include "tools/rehearsal/Narrator.h"
#include "tools/rehearsal/Rehearsal.h"

// A season holds no more memory at its end than at its beginning, whatever happens in its evenings.

namespace vex::test {
namespace {

constexpr int32_t Evenings = 100;
constexpr int32_t Settled = 10;  // evenings until all that is kept for good has its size

const char* const Settings = R"(REGEDIT4

[HKEY_CURRENT_USER\Software\Brillara]
"UserDataPath"="D:\\data\\"
[HKEY_CURRENT_USER\Software\Brillara\Shared]
"AudioPath"="D:\\data\\"
"NonAudioPath"="D:\\data\\"
[HKEY_CURRENT_USER\Software\Brillara\XLK]
"On"=dword:00000001
)";

const char* const Show =
    "((0,1,2,0,,(s.vexseq),T,F,F),(0,1,2,0,,(s.vexseq),T,F,F),(1,0,1,0,,(a.vexseq),T,F,F),"
    "(0,2,2,1,a.vexseq,(m.vexseq,v.vexseq),T,F,F),,(2,0,1,0,,(a.vexseq),T,F,F),"
    "((1,,F,T,F,A door with a name too long to lie in a string itself,((a.vexseq,(3,Door,1,0))),T)),0,,F)";

std::string Cue(const std::string& szMore) {
  return R"({"format":"vexseq","version":1,"duration":3)" + szMore +
         R"(,"events":[{"kind":"main","network":0,"unit":1,"circuit":1,"start":0.5,"from":0,"to":100}]})";
}

/// Each evening from 18:00 to 18:01, every day of the week.
void Furnish(VirtualFiles& files) {
  const auto put = [&](const std::string& szName, const std::string& szText) {
    files.Put("D:\\data\\" + szName, szText);
  };
  std::string szWeek;
  for (int32_t lDay = 0; lDay < 7; ++lDay) {
    const int32_t lStart = lDay * 86400 + 64800;
    szWeek += (lDay == 0 ? "(" : ",(") + std::to_string(lStart + 60) + ",2,(,0,eve.shw)," +
              std::to_string(lStart) + ")";
  }
  put("weeksched.qsc", "(" + szWeek + ")");
  put("eve.shw", Show);
  put("a.shw", Show);
  put("b.shw", std::string(Show).replace(std::string(Show).find("(a.vexseq)"), 10, "(a.vexseq,s.vexseq)"));
  put("s.vexseq",
      Cue(R"(,"shellCommand":{"commandLine":"notify-send that-the-lights-are-on","windowStyle":1})"));
  put("a.vexseq", Cue(""));
  put("m.vexseq", Cue(R"(,"media":"song.ogg")"));
  put("v.vexseq", Cue(R"(,"media":"video.avi")"));
}

/// Of everything that can happen, the same in each evening.
std::vector<RehearsalInput> Inputs() {
  std::vector<RehearsalInput> inputs{{5000, InputMessage{2, "", 7}}};  // a tray
  constexpr int64_t day = 86400 * int64_t{1000};
  for (int32_t lEvening = 0; lEvening < Evenings; ++lEvening) {
    const auto at = [&](int64_t second, auto what) {
      inputs.push_back({lEvening * day + second * 1000, what});
    };
    // While a song plays: what fails with nobody there to hear it waits in the media player.
    at(21, InputMediaError{{"the codec for this song was not found on this machine"}});
    at(22, InputTrigger{0, 1, 3, "Door"});
    at(26, InputSequenceError{"m.vexseq", "sync", "the sequence engine lost its place"});
    at(28, InputMessage{5, "", 0});
    at(30, InputCopy{lEvening % 2 == 0 ? "D:\\data\\b.shw" : "D:\\data\\a.shw", "D:\\data\\eve.shw"});
    at(90, InputMessage{9, "(a.shw,(F,,F,),2,F)", 7});
    at(100, InputMessage{9, "", 7});
  }
  return inputs;
}

TEST(Memory, AHundredEveningsHoldNoMoreThanTen) {
  VirtualFiles files;
  Furnish(files);
  RehearsalOptions options;
  options.From = DateTime::FromParts(2026, 11, 1, 17, 59, 50);
  options.Until = options.From.PlusDays(Evenings);
  options.AssumeMedia = true;
  options.DetailIsRead = options.LightingIsRead = false;
  const auto inputs = Inputs();
  Rehearsal rehearsal(files, RegistryText(Settings), options, inputs, nullptr);
  Narrator narrator([&] { return rehearsal.Now(); }, nullptr);
  LiveMemory before;
  LiveMemory after;
  int64_t shells = 0;
  int64_t sent = 0;
  int32_t lFinished = 0;
  rehearsal.Write(
      [&](const RehearsalEvent& event) {
        narrator.Hear(event);
        sent += event.Kind == "sent" ? 1 : 0;
        if (event.Kind == "log" && event.Text == "Finished show: a.shw") {
          ++lFinished;
          (lFinished <= Settled ? before : after) = MemoryNow();
        }
        return event.Kind == "shell";
      },
      [&](const JsonLine&) { ++shells; });
  rehearsal.Run();

  EXPECT_EQ(lFinished, Evenings);
  EXPECT_GE(shells, Evenings);
  EXPECT_GT(sent, int64_t{20} * Evenings);
  // An input that has happened is let go: one block each, of at least its moment and what is to be called.
  constexpr int64_t happened = (Evenings - Settled) * 7;
  constexpr auto least = static_cast<int64_t>(sizeof(std::pair<const int64_t, std::function<void()>>));
  constexpr int64_t fewBlocks = 20;
  constexpr int64_t fewBytes = 4096;
  EXPECT_LE(after.Blocks - before.Blocks, fewBlocks - happened);
  EXPECT_LE(after.Bytes - before.Bytes, fewBytes - happened * least);
}

}  // namespace
}  // namespace vex::test

// Whether lights wait for the window of videos: the real player plays a show whose background writes the
// number of each frame into the slots of four universes, 40 frames a second, while its songs are a video and
// a song without pictures in turn, so that the window opens and closes again and again. A receiver on the
// loopback interface notes with the kernel's time stamps when each number comes. A packet's lateness is its
// arrival less its place on the grid of the earliest one; those within half a second of an opening or closing
// are told apart.
//
//   DISPLAY=:N WindowBench VIDEO [seconds, 120 unless given] [sharp]
//
// With "sharp" the player asks for the timing that it asks for at its start, so that other work on the
// machine does not count.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/PacketReceiver.h"
#include "bench/ShowStage.h"
#include "components/ComponentTable.h"
#include "host/Host.h"
#include "player/ShowPlayer.h"
#include "settings/LibFile.h"
#include "settings/LibNetworks.h"
#include "show/Show.h"
#include "show/ShowFunctions.h"

namespace vex {
namespace {

using bench::Arrival;
using bench::FrameMs;

constexpr const char* SourceName = "WindowBench";
constexpr int64_t NearNs = 500'000'000;

/// Notes when the window is shown and hidden, and passes all on.
class NotedWindow final : public MediaWindow {
 public:
  explicit NotedWindow(std::shared_ptr<MediaWindow> window) : m_Window(std::move(window)) {}

  void Place(int32_t lLeftTwips, int32_t lTopTwips) override { m_Window->Place(lLeftTwips, lTopTwips); }
  void Show() override {
    if (!m_Window->Visible()) Openings.push_back(bench::RealTimeNs());
    m_Window->Show();
  }
  void Hide() override {
    if (m_Window->Visible()) Closings.push_back(bench::RealTimeNs());
    m_Window->Hide();
  }
  [[nodiscard]] bool Loaded() const override { return m_Window->Loaded(); }
  [[nodiscard]] bool Visible() const override { return m_Window->Visible(); }
  void Unload() override { m_Window->Unload(); }
  void Caption(const std::string& szCaption) override { m_Window->Caption(szCaption); }

  std::vector<int64_t> Openings;
  std::vector<int64_t> Closings;

 private:
  std::shared_ptr<MediaWindow> m_Window;
};

bool IsNear(const std::vector<int64_t>& moments, int64_t at) {
  const auto after = std::upper_bound(moments.begin(), moments.end(), at);
  return after != moments.begin() && at - *(after - 1) < NearNs;
}

void ReportOf(const char* szWhat, const std::vector<double>& lateness) {
  std::printf("%-28s packets %6zu  lateness ms: p50 %.3f  p99 %.3f  max %.3f\n", szWhat, lateness.size(),
              bench::Percentile(lateness, 0.5), bench::Percentile(lateness, 0.99),
              bench::Percentile(lateness, 1));
}

void Report(const std::vector<Arrival>& arrivals, const NotedWindow& window) {
  const auto start = [](const Arrival& each) -> int64_t {
    return each.AtNs - each.Number * FrameMs * 1'000'000LL;
  };
  int64_t grid = INT64_MAX;
  for (const Arrival& each : arrivals) grid = std::min(grid, start(each));
  std::array<std::vector<double>, 3> lateness;
  for (const Arrival& each : arrivals) {
    const size_t place = IsNear(window.Openings, each.AtNs) ? 0 : IsNear(window.Closings, each.AtNs) ? 1 : 2;
    lateness[place].push_back(static_cast<double>(start(each) - grid) / 1e6);
  }
  std::printf("window opened %zu times, closed %zu times\n", window.Openings.size(), window.Closings.size());
  ReportOf("within 0.5 s of an opening", lateness[0]);
  ReportOf("within 0.5 s of a closing", lateness[1]);
  ReportOf("all others", lateness[2]);
}

/// Writes a sequence; returns its name as the system writes it.
std::string Sequence(Host& host, const std::string& szFile, const std::string& szMembers) {
  std::ofstream(szFile) << R"({"format":"vexseq","version":1,)" << szMembers << "}";
  return host.Files().SystemPath(szFile);
}

/// A host path as JSON writes it.
std::string Quoted(const std::string& szHostPath) {
  return "\"Z:\\\\" + szHostPath.substr(1) + "\"";
}

std::string ShowOn(Host& host, const std::string& szFolder, const std::string& szVideo, int seconds) {
  bench::WriteWave(szFolder + "/song.wav", 1);
  std::ofstream(szFolder + "/frames.fseq", std::ios::binary) << bench::FrameFile(seconds + 5);
  const std::string szBackground =
      Sequence(host, szFolder + "/frames.vexseq", "\"frames\":" + Quoted(szFolder + "/frames.fseq"));
  const std::string szSeen =
      Sequence(host, szFolder + "/video.vexseq", "\"duration\":600,\"media\":" + Quoted(szVideo));
  const std::string szHeard = Sequence(host, szFolder + "/song.vexseq",
                                       "\"duration\":600,\"media\":" + Quoted(szFolder + "/song.wav"));
  return "((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,),(0,1,2,0,,(" + szSeen + "," + szHeard +
         "),T,F,F),,(2,0,1,0,,(" + szBackground + "),T),,0,,F)";
}

int Run(const std::string& szVideo, int seconds, bool boolSharp) {
  const std::string szFolder = bench::MakeFolder(SourceName);
  bench::PacketReceiver receiver(bench::E131Port, SourceName);
  const auto host = NativeHost();
  if (boolSharp) std::printf("sharp timers %s\n", host->SharpTimers() ? "granted" : "not granted");
  bench::Silent report;
  Networks networks(host->Registry());
  const auto find = [&](const std::string& szName, bool boolIsAudio) {
    return FullSequencePath(host->Registry(), szName, boolIsAudio);
  };
  Devices devices = NewDevices(
      {host->Clock(), host->EventLoop(), host->Files(), host->Datagrams(), host->Registry(), find, "bench"});
  const auto window = std::make_shared<NotedWindow>(devices.Window);
  const auto showTimer = host->EventLoop().NewTimer(TimerOrder::tmrShowPlayer);
  ShowPlayer player({report, host->Clock(), host->Processes(), host->Registry(), networks, devices, 1,
                     std::make_shared<frmMediaPlayer>(window, devices.Media)});
  player.InitControls(*showTimer, devices.Lights, devices.Media);
  player.NextShow(ShowFromText(ShowOn(*host, szFolder, szVideo, seconds)));
  const auto end = host->EventLoop().NewTimer(TimerOrder::Component);
  end->Interval(seconds * 1000);
  end->Tick([&] { host->EventLoop().Quit(); });
  end->Enabled(true);
  host->EventLoop().Run();
  Report(receiver.Stop(), *window);
  std::filesystem::remove_all(szFolder);
  return 0;
}

}  // namespace
}  // namespace vex

int main(int argc, char** argv) {
  constexpr int usualSeconds = 120;
  if (argc < 2 || !std::filesystem::exists(argv[1])) {
    std::fprintf(stderr, "usage: DISPLAY=:N WindowBench VIDEO [seconds] [sharp]\n");
    return 2;
  }
  return vex::Run(std::filesystem::absolute(argv[1]).string(), argc > 2 ? std::atoi(argv[2]) : usualSeconds,
                  argc > 3 && std::string(argv[3]) == "sharp");
}

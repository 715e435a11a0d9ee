// How closely light follows sound on the real machine: the real player plays a song whose sequence writes the
// number of each frame into the slots of four universes, 40 frames a second. A receiver on the loopback
// interface notes with the kernel's time stamps when each number comes; beside it the media position is noted
// every 5 ms. A frame's lateness is the media position at its arrival less the position it belongs to.
//
//   SyncBench [seconds of music, 30 unless given]

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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
using bench::E131Port;
using bench::FrameMs;
using bench::Percentile;
using bench::RealTimeNs;

constexpr const char* SourceName = "SyncBench";

long PrivateKilobytes() {
  std::ifstream file("/proc/self/smaps_rollup");
  std::string szWord;
  long sum = 0;
  long value = 0;
  while (file >> szWord) {
    if (szWord == "Private_Clean:" || szWord == "Private_Dirty:") {
      file >> value;
      sum += value;
    }
  }
  return sum;
}

double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

struct Sample {
  int64_t AtNs;
  double Position;
};

void Report(const std::vector<Arrival>& arrivals, const std::vector<Sample>& samples, int32_t lFrames) {
  std::vector<double> lateness;
  std::vector<bool> seen(static_cast<size_t>(lFrames), false);
  for (const Arrival& arrival : arrivals) {
    if (arrival.Universe != 1) continue;
    const auto after = std::lower_bound(samples.begin(), samples.end(), arrival.AtNs,
                                        [](const Sample& sample, int64_t at) { return sample.AtNs < at; });
    if (after == samples.end() || after == samples.begin()) continue;
    if (arrival.Number >= lFrames || seen[static_cast<size_t>(arrival.Number)]) continue;
    seen[static_cast<size_t>(arrival.Number)] = true;
    const Sample& before = *(after - 1);
    const double share =
        static_cast<double>(arrival.AtNs - before.AtNs) / static_cast<double>(after->AtNs - before.AtNs);
    const double position = before.Position + share * (after->Position - before.Position);
    lateness.push_back(position * 1000 - arrival.Number * FrameMs);
  }
  std::printf("frames %d, seen %zu\n", lFrames, lateness.size());
  std::printf("lateness against the media position, ms: p50 %.3f  p99 %.3f  max %.3f  min %.3f\n",
              Percentile(lateness, 0.5), Percentile(lateness, 0.99), Percentile(lateness, 1),
              Percentile(lateness, 0));
}

int Run(int seconds) {
  const std::string szFolder = bench::MakeFolder(SourceName);
  bench::WriteWave(szFolder + "/song.wav", seconds);
  std::ofstream(szFolder + "/frames.fseq", std::ios::binary) << bench::FrameFile(seconds);
  const std::string szPlace = "Z:\\\\" + szFolder.substr(1);  // as JSON writes it
  std::ofstream(szFolder + "/song.vexseq") << R"({"format":"vexseq","version":1,"media":")" << szPlace
                                           << R"(/song.wav","frames":")" << szPlace << R"(/frames.fseq"})";

  bench::PacketReceiver receiver(E131Port, SourceName);
  const auto host = NativeHost();
  std::printf("sharp timers %s\n", host->SharpTimers() ? "granted" : "not granted");
  bench::Silent report;
  Networks networks(host->Registry());
  const auto find = [&](const std::string& szName, bool boolIsAudio) {
    return FullSequencePath(host->Registry(), szName, boolIsAudio);
  };
  Devices devices = NewDevices(
      {host->Clock(), host->EventLoop(), host->Files(), host->Datagrams(), host->Registry(), find, "bench"});
  const auto media = devices.Media;
  const auto lights = devices.Lights;
  const auto showTimer = host->EventLoop().NewTimer(TimerOrder::tmrShowPlayer);
  ShowPlayer player({report, host->Clock(), host->Processes(), host->Registry(), networks, devices, 1,
                     std::make_shared<frmMediaPlayer>(devices.Window, devices.Media)});
  player.InitControls(*showTimer, lights, media);
  std::printf("private memory before the first song %ld KB\n", PrivateKilobytes());
  const std::string szSequence = host->Files().SystemPath(szFolder + "/song.vexseq");
  player.NextShow(ShowFromText("((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,),(0,1,2,100,,(" + szSequence +
                               "),T,F,F),,(2,0,1,0,,),,0,,F)"));

  std::vector<Sample> samples;
  samples.reserve(static_cast<size_t>(seconds) * 250);
  const auto sampler = host->EventLoop().NewTimer(TimerOrder::Component);
  sampler->Interval(5);
  sampler->Tick([&] {
    if (media->PlayState() == MediaPlayer::StatePlaying)
      samples.push_back({RealTimeNs(), media->CurrentPosition()});
  });
  sampler->Enabled(true);
  const auto end = host->EventLoop().NewTimer(TimerOrder::Component);
  end->Interval((seconds + 2) * 1000);
  double cpuBefore = CpuSeconds();
  end->Tick([&] { host->EventLoop().Quit(); });
  end->Enabled(true);
  host->EventLoop().Run();
  std::printf("private memory with the song %ld KB\n", PrivateKilobytes());
  std::printf("processor %.2f %% of a core, receiver, sampling and decoding included\n",
              (CpuSeconds() - cpuBefore) * 100 / (seconds + 2));
  Report(receiver.Stop(), samples, seconds * 1000 / FrameMs);
  std::filesystem::remove_all(szFolder);
  return 0;
}

}  // namespace
}  // namespace vex

int main(int argc, char** argv) {
  constexpr int usualSeconds = 30;
  return vex::Run(argc > 1 ? std::atoi(argv[1]) : usualSeconds);
}

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

constexpr uint16_t E131Port = 5568;
constexpr int32_t FrameMs = 25;
constexpr const char* SourceName = "SyncBench";

class Silent : public StatusReport {
 public:
  void LogMessage(int32_t lLevel, const std::string& szText, const SequencePlayInfo*) override {
    if (lLevel >= LevelError) std::fprintf(stderr, "%s\n", szText.c_str());
  }
  void ReportShowsToTray(bool) override {}
};

int64_t RealTimeNs() {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  return time.tv_sec * 1000000000LL + time.tv_nsec;
}

void WriteWave(const std::string& szPath, int seconds) {
  constexpr uint32_t rate = 44100;
  const auto count = static_cast<uint32_t>(seconds) * rate;
  std::ofstream file(szPath, std::ios::binary);
  const auto number = [&file](uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.put(static_cast<char>(value >> (8 * i)));
  };
  file << "RIFF";
  number(36 + count * 2, 4);
  file << "WAVEfmt ";
  number(16, 4);
  number(1, 2);
  number(1, 2);
  number(rate, 4);
  number(rate * 2, 4);
  number(2, 2);
  number(16, 2);
  file << "data";
  number(count * 2, 4);
  for (uint32_t i = 0; i < count; ++i) number(i * 40 & 0x0FFF, 2);
}

/// Frame n holds n in the first two slots of each universe, and something else in every slot each frame.
std::string FrameFile(int seconds) {
  constexpr uint32_t channels = 4 * 512;
  const auto frames = static_cast<uint32_t>(seconds * 1000 / FrameMs);
  std::string szFile = "PSEQ";
  const auto number = [&szFile](uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) szFile += static_cast<char>(value >> (8 * i));
  };
  number(28, 2);
  number(0, 1);
  number(1, 1);
  number(28, 2);
  number(channels, 4);
  number(frames, 4);
  number(FrameMs, 1);
  szFile.resize(28, '\0');
  for (uint32_t frame = 0; frame < frames; ++frame) {
    for (uint32_t channel = 0; channel < channels; ++channel) {
      const uint32_t slot = channel % 512;
      szFile += static_cast<char>(slot == 0 ? frame : slot == 1 ? frame >> 8 : frame + slot);
    }
  }
  return szFile;
}

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

double Percentile(std::vector<double> values, double share) {
  if (values.empty()) return NAN;
  std::sort(values.begin(), values.end());
  return values[static_cast<size_t>(share * static_cast<double>(values.size() - 1))];
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
  char pattern[] = "/tmp/vexsyncXXXXXX";
  const std::string szFolder = mkdtemp(pattern);
  setenv("VEX_RUNTIME_DIR", (szFolder + "/run").c_str(), 1);
  setenv("VEX_SETTINGS", (szFolder + "/settings.reg").c_str(), 1);
  std::ofstream(szFolder + "/settings.reg")
      << "Windows Registry Editor Version "
         "5.00\n\n[HKEY_CURRENT_USER\\Software\\Brillara\\Output]\n\"Host\"=\"127.0.0.1\"\n"
         "\"SourceName\"=\"SyncBench\"\n\n[HKEY_CURRENT_USER\\Software\\Brillara\\Components]"
         "\n\"AudioOutput\"=\"null\"\n";
  WriteWave(szFolder + "/song.wav", seconds);
  std::ofstream(szFolder + "/frames.fseq", std::ios::binary) << FrameFile(seconds);
  const std::string szPlace = "Z:\\\\" + szFolder.substr(1);  // as JSON writes it
  std::ofstream(szFolder + "/song.vexseq") << R"({"format":"vexseq","version":1,"media":")" << szPlace
                                           << R"(/song.wav","frames":")" << szPlace << R"(/frames.fseq"})";

  bench::PacketReceiver receiver(E131Port, SourceName);
  const auto host = NativeHost();
  std::printf("sharp timers %s\n", host->SharpTimers() ? "granted" : "not granted");
  Silent report;
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

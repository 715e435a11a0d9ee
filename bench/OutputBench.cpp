// How exactly lighting data leave the real machine: 4 universes, 40 frames a second, every slot changing,
// seen by a receiver on the loopback interface with the kernel's time stamps. Beside it, in the same run and
// at the same time, a bare sender with one timerfd and sendmmsg: what the machine itself can do.
//
//   OutputBench [seconds a case, 60 unless given] [sharp]
//
// With "sharp" both senders ask for the timing that the player asks for at its start, so that other work on
// the machine does not count.

#include <sched.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/PacketReceiver.h"
#include "components/open/OpenChannelIO.h"
#include "components/open/OpenSequenceEngine.h"
#include "host/Host.h"
#include "tests/wire/FrameFileBuilder.h"

namespace vex {
namespace {

using bench::Arrival;
using bench::PacketReceiver;

constexpr int Universes = 4;
constexpr int64_t PeriodNs = 25'000'000;
constexpr uint16_t BarePort = E131Port + 1;
constexpr const char* SourceName = "OutputBench";

int64_t Nanoseconds(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

int64_t ThreadCpuNs() {
  return Nanoseconds(CLOCK_THREAD_CPUTIME_ID);
}

[[noreturn]] void Fail(const char* what) {
  std::perror(what);
  std::exit(1);
}

/// The machine's own best: absolute deadlines of one timerfd, all universes in one call.
void BareSender(int seconds, bool sharp, int64_t& start, double& cpu) {
  sched_param parameters{};
  parameters.sched_priority = sched_get_priority_min(SCHED_FIFO);
  if (sharp && sched_setscheduler(0, SCHED_FIFO, &parameters) != 0) std::perror("bare sender");
  const int timer = timerfd_create(CLOCK_MONOTONIC, 0);
  const int out = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in to = bench::Loopback(BarePort);
  std::vector<UniversePacket> packets(Universes, UniversePacket::E131({{}, SourceName, 100}, 1));
  std::array<iovec, Universes> parts{};
  std::array<mmsghdr, Universes> messages{};
  for (size_t i = 0; i < Universes; ++i) {
    parts[i] = {const_cast<uint8_t*>(packets[i].Bytes().data()), packets[i].Bytes().size()};
    messages[i].msg_hdr.msg_name = &to;
    messages[i].msg_hdr.msg_namelen = sizeof to;
    messages[i].msg_hdr.msg_iov = &parts[i];
    messages[i].msg_hdr.msg_iovlen = 1;
  }
  const int64_t cpuBefore = ThreadCpuNs();
  start = Nanoseconds(CLOCK_MONOTONIC);
  for (int frame = 0; frame < seconds * 40; ++frame) {
    const int64_t due = start + frame * PeriodNs;
    const itimerspec wake{{}, {due / 1'000'000'000, due % 1'000'000'000}};
    timerfd_settime(timer, TFD_TIMER_ABSTIME, &wake, nullptr);
    uint64_t expirations = 0;
    if (read(timer, &expirations, sizeof expirations) < 0) Fail("read");
    for (UniversePacket& packet : packets) {
      std::memset(packet.Slots().data(), frame & 0xFF, UniversePacket::SlotCount);
      packet.Slots()[0] = static_cast<uint8_t>(frame & 0xFF);
      packet.Slots()[1] = static_cast<uint8_t>(frame >> 8 & 0xFF);
      packet.NextSequence();
    }
    sendmmsg(out, messages.data(), Universes, 0);
  }
  cpu = static_cast<double>(ThreadCpuNs() - cpuBefore) / 1e7 / seconds;
  close(out);
  close(timer);
}

/// The kernel's stamps are real time; the grids are counted on the clock that is never set.
std::vector<Arrival> OnMonotonicClock(std::vector<Arrival> arrivals) {
  const int64_t toMonotonic = Nanoseconds(CLOCK_MONOTONIC) - Nanoseconds(CLOCK_REALTIME);
  for (Arrival& arrival : arrivals) arrival.AtNs += toMonotonic;
  return arrivals;
}

struct Result {
  size_t Packets = 0;
  double P50 = 0;
  double P99 = 0;
  double Max = 0;
  double Cpu = 0;
};

/// A grid that begins with its first move is counted from the millisecond in which most of its packets lie.
int64_t Phase(const std::vector<Arrival>& arrivals) {
  constexpr int64_t Millisecond = 1'000'000;
  std::array<int, PeriodNs / Millisecond> counts{};
  for (const Arrival& arrival : arrivals)
    ++counts[static_cast<size_t>(arrival.AtNs % PeriodNs / Millisecond)];
  return (std::max_element(counts.begin(), counts.end()) - counts.begin()) * Millisecond;
}

/// How far each packet lies behind its place on the grid; the number tells the place, modulo the rounds.
Result Measure(const std::vector<Arrival>& arrivals, int64_t start, int64_t framesARound, double cpu) {
  std::vector<double> errors;
  for (const Arrival& arrival : arrivals) {
    const double place = static_cast<double>(arrival.AtNs - start) / PeriodNs;
    double frame = std::round(place);
    if (framesARound > 0)
      frame = arrival.Number + std::round((place - arrival.Number) / static_cast<double>(framesARound)) *
                                   static_cast<double>(framesARound);
    errors.push_back(std::abs(place - frame) * PeriodNs / 1e6);
  }
  if (errors.empty()) return {};
  std::sort(errors.begin(), errors.end());
  return {errors.size(), errors[errors.size() / 2], errors[errors.size() * 99 / 100], errors.back(), cpu};
}

void Print(const char* name, const Result& result) {
  std::printf("%-34s %7zu packets   error p50 %.3f  p99 %.3f  max %.3f ms   CPU %.2f %%\n", name,
              result.Packets, result.P50, result.P99, result.Max, result.Cpu);
}

constexpr int FramesARound = 400;

/// Ten seconds of frames in which every slot changes with every frame.
std::string FrameFile() {
  FrameFileBuilder builder;
  builder.Compression = FrameCompression::Zstd;
  builder.FramesPerBlock = 40;
  for (int frame = 0; frame < FramesARound; ++frame) {
    std::vector<uint8_t> bytes(Universes * UniversePacket::SlotCount);
    for (size_t i = 0; i < bytes.size(); ++i)
      bytes[i] = static_cast<uint8_t>(frame * 7 + static_cast<int>(i % 13));
    for (size_t i = 0; i < bytes.size(); i += UniversePacket::SlotCount) {
      bytes[i] = static_cast<uint8_t>(frame & 0xFF);
      bytes[i + 1] = static_cast<uint8_t>(frame >> 8);
    }
    builder.Frames.push_back(bytes);
  }
  return builder.Build();
}

/// Every slot of every universe on the move, half of them up while the others go down and turning at other
/// moments, so that the grid never rests.
std::string MovesFile() {
  std::string szText = R"({"duration":10,"events":[)";
  const auto add = [&](int unit, int circuit, double start, double end, int from, int to) {
    szText += R"({"unit":)" + std::to_string(unit) + R"(,"circuit":)" + std::to_string(circuit) +
              R"(,"start":)" + std::to_string(start) + R"(,"end":)" + std::to_string(end) + R"(,"from":)" +
              std::to_string(from) + R"(,"to":)" + std::to_string(to) + "},";
  };
  for (int unit = 1; unit <= Universes; ++unit)
    for (int circuit = 1; circuit <= 512; ++circuit) {
      const double shift = circuit % 2 == 0 ? 0 : 2.5;
      add(unit, circuit, shift, shift + 5, 0, 100);
      add(unit, circuit, shift + 5, shift + 10, 100, 0);
    }
  szText.back() = ']';
  return szText + "}";
}

/// A level set on one circuit every 50 ms: how late does a due event leave.
std::string EventsFile() {
  std::string szText = R"({"duration":10,"events":[)";
  int number = 0;
  for (int ms = 0; ms < 10000; ms += 50, ++number) {
    const int level = number % 2 == 0 ? 100 : 0;
    szText += R"({"start":)" + std::to_string(ms / 1000.0) + R"(,"circuit":9,"from":)" +
              std::to_string(level) + R"(,"to":)" + std::to_string(level) + "},";
  }
  szText.back() = ']';
  return szText + "}";
}

/// Plays the file in a loop on the real host; the bare sender and both receivers run beside it.
void Run(const char* name, const std::string& szFile, int seconds, bool sharp, int64_t framesARound) {
  const std::string szPath = (std::filesystem::temp_directory_path() / "vex_output_bench.seq").string();
  std::ofstream(szPath, std::ios::binary) << szFile;

  PacketReceiver received(E131Port, SourceName);
  PacketReceiver bareReceived(BarePort, SourceName);
  int64_t bareStart = 0;
  double bareCpu = 0;
  std::thread bare([&] { BareSender(seconds, sharp, bareStart, bareCpu); });

  std::unique_ptr<Host> host = NativeHost();
  if (sharp && !host->SharpTimers()) std::puts("sharp timers are not granted");
  OutputSettings settings;
  settings.Host = "127.0.0.1";
  settings.SourceName = SourceName;
  auto lights =
      std::make_shared<OpenChannelIO>(host->Clock(), host->EventLoop(), host->Datagrams(), settings, "bench");
  OpenSequenceEngine engine(
      host->Clock(), host->EventLoop(), host->Files(),
      [&](const std::string& szName, bool) { return host->Files().SystemPath(szName); });
  engine.AttachControl(lights);
  engine.Load(szPath);
  engine.PlayOptions(true, false);
  engine.PrepareForPlay(false);

  const auto end = host->EventLoop().NewTimer(TimerOrder::Component);
  end->Interval(seconds * 1000);
  end->Tick([&] { host->EventLoop().Quit(); });
  end->Enabled(true);
  const int64_t cpuBefore = ThreadCpuNs();
  // A sequence begins in a millisecond; its grid is counted from there.
  const int64_t start = Nanoseconds(CLOCK_MONOTONIC) / 1'000'000 * 1'000'000;
  engine.Start();
  host->EventLoop().Run();
  const double cpu = static_cast<double>(ThreadCpuNs() - cpuBefore) / 1e7 / seconds;
  engine.Stop();
  bare.join();

  const std::vector<Arrival> arrivals = OnMonotonicClock(received.Stop());
  const Result ours = Measure(arrivals, framesARound > 0 ? start : Phase(arrivals), framesARound, cpu);
  const Result bareResult = Measure(OnMonotonicClock(bareReceived.Stop()), bareStart, 65536, bareCpu);
  Print(name, ours);
  Print("  bare timerfd and sendmmsg", bareResult);
  std::printf("  p99 is %.2f times that of the bare sender\n", ours.P99 / bareResult.P99);
  std::filesystem::remove(szPath);
}

}  // namespace
}  // namespace vex

int main(int argc, char** argv) {
  const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 60;
  const bool sharp = argc > 2 && std::strcmp(argv[2], "sharp") == 0;
  vex::Run("frames, 4 x 512 slots at 40/s", vex::FrameFile(), seconds, sharp, vex::FramesARound);
  vex::Run("moves, 4 x 512 slots at 40/s", vex::MovesFile(), seconds, sharp, 0);
  vex::Run("events, one every 50 ms", vex::EventsFile(), seconds, sharp, 0);
  return 0;
}

// How soon a press is answered: the real player on the real machine, a group whose button plays a sequence
// that has been loaded before. Each press goes out as an Open Sound Control datagram to the link's port; its
// answer is the first E1.31 packet with the sequence's first level, on the loopback interface, with the
// kernel's time stamps. The universe has been quiet for far more than a frame by then.
//
//   TriggerBench [presses, 1000 unless given] [sharp]
//
// With "sharp" the player asks for the timing that it asks for at its start, so that other work on the
// machine does not count.

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "bench/PacketReceiver.h"
#include "components/ComponentTable.h"
#include "components/open/wire/OscTrigger.h"
#include "host/Host.h"
#include "player/ShowPlayer.h"
#include "player/devices/frmMediaPlayer.h"
#include "settings/LibFile.h"
#include "settings/LibNetworks.h"
#include "show/Show.h"
#include "show/ShowFunctions.h"

namespace vex {
namespace {

constexpr uint16_t LightingPort = 5568;
constexpr int FirstLevel = 255;
constexpr auto Rest = std::chrono::milliseconds(150);  // the answer takes 50 of them
constexpr auto StartUp = std::chrono::milliseconds(500);

class Counted : public StatusReport {
 public:
  void LogMessage(int32_t lLevel, const std::string& szText, const SequencePlayInfo*) override {
    if (lLevel >= LevelError) std::fprintf(stderr, "%s\n", szText.c_str());
    Heard += szText.starts_with("Trigger detected") ? 1 : 0;
  }
  void ReportShowsToTray(bool) override {}

  int Heard = 0;
};

int64_t RealTimeNs() {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

/// A folder with settings and the sequence: circuit 1 goes to full at once and back to 0 after 50 ms.
std::string MakeFolder() {
  char pattern[] = "/tmp/vextriggerXXXXXX";
  std::string szFolder = mkdtemp(pattern);
  setenv("VEX_RUNTIME_DIR", (szFolder + "/run").c_str(), 1);
  setenv("VEX_SETTINGS", (szFolder + "/settings.reg").c_str(), 1);
  std::ofstream(szFolder + "/settings.reg")
      << "Windows Registry Editor Version "
         "5.00\n\n[HKEY_CURRENT_USER\\Software\\Brillara\\Output]\n\"Host\"=\"127.0.0.1\"\n"
         "\"SourceName\"=\"TriggerBench\"\n";
  std::ofstream(szFolder + "/flash.vexseq")
      << R"({"format":"vexseq","version":1,"duration":0.06,"events":[)"
         R"({"kind":"main","network":0,"unit":1,"circuit":1,"start":0,"end":0,"from":100,"to":100},)"
         R"({"kind":"main","network":0,"unit":1,"circuit":1,"start":0.05,"end":0.05,"from":0,"to":0}]})";
  return szFolder;
}

/// A port of the loopback interface that is free now.
uint16_t FreePort() {
  const int probe = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in address = bench::Loopback(0);
  socklen_t size = sizeof address;
  bind(probe, reinterpret_cast<sockaddr*>(&address), size);
  getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size);
  close(probe);
  return ntohs(address.sin_port);
}

/// Presses from a thread of its own; the moments just before each send. The pauses differ, so that presses
/// come at any moment of the player's milliseconds.
class Presser {
 public:
  Presser(uint16_t port, int count) : m_Thread([this, port, count] { Press(port, count); }) {}
  ~Presser() { m_Thread.join(); }
  Presser(const Presser&) = delete;
  Presser& operator=(const Presser&) = delete;

  [[nodiscard]] bool Done() const { return m_Done; }
  /// Once it is done.
  [[nodiscard]] const std::vector<int64_t>& Moments() const { return m_Moments; }

 private:
  void Press(uint16_t port, int count) {
    const int sender = socket(AF_INET, SOCK_DGRAM, 0);
    const sockaddr_in address = bench::Loopback(port);
    const std::vector<uint8_t> bytes = WriteOscTrigger({0, 1, 3, "Button"});
    std::this_thread::sleep_for(StartUp);
    for (int press = 0; press < count; ++press) {
      m_Moments.push_back(RealTimeNs());
      sendto(sender, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&address),
             sizeof address);
      std::this_thread::sleep_for(Rest + std::chrono::microseconds(press * 137 % 1000));
    }
    close(sender);
    m_Done = true;
  }

  std::vector<int64_t> m_Moments;
  std::atomic<bool> m_Done{false};
  std::thread m_Thread;
};

void Report(const std::vector<int64_t>& presses, const std::vector<bench::Arrival>& arrivals) {
  std::vector<double> answers;
  auto arrival = arrivals.begin();
  for (size_t press = 1; press < presses.size(); ++press) {  // the first one loads the sequence
    const int64_t end = press + 1 < presses.size() ? presses[press + 1] : INT64_MAX;
    arrival = std::find_if(arrival, arrivals.end(), [&](const bench::Arrival& each) {
      return each.AtNs >= presses[press] && each.Number == FirstLevel;
    });
    if (arrival == arrivals.end()) break;
    if (arrival->AtNs < end) answers.push_back(static_cast<double>(arrival->AtNs - presses[press]) / 1e6);
  }
  std::sort(answers.begin(), answers.end());
  const auto at = [&](double share) {
    return answers.empty() ? NAN
                           : answers[static_cast<size_t>(share * static_cast<double>(answers.size() - 1))];
  };
  const auto within = std::count_if(answers.begin(), answers.end(), [](double ms) { return ms <= 5; });
  std::printf("presses %zu after the first, answered %zu, within 5 ms %zd\n", presses.size() - 1,
              answers.size(), within);
  std::printf("from press to packet, ms: p50 %.3f  p99 %.3f  max %.3f\n", at(0.5), at(0.99), at(1));
}

int Run(int presses, bool boolSharp) {
  const std::string szFolder = MakeFolder();
  bench::PacketReceiver receiver(LightingPort, "TriggerBench");
  const auto host = NativeHost();
  if (boolSharp) std::printf("sharp timers %s\n", host->SharpTimers() ? "granted" : "not granted");
  Counted report;
  Networks networks(host->Registry());
  const auto find = [&](const std::string& szName, bool boolIsAudio) {
    return FullSequencePath(host->Registry(), szName, boolIsAudio);
  };
  Devices devices = NewDevices(
      {host->Clock(), host->EventLoop(), host->Files(), host->Datagrams(), host->Registry(), find, "bench"});
  const auto lights = devices.Lights;
  const auto media = devices.Media;
  const auto showTimer = host->EventLoop().NewTimer(TimerOrder::tmrShowPlayer);
  ShowPlayer player({report, host->Clock(), host->Processes(), host->Registry(), networks, devices, 1,
                     std::make_shared<frmMediaPlayer>(devices.Window, devices.Media)});
  player.InitControls(*showTimer, lights, media);
  const uint16_t port = FreePort();
  lights->SetLink("127.0.0.1", static_cast<int16_t>(port), 0);
  lights->LinkEnabled(true);
  const std::string szSequence = host->Files().SystemPath(szFolder + "/flash.vexseq");
  player.NextShow(
      ShowFromText("((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,),(0,1,2,0,,),,(2,0,1,0,,),((1,,F,T,F,Button,((" +
                   szSequence + ",(3,Button,1,0))),T)),0,,F)"));
  Presser presser(port, presses);
  const auto end = host->EventLoop().NewTimer(TimerOrder::Component);
  end->Interval(250);
  end->Tick([&] {
    if (presser.Done()) host->EventLoop().Quit();
  });
  end->Enabled(true);
  host->EventLoop().Run();
  std::printf("heard by the player %d\n", report.Heard);
  Report(presser.Moments(), receiver.Stop());
  std::filesystem::remove_all(szFolder);
  return 0;
}

}  // namespace
}  // namespace vex

int main(int argc, char** argv) {
  constexpr int usualPresses = 1000;
  return vex::Run(argc > 1 ? std::atoi(argv[1]) : usualPresses, argc > 2 && std::string(argv[2]) == "sharp");
}

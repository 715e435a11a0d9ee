// Whether a show keeps its time while other programs shout at the player: the real form with the real player,
// the open components and the message channel, a show of four universes that change in every frame, and
// flooders that are processes of their own. A timer of one millisecond on the player's own loop, ticking
// after all others, measures how late ticks are: what holds up anything holds it up too.
//
//   FloodBench [messages of each flood, 100000 unless given] [sharp]
//
// With "sharp" the player asks for the timing that it asks for at its start, so that other work on the
// machine does not count.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "bench/Flooder.h"
#include "bench/PacketReceiver.h"
#include "components/ComponentTable.h"
#include "host/Host.h"
#include "monitor/frmMonitor.h"
#include "settings/LibFile.h"

namespace vex {
namespace {

using namespace std::chrono_literals;

constexpr uint16_t LightingPort = 5568;
constexpr uint32_t LightingAddress = 0x7F00005B;  // 127.0.0.91
constexpr uint16_t LinkPort = 47391;
constexpr Elapsed Millisecond = 1ms;
constexpr int32_t LookMs = 50;
constexpr int StartUpLooks = 7000 / LookMs;
constexpr int QuietLooks = 5000 / LookMs;
constexpr int PatienceLooks = 120'000 / LookMs;

std::string Cue() {
  std::string szEvents;
  for (int unit = 1; unit <= 4; ++unit) {
    for (int circuit = 1; circuit <= 512; ++circuit) {
      szEvents += std::string(szEvents.empty() ? "" : ",") + R"({"kind":"main","network":0,"unit":)" +
                  std::to_string(unit) + R"(,"circuit":)" + std::to_string(circuit) +
                  R"(,"start":0,"end":6.4,"from":0,"to":100})";
    }
  }
  return R"({"format":"vexseq","version":1,"duration":6.4,"events":[)" + szEvents + "]}";
}

/// A year of 366 dates with three shows each: what a reload has to read.
std::string Year() {
  std::string szYear = "(";
  for (int day = 0; day < 366; ++day) {
    using namespace std::chrono;
    const year_month_day date{sys_days{2028y / January / 1} + days{day}};
    char szDate[16];
    std::snprintf(szDate, sizeof szDate, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    const int64_t weekday = static_cast<int64_t>(std::chrono::weekday(sys_days(date)).c_encoding()) * 86400;
    szYear += std::string(day == 0 ? "" : ",") + "(" + szDate + ",(";
    for (int show = 0; show < 3; ++show) {
      const int64_t start = weekday + 3600 * (3 + 6 * show);
      szYear += std::string(show == 0 ? "" : ",") + "(" + std::to_string(start + 3600) + ",2,(,0,late.shw)," +
                std::to_string(start) + ")";
    }
    szYear += "))";
  }
  return szYear + ")\r\n";
}

/// Settings, schedules and a show that is in force all week.
std::string MakeFolder() {
  std::string szFolder = std::filesystem::temp_directory_path() / "vexfloodXXXXXX";
  mkdtemp(szFolder.data());
  setenv("VEX_RUNTIME_DIR", (szFolder + "/run").c_str(), 1);
  setenv("VEX_SETTINGS", (szFolder + "/settings.reg").c_str(), 1);
  std::string szData = "Z:" + szFolder + "/";
  std::replace(szData.begin(), szData.end(), '/', '\\');
  std::string szEscaped;
  for (const char character : szData) szEscaped += character == '\\' ? "\\\\" : std::string(1, character);
  std::ofstream(szFolder + "/settings.reg")
      << "Windows Registry Editor Version "
         "5.00\n\n[HKEY_CURRENT_USER\\Software\\Brillara]\n\"UserDataPath\"=\""
      << szEscaped << "\"\n[HKEY_CURRENT_USER\\Software\\Brillara\\Output]\n\"Host\"=\"127.0.0.91\"\n"
      << "\"SourceName\"=\"FloodBench\"\n[HKEY_CURRENT_USER\\Software\\Brillara\\XLK]\n\"On\"=dword:1\n"
      << "\"LocalPort\"=dword:" << std::hex << LinkPort << "\n";
  std::ofstream(szFolder + "/weeksched.qsc") << "((604799,2,(,0,flood.shw),0))\r\n";
  std::ofstream(szFolder + "/yearsched.qsc") << Year();
  std::ofstream(szFolder + "/flood.shw")
      << "((0,1,2,0,,),(0,1,2,0,,),(1,0,1,0,,(" << szData << "flood.vexseq)),(0,1,2,0,,),,(2,0,1,0,,),"
      << "((1,,F,T,F,Button,((" << szData << "flash.vexseq,(3,Button,1,0))),T)),0,,F)\r\n";
  std::ofstream(szFolder + "/flood.vexseq") << Cue();
  std::ofstream(szFolder + "/flash.vexseq")
      << R"({"format":"vexseq","version":1,"duration":0.02,"events":[)"
      << R"({"kind":"main","network":0,"unit":5,"circuit":1,"start":0,"end":0,"from":100,"to":100}]})";
  return szFolder;
}

double ProcessorMs() {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  const auto ms = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  };
  return ms(used.ru_utime) + ms(used.ru_stime);
}

/// How late each tick of the player's loop is, in milliseconds.
class Lateness {
 public:
  Lateness(Clock& clock, EventLoop& loop) : m_Clock(clock), m_Timer(loop.NewTimer(TimerOrder::Component)) {
    m_Timer->Tick([this] {
      const Elapsed now = m_Clock.Elapsed();
      m_Late.push_back(static_cast<double>((now - m_Due).count()) / 1e6);
      m_Due = std::chrono::floor<std::chrono::milliseconds>(now) + Millisecond;
    });
  }
  void Begin() {
    m_Late.clear();
    m_Timer->Enabled(true);
    m_Due = std::chrono::ceil<std::chrono::milliseconds>(m_Clock.Elapsed()) + Millisecond;
  }
  /// Those of the time since Begin, in order of size.
  std::vector<double> End() {
    m_Timer->Enabled(false);
    std::sort(m_Late.begin(), m_Late.end());
    return std::exchange(m_Late, {});
  }

 private:
  Clock& m_Clock;
  std::unique_ptr<Timer> m_Timer;
  Elapsed m_Due{0};
  std::vector<double> m_Late;
};

struct Case {
  std::string Name;
  std::vector<bench::Flood> Floods;  ///< one process each
};

/// The player under one flood after the other.
class Evening {
 public:
  Evening(Host& host, std::vector<Case> cases)
      : m_Host(host),
        m_Cases(std::move(cases)),
        m_Lateness(host.Clock(), host.EventLoop()),
        m_Look(host.EventLoop().NewTimer(TimerOrder::Component)) {
    m_Look->Interval(LookMs);
    m_Look->Tick([this] { Look(); });
    m_Look->Enabled(true);
  }

  void Run() {
    frmMonitor monitor({m_Host.Clock(), m_Host.EventLoop(), m_Host.Windows(), m_Host.Registry(),
                        m_Host.Files(), m_Host.Processes(), m_Host.SingleInstance(), m_Host.MessageBoxes(),
                        [this] { return MakeDevices(); }, "", 1, m_Host.PlayerFinder().StatusFile(),
                        m_Host.Processes().Current(), false,
                        [this](int32_t, const std::string& szText, const SequencePlayInfo*) {
                          ++m_Lines[szText.substr(0, szText.find(':'))];
                        }});
    m_Monitor = &monitor;
    monitor.Run();
  }

 private:
  Devices MakeDevices() {
    Registry& registry = m_Host.Registry();
    return NewDevices({m_Host.Clock(), m_Host.EventLoop(), m_Host.Files(), m_Host.Datagrams(), registry,
                       [&registry](const std::string& szName, bool boolIsAudio) {
                         return FullSequencePath(registry, szName, boolIsAudio);
                       },
                       "bench"});
  }

  void Look() {
    ++m_Looks;
    if (!m_Started && m_Looks >= StartUpLooks) {
      Start();
    } else if (m_Started && Done()) {
      Report();
      if (++m_Case == m_Cases.size())
        m_Monitor->Unload();
      else
        Start();
    }
  }

  void Start() {
    m_Started = true;
    m_Looks = 0;
    m_Lines.clear();
    for (const bench::Flood& flood : m_Cases[m_Case].Floods)
      m_Flooders.push_back(std::make_unique<bench::Flooder>(flood));
    m_Processor = ProcessorMs();
    m_Begin = m_Host.Clock().Elapsed();
    m_Lateness.Begin();
  }

  [[nodiscard]] bool Done() {
    if (m_Flooders.empty()) return m_Looks >= QuietLooks;
    const bool boolSent =
        std::all_of(m_Flooders.begin(), m_Flooders.end(), [](auto& each) { return each->Done(); });
    return (boolSent && Handled() == Expected()) || m_Looks >= PatienceLooks;
  }

  /// Messages that leave one line each in the log.
  [[nodiscard]] int64_t Handled() {
    return m_Lines["Schedule loaded"] + m_Lines["Show on demand error"] +
           m_Lines["Request for show on demand received"] +
           m_Lines["Request to clear show on demand received"];
  }
  [[nodiscard]] int64_t Expected() const {
    int64_t count = 0;
    for (const auto& flooder : m_Flooders) count += flooder->Told();
    return count;
  }

  void Report() {
    const double seconds = std::chrono::duration<double>(m_Host.Clock().Elapsed() - m_Begin).count();
    const double processor = ProcessorMs() - m_Processor;
    const std::vector<double> late = m_Lateness.End();
    const auto at = [&](double share) {
      return late.empty() ? NAN : late[static_cast<size_t>(share * static_cast<double>(late.size() - 1))];
    };
    int64_t sent = 0;
    int64_t refused = 0;
    for (const auto& flooder : m_Flooders) {
      sent += flooder->Sent();
      refused += flooder->Refused();
    }
    std::printf(
        "%s\n  %.2f s, sent %lld, refused on the way %lld; lines expected %lld, written %lld; restarts "
        "%lld\n",
        m_Cases[m_Case].Name.c_str(), seconds, static_cast<long long>(sent), static_cast<long long>(refused),
        static_cast<long long>(Expected()), static_cast<long long>(Handled()),
        static_cast<long long>(m_Lines["Starting show"]));
    std::printf(
        "  ticks %zu, late ms: p50 %.3f  p99 %.3f  max %.3f; above 5 ms %zd; processor %.0f %% of a core\n",
        late.size(), at(0.5), at(0.99), at(1),
        std::count_if(late.begin(), late.end(), [](double ms) { return ms > 5; }), processor / seconds / 10);
    std::fflush(stdout);
    m_Flooders.clear();
  }

  Host& m_Host;
  std::vector<Case> m_Cases;
  Lateness m_Lateness;
  std::unique_ptr<Timer> m_Look;
  frmMonitor* m_Monitor = nullptr;
  std::map<std::string, int64_t> m_Lines;
  std::vector<std::unique_ptr<bench::Flooder>> m_Flooders;
  size_t m_Case = 0;
  int m_Looks = 0;
  bool m_Started = false;
  double m_Processor = 0;
  Elapsed m_Begin{0};
};

}  // namespace
}  // namespace vex

int main(int argc, char** argv) {
  using vex::bench::Flood;
  constexpr int usualCount = 100'000;
  const int count = argc > 1 ? std::atoi(argv[1]) : usualCount;
  const Flood mixed{Flood::Kind::Mixed, count, 0};
  const Flood triggers{Flood::Kind::Triggers, count, vex::LinkPort};
  const std::string szFolder = vex::MakeFolder();
  vex::bench::PacketReceiver receiver(vex::LightingPort, "FloodBench", vex::LightingAddress);
  const auto host = vex::NativeHost();
  if (argc > 2 && std::string(argv[2]) == "sharp")
    std::printf("sharp timers %s\n", host->SharpTimers() ? "granted" : "not granted");
  host->DriveTable([](char) { return std::string(); });
  vex::Evening(*host, {{"no flood", {}},
                       {"messages of all kinds, one sender", {mixed}},
                       {"messages of all kinds, two senders", {mixed, mixed}},
                       {"reloads", {{Flood::Kind::Reloads, count / 10, 0}}},
                       {"the show on demand", {{Flood::Kind::Demands, count, 0}}},
                       {"triggers", {triggers}},
                       {"triggers, two senders", {triggers, triggers}},
                       {"bundles of triggers", {{Flood::Kind::Bundles, count / 10, vex::LinkPort}}},
                       {"triggers and messages", {triggers, mixed}},
                       {"no flood", {}}})
      .Run();
  std::printf("lighting packets %zu\n", receiver.Stop().size());
  std::filesystem::remove_all(szFolder);
  return 0;
}

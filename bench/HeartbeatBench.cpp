// What a heartbeat of the form costs that finds its show file unchanged, from the question which event is in
// force to the report for the tray, beside reading the same file and comparing its bytes. Files are the
// machine's own, everything else stands still.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include "host/linux/LinuxFiles.h"
#include "host/virtual/VirtualHost.h"
#include "monitor/frmMonitor.h"
#include "player/ShowPlayer.h"
#include "tests/player/FakeDevices.h"

namespace {

using namespace vex;

constexpr char File[] = "/tmp/vex-heartbeat-bench.shw";

std::string ShowOf(int64_t sequences) {
  std::string szNames;
  for (int64_t i = 0; i < sequences; ++i) {
    szNames +=
        (i == 0 ? "C:\\Shows\\Sequences\\tree" : ",C:\\Shows\\Sequences\\tree") + std::to_string(100000 + i);
  }
  return "((2,0,1,0,,),(2,0,1,0,,),(1,0,1,0,,(" + szNames + ")),(2,0,1,0,,),)\r\n";
}

/// A form whose show plays, with a tray that knows all about it.
class Evening {
 public:
  explicit Evening(int64_t sequences) {
    std::ofstream(File, std::ios::binary) << ShowOf(sequences);
    m_Monitor.Form_Load();
    SendVexMessage(m_Host.Windows(), m_Tray, m_Monitor.hWnd(), MessageTrayWindow, "");
    SendVexMessage(m_Host.Windows(), m_Tray, m_Monitor.hWnd(), MessageShowOnDemand,
                   std::string("(Z:") + File + ",(F,,F,),2,F)");
    m_Host.EventLoop().Advance(5100);
    if (!m_Monitor.Player()->CurrentShow()) throw std::runtime_error("no show plays");
  }
  ~Evening() { std::remove(File); }
  Evening(const Evening&) = delete;
  Evening& operator=(const Evening&) = delete;

  void Heartbeat() { m_Monitor.PlayShowEvent(m_Monitor.GetCurrentShowEvent(m_Host.Clock().Now())); }

 private:
  Devices NewDevices() {
    Devices devices;
    devices.Lights = std::make_shared<test::FakeChannelIO>(m_Lines);
    devices.Media = std::make_shared<test::FakeMediaPlayer>(m_Lines, m_Host.Clock());
    devices.ShellCommands = std::make_shared<test::FakeShellCommands>();
    devices.NewSequence = [this] {
      return std::make_shared<test::FakeEngine>(m_Lines, m_Host.Clock(), m_Library);
    };
    return devices;
  }

  test::Transcript m_Lines;
  test::FakeEngine::Library m_Library;
  VirtualHost m_Host;
  LinuxFiles m_Files;
  WindowHandle m_Tray = m_Host.Windows().NewForeignWindow();
  frmMonitor m_Monitor{{m_Host.Clock(),
                        m_Host.EventLoop(),
                        m_Host.Windows(),
                        m_Host.Registry(),
                        m_Files,
                        m_Host.Processes(),
                        m_Host.SingleInstance(),
                        m_Host.MessageBoxes(),
                        [this] { return NewDevices(); },
                        "",
                        1,
                        "",
                        0,
                        false,
                        {}}};
};

void HeartbeatUnchanged(benchmark::State& state) {
  Evening evening(state.range(0));
  for (auto _ : state) evening.Heartbeat();
}

void ReadAndCompare(benchmark::State& state) {
  Evening evening(state.range(0));
  LinuxFiles files;
  const std::string szLast = ShowOf(state.range(0));
  std::string szText;
  for (auto _ : state) {
    if (!files.Read(std::string("Z:") + File, szText, nullptr) || szText != szLast) {
      throw std::runtime_error("another file");
    }
  }
}

BENCHMARK(ReadAndCompare)->Arg(20)->Arg(2000);
BENCHMARK(HeartbeatUnchanged)->Arg(20)->Arg(2000);

}  // namespace

BENCHMARK_MAIN();

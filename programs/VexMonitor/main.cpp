#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <string>

#include "components/ComponentTable.h"
#include "host/CodePage.h"
#include "host/Host.h"
#include "monitor/frmMonitor.h"
#include "player/Handlers.h"
#include "schedule/DebugTrace.h"
#include "settings/LibFile.h"
#include "settings/LibRegistryVex.h"

// The player: the machine it runs on, the components its settings name, and the form that owns the rest.

namespace {

void TraceSchedules() {
  const char* szTrace = std::getenv("VEX_TRACE");
  if (szTrace == nullptr || std::strcmp(szTrace, "1") != 0) return;
  vex::DebugTraceTo([](const std::string& szLine) { std::cerr << vex::AnsiToUtf8(szLine) << '\n'; });
}

void SetDriveTable(vex::Host& host) {
  host.DriveTable([&registry = host.Registry()](char letter) {
    return vex::GetProductString(registry, std::string(1, letter), "Drives", "");
  });
}

vex::Devices MakeDevices(vex::Host& host) {
  vex::Registry& registry = host.Registry();
  return vex::NewDevices({host.Clock(), host.EventLoop(), host.Files(), host.Datagrams(), registry,
                          [&registry](const std::string& szName, bool boolIsAudio) {
                            return vex::FullSequencePath(registry, szName, boolIsAudio);
                          },
                          host.MachineId()});
}

/// The first request from the machine is a graceful one, the next one is not.
void EndWhenAsked(vex::Host& host, vex::frmMonitor& monitor) {
  host.OnTerminate([&monitor] {
    vex::GuardHandler(monitor, "Terminate", [&monitor] {
      if (monitor.ShuttingDown()) {
        monitor.RequestImmediateShutdown();
      } else {
        monitor.RequestGracefulShutdown();
      }
    });
  });
}

int RunPlayer(vex::Host& host, const std::string& szCommandLine) {
  SetDriveTable(host);
  (void)host.SharpTimers();
  vex::frmMonitor monitor({host.Clock(),
                           host.EventLoop(),
                           host.Windows(),
                           host.Registry(),
                           host.Files(),
                           host.Processes(),
                           host.SingleInstance(),
                           host.MessageBoxes(),
                           [&host] { return MakeDevices(host); },
                           szCommandLine,
                           static_cast<uint64_t>(host.Clock().Elapsed().count()),
                           host.PlayerFinder().StatusFile(),
                           host.Processes().Current(),
                           true,
                           {},
                           false,
                           &host.ServiceManager()});
  EndWhenAsked(host, monitor);
  return monitor.Run();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    TraceSchedules();
    const auto host = vex::NativeHost();
    return RunPlayer(*host, host->CommandLine(argc, argv));
  } catch (const std::exception& error) {
    std::cerr << "VexMonitor: " << vex::WordsToUtf8(error.what()) << '\n';
    return 1;
  }
}

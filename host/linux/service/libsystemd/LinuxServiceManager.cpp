#include "host/linux/service/LinuxServiceManager.h"

#include <systemd/sd-daemon.h>

#include <algorithm>
#include <chrono>

namespace vex {
namespace {

/// The variables stay in the environment: each call looks for them. Programs that the player starts may see
/// them too; the service's unit listens to the player alone.
class NotifiedServiceManager : public ServiceManager {
 public:
  NotifiedServiceManager() {
    uint64_t microseconds = 0;
    if (sd_watchdog_enabled(0, &microseconds) > 0)
      m_WatchdogTime = std::chrono::duration_cast<Elapsed>(std::chrono::microseconds(microseconds));
  }

  [[nodiscard]] Elapsed WatchdogTime() const override { return m_WatchdogTime; }
  void Ready() override { sd_notify(0, "READY=1"); }
  void Status(const std::string& szLine) override {
    // A state is one line; what a show's name has put into it must not become another.
    std::string szState = "STATUS=" + szLine;
    std::ranges::replace(szState, '\n', ' ');
    sd_notify(0, szState.c_str());
  }
  void Alive() override { sd_notify(0, "WATCHDOG=1"); }
  void Stopping() override { sd_notify(0, "STOPPING=1"); }

 private:
  Elapsed m_WatchdogTime{0};
};

}  // namespace

std::unique_ptr<ServiceManager> NewLinuxServiceManager() {
  return std::make_unique<NotifiedServiceManager>();
}

}  // namespace vex

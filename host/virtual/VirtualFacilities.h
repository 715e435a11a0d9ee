#pragma once

#include <map>

#include "host/Facilities.h"

namespace vex {

/// The facilities of a machine in memory: all is well until a test says otherwise.
class VirtualFacilities final : public Facilities {
 public:
  using Verdict = FacilityAnswer::Verdict;

  [[nodiscard]] std::optional<DiskSpace> Space(const std::string&) override { return Disk; }
  [[nodiscard]] std::optional<FileRights> Rights(const std::string& szHostPath) override {
    const auto found = RightsOf.find(szHostPath);
    return found != RightsOf.end() ? found->second : OtherRights;
  }
  [[nodiscard]] FacilityAnswer OrdinaryAccount() override { return Account; }
  [[nodiscard]] FacilityAnswer ClockSynchronised() override { return Clock; }
  [[nodiscard]] FacilityAnswer SoundDevice() override { return Sound; }
  [[nodiscard]] FacilityAnswer Display() override { return Screen; }
  [[nodiscard]] FacilityAnswer RouteTo(uint32_t address, uint32_t interfaceAddress) override {
    AskedRoute = address;
    AskedInterface = interfaceAddress;
    return Route;
  }
  [[nodiscard]] FacilityAnswer MeetingPlace() override { return Meeting; }

  std::optional<DiskSpace> Disk = DiskSpace{100'000'000'000, false};
  std::map<std::string, std::optional<FileRights>> RightsOf;
  /// Of every path that RightsOf does not name.
  std::optional<FileRights> OtherRights = FileRights{true, true, true, true, false, "player"};
  FacilityAnswer Account{Verdict::Yes, "player"};
  FacilityAnswer Clock{Verdict::Yes, "kept by a time service"};
  FacilityAnswer Sound{Verdict::Yes, "card 0"};
  FacilityAnswer Screen{Verdict::Yes, "display :0"};
  FacilityAnswer Route{Verdict::Yes, "by eth0"};
  FacilityAnswer Meeting{Verdict::Yes, "/run/vexmonitor"};
  uint32_t AskedRoute = 0;
  uint32_t AskedInterface = 0;
};

}  // namespace vex

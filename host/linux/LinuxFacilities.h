#pragma once

#include "host/Facilities.h"
#include "host/linux/RuntimeFolder.h"

namespace vex {

/// Looks the Linux machine over: what the kernel says of disk, clock and routes, which sound server or card
/// this user can reach, whether the X display takes a connection. Nothing is played, drawn or sent.
class LinuxFacilities final : public Facilities {
 public:
  explicit LinuxFacilities(RuntimeFolder folder) : m_Folder(std::move(folder)) {}

  [[nodiscard]] std::optional<DiskSpace> Space(const std::string& szHostPath) override;
  [[nodiscard]] std::optional<FileRights> Rights(const std::string& szHostPath) override;
  [[nodiscard]] FacilityAnswer OrdinaryAccount() override;
  [[nodiscard]] FacilityAnswer ClockSynchronised() override;
  [[nodiscard]] FacilityAnswer SoundDevice() override;
  [[nodiscard]] FacilityAnswer Display() override;
  [[nodiscard]] FacilityAnswer RouteTo(uint32_t address, uint32_t interfaceAddress) override;
  [[nodiscard]] FacilityAnswer MeetingPlace() override;

 private:
  RuntimeFolder m_Folder;
};

}  // namespace vex

#pragma once

#include "host/Host.h"
#include "host/linux/LinuxClock.h"
#include "host/linux/LinuxDatagrams.h"
#include "host/linux/LinuxEventLoop.h"
#include "host/linux/LinuxFacilities.h"
#include "host/linux/LinuxFiles.h"
#include "host/linux/LinuxMessageBoxes.h"
#include "host/linux/LinuxPlayerFinder.h"
#include "host/linux/LinuxProcesses.h"
#include "host/linux/LinuxRegistry.h"
#include "host/linux/LinuxSingleInstance.h"
#include "host/linux/LinuxWindows.h"

namespace vex {

/// The Linux machine. Making it touches neither the runtime folder nor the settings: a companion that only
/// checks a file leaves no trace.
class LinuxHost : public Host {
 public:
  LinuxHost(RuntimeFolder folder, std::string szSettings);

  vex::Clock& Clock() override { return m_Clock; }
  LinuxEventLoop& EventLoop() override { return m_EventLoop; }
  LinuxWindows& Windows() override { return m_Windows; }
  vex::Datagrams& Datagrams() override { return m_Datagrams; }
  vex::Registry& Registry() override { return m_Registry; }
  LinuxFiles& Files() override { return m_Files; }
  vex::Processes& Processes() override { return m_Processes; }
  vex::SingleInstance& SingleInstance() override { return m_SingleInstance; }
  vex::MessageBoxes& MessageBoxes() override { return m_MessageBoxes; }
  vex::PlayerFinder& PlayerFinder() override { return m_PlayerFinder; }
  vex::Facilities& Facilities() override { return m_Facilities; }
  vex::ServiceManager& ServiceManager() override { return *m_ServiceManager; }

  void DriveTable(std::function<std::string(char)> lookUp) override { m_Files.Drives(std::move(lookUp)); }
  [[nodiscard]] std::string MachineId() override;
  /// $XDG_DATA_HOME/vexmonitor, else ~/.local/share/vexmonitor.
  [[nodiscard]] std::string UserDataFolder() override;
  /// $XDG_STATE_HOME/vexmonitor, else ~/.local/state/vexmonitor.
  [[nodiscard]] std::string StateFolder() override;
  [[nodiscard]] std::string SettingsFile() const override { return m_Registry.File(); }
  [[nodiscard]] PlaceWords Places() const override;
  [[nodiscard]] bool IsTerminal(StandardStream stream) const override;
  void OnTerminate(std::function<void()> handler) override { m_EventLoop.OnTerminate(std::move(handler)); }
  bool SharpTimers() override { return m_EventLoop.TrySharpTimers(); }

 private:
  [[nodiscard]] std::string FolderBelowHome(const char* variable, const char* szBelowHome,
                                            const char* szSource, const char* szWhat);

  LinuxClock m_Clock;
  LinuxEventLoop m_EventLoop;
  // The lock goes last: while the player's window stands, no other player may start.
  LinuxSingleInstance m_SingleInstance;
  LinuxWindows m_Windows;
  LinuxDatagrams m_Datagrams;
  LinuxRegistry m_Registry;
  LinuxFiles m_Files;
  LinuxProcesses m_Processes;
  LinuxMessageBoxes m_MessageBoxes;
  LinuxPlayerFinder m_PlayerFinder;
  LinuxFacilities m_Facilities;
  std::unique_ptr<vex::ServiceManager> m_ServiceManager;
};

}  // namespace vex

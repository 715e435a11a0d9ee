#pragma once

#include "host/Host.h"
#include "host/virtual/VirtualClock.h"
#include "host/virtual/VirtualDatagrams.h"
#include "host/virtual/VirtualEventLoop.h"
#include "host/virtual/VirtualFacilities.h"
#include "host/virtual/VirtualFiles.h"
#include "host/virtual/VirtualMessageBoxes.h"
#include "host/virtual/VirtualPlayerFinder.h"
#include "host/virtual/VirtualProcesses.h"
#include "host/virtual/VirtualRegistry.h"
#include "host/virtual/VirtualSingleInstance.h"
#include "host/virtual/VirtualWindows.h"

namespace vex {

/// A whole machine in memory, for tests and rehearsal. Each seam is returned as what it is, so a test
/// reaches its switches and records.
class VirtualHost final : public Host {
 public:
  /// The wall clock's first moment; the lock is the machine's, for several programs on one.
  explicit VirtualHost(DateTime dtStart = DateTime::FromParts(2026, 12, 24, 18, 0, 0),
                       VirtualPlayerLock lock = std::make_shared<const void*>(nullptr));

  VirtualClock& Clock() override { return m_Clock; }
  VirtualEventLoop& EventLoop() override { return m_EventLoop; }
  VirtualWindows& Windows() override { return m_Windows; }
  VirtualDatagrams& Datagrams() override { return m_Datagrams; }
  VirtualRegistry& Registry() override { return m_Registry; }
  VirtualFiles& Files() override { return m_Files; }
  VirtualProcesses& Processes() override { return m_Processes; }
  VirtualSingleInstance& SingleInstance() override { return m_SingleInstance; }
  VirtualMessageBoxes& MessageBoxes() override { return m_MessageBoxes; }
  VirtualPlayerFinder& PlayerFinder() override { return m_PlayerFinder; }
  VirtualFacilities& Facilities() override { return m_Facilities; }
  [[nodiscard]] std::string StateFolder() override { return "Z:\\state\\vexmonitor\\"; }

 private:
  VirtualClock m_Clock;
  VirtualEventLoop m_EventLoop;
  VirtualWindows m_Windows;
  VirtualDatagrams m_Datagrams;
  VirtualRegistry m_Registry;
  VirtualFiles m_Files;
  VirtualProcesses m_Processes;
  VirtualSingleInstance m_SingleInstance;
  VirtualMessageBoxes m_MessageBoxes;
  VirtualPlayerFinder m_PlayerFinder{m_Windows};
  VirtualFacilities m_Facilities;
};

}  // namespace vex

#pragma once

#include "host/Host.h"
#include "host/win32/Win32Clock.h"
#include "host/win32/Win32Datagrams.h"
#include "host/win32/Win32EventLoop.h"
#include "host/win32/Win32Files.h"
#include "host/win32/Win32MessageBoxes.h"
#include "host/win32/Win32PlayerFinder.h"
#include "host/win32/Win32Processes.h"
#include "host/win32/Win32Registry.h"
#include "host/win32/Win32SingleInstance.h"
#include "host/win32/Win32Windows.h"

namespace vex {

/// The Windows machine. Drives are the machine's own and settings lie in its registry, so there is neither a
/// drive table nor a settings file.
class Win32Host : public Host {
 public:
  Win32Host();
  ~Win32Host() override;
  Win32Host(const Win32Host&) = delete;
  Win32Host& operator=(const Win32Host&) = delete;

  vex::Clock& Clock() override { return m_Clock; }
  Win32EventLoop& EventLoop() override { return m_EventLoop; }
  Win32Windows& Windows() override { return m_Windows; }
  vex::Datagrams& Datagrams() override { return m_Datagrams; }
  vex::Registry& Registry() override { return m_Registry; }
  vex::Files& Files() override { return m_Files; }
  vex::Processes& Processes() override { return m_Processes; }
  vex::SingleInstance& SingleInstance() override { return m_SingleInstance; }
  vex::MessageBoxes& MessageBoxes() override { return m_MessageBoxes; }
  vex::PlayerFinder& PlayerFinder() override { return m_PlayerFinder; }

  /// Everything behind the program's name as it was typed, blanks at its end included.
  [[nodiscard]] std::string CommandLine(int argc, char** argv) const override;
  [[nodiscard]] std::vector<std::string> Arguments(int argc, char** argv) const override;
  [[nodiscard]] std::string MachineId() override;
  /// VexMonitor in the folder of the user's application data.
  [[nodiscard]] std::string UserDataFolder() override;
  [[nodiscard]] RegistryText ExportSettings(const std::string& szSubkey) override;
  [[nodiscard]] PlaceWords Places() const override;
  [[nodiscard]] bool IsTerminal(StandardStream stream) const override;
  /// Runs for an interrupt at the console, a request to close the main form, and at the user's logging off.
  void OnTerminate(std::function<void()> handler) override;
  /// Asks for a priority above other programs'.
  bool SharpTimers() override;

 private:
  Win32Clock m_Clock;
  Win32EventLoop m_EventLoop;
  // The mutex goes last: while the player's window stands, no other player may start.
  Win32SingleInstance m_SingleInstance;
  Win32Windows m_Windows;
  Win32Datagrams m_Datagrams;
  Win32Registry m_Registry;
  Win32Files m_Files;
  Win32Processes m_Processes;
  Win32MessageBoxes m_MessageBoxes{m_EventLoop.Modal()};
  Win32PlayerFinder m_PlayerFinder;
  std::unique_ptr<Signal> m_Interrupt;
};

/// What stands behind the first word of a command line, and behind the blanks that part the two; the word may
/// be quoted.
[[nodiscard]] std::string BehindProgramName(const std::string& szCommandLine);

}  // namespace vex

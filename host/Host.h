#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/Clock.h"
#include "host/Datagrams.h"
#include "host/EventLoop.h"
#include "host/Facilities.h"
#include "host/Files.h"
#include "host/MessageBoxes.h"
#include "host/PlayerFinder.h"
#include "host/Processes.h"
#include "host/Registry.h"
#include "host/RegistryText.h"
#include "host/ServiceManager.h"
#include "host/SingleInstance.h"
#include "host/Windows.h"

namespace vex {

/// Where a program prints what it was asked for, and what it has to say besides.
enum class StandardStream { Output, Error };

/// Where things lie on this machine, as its user is told: whole sentences for --help, a line for when no
/// player is found, and remedies.
struct PlaceWords {
  std::string Player;
  std::string Settings;
  std::string NoPlayer = "no player is running; start VexMonitor";
  /// What helps, where a player should run and where the programs cannot meet.
  std::string StartPlayer = "start VexMonitor";
  std::string MendMeetingPlace;
};

/// Everything asked of the machine, gathered. Programs make one and hand each class the one or two seams
/// that it uses; nothing below a program takes the whole host.
class Host {
 public:
  virtual ~Host() = default;

  virtual vex::Clock& Clock() = 0;
  virtual vex::EventLoop& EventLoop() = 0;
  virtual vex::Windows& Windows() = 0;
  virtual vex::Datagrams& Datagrams() = 0;
  virtual vex::Registry& Registry() = 0;
  virtual vex::Files& Files() = 0;
  virtual vex::Processes& Processes() = 0;
  virtual vex::SingleInstance& SingleInstance() = 0;
  virtual vex::MessageBoxes& MessageBoxes() = 0;
  virtual vex::PlayerFinder& PlayerFinder() = 0;
  /// Where the machine cannot be asked about itself, one that knows nothing.
  virtual vex::Facilities& Facilities();
  /// Where nobody looks after programs, one that does nothing.
  virtual vex::ServiceManager& ServiceManager();

  /// Tells where drive letters lie: lookUp gets a capital letter and answers the machine's folder, as the
  /// settings have it, or empty text when the letter is not set. Machines with drives of their own need none.
  virtual void DriveTable(std::function<std::string(char)> /*lookUp*/) {}
  /// The file that holds the settings, a path of the machine in UTF-8; empty where it keeps them elsewhere.
  [[nodiscard]] virtual std::string SettingsFile() const { return {}; }
  /// Where there is no such file: the key of the current user with all keys below it, as the file would hold
  /// them. Numbers and texts are taken over, which is all that the system reads.
  [[nodiscard]] virtual RegistryText ExportSettings(const std::string& /*szSubkey*/) { return {}; }
  [[nodiscard]] virtual PlaceWords Places() const { return {}; }
  /// What stands behind the program's name on its command line, in single-byte text: the arguments joined by
  /// one blank, where the machine does not keep the line itself.
  [[nodiscard]] virtual std::string CommandLine(int argc, char** argv) const;
  /// The arguments in UTF-8, and a terminal that takes UTF-8 from now on; output that goes elsewhere is UTF-8
  /// on every machine.
  [[nodiscard]] virtual std::vector<std::string> Arguments(int argc, char** argv) const;
  /// Stays the same for this machine; empty where nothing tells it.
  [[nodiscard]] virtual std::string MachineId() { return {}; }
  /// Where the user's schedules belong unless the settings say so, as the system writes paths, with its "\".
  /// Raises Error when nothing tells.
  [[nodiscard]] virtual std::string UserDataFolder() { return {}; }
  /// Where programs of this user keep what they note for themselves (logs), as the system writes paths, with
  /// its
  /// "\"; empty where no program of the system keeps any. Raises Error when nothing tells.
  [[nodiscard]] virtual std::string StateFolder() { return {}; }
  /// Whether a person sees at once what is printed there; false where it goes to a file or another program.
  [[nodiscard]] virtual bool IsTerminal(StandardStream /*stream*/) const { return false; }
  /// The handler runs on the loop when the machine asks the program to end (termination, an interrupt from
  /// the terminal). Without it the program just ends.
  virtual void OnTerminate(std::function<void()> /*handler*/) {}
  /// Asks for the sharpest timing that the machine grants this program, and goes on without; true when
  /// granted.
  virtual bool SharpTimers() { return false; }
};

/// The host family that was linked in.
std::unique_ptr<Host> NativeHost();

}  // namespace vex

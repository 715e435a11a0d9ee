#pragma once

#include <string>
#include <vector>

namespace vex {

/// Who may come in, as the command line has it. Without a password file only an address of this machine
/// itself is listened on, no proxy is known, and everybody there may see and change everything.
struct Guards {
  /// Hashes of the two passwords (tray/web/Passwords.h); empty for none. Who knows the first may change, who
  /// knows the second may look.
  std::string szPasswordFile;
  /// Names by which a reverse proxy is reached ("show.example.org"), beside addresses and "localhost". A page
  /// asked for by another name is refused: somebody may have pointed that name here. Where there are names, a
  /// proxy on this machine is believed whose request it hands on.
  std::vector<std::string> Names;
};

/// Raises Error where this address may not be listened on with these guards.
void RequireGuards(const std::string& szAddress, const Guards& guards);

/// What the person who starts the program is to be told: empty for an address of this machine itself, else
/// that passwords and pages go over the network as they are, and whose task it is to encrypt them.
[[nodiscard]] std::string ListenNotice(const std::string& szAddress);

}  // namespace vex

#pragma once

#include <string>
#include <vector>

namespace vex {

/// Who may come in, as the command line has it. Without a password file only an address of this machine
/// itself is listened on, and everybody there may see and change everything.
struct Guards {
  /// Hashes of the two passwords; empty for none. Who knows the first may change, who knows the second may
  /// look.
  std::string szPasswordFile;
  /// Names by which a reverse proxy is reached ("show.example.org"), beside addresses and "localhost". A page
  /// asked for by another name is refused: somebody may have pointed that name here.
  std::vector<std::string> Names;
};

}  // namespace vex

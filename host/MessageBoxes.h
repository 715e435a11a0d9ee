#pragma once

#include <string>

namespace vex {

/// A message to the person at the machine, with an OK to close it. Unattended hosts write it to standard
/// error and go on. It may pump messages while it stands.
class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  /// An empty title stands for the program's own, "VexMonitor".
  virtual void Show(const std::string& szText, const std::string& szTitle) = 0;
};

}  // namespace vex

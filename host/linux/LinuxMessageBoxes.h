#pragma once

#include "host/MessageBoxes.h"

namespace vex {

/// Nobody sits at the machine: a message box is a line "title: text" on standard error, and is closed at
/// once.
class LinuxMessageBoxes : public MessageBoxes {
 public:
  void Show(const std::string& szText, const std::string& szTitle) override;
};

}  // namespace vex

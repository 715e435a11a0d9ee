#pragma once

#include "host/MessageBoxes.h"

namespace vex {

/// The machine's own message box. Window messages are handled while it stands; the loop's timers are not.
class Win32MessageBoxes : public MessageBoxes {
 public:
  void Show(const std::string& szText, const std::string& szTitle) override;
};

}  // namespace vex

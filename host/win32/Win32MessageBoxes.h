#pragma once

#include "host/MessageBoxes.h"

namespace vex {

class ModalLoops;

/// The machine's own message box. All else goes on while it stands; it goes unread when the loop is to end.
class Win32MessageBoxes : public MessageBoxes {
 public:
  explicit Win32MessageBoxes(ModalLoops& loops) : m_Loops(loops) {}
  void Show(const std::string& szText, const std::string& szTitle) override;

 private:
  ModalLoops& m_Loops;
};

}  // namespace vex

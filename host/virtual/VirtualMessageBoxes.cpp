#include "host/virtual/VirtualMessageBoxes.h"

namespace vex {

void VirtualMessageBoxes::Show(const std::string& szText, const std::string& szTitle) {
  const Box box{szText, szTitle};
  m_Shown.push_back(box);
  if (m_OnShow) m_OnShow(box);
}

}  // namespace vex

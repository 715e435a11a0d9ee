#include "host/win32/Win32MessageBoxes.h"

#include "host/win32/ModalLoops.h"

namespace vex {
namespace {

/// The machine's own loop, for as long as the box stands.
class Standing {
 public:
  explicit Standing(ModalLoops& loops) : m_Loops(loops) { m_Loops.Begin(); }
  ~Standing() { m_Loops.End(); }
  Standing(const Standing&) = delete;
  Standing& operator=(const Standing&) = delete;

 private:
  ModalLoops& m_Loops;
};

}  // namespace

void Win32MessageBoxes::Show(const std::string& szText, const std::string& szTitle) {
  const Standing standing(m_Loops);
  MessageBoxA(nullptr, szText.c_str(), szTitle.empty() ? "VexMonitor" : szTitle.c_str(), MB_OK);
}

}  // namespace vex

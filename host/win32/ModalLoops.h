#pragma once

#include <atomic>
#include <functional>

#include "host/win32/SystemHeaders.h"

namespace vex {

/// The loops that the machine runs by itself on this thread: while somebody holds a window to move or size
/// it, while a menu is open, while a message box stands. The program's own loop stands still for so long, and
/// the lights would with it. So a turn of it is asked for every millisecond by a message to a window that is
/// never seen, which the machine's loop hands on like any other. The next is posted only when the last has
/// been handled, so that keys and the mouse are not kept waiting, and none outside such a loop.
///
/// A turn may show a message box, and so stand inside another turn. Belongs to the thread that made it.
class ModalLoops {
 public:
  /// The turn throws nothing. Raises Error where the machine refuses a window.
  explicit ModalLoops(std::function<void()> turn);
  ~ModalLoops();
  ModalLoops(const ModalLoops&) = delete;
  ModalLoops& operator=(const ModalLoops&) = delete;

  void Begin();
  void End();
  /// The program's own loop has the thread: none of the machine's runs, not even one whose window went before
  /// it could tell.
  void EndAll();

  /// Notices those that begin and end at any window of this thread, for as long as it lives.
  class Lookout {
   public:
    explicit Lookout(ModalLoops& loops);
    ~Lookout();
    Lookout(const Lookout&) = delete;
    Lookout& operator=(const Lookout&) = delete;

   private:
    ModalLoops* m_Before;
    HHOOK m_Hook;
  };

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static LRESULT CALLBACK LookAt(int code, WPARAM wParam, LPARAM lParam);
  static void CALLBACK Beat(UINT timer, UINT message, DWORD_PTR self, DWORD_PTR, DWORD_PTR);
  void Turn();
  void StartOrStop();

  std::function<void()> m_Turn;
  HWND m_Window = nullptr;
  UINT m_Timer = 0;  // 0: none runs
  int m_Depth = 0;
  std::atomic<bool> m_Asked = false;
};

}  // namespace vex

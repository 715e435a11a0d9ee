#pragma once

#include "components/com/ControlSeat.h"
#include "player/devices/MediaPlayer.h"

namespace vex {

/// The window under the media form: made hidden, it lives until it is unloaded, with the media control as a
/// child over its whole inside. A control that cannot be seated plays on unseen; the show needs its sound and
/// its time, not its picture. The close box does what MayClose says, which is nothing.
///
/// Belongs to the thread that made it, whose messages must be pumped.
class ControlWindow final : public MediaWindow {
 public:
  /// Raises Error with the machine's words where there can be no window.
  ControlWindow();
  ~ControlWindow() override;
  ControlWindow(const ControlWindow&) = delete;
  ControlWindow& operator=(const ControlWindow&) = delete;

  /// Puts the control on the window and activates it there.
  void Seat(const ComPointer<IUnknown>& control);
  /// Takes the control off again; its own window goes.
  void Unseat() { m_Seat.Leave(); }

  void Place(int32_t lLeftTwips, int32_t lTopTwips) override;
  void Show() override;
  void Hide() override;
  [[nodiscard]] bool Loaded() const override { return m_Window != nullptr; }
  [[nodiscard]] bool Visible() const override;
  void Unload() override;
  void Caption(const std::string& szCaption) override;
  void MoveControl(int32_t lLeft, int32_t lTop, int32_t lWidth, int32_t lHeight) override;

  [[nodiscard]] HWND Native() const { return m_Window; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  [[nodiscard]] LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void TellSize();

  HWND m_Window = nullptr;  // null once unloaded
  ControlSeat m_Seat;
};

}  // namespace vex

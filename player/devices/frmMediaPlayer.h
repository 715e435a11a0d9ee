#pragma once

#include <memory>

#include "player/devices/MediaPlayer.h"

namespace vex {

/// The form "Brillara Video" on which the media player's control sits. It is seen only while a video, or a
/// visualisation of a song, is to be seen; its corner stands where the video preferences put it. Nobody at
/// the machine can close it: a show runs unattended, and the form goes when the program unloads it.
///
/// What is portable about the form is here; the window itself is the machine's.
class frmMediaPlayer {
 public:
  /// Who asks the form to close, as the platform numbers it.
  enum UnloadMode : int32_t { ControlMenu = 0, FormCode = 1, SystemEnds = 2, TaskManager = 3, FormOwner = 5 };

  frmMediaPlayer(std::shared_ptr<MediaWindow> window, std::shared_ptr<MediaPlayer> control);
  ~frmMediaPlayer();
  frmMediaPlayer(const frmMediaPlayer&) = delete;
  frmMediaPlayer& operator=(const frmMediaPlayer&) = delete;

  /// The control WindowsMediaPlayer1.
  [[nodiscard]] const std::shared_ptr<MediaPlayer>& wmp() const { return m_WindowsMediaPlayer1; }

  /// Places the form (twips) and marks it as placed.
  void Position(int32_t lLeftTwips, int32_t lTopTwips);
  [[nodiscard]] bool Placed() const { return m_Placed; }

  /// Whether the request to close is refused.
  [[nodiscard]] bool QueryUnload(int32_t lUnloadMode) const { return lUnloadMode == ControlMenu; }
  /// Lays the control over the whole inside; a size of nothing (a minimised form) changes nothing.
  void Resize(int32_t lWidth, int32_t lHeight);

  void Show() { m_Window->Show(); }
  /// A form that is not loaded is not loaded to be hidden.
  void Hide();
  void Unload();

 private:
  std::shared_ptr<MediaWindow> m_Window;
  std::shared_ptr<MediaPlayer> m_WindowsMediaPlayer1;
  bool m_Placed = false;
};

}  // namespace vex

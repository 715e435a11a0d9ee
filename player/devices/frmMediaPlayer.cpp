#include "player/devices/frmMediaPlayer.h"

#include <utility>

namespace vex {

frmMediaPlayer::frmMediaPlayer(std::shared_ptr<MediaWindow> window, std::shared_ptr<MediaPlayer> control)
    : m_Window(std::move(window)), m_WindowsMediaPlayer1(std::move(control)) {
  m_Window->Caption("Brillara Video");
  m_Window->MayClose = [this] { return !QueryUnload(ControlMenu); };
  m_Window->Resized = [this](int32_t lWidth, int32_t lHeight) { Resize(lWidth, lHeight); };
}

frmMediaPlayer::~frmMediaPlayer() {
  m_Window->MayClose = nullptr;
  m_Window->Resized = nullptr;
}

void frmMediaPlayer::Position(int32_t lLeftTwips, int32_t lTopTwips) {
  m_Window->Place(lLeftTwips, lTopTwips);
  m_Placed = true;
}

void frmMediaPlayer::Resize(int32_t lWidth, int32_t lHeight) {
  if (lWidth <= 0 || lHeight <= 0) return;
  m_Window->MoveControl(0, 0, lWidth, lHeight);
}

void frmMediaPlayer::Hide() {
  if (m_Window->Loaded()) m_Window->Hide();
}

void frmMediaPlayer::Unload() {
  if (m_Window->Loaded()) m_Window->Unload();
}

}  // namespace vex

#include "player/ShowPlayer.h"

namespace vex {

void ShowPlayer::m_WMP_OpenStateChange(int32_t lNewState) {
  if (lNewState != MediaPlayer::OpenStateMediaOpen) return;
  const std::shared_ptr<MediaItem> media = m_WMP->CurrentMedia();
  const bool boolVideo = media && media->GetItemInfo("MediaType") == "video";
  if (boolVideo ? m_Video.DisplayVideos : m_Video.DisplayVisualizations) {
    ShowVideoWindow();
  } else {
    HideVideoWindow();
  }
}

// The holder is marked as failed; the next tick ends it.
void ShowPlayer::m_WMP_Error() {
  if (!m_MediaHolder) return;
  m_MediaHolder->ErrorText(MediaErrorText());
  WakeTimer();
}

std::string ShowPlayer::MediaErrorText() {
  try {
    std::string szText = "Error playing media file";
    const int32_t lCount = m_WMP->ErrorCount();
    for (int32_t lIndex = 0; lIndex < lCount; ++lIndex) {
      szText += (lIndex == 0 ? ": " : " / ") + m_WMP->ErrorDescription(lIndex);
    }
    m_WMP->ClearErrorQueue();
    Log(StatusReport::LevelError, "WINDOWS MEDIA PLAYER ERROR (" + szText + "): ");
    return szText;
  } catch (const std::exception&) {
    return "Unexpected error playing media file";
  }
}

void ShowPlayer::ShowVideoWindow() {
  m_MediaForm->Position(m_Video.MonitorX * MediaWindow::TwipsPerPixel,
                        m_Video.MonitorY * MediaWindow::TwipsPerPixel);
  m_MediaForm->Show();
  m_WMP->FullScreen(m_Video.FullScreenVideo);
}

void ShowPlayer::HideVideoWindow() {
  m_MediaForm->Hide();
}

}  // namespace vex

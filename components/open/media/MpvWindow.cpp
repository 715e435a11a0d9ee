#include "components/open/media/MpvWindow.h"

#include "components/open/media/MediaLibraryFile.h"
#include "components/open/media/MpvCore.h"

namespace vex {

namespace {

constexpr const char* Size = "640x360";
constexpr const char* Visualization =
    "[aid1]asplit[ao][a];[a]showwaves=s=640x360:mode=line:rate=30,format=yuv420p[vo]";

/// A place left of the first screen or above it is a plus with a negative number.
std::string Geometry(int32_t lLeft, int32_t lTop) {
  return std::string(Size) + "+" + std::to_string(lLeft) + "+" + std::to_string(lTop);
}

}  // namespace

void MpvWindow::Place(int32_t lLeftTwips, int32_t lTopTwips) {
  m_Left = lLeftTwips / TwipsPerPixel;
  m_Top = lTopTwips / TwipsPerPixel;
}

void MpvWindow::Show() {
  m_Loaded = true;  // showing a form that was unloaded loads it again
  m_Visible = true;
  if (!m_Opening) Apply();
}

void MpvWindow::Hide() {
  m_Visible = false;
  Apply();
}

void MpvWindow::Unload() {
  Hide();
  m_Loaded = false;
}

void MpvWindow::FullScreen(bool boolFullScreen) {
  m_FullScreen = boolFullScreen;
  if (!m_Opening) Apply();
}

void MpvWindow::Begin(bool boolVideo, bool boolAudio) {
  m_Opening = false;
  Apply();
  m_CanBeBlind = boolVideo && boolAudio;
  if (!m_Visible && m_CanBeBlind) Set("file-local-options/vid", "no");
  if (m_Visible && !boolVideo && boolAudio) Set("file-local-options/lavfi-complex", Visualization);
}

void MpvWindow::Ended() {
  m_Opening = false;
  m_CanBeBlind = false;
  Apply();
}

void MpvWindow::CloseBoxPressed() {
  if (m_Visible && MayClose && MayClose()) Unload();
}

/// The place is taken when the window is made, so it comes before what makes it. The order of taking it away
/// matters as well: a change of drivers would begin the pictures anew, and the sound with them, so where
/// there is sound the pictures go first.
void MpvWindow::Apply() {
  if (!m_Core || !m_Core->IsReady()) return;
  if (m_Visible) {
    if (!m_Made || m_FullScreenTold != m_FullScreen) Set("fullscreen", m_FullScreen ? "yes" : "no");
    m_FullScreenTold = m_FullScreen;
  }
  if (m_Made == m_Visible) return;
  m_Made = m_Visible;
  if (m_Made) {
    Set("title", m_Caption);
    Set("geometry", Geometry(m_Left, m_Top));
    Set("vo", MediaLibraryFile::VideoDrivers());
    Set("force-window", "yes");
  } else {
    Set("force-window", "no");
    if (m_CanBeBlind) Set("file-local-options/vid", "no");
    Set("vo", NoDriver);
  }
}

void MpvWindow::Set(const char* szProperty, const std::string& szValue) {
  m_Core->Set(0, szProperty, szValue);
}

}  // namespace vex

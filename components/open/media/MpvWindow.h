#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "player/devices/MediaPlayer.h"

namespace vex {

class MpvCore;

/// The window of the media library, which the library makes, draws and lays out by itself on a thread of its
/// own. It exists only while it is to be seen: shown, it is made in its place; hidden, it is taken away.
/// Where there is no display the library shows nothing, which is told once, and the sound plays on.
///
/// What the form asks is kept here and reaches the library at once, but what is shown while a file is being
/// opened: that waits until all is known of it. Pictures that nobody is to see are not even decoded, so a
/// hidden video ends with its sound.
class MpvWindow final : public MediaWindow {
 public:
  explicit MpvWindow(MpvCore& core) : m_Core(&core) {}

  void Place(int32_t lLeftTwips, int32_t lTopTwips) override;
  void Show() override;
  void Hide() override;
  [[nodiscard]] bool Loaded() const override { return m_Loaded; }
  [[nodiscard]] bool Visible() const override { return m_Visible; }
  void Unload() override;
  void Caption(const std::string& szCaption) override { m_Caption = szCaption; }

  // What the media player tells.
  void FullScreen(bool boolFullScreen);
  /// A file is being opened; its window is told to the library by Begin.
  void Opening() { m_Opening = true; }
  /// The file that was being opened has these tracks and may play.
  void Begin(bool boolVideo, bool boolAudio);
  /// Nothing plays any more.
  void Ended();
  /// The core is a new one, or is gone.
  void CoreChanged() { m_Made = false; }
  void CoreGone() { m_Core = nullptr; }
  /// The library draws with that driver; false when a window is wanted and that driver has none.
  [[nodiscard]] bool DrawnBy(std::string_view szDriver) const { return !m_Made || szDriver != NoDriver; }
  /// Somebody has pressed the close box.
  void CloseBoxPressed();

 private:
  static constexpr const char* NoDriver = "null";

  void Apply();
  void Set(const char* szProperty, const std::string& szValue);

  MpvCore* m_Core;
  std::string m_Caption;
  int32_t m_Left = 0;  // pixels
  int32_t m_Top = 0;
  bool m_FullScreen = false;
  bool m_Loaded = true;
  bool m_Visible = false;
  bool m_Opening = false;
  bool m_Made = false;  // the library has been told to show it
  bool m_FullScreenTold = false;
  bool m_CanBeBlind = false;  // what plays is video with sound, which goes on without its pictures
};

}  // namespace vex

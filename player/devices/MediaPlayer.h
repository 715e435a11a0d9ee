#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "player/devices/NextDue.h"

namespace vex {

/// A media file made known to the media player.
class MediaItem {
 public:
  virtual ~MediaItem() = default;
  /// "MediaType" gives "audio" or "video" once the media is open, empty before and for what is neither.
  [[nodiscard]] virtual std::string GetItemInfo(const std::string& szName) = 0;
};

/// The media player: one item at a time, audio or video. From Play until the media ends, fails or is
/// stopped the play state is never 1, also while it opens; an error event comes before the state becomes 1.
/// The position never goes back while an item plays. No call waits. Any call may raise Error.
class MediaPlayer {
 public:
  static constexpr int32_t StateStopped = 1;
  static constexpr int32_t StatePlaying = 3;
  static constexpr int32_t OpenStateMediaOpen = 13;

  virtual ~MediaPlayer() = default;

  /// Full path, as the system writes paths.
  [[nodiscard]] virtual std::shared_ptr<MediaItem> NewMedia(const std::string& szUrl) = 0;
  virtual void CurrentMedia(std::shared_ptr<MediaItem> media) = 0;
  [[nodiscard]] virtual std::shared_ptr<MediaItem> CurrentMedia() = 0;

  /// Seconds.
  [[nodiscard]] virtual double CurrentPosition() = 0;
  virtual void CurrentPosition(double seconds) = 0;
  virtual void Play() = 0;
  virtual void Stop() = 0;
  [[nodiscard]] virtual int32_t PlayState() = 0;

  [[nodiscard]] virtual int32_t ErrorCount() = 0;
  /// lIndex from 0 to ErrorCount - 1.
  [[nodiscard]] virtual std::string ErrorDescription(int32_t lIndex) = 0;
  virtual void ClearErrorQueue() = 0;
  virtual void FullScreen(bool boolFullScreen) = 0;

  /// Hint: a show that has media has been started; what takes long may be got ready beside the show.
  virtual void MediaExpected() {}
  /// Hint: the clock's elapsed time, in nanoseconds, at which the position, rounded to milliseconds, will
  /// reach lMilliseconds if nothing else happens. Changed is raised when that turns out otherwise.
  [[nodiscard]] virtual NextDue WhenPositionReaches(int32_t lMilliseconds) {
    (void)lMilliseconds;
    return NextDue::EveryTick();
  }

  /// Hint: the clock's elapsed time, in nanoseconds, at which the play state next changes by itself; Never
  /// for a player that raises Changed when that happens, which is soon enough where media really play.
  [[nodiscard]] virtual NextDue NextStateChange() { return NextDue::EveryTick(); }

  /// Raised when the open state changes (13 is media open).
  std::function<void(int32_t)> OpenStateChange;
  /// Raised when media cannot be opened or played.
  std::function<void()> ErrorEvent;
  /// Raised when the play state has changed or the position runs otherwise than foretold.
  std::function<void()> Changed;
  /// Raised when the device has something that people must know: one line for the log, level 3.
  std::function<void(const std::string&)> Trouble;
};

/// The window in which the media player shows pictures: the control sits on it. Places are in twips, sizes
/// inside the window in pixels. A window that the media library draws by itself has no control to move.
class MediaWindow {
 public:
  static constexpr int32_t TwipsPerPixel = 15;

  virtual ~MediaWindow() = default;
  virtual void Place(int32_t lLeftTwips, int32_t lTopTwips) = 0;
  virtual void Show() = 0;
  virtual void Hide() = 0;
  [[nodiscard]] virtual bool Loaded() const = 0;
  [[nodiscard]] virtual bool Visible() const = 0;
  virtual void Unload() = 0;

  virtual void Caption(const std::string& szCaption) { (void)szCaption; }
  /// Moves the control inside the window.
  virtual void MoveControl(int32_t lLeft, int32_t lTop, int32_t lWidth, int32_t lHeight) {
    (void)lLeft, (void)lTop, (void)lWidth, (void)lHeight;
  }

  /// Raised when the window has a new inner size: width and height.
  std::function<void(int32_t, int32_t)> Resized;
  /// Asked when somebody presses the window's close box: may it close. Not set, it may not.
  std::function<bool()> MayClose;
};

}  // namespace vex

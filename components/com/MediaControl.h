#pragma once

#include <memory>
#include <string>

#include "components/com/ControlWindow.h"
#include "components/com/EventConnection.h"
#include "components/com/MediaControlItem.h"
#include "host/Clock.h"
#include "host/EventLoop.h"
#include "player/devices/MediaPlayer.h"

namespace vex {

/// The machine's media player control, sitting on the window of the media form. Its own play state and its
/// events are both listened to, since a control may have only one of them:
///
///     Stopped --Play--> Starting --plays--> Playing --stopped--> Stopped
///                          |                   |
///                          +-----> Failing <---+   the error event is raised, then Stopped
///
/// A state of "stopped" before anything has played is what is left of the media before and counts for
/// nothing; media that never begin to play count as failed after a while. A failed play() counts as the error
/// event. What the control does not have at all (its full screen, its list of errors) is done without.
///
/// A control that has failed or ended is stopped and given its media anew before it plays again.
class MediaControl final : public MediaPlayer {
 public:
  /// Raises Error where the machine has no such control.
  MediaControl(const Clock& clock, EventLoop& loop);
  ~MediaControl() override;
  MediaControl(const MediaControl&) = delete;
  MediaControl& operator=(const MediaControl&) = delete;

  [[nodiscard]] std::shared_ptr<MediaItem> NewMedia(const std::string& szUrl) override;
  void CurrentMedia(std::shared_ptr<MediaItem> media) override;
  [[nodiscard]] std::shared_ptr<MediaItem> CurrentMedia() override;
  [[nodiscard]] double CurrentPosition() override;
  void CurrentPosition(double seconds) override;
  void Play() override;
  void Stop() override;
  [[nodiscard]] int32_t PlayState() override;
  [[nodiscard]] int32_t ErrorCount() override;
  [[nodiscard]] std::string ErrorDescription(int32_t lIndex) override;
  void ClearErrorQueue() override;
  void FullScreen(bool boolFullScreen) override;

  /// Plays without a sound from now on, as far as the control can.
  void Silence();
  /// Of what plays now; 0 where the control cannot tell.
  [[nodiscard]] double Duration();
  [[nodiscard]] const std::shared_ptr<ControlWindow>& Window() const { return m_Window; }

 private:
  enum class Phase { Stopped, Starting, Playing, Failing };

  void EventRaised(DISPID number, const std::vector<VARIANT>& arguments);
  void Follow(int32_t lState);
  void GiveMedia();
  void BeginFailing(const std::string& szReason);
  void TellFailure();
  void End();
  [[nodiscard]] ComPointer<IWMPError> Errors() const;

  ComApartment m_Apartment;
  const Clock& m_Clock;
  ComPointer<IWMPPlayer4> m_Player;
  ComPointer<IWMPControls> m_Controls;
  std::shared_ptr<ControlWindow> m_Window;
  std::unique_ptr<Signal> m_Failed;
  std::shared_ptr<MediaControlItem> m_Media;  // may be empty

  Phase m_Phase = Phase::Stopped;
  int32_t m_State = StateStopped;  // the last that the control told, by answer or event
  bool m_MediaEnded = false;
  bool m_Fresh = false;     // given its media since it last played
  bool m_MustStop = false;  // the control is still at what has failed
  std::string m_OwnReason;  // of a failed play(), for a control without a list of errors
  Elapsed m_PlayedAt{0};
  double m_Position = 0;
  EventConnection m_Events;  // last: the first to go
};

}  // namespace vex

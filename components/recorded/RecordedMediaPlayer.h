#pragma once

#include <memory>
#include <string>
#include <vector>

#include "components/recorded/MediaFacts.h"
#include "components/recorded/Recorder.h"
#include "host/EventLoop.h"
#include "player/devices/MediaPlayer.h"

namespace vex {

/// An ideal media player: what it is told to play starts at once, its position is exact, and its play state
/// is 1 in the very millisecond in which the length has passed, whoever looks first. It writes down open,
/// play, stop, ended and error; opened and failed media are told once the caller's handler has returned, as
/// any player would.
class RecordedMediaPlayer final : public MediaPlayer {
 public:
  /// nameOf gives the name that stands in an "open" line for a full path.
  RecordedMediaPlayer(const Clock& clock, EventLoop& loop, std::shared_ptr<Recorder> recorder,
                      std::function<std::string(const std::string&)> nameOf, MediaFactsSource facts);

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
  void ClearErrorQueue() override { m_Errors.clear(); }
  void FullScreen(bool boolFullScreen) override { m_FullScreen = boolFullScreen; }
  [[nodiscard]] NextDue WhenPositionReaches(int32_t lMilliseconds) override;
  [[nodiscard]] NextDue NextStateChange() override;

  /// Media fail with these descriptions: the error event comes, then the state becomes 1.
  void InjectErrors(const std::vector<std::string>& errors);
  [[nodiscard]] bool IsFullScreen() const { return m_FullScreen; }

 private:
  class Item;

  void Opened();
  void Settle();
  void ArmEndTimer();
  void EndTimerTick();
  void StopPlaying();
  [[nodiscard]] vex::Elapsed Position() const;

  const Clock& m_Clock;
  std::shared_ptr<Recorder> m_Recorder;
  std::function<std::string(const std::string&)> m_NameOf;
  MediaFactsSource m_FactsSource;
  std::shared_ptr<Item> m_Media;
  MediaFacts m_Facts;
  bool m_Playing = false;
  bool m_FullScreen = false;
  vex::Elapsed m_StartedAt{0};  // at which the position was m_StartPosition
  vex::Elapsed m_StartPosition{0};
  std::vector<std::string> m_Errors;
  std::unique_ptr<Timer> m_EndTimer;
  std::unique_ptr<Signal> m_Opened;
};

}  // namespace vex

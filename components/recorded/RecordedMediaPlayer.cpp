#include "components/recorded/RecordedMediaPlayer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "basic/Error.h"

namespace vex {

using std::chrono::duration;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

/// A media file made known: its path, and its type once it is open.
class RecordedMediaPlayer::Item final : public MediaItem {
 public:
  explicit Item(std::string szPath) : m_Path(std::move(szPath)) {}

  [[nodiscard]] std::string GetItemInfo(const std::string& szName) override {
    return szName == "MediaType" ? m_MediaType : "";
  }
  [[nodiscard]] const std::string& Path() const { return m_Path; }
  void MediaType(const std::string& szMediaType) { m_MediaType = szMediaType; }

 private:
  std::string m_Path;
  std::string m_MediaType;
};

RecordedMediaPlayer::RecordedMediaPlayer(const Clock& clock, EventLoop& loop,
                                         std::shared_ptr<Recorder> recorder,
                                         std::function<std::string(const std::string&)> nameOf,
                                         MediaFactsSource facts)
    : m_Clock(clock),
      m_Recorder(std::move(recorder)),
      m_NameOf(std::move(nameOf)),
      m_FactsSource(std::move(facts)),
      m_EndTimer(loop.NewTimer(TimerOrder::Component)),
      m_Opened(loop.NewSignal([this] { Opened(); })) {
  m_EndTimer->Tick([this] { EndTimerTick(); });
}

std::shared_ptr<MediaItem> RecordedMediaPlayer::NewMedia(const std::string& szUrl) {
  return std::make_shared<Item>(szUrl);
}

void RecordedMediaPlayer::CurrentMedia(std::shared_ptr<MediaItem> media) {
  Settle();
  StopPlaying();
  m_Media = std::dynamic_pointer_cast<Item>(std::move(media));
  m_StartPosition = nanoseconds(0);
  if (m_Media) m_Recorder->MediaOpen(m_NameOf(m_Media->Path()));
}

std::shared_ptr<MediaItem> RecordedMediaPlayer::CurrentMedia() {
  return m_Media;
}

Elapsed RecordedMediaPlayer::Position() const {
  if (!m_Playing) return m_StartPosition;
  const vex::Elapsed position = m_StartPosition + (m_Clock.Elapsed() - m_StartedAt);
  return m_Facts.Length ? std::min(position, *m_Facts.Length) : position;
}

double RecordedMediaPlayer::CurrentPosition() {
  return duration<double>(Position()).count();
}

void RecordedMediaPlayer::CurrentPosition(double seconds) {
  Settle();
  m_StartPosition = nanoseconds(std::llround(std::max(0.0, seconds) * 1e9));
  m_StartedAt = m_Clock.Elapsed();
  if (!m_Playing) return;
  ArmEndTimer();
  if (Changed) Changed();
}

void RecordedMediaPlayer::Play() {
  Settle();
  m_Recorder->Media("play");
  if (m_Playing || !m_Media) return;
  m_Facts = m_FactsSource(m_Media->Path());
  m_StartedAt = m_Clock.Elapsed();
  m_Playing = true;
  ArmEndTimer();
  m_Opened->Raise();
  if (Changed) Changed();
}

void RecordedMediaPlayer::Opened() {
  Settle();
  if (!m_Playing) return;
  if (!m_Facts.Errors.empty()) {
    InjectErrors(m_Facts.Errors);
    return;
  }
  m_Media->MediaType(m_Facts.MediaType);
  if (OpenStateChange) OpenStateChange(OpenStateMediaOpen);
}

void RecordedMediaPlayer::Stop() {
  Settle();
  m_Recorder->Media("stop");
  StopPlaying();
}

void RecordedMediaPlayer::StopPlaying() {
  const bool boolWasPlaying = m_Playing;
  m_Playing = false;
  m_StartPosition = nanoseconds(0);
  m_EndTimer->Enabled(false);
  if (boolWasPlaying && Changed) Changed();
}

int32_t RecordedMediaPlayer::PlayState() {
  Settle();
  return m_Playing ? StatePlaying : StateStopped;
}

void RecordedMediaPlayer::Settle() {
  const NextDue end = NextStateChange();
  if (end.IsNever() || m_Clock.Elapsed().count() < end.Value()) return;
  m_Recorder->Media("ended");
  StopPlaying();
}

/// What is left to play, in whole milliseconds; the end itself is told by the clock, not by the timer.
void RecordedMediaPlayer::ArmEndTimer() {
  m_EndTimer->Enabled(false);
  const NextDue end = NextStateChange();
  if (end.IsNever()) return;
  const vex::Elapsed left = nanoseconds(end.Value()) - m_Clock.Elapsed();
  const int64_t whole = std::chrono::ceil<milliseconds>(left).count();
  m_EndTimer->Interval(
      static_cast<int32_t>(std::clamp<int64_t>(whole, 1, std::numeric_limits<int32_t>::max())));
  m_EndTimer->Enabled(true);
}

void RecordedMediaPlayer::EndTimerTick() {
  Settle();
  if (m_Playing) ArmEndTimer();
}

NextDue RecordedMediaPlayer::NextStateChange() {
  if (!m_Playing || !m_Facts.Length || !m_Facts.Errors.empty()) return NextDue::Never();
  return NextDue::At((m_StartedAt + *m_Facts.Length - m_StartPosition).count());
}

NextDue RecordedMediaPlayer::WhenPositionReaches(int32_t lMilliseconds) {
  if (!m_Playing) return NextDue::Never();
  // Positions are rounded halves to even, so an odd millisecond is reached just after the half before it.
  const nanoseconds half(lMilliseconds % 2 == 0 ? 500000 : 499999);
  return NextDue::At((m_StartedAt + milliseconds(lMilliseconds) - half - m_StartPosition).count());
}

void RecordedMediaPlayer::InjectErrors(const std::vector<std::string>& errors) {
  Settle();
  m_Errors.insert(m_Errors.end(), errors.begin(), errors.end());
  m_Recorder->Media("error");
  if (ErrorEvent) ErrorEvent();
  StopPlaying();
}

int32_t RecordedMediaPlayer::ErrorCount() {
  return static_cast<int32_t>(m_Errors.size());
}

std::string RecordedMediaPlayer::ErrorDescription(int32_t lIndex) {
  if (lIndex < 0 || lIndex >= ErrorCount()) throw PlatformError(ErrorSubscript);
  return m_Errors[static_cast<size_t>(lIndex)];
}

}  // namespace vex

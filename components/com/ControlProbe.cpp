#include "components/com/ControlProbe.h"

#include <memory>

#include "basic/Error.h"
#include "components/com/MediaControl.h"

namespace vex {
namespace {

constexpr int32_t LookMs = 10;

class ControlProbe {
 public:
  ControlProbe(const Clock& clock, EventLoop& loop) : m_Clock(clock), m_Loop(loop) {}

  ProbedMedia Look(const std::string& szPath) {
    try {
      if (!m_Control) MakeControl();
    } catch (const Error& error) {
      return {"", std::nullopt, error.Description, true};
    }
    try {
      return Played(szPath);
    } catch (const Error& error) {
      return {"", std::nullopt, error.Description, false};
    }
  }

 private:
  void MakeControl() {
    m_Control = std::make_shared<MediaControl>(m_Clock, m_Loop);
    m_Control->Silence();
    m_Control->ErrorEvent = [this] {
      m_Failure = m_Control->ErrorCount() > 0 ? m_Control->ErrorDescription(0) : "it cannot be played";
    };
  }

  ProbedMedia Played(const std::string& szPath) {
    m_Failure.clear();
    m_Control->CurrentMedia(m_Control->NewMedia(szPath));
    m_Control->Play();
    WaitUntilKnown();
    ProbedMedia media;
    media.Failure = m_Failure;
    if (const double seconds = m_Failure.empty() ? m_Control->Duration() : 0; seconds > 0)
      media.Length =
          std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds));
    if (m_Failure.empty()) media.MediaType = m_Control->CurrentMedia()->GetItemInfo("MediaType");
    m_Control->Stop();
    return media;
  }

  /// A file so short that it has ended meanwhile is known too.
  void WaitUntilKnown() {
    const auto look = m_Loop.NewTimer(TimerOrder::Component);
    look->Interval(LookMs);
    look->Tick([this] {
      const int32_t lState = m_Control->PlayState();
      const bool boolKnown = lState == MediaPlayer::StatePlaying || lState == MediaPlayer::StateStopped;
      if (boolKnown || !m_Failure.empty()) m_Loop.Quit();
    });
    look->Enabled(true);
    m_Loop.Run();
  }

  const Clock& m_Clock;
  EventLoop& m_Loop;
  std::shared_ptr<MediaControl> m_Control;
  std::string m_Failure;
};

}  // namespace

std::function<ProbedMedia(const std::string&)> NewControlProbe(const Clock& clock, EventLoop& loop) {
  return [probe = std::make_shared<ControlProbe>(clock, loop)](const std::string& szPath) {
    return probe->Look(szPath);
  };
}

}  // namespace vex

#include "components/com/MediaControl.h"

#include <algorithm>
#include <utility>

#include "components/com/ComFailure.h"
#include "components/com/ComText.h"
#include "components/com/Variant.h"
//
#include <wmpids.h>

namespace vex {
namespace {

constexpr CLSID ControlId = {0x6bf52a52, 0x394a, 0x11d3, {0xb1, 0x53, 0x00, 0xc0, 0x4f, 0x79, 0xfa, 0xa6}};
constexpr int32_t ErrorCannotCreate = 429;
constexpr const char* Source = "WindowsMediaPlayer1";

// States of the control beyond those that the player looks at.
constexpr int32_t StateMediaEnded = 8;
constexpr int32_t StateTransitioning = 9;
constexpr int32_t StateReady = 10;

/// For so long media may take to begin.
constexpr std::chrono::seconds Patience(30);

void Check(HRESULT result, const char* szCall) {
  if (FAILED(result)) throw ComError(result, Source, szCall);
}

ComPointer<IUnknown> CreateControl() {
  ComPointer<IUnknown> control;
  const HRESULT result = CoCreateInstance(ControlId, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                          IID_IUnknown, reinterpret_cast<void**>(control.Put()));
  if (FAILED(result) || !control) {
    throw Error(ErrorCannotCreate, Source,
                "The Windows Media Player control cannot be created: " + WordsFor(result));
  }
  return control;
}

int32_t FirstLong(const std::vector<VARIANT>& arguments) {
  if (arguments.empty()) return 0;
  VARIANT value;
  VariantInit(&value);
  return FAILED(VariantChangeType(&value, const_cast<VARIANT*>(&arguments.front()), 0, VT_I4)) ? 0
                                                                                               : value.lVal;
}

}  // namespace

std::string MediaControlItem::GetItemInfo(const std::string& szName) {
  const ComText name(szName);
  BSTR text = nullptr;
  const HRESULT result = m_Media->getItemInfo(name.Get(), &text);
  if (result == E_NOTIMPL) return "";
  Check(result, "getItemInfo");
  std::string szText = TextOf(text);
  SysFreeString(text);
  return szText;
}

MediaControl::MediaControl(const Clock& clock, EventLoop& loop)
    : m_Clock(clock),
      m_Window(std::make_shared<ControlWindow>()),
      m_Failed(loop.NewSignal([this] { TellFailure(); })) {
  const ComPointer<IUnknown> control = CreateControl();
  m_Player = control.As<IWMPPlayer4>();
  if (!m_Player) {
    throw Error(ErrorCannotCreate, Source,
                "The Windows Media Player control is too old: version 9 or later is needed");
  }
  m_Window->Seat(control);
  Check(m_Player->get_controls(m_Controls.Put()), "controls");
  if (!m_Controls) throw ComError(E_POINTER, Source, "controls");
  // Media begin when the show says so, not when they are made known.
  ComPointer<IWMPSettings> settings;
  if (SUCCEEDED(m_Player->get_settings(settings.Put())) && settings) settings->put_autoStart(VARIANT_FALSE);
  m_Events.Listen(control.Get(), __uuidof(_WMPOCXEvents),
                  [this](DISPID number, const auto& arguments) { EventRaised(number, arguments); });
}

MediaControl::~MediaControl() {
  m_Events.Close();
  m_Media.reset();
  m_Controls.Release();
  // The window may be held longer than the control, which must not sit on it any more.
  m_Window->Unseat();
}

void MediaControl::EventRaised(DISPID number, const std::vector<VARIANT>& arguments) {
  switch (number) {
    case DISPID_WMPCOREEVENT_OPENSTATECHANGE:
      if (OpenStateChange) OpenStateChange(FirstLong(arguments));
      break;
    case DISPID_WMPCOREEVENT_PLAYSTATECHANGE:
      Follow(FirstLong(arguments));
      break;
    case DISPID_WMPCOREEVENT_ERROR:
      m_MustStop = true;
      if (ErrorEvent) ErrorEvent();
      End();
      break;
    default:
      break;
  }
}

std::shared_ptr<MediaItem> MediaControl::NewMedia(const std::string& szUrl) {
  const ComText url(szUrl);
  ComPointer<IWMPMedia> media;
  Check(m_Player->newMedia(url.Get(), media.Put()), "newMedia");
  if (!media) throw ComError(E_POINTER, Source, "newMedia");
  return std::make_shared<MediaControlItem>(std::move(media));
}

void MediaControl::CurrentMedia(std::shared_ptr<MediaItem> media) {
  m_Phase = Phase::Stopped;
  m_Media = std::dynamic_pointer_cast<MediaControlItem>(std::move(media));
  GiveMedia();
}

void MediaControl::GiveMedia() {
  if (std::exchange(m_MustStop, false)) m_Controls->stop();
  m_Position = 0;
  Check(m_Player->put_currentMedia(m_Media ? m_Media->Media() : nullptr), "currentMedia");
  m_Fresh = true;
}

// The control may keep what it plays as another object than the one it was given, and only that one knows
// its kind.
std::shared_ptr<MediaItem> MediaControl::CurrentMedia() {
  ComPointer<IWMPMedia> media;
  if (SUCCEEDED(m_Player->get_currentMedia(media.Put())) && media)
    return std::make_shared<MediaControlItem>(std::move(media));
  return m_Media;
}

double MediaControl::CurrentPosition() {
  double position = 0;
  Check(m_Controls->get_currentPosition(&position), "currentPosition");
  m_Position = m_Phase == Phase::Stopped ? position : std::max(m_Position, position);
  return m_Position;
}

void MediaControl::CurrentPosition(double seconds) {
  m_Position = 0;
  Check(m_Controls->put_currentPosition(seconds), "currentPosition");
}

void MediaControl::Play() {
  if (!m_Fresh) GiveMedia();
  m_Fresh = false;
  m_OwnReason.clear();
  m_MediaEnded = false;
  m_State = StateTransitioning;
  m_PlayedAt = m_Clock.Elapsed();
  m_Phase = Phase::Starting;
  const HRESULT result = m_Controls->play();
  if (FAILED(result) && m_Phase != Phase::Stopped) BeginFailing(WordsFor(result));
}

void MediaControl::Stop() {
  const bool boolWasPlaying = m_Phase != Phase::Stopped;
  m_Phase = Phase::Stopped;
  m_Position = 0;
  m_MustStop = false;
  const HRESULT result = m_Controls->stop();
  if (boolWasPlaying && Changed) Changed();
  Check(result, "stop");
}

int32_t MediaControl::PlayState() {
  if (m_Phase == Phase::Starting || m_Phase == Phase::Playing) {
    WMPPlayState state{};
    if (SUCCEEDED(m_Player->get_playState(&state))) Follow(static_cast<int32_t>(state));
  }
  if (m_Phase == Phase::Starting && m_Clock.Elapsed() - m_PlayedAt > Patience)
    BeginFailing("The media do not begin to play");
  switch (m_Phase) {
    case Phase::Stopped:
      return StateStopped;
    case Phase::Playing:
      return m_State;
    default:
      return StateTransitioning;
  }
}

/// What the control tells of its state, by answer or event.
void MediaControl::Follow(int32_t lState) {
  if (m_Phase != Phase::Starting && m_Phase != Phase::Playing) return;
  if (lState == StatePlaying || lState == StateMediaEnded) m_Phase = Phase::Playing;
  if (lState == StatePlaying) m_MediaEnded = false;
  if (lState == StateMediaEnded) m_MediaEnded = true;
  const bool boolOver = lState == StateStopped || (lState == StateReady && m_MediaEnded);
  if (m_Phase == Phase::Playing && boolOver) {
    End();
  } else {
    m_State = lState;
  }
}

/// Told from the loop, as the control tells it: whoever called play() has then finished what it was doing.
void MediaControl::BeginFailing(const std::string& szReason) {
  m_Phase = Phase::Failing;
  m_MustStop = true;
  m_OwnReason = szReason;
  m_Failed->Raise();
}

void MediaControl::TellFailure() {
  if (m_Phase != Phase::Failing) return;
  if (ErrorEvent) ErrorEvent();
  if (m_Phase == Phase::Failing) End();
}

void MediaControl::End() {
  if (std::exchange(m_Phase, Phase::Stopped) != Phase::Stopped && Changed) Changed();
}

void MediaControl::Silence() {
  ComPointer<IWMPSettings> settings;
  if (FAILED(m_Player->get_settings(settings.Put())) || !settings) return;
  settings->put_mute(VARIANT_TRUE);
  settings->put_volume(0);
}

double MediaControl::Duration() {
  ComPointer<IWMPMedia> media;
  double seconds = 0;
  if (FAILED(m_Player->get_currentMedia(media.Put())) || !media) return 0;
  return SUCCEEDED(media->get_duration(&seconds)) ? seconds : 0;
}

/// Empty for a control without a list of errors, of which only the reason of a failed play() is known.
ComPointer<IWMPError> MediaControl::Errors() const {
  ComPointer<IWMPError> errors;
  const HRESULT result = m_Player->get_Error(errors.Put());
  if (SUCCEEDED(result) && errors) return errors;
  if (m_OwnReason.empty()) throw ComError(FAILED(result) ? result : E_POINTER, Source, "Error");
  return {};
}

int32_t MediaControl::ErrorCount() {
  const auto errors = Errors();
  if (!errors) return 1;
  LONG count = 0;
  Check(errors->get_errorCount(&count), "errorCount");
  return count;
}

std::string MediaControl::ErrorDescription(int32_t lIndex) {
  const auto errors = Errors();
  if (!errors) return m_OwnReason;
  ComPointer<IWMPErrorItem> item;
  Check(errors->get_Item(lIndex, item.Put()), "Item");
  if (!item) throw PlatformError(ErrorSubscript);
  BSTR text = nullptr;
  Check(item->get_errorDescription(&text), "errorDescription");
  std::string szText = TextOf(text);
  SysFreeString(text);
  return szText;
}

void MediaControl::ClearErrorQueue() {
  const auto errors = Errors();
  m_OwnReason.clear();
  if (errors) Check(errors->clearErrorQueue(), "clearErrorQueue");
}

// Without full screen the picture is as large as its window, and the show goes on.
void MediaControl::FullScreen(bool boolFullScreen) {
  const HRESULT result = m_Player->put_fullScreen(boolFullScreen ? VARIANT_TRUE : VARIANT_FALSE);
  if (result != E_NOTIMPL) Check(result, "fullScreen");
}

}  // namespace vex

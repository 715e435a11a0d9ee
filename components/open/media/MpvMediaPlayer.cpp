#include "components/open/media/MpvMediaPlayer.h"

#include <algorithm>
#include <utility>

#include "basic/Error.h"
#include "components/open/media/MpvLibrary.h"
#include "host/CodePage.h"
#include "host/Files.h"
#include "settings/LibRegistryVex.h"

namespace vex {

namespace {

constexpr int32_t AskIntervalMs = 20;
constexpr int32_t SoundIsOverTicks = 25;
constexpr int32_t StateTransitioning = 9;

/// What the library says, as the system's text; characters that the system does not know become "?".
std::string SystemText(const char* szUtf8) {
  std::string szText;
  if (Utf8ToAnsi(szUtf8, szText)) return szText;
  szText.clear();
  for (const char* character = szUtf8; *character; ++character) {
    const auto code = static_cast<unsigned char>(*character);
    if (code < 0x80) szText += *character;
    if (code >= 0xC0) szText += '?';
  }
  return szText;
}

const mpv_node* Find(const mpv_node& map, const char* szKey) {
  if (map.format != MPV_FORMAT_NODE_MAP) return nullptr;
  for (int i = 0; i < map.u.list->num; ++i) {
    if (std::string_view(map.u.list->keys[i]) == szKey) return &map.u.list->values[i];
  }
  return nullptr;
}

bool IsSet(const mpv_node& map, const char* szKey) {
  const mpv_node* const flag = Find(map, szKey);
  return flag && flag->format == MPV_FORMAT_FLAG && flag->u.flag != 0;
}

bool IsOfType(const mpv_node& track, std::string_view szType) {
  const mpv_node* const type = Find(track, "type");
  return type && type->format == MPV_FORMAT_STRING && szType == type->u.string;
}

}  // namespace

MpvSettings ReadMpvSettings(Registry& registry) {
  return {GetProductLong(registry, "MediaOffset", "Output", 0),
          GetProductString(registry, "AudioOutput", "Components", "")};
}

MpvMediaPlayer::MpvMediaPlayer(const Clock& clock, EventLoop& loop, Files& files, const MpvSettings& settings)
    : m_Clock(clock),
      m_Files(files),
      m_Settings(settings),
      m_AskTimer(loop.NewTimer(TimerOrder::Component)),
      m_Core(loop, settings.AudioOutput,
             {[this](const std::string& szFailure) { CoreReady(szFailure); },
              [this](const mpv_event& event) { CoreEvent(event); }, [this] { CoreDrained(); },
              [this](const std::string& szLine) {
                if (Trouble) Trouble(szLine);
              }}),
      m_Window(std::make_shared<MpvWindow>(m_Core)) {
  m_AskTimer->Interval(AskIntervalMs);
  m_AskTimer->Tick([this] { AskPosition(); });
}

MpvMediaPlayer::~MpvMediaPlayer() {
  m_Window->CoreGone();
}

std::shared_ptr<MediaItem> MpvMediaPlayer::NewMedia(const std::string& szUrl) {
  return std::make_shared<MpvMediaItem>(szUrl);
}

void MpvMediaPlayer::CurrentMedia(std::shared_ptr<MediaItem> media) {
  Stop();
  m_Media = std::dynamic_pointer_cast<MpvMediaItem>(media);
  m_StartPosition = Elapsed(0);
}

double MpvMediaPlayer::CurrentPosition() {
  if (m_Phase != Phase::Playing) return std::chrono::duration<double>(m_StartPosition).count();
  return std::chrono::duration<double>(std::max(m_Line.At(m_Clock.Elapsed()) - Offset(), Elapsed(0))).count();
}

void MpvMediaPlayer::CurrentPosition(double seconds) {
  m_StartPosition = std::chrono::duration_cast<Elapsed>(std::chrono::duration<double>(seconds));
  if (m_Phase != Phase::Playing) return;
  m_Line.Begin(m_StartPosition + Offset());
  m_AskTimer->Enabled(false);  // until the library has got there it tells the old position
  m_Core.Command(0, {"seek", std::to_string(seconds), "absolute+exact"});
  RaiseChanged();
}

void MpvMediaPlayer::Play() {
  if (!m_Media) throw PlatformError(ErrorObjectNotSet);
  EndRun(Phase::Opening);
  if (m_Core.HasLostItsDisplay()) LeaveCore();
  m_Window->Opening();
  m_HasAudio = true;
  m_Line.Begin(m_StartPosition + Offset());
  if (m_Core.IsReady()) {
    Load();
  } else {
    m_Core.Make();
  }
}

void MpvMediaPlayer::Stop() {
  if (m_Phase == Phase::Stopped) return;
  EndRun(Phase::Stopped);
  if (m_Core.IsReady()) m_Core.Command(0, {"stop"});
  m_Window->Ended();
}

int32_t MpvMediaPlayer::PlayState() {
  switch (m_Phase) {
    case Phase::Stopped:
      return StateStopped;
    case Phase::Playing:
      return StatePlaying;
    default:
      return StateTransitioning;
  }
}

std::string MpvMediaPlayer::ErrorDescription(int32_t lIndex) {
  if (lIndex < 0 || lIndex >= ErrorCount()) throw PlatformError(ErrorSubscript);
  return m_Errors[static_cast<size_t>(lIndex)];
}

NextDue MpvMediaPlayer::WhenPositionReaches(int32_t lMilliseconds) {
  if (m_Phase != Phase::Playing) return NextDue::Never();
  // The position is rounded to milliseconds: it counts as reached half a millisecond before.
  const Elapsed position = std::chrono::milliseconds(lMilliseconds) - std::chrono::microseconds(499);
  const auto reached = m_Line.Reaches(position + Offset());
  return reached ? NextDue::At(reached->count()) : NextDue::Never();
}

void MpvMediaPlayer::Load() {
  std::vector<std::string> words = {"loadfile", m_Files.HostPath(m_Media->Path()), "replace"};
  if (m_StartPosition > Elapsed(0)) {
    words.push_back("start=" + std::to_string(std::chrono::duration<double>(m_StartPosition).count()));
  }
  m_Core.Command(Number(Reply::Load), words);
  m_AskTimer->Enabled(true);  // for now to see that it goes on
}

// Whatever run there was is over; the next one is in that phase.
void MpvMediaPlayer::EndRun(Phase phase) {
  ++m_Run;
  m_Phase = phase;
  m_Entry = 0;
  m_Gathered = false;
  m_PositionUnderWay = false;
  m_StillTicks = 0;
  m_FailureReason.clear();
  m_LogLines.clear();
  m_AskTimer->Enabled(false);
  ContinueOpening();
}

// The library's reasons may come after the end; they have all come once it answers a later question.
void MpvMediaPlayer::BeginFailing(const std::string& szReason) {
  m_Phase = Phase::Failing;
  m_FailureReason = szReason;
  m_Core.Ask(Number(Reply::Gathered), "idle-active", MPV_FORMAT_FLAG);
}

void MpvMediaPlayer::ReportFailure() {
  m_Errors = m_LogLines.empty() ? std::vector<std::string>{m_FailureReason} : m_LogLines;
  const uint64_t run = m_Run;
  if (ErrorEvent) ErrorEvent();
  if (run != m_Run) return;
  EndRun(Phase::Stopped);
  m_Window->Ended();
  RaiseChanged();
}

void MpvMediaPlayer::RaiseChanged() {
  if (Changed) Changed();
}

void MpvMediaPlayer::CoreReady(const std::string& szFailure) {
  m_Window->CoreChanged();
  if (m_Phase != Phase::Opening) return;
  if (szFailure.empty()) {
    Load();
    return;
  }
  m_Phase = Phase::Failing;
  m_FailureReason = szFailure;
  ReportFailure();
}

void MpvMediaPlayer::CoreEvent(const mpv_event& event) {
  switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
      if (event.reply_userdata == Number(Reply::Load)) Loaded(event);
      break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
      if (event.reply_userdata == Number(Reply::Position)) PositionKnown(event);
      if (event.reply_userdata == Number(Reply::Tracks)) TracksKnown(event);
      if (event.reply_userdata == Number(Reply::Decided)) ContinueOpening();
      if (event.reply_userdata == Number(Reply::Gathered)) m_Gathered = true;
      break;
    case MPV_EVENT_CLIENT_MESSAGE:
      m_Window->CloseBoxPressed();
      break;
    case MPV_EVENT_START_FILE:
      m_CoreEntry = static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id;
      break;
    case MPV_EVENT_HOOK:
      Preloaded(static_cast<const mpv_event_hook*>(event.data)->id);
      break;
    case MPV_EVENT_PLAYBACK_RESTART:
      Restarted();
      break;
    case MPV_EVENT_END_FILE:
      FileEnded(*static_cast<const mpv_event_end_file*>(event.data));
      break;
    case MPV_EVENT_LOG_MESSAGE:
      LogLine(*static_cast<const mpv_event_log_message*>(event.data));
      break;
    case MPV_EVENT_PROPERTY_CHANGE:
      PropertyChanged(*static_cast<const mpv_event_property*>(event.data));
      break;
    default:
      break;
  }
}

void MpvMediaPlayer::CoreDrained() {
  if (m_Phase == Phase::Failing && m_Gathered) ReportFailure();
}

void MpvMediaPlayer::Loaded(const mpv_event& event) {
  if (event.error < 0) {
    BeginFailing(MpvLibrary::Loaded().ErrorString(event.error));
    return;
  }
  const mpv_node* const entry =
      Find(static_cast<const mpv_event_command*>(event.data)->result, "playlist_entry_id");
  if (entry && entry->format == MPV_FORMAT_INT64) m_Entry = entry->u.int64;
}

// A file of an earlier run is let go on: it has been replaced or stopped already.
void MpvMediaPlayer::Preloaded(uint64_t hook) {
  if (m_Phase != Phase::Opening) {
    m_Core.Continue(hook);
    return;
  }
  m_Hook = hook;
  m_Core.Ask(Number(Reply::Tracks), "track-list", MPV_FORMAT_NODE);
}

void MpvMediaPlayer::TracksKnown(const mpv_event& event) {
  bool boolAudio = false;
  bool boolVideo = false;
  const auto* const property = static_cast<const mpv_event_property*>(event.data);
  if (event.error >= 0 && property->format == MPV_FORMAT_NODE) {
    const mpv_node& tracks = *static_cast<const mpv_node*>(property->data);
    for (int i = 0; tracks.format == MPV_FORMAT_NODE_ARRAY && i < tracks.u.list->num; ++i) {
      const mpv_node& track = tracks.u.list->values[i];
      boolAudio = boolAudio || IsOfType(track, "audio");
      boolVideo = boolVideo || (IsOfType(track, "video") && !IsSet(track, "albumart"));
    }
  }
  m_HasAudio = boolAudio;
  m_Media->MediaType(boolVideo ? "video" : boolAudio ? "audio" : "");
  const uint64_t run = m_Run;
  if (OpenStateChange) OpenStateChange(OpenStateMediaOpen);
  if (run != m_Run) return;  // and the library has been let go on
  m_Window->Begin(boolVideo, boolAudio);
  m_Core.Ask(Number(Reply::Decided), "idle-active", MPV_FORMAT_FLAG);  // answered after all that was set
}

void MpvMediaPlayer::ContinueOpening() {
  const uint64_t hook = std::exchange(m_Hook, 0);
  if (hook != 0 && m_Core.IsReady()) m_Core.Continue(hook);
}

void MpvMediaPlayer::Restarted() {
  if (!CoreIsAtThisRun() || (m_Phase != Phase::Opening && m_Phase != Phase::Playing)) return;
  m_Phase = Phase::Playing;
  m_AskTimer->Enabled(true);
  AskPosition();
  RaiseChanged();
}

void MpvMediaPlayer::FileEnded(const mpv_event_end_file& end) {
  ContinueOpening();
  if (m_Entry == 0 || end.playlist_entry_id != m_Entry) return;
  if (m_Phase != Phase::Opening && m_Phase != Phase::Playing) return;
  if (end.reason == MPV_END_FILE_REASON_ERROR) {
    BeginFailing(MpvLibrary::Loaded().ErrorString(end.error));
    return;
  }
  if (end.reason == MPV_END_FILE_REASON_REDIRECT) {  // the library would now play one after the other
    m_Core.Command(0, {"stop"});
    BeginFailing(m_Media->Path() + " is a list of files or a folder and no song");
    return;
  }
  EndRun(Phase::Stopped);
  m_Window->Ended();
  RaiseChanged();
}

void MpvMediaPlayer::LogLine(const mpv_event_log_message& message) {
  constexpr size_t mostLines = 5;
  if (m_Phase != Phase::Opening && m_Phase != Phase::Failing) return;
  if (message.log_level > MPV_LOG_LEVEL_ERROR || m_LogLines.size() >= mostLines) return;
  if (std::string_view(message.prefix).starts_with("vo/")) return;  // no reason of the file's
  std::string szLine = SystemText(message.text);
  while (!szLine.empty() && (szLine.back() == '\n' || szLine.back() == '\r')) szLine.pop_back();
  if (!szLine.empty()) m_LogLines.push_back(szLine);
}

void MpvMediaPlayer::PropertyChanged(const mpv_event_property& property) {
  if (property.format != MPV_FORMAT_STRING) return;
  const std::string_view szOutput = *static_cast<char* const*>(property.data);
  if (std::string_view(property.name) == "current-vo") {
    if (m_Window->DrawnBy(szOutput) || std::exchange(m_BlindnessTold, true)) return;
    if (Trouble) Trouble("Video cannot be shown: no display can be opened (see DISPLAY); the sound plays on");
    return;
  }
  const bool boolWanted = m_Settings.AudioOutput.find("null") != std::string::npos;
  if (szOutput != "null" || boolWanted || m_SilenceTold) return;
  m_SilenceTold = true;
  if (Trouble) Trouble("No sound output can be opened: media play without sound");
}

// The library no longer answers: its display has broken away, or its disk. It is left behind, and the next
// song gets a new one.
void MpvMediaPlayer::CoreStuck(const std::string& szReason) {
  LeaveCore();
  m_Phase = Phase::Failing;
  m_LogLines.clear();
  m_FailureReason = szReason;
  ReportFailure();
}

void MpvMediaPlayer::LeaveCore() {
  m_Core.Abandon();
  m_Window->CoreChanged();
}

void MpvMediaPlayer::AskPosition() {
  if (!m_Core.IsReady()) return;
  if (m_Core.HasLostItsDisplay()) {
    CoreStuck("The display has broken away");
    return;
  }
  if (++m_StillTicks > m_Settings.PatienceMs / AskIntervalMs) {
    CoreStuck(m_Media->Path() + (m_Phase == Phase::Opening ? " does not open" : " does not go on"));
    return;
  }
  if (m_PositionUnderWay) return;
  m_PositionUnderWay = true;
  m_Asked = m_Clock.Elapsed();
  m_Core.Ask(Number(Reply::Position), m_HasAudio ? "audio-pts" : "time-pos", MPV_FORMAT_DOUBLE);
}

void MpvMediaPlayer::PositionKnown(const mpv_event& event) {
  m_PositionUnderWay = false;
  const auto* const property = static_cast<const mpv_event_property*>(event.data);
  if (m_Phase != Phase::Playing) return;
  if (event.error < 0 || property->format != MPV_FORMAT_DOUBLE) {
    if (m_StillTicks > SoundIsOverTicks) m_HasAudio = false;  // the pictures go on
    return;
  }
  const auto position = std::chrono::duration<double>(*static_cast<const double*>(property->data));
  if (std::exchange(m_LastAnswer, position.count()) != position.count()) m_StillTicks = 0;
  if (m_Line.Add(m_Asked, m_Clock.Elapsed(), std::chrono::duration_cast<Elapsed>(position))) RaiseChanged();
}

}  // namespace vex

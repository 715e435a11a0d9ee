#include "components/open/media/MpvCore.h"

#include <chrono>
#include <clocale>
#include <utility>

#include "components/open/media/MpvLibrary.h"

namespace vex {

namespace {

struct Option {
  const char* Name;
  const char* Value;
};

/// What a show needs of the library, and nothing that it would do for a person at a screen. The sound ends
/// with its last sample (no gapless playback), pictures beside a song are no video, nothing is read ahead
/// beyond what plays, and the sound server is asked for a position that runs evenly. Windows are asked of X
/// alone: only there is a window put in its place, and version 0.35, where it looks for Wayland in vain,
/// closes descriptor 0, whatever that is by then.
constexpr Option kOptions[] = {
    {"config", "no"},
    {"idle", "yes"},
    {"terminal", "no"},
    {"load-scripts", "no"},
    {"ytdl", "no"},
    {"osc", "no"},
    {"osd-level", "0"},
    {"load-stats-overlay", "no"},
    {"input-default-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"gapless-audio", "no"},
    {"cover-art-auto", "no"},
    {"audio-display", "no"},
    {"sub-auto", "no"},
    {"audio-file-auto", "no"},
    {"force-window", "no"},
    {"vo", "null"},
    {"gpu-context", "x11egl"},
    {"load-osd-console", "no"},
    {"load-auto-profiles", "no"},
    {"keepaspect-window", "no"},
    {"cursor-autohide", "always"},
    {"stop-screensaver", "no"},
    {"cache", "no"},
    {"demuxer-max-bytes", "2MiB"},
    {"demuxer-max-back-bytes", "0"},
    {"audio-fallback-to-null", "yes"},
};

constexpr std::chrono::seconds LongestEnd{3};

/// Only known to a library that was built with that sound server.
constexpr Option kSoundServerOptions[] = {
    {"pulse-buffer", "native"},
    {"pulse-latency-hacks", "yes"},
};

}  // namespace

/// A core on its way, shared with the thread that makes it; everything but Done belongs to the thread until
/// Done is set.
struct MpvCore::Making {
  std::string AudioOutput;
  Signal* Wake = nullptr;
  mpv_handle* Core = nullptr;
  std::string Failure;
  std::vector<std::string> Troubles;
  std::atomic<bool> Done = false;
  std::thread Thread;
};

MpvCore::MpvCore(EventLoop& loop, std::string szAudioOutput, Handlers handlers)
    : m_AudioOutput(std::move(szAudioOutput)),
      m_Handlers(std::move(handlers)),
      m_Wake(loop.NewSignal([this] { Wake(); })) {}

MpvCore::~MpvCore() {
  if (m_Making) {
    m_Making->Thread.join();
    m_Core = m_Making->Core;
  }
  Discard();
}

// The core ends on a thread of its own: one that is stuck in a display or a disk never does.
std::future<void> MpvCore::End() {
  MpvLibrary::Loaded().SetWakeupCallback(m_Core, nullptr, nullptr);
  std::promise<void> ended;
  std::future<void> end = ended.get_future();
  std::thread([core = std::exchange(m_Core, nullptr), ended = std::move(ended)]() mutable {
    MpvLibrary::Loaded().TerminateDestroy(core);
    ended.set_value();
  }).detach();
  return end;
}

void MpvCore::Discard() {
  if (HasLostItsDisplay()) return Abandon();
  if (m_Core) End().wait_for(LongestEnd);
}

bool MpvCore::HasLostItsDisplay() const {
  return m_Core && MpvLibrary::DisplaysGone() != m_DisplaysGone;
}

// A core that cannot end is only silenced.
void MpvCore::Abandon() {
  if (!m_Core) return;
  if (!HasLostItsDisplay()) {
    End();
    return;
  }
  MpvLibrary::Loaded().SetWakeupCallback(m_Core, nullptr, nullptr);
  Command(0, {"stop"});
  m_Core = nullptr;
}

void MpvCore::Make() {
  if (m_Core || m_Making) return;
  // The library refuses to work where the decimal point is something else; nothing here formats by locale.
  std::setlocale(LC_NUMERIC, "C");
  m_DisplaysGone = MpvLibrary::DisplaysGone();
  m_Making = std::make_unique<Making>();
  m_Making->AudioOutput = m_AudioOutput;
  m_Making->Wake = m_Wake.get();
  m_Making->Thread = std::thread([making = m_Making.get()] {
    MakeCore(*making);
    making->Done = true;
    making->Wake->Raise();
  });
}

void MpvCore::MakeCore(Making& making) {
  if (const MpvLibrary& library = MpvLibrary::Loaded(); !library.Failure.empty()) {
    making.Failure = library.Failure;
    return;
  }
  mpv_handle* core = MpvLibrary::Loaded().Create();
  if (!core) {
    making.Failure = "The media library cannot be started";
    return;
  }
  for (const Option& option : kOptions)
    if (const int code = MpvLibrary::Loaded().SetOptionString(core, option.Name, option.Value); code < 0)
      making.Troubles.push_back(std::string("The media library does not take ") + option.Name + ": " +
                                MpvLibrary::Loaded().ErrorString(code));
  for (const Option& option : kSoundServerOptions)
    MpvLibrary::Loaded().SetOptionString(core, option.Name, option.Value);
  if (!making.AudioOutput.empty()) {
    const std::string szDrivers = making.AudioOutput + ",null";
    if (const int code = MpvLibrary::Loaded().SetOptionString(core, "ao", szDrivers.c_str()); code < 0)
      making.Troubles.push_back("The media library does not take the sound output \"" + making.AudioOutput +
                                "\": " + MpvLibrary::Loaded().ErrorString(code));
  }
  MpvLibrary::Loaded().RequestLogMessages(core, "warn");
  if (const int code = MpvLibrary::Loaded().Initialize(core); code < 0) {
    making.Failure =
        std::string("The media library cannot be started: ") + MpvLibrary::Loaded().ErrorString(code);
    MpvLibrary::Loaded().TerminateDestroy(core);
    return;
  }
  const char* keepWindow[] = {"keybind", "CLOSE_WIN", "script-message close-box", nullptr};
  MpvLibrary::Loaded().Command(core, keepWindow);
  MpvLibrary::Loaded().HookAdd(core, 0, "on_preloaded", 0);
  MpvLibrary::Loaded().ObserveProperty(core, 0, "current-ao", MPV_FORMAT_STRING);
  MpvLibrary::Loaded().ObserveProperty(core, 0, "current-vo", MPV_FORMAT_STRING);
  making.Core = core;
}

void MpvCore::Wake() {
  if (m_Making && m_Making->Done) Adopt();
  if (m_Core) Drain();
}

void MpvCore::Adopt() {
  const std::unique_ptr<Making> made = std::move(m_Making);
  made->Thread.join();
  m_Core = made->Core;
  if (m_Core)
    MpvLibrary::Loaded().SetWakeupCallback(
        m_Core, [](void* signal) { static_cast<Signal*>(signal)->Raise(); }, m_Wake.get());
  for (const std::string& szLine : made->Troubles) m_Handlers.Trouble(szLine);
  m_Handlers.Ready(made->Failure);
}

/// A handler may pump the loop and so come here again; the events are then left to the outer call.
void MpvCore::Drain() {
  if (m_Draining) return;
  m_Draining = true;
  bool boolShutDown = false;
  while (m_Core) {
    const mpv_event* const event = MpvLibrary::Loaded().WaitEvent(m_Core, 0);
    if (event->event_id == MPV_EVENT_NONE) break;
    boolShutDown = boolShutDown || event->event_id == MPV_EVENT_SHUTDOWN;
    m_Handlers.Event(*event);
    if (boolShutDown) break;
  }
  m_Draining = false;
  if (boolShutDown) Discard();
  m_Handlers.Drained();
}

void MpvCore::Command(uint64_t reply, const std::vector<std::string>& words) {
  std::vector<const char*> pointers;
  pointers.reserve(words.size() + 1);
  for (const std::string& szWord : words) pointers.push_back(szWord.c_str());
  pointers.push_back(nullptr);
  MpvLibrary::Loaded().CommandAsync(m_Core, reply, pointers.data());
}

void MpvCore::Ask(uint64_t reply, const char* szProperty, mpv_format format) {
  MpvLibrary::Loaded().GetPropertyAsync(m_Core, reply, szProperty, format);
}

void MpvCore::Set(uint64_t reply, const char* szProperty, const std::string& szValue) {
  const char* szText = szValue.c_str();
  MpvLibrary::Loaded().SetPropertyAsync(m_Core, reply, szProperty, MPV_FORMAT_STRING, &szText);
}

void MpvCore::Continue(uint64_t hook) {
  MpvLibrary::Loaded().HookContinue(m_Core, hook);
}

}  // namespace vex

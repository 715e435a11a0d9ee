#pragma once

#include <mpv/client.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "host/EventLoop.h"

namespace vex {

/// The media library's core, made on a thread beside the show, for making one takes tens of milliseconds.
/// All asking is done without waiting; what the core answers comes as events in the loop.
///
/// The core is either absent, being made, or ready. A core that cannot be made is absent again and Ready has
/// been told why; the next Make tries anew. A core that is let go ends beside the show; at the program's end
/// it is waited for, but not for ever.
class MpvCore {
 public:
  struct Handlers {
    /// The core is ready (empty text), or why it cannot be made.
    std::function<void(const std::string& szFailure)> Ready;
    std::function<void(const mpv_event& event)> Event;
    /// No more events wait now; log lines come after all other events of their time.
    std::function<void()> Drained;
    /// A setting that the library does not take.
    std::function<void(const std::string& szLine)> Trouble;
  };

  /// szAudioOutput names sound drivers in the library's own words, empty for its own choice; silence stands
  /// at the end of the list in any case.
  MpvCore(EventLoop& loop, std::string szAudioOutput, Handlers handlers);
  ~MpvCore();
  MpvCore(const MpvCore&) = delete;
  MpvCore& operator=(const MpvCore&) = delete;

  void Make();
  [[nodiscard]] bool IsReady() const { return m_Core != nullptr; }
  /// What it drew on has broken away: it will end no video any more.
  [[nodiscard]] bool HasLostItsDisplay() const;
  /// Lets go of a core that is stuck, whatever becomes of it.
  void Abandon();

  /// Each asks without waiting; the answer is an event with that number. Only while ready.
  void Command(uint64_t reply, const std::vector<std::string>& words);
  void Ask(uint64_t reply, const char* szProperty, mpv_format format);
  void Set(uint64_t reply, const char* szProperty, const std::string& szValue);
  void Continue(uint64_t hook);

 private:
  struct Making;

  static void MakeCore(Making& making);
  void Wake();
  void Adopt();
  void Discard();
  std::future<void> End();
  void Drain();

  std::string m_AudioOutput;
  uint32_t m_DisplaysGone = 0;  // before this core
  Handlers m_Handlers;
  std::unique_ptr<Signal> m_Wake;
  std::unique_ptr<Making> m_Making;
  mpv_handle* m_Core = nullptr;
  bool m_Draining = false;
};

}  // namespace vex

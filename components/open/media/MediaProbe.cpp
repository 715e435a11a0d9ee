#include "components/open/media/MediaProbe.h"

#include <array>
#include <clocale>

#include "components/open/media/MpvLibrary.h"
#include "host/Files.h"

namespace vex {
namespace {

constexpr double SecondsPerEvent = 1;
constexpr int MostEvents = 30;  // a file that says nothing for so long is given up

constexpr std::array<std::array<const char*, 2>, 12> Options{{{"config", "no"},
                                                              {"idle", "yes"},
                                                              {"terminal", "no"},
                                                              {"load-scripts", "no"},
                                                              {"ytdl", "no"},
                                                              {"osc", "no"},
                                                              {"pause", "yes"},
                                                              {"vo", "null"},
                                                              {"ao", "null"},
                                                              {"cover-art-auto", "no"},
                                                              {"sub-auto", "no"},
                                                              {"audio-file-auto", "no"}}};

}  // namespace

class MediaProbe::Core {
 public:
  Core() : m_Library(MpvLibrary::Loaded()) {
    Failure = m_Library.Failure;
    if (!Failure.empty()) return;
    std::setlocale(LC_NUMERIC, "C");  // the library refuses to work with another decimal point
    m_Handle = m_Library.Create();
    if (m_Handle != nullptr)
      for (const auto& option : Options) m_Library.SetOptionString(m_Handle, option[0], option[1]);
    if (m_Handle == nullptr || m_Library.Initialize(m_Handle) < 0)
      Failure = "The media library cannot be started";
  }
  ~Core() {
    if (m_Handle != nullptr) m_Library.TerminateDestroy(m_Handle);
  }
  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;

  std::string Failure;
  /// It goes on to files that nobody asked for and is of no more use.
  bool Astray = false;

  [[nodiscard]] ProbedMedia Look(const std::string& szHostPath) {
    if (!Failure.empty()) return {"", std::nullopt, Failure, true};
    std::array<const char*, 3> load{"loadfile", szHostPath.c_str(), nullptr};
    m_Library.Command(m_Handle, load.data());
    ProbedMedia media{"", std::nullopt, "the media library does not answer", false};
    for (int events = 0; events < MostEvents; ++events) {
      const mpv_event* const event = m_Library.WaitEvent(m_Handle, SecondsPerEvent);
      if (event->event_id == MPV_EVENT_FILE_LOADED) {
        media = Known();
        std::array<const char*, 2> stop{"stop", nullptr};
        m_Library.Command(m_Handle, stop.data());
      } else if (event->event_id == MPV_EVENT_END_FILE) {
        const auto& end = *static_cast<const mpv_event_end_file*>(event->data);
        if (end.reason == MPV_END_FILE_REASON_ERROR) media.Failure = m_Library.ErrorString(end.error);
        Astray = end.reason == MPV_END_FILE_REASON_REDIRECT;
        if (Astray) media.Failure = "it is a list of files or a folder";
        break;
      }
    }
    return media;
  }

 private:
  [[nodiscard]] std::string Text(const std::string& szProperty) const {
    char* text = nullptr;
    if (m_Library.GetProperty(m_Handle, szProperty.c_str(), MPV_FORMAT_STRING, static_cast<void*>(&text)) < 0)
      return {};
    std::string szText = text;
    m_Library.Free(text);
    return szText;
  }

  [[nodiscard]] ProbedMedia Known() const {
    ProbedMedia media;
    double seconds = 0;
    if (m_Library.GetProperty(m_Handle, "duration", MPV_FORMAT_DOUBLE, &seconds) >= 0)
      media.Length =
          std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds));
    int64_t tracks = 0;
    m_Library.GetProperty(m_Handle, "track-list/count", MPV_FORMAT_INT64, &tracks);
    for (int64_t track = 0; track < tracks; ++track) {
      const std::string szTrack = "track-list/" + std::to_string(track) + "/";
      const std::string szType = Text(szTrack + "type");
      if (szType == "video" && Text(szTrack + "albumart") != "yes")
        media.MediaType = "video";
      else if (szType == "audio" && media.MediaType.empty())
        media.MediaType = "audio";
    }
    return media;
  }

  const MpvLibrary& m_Library;
  mpv_handle* m_Handle = nullptr;
};

MediaProbe::MediaProbe(Files& files) : m_Files(files) {}

MediaProbe::~MediaProbe() = default;

ProbedMedia MediaProbe::Look(const std::string& szPath) {
  if (!m_Core) m_Core = std::make_unique<Core>();
  ProbedMedia media = m_Core->Look(m_Files.HostPath(szPath));
  if (m_Core->Astray) m_Core.reset();
  return media;
}

}  // namespace vex

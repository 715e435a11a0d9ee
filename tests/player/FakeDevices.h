#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "host/Clock.h"
#include "player/devices/Devices.h"
#include "show/Trigger.h"

namespace vex::test {

/// What the devices and the player said, line by line, in the order in which it happened.
using Transcript = std::vector<std::string>;

/// What a sequence file holds, for the fake engine.
struct SequenceScript {
  int32_t DurationMs = 1000;
  std::string Media;
  std::any ShellCommand;
  std::vector<LightingEvent> Events;
  std::vector<NetworkKind> Networks;
  std::string FailLoad;
  std::string FailPrepare;
  std::string FailStart;
  std::string FailSync;
  std::string FailHint;
  int32_t LingerMs = 0;  // how long it still plays once it is stopped
  bool Loops = true;     // whether the loop option is obeyed
};

/// Lights that write down what is asked of them.
class FakeChannelIO : public ChannelIO {
 public:
  explicit FakeChannelIO(Transcript& transcript) : m_Transcript(transcript) {}

  void ConfigureValue(int32_t lNetwork, int16_t value) override { Line("configureValue", lNetwork, value); }
  void ConfigureFlag(int32_t lNetwork, bool boolFlag) override { Line("configureFlag", lNetwork, boolFlag); }
  void OpenNetwork(uint8_t network, uint8_t& port, std::optional<bool> boolForPlay) override {
    if (boolForPlay) {
      Line("openNetwork", int(network), int(port), *boolForPlay);
    } else {
      Line("openNetwork", int(network), int(port));
    }
    if (!FailOpen.empty()) throw Error(8005, "ChannelIO", FailOpen);
  }
  void OpenX10(uint8_t& port) override { Line("openX10", int(port)); }
  void OpenCourser(uint8_t& port) override { Line("openCourser", int(port)); }
  void RegisterTrigger(const Trigger& trigger) override {
    Line("registerTrigger", trigger.Network(), trigger.UnitId(), trigger.InputNumber());
  }
  void ClearTriggers() override {
    m_Transcript.push_back("io clearTriggers");
    if (!FailClear.empty()) throw Error(1, "ChannelIO", FailClear);
  }
  void KeepAlive() override {
    m_Transcript.push_back("io keepAlive");
    if (!FailKeepAlive.empty()) throw Error(1, "ChannelIO", FailKeepAlive);
  }
  bool AcceptsUnit(int32_t, int32_t lUnit) override { return lUnit != RefusedUnit; }
  bool AcceptsCircuit(int32_t, int32_t, int32_t lCircuit) override { return lCircuit != RefusedCircuit; }
  void SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel, double endLevel,
                 const std::string& szCommand, double rate, int32_t lStartMs, int32_t lEndMs,
                 int32_t lDurationMs) override {
    m_Transcript.push_back("io send " + std::to_string(lNetwork) + " " + std::to_string(lUnit) + " " +
                           std::to_string(lCircuit) + " " + std::to_string(static_cast<int>(startLevel)) +
                           "->" + std::to_string(static_cast<int>(endLevel)) + " " + szCommand + " " +
                           std::to_string(static_cast<int>(rate * 100)) + "% " + std::to_string(lStartMs) +
                           ".." + std::to_string(lEndMs) + " takes " + std::to_string(lDurationMs));
  }
  void Flush() override { m_Transcript.push_back("io flush"); }
  void SetLink(const std::string&, int16_t, int16_t) override {}
  void SupportsSpecial(bool) override {}
  void LinkEnabled(bool) override {}
  void ShowsEnded() override { ++ShowsEndedCount; }

  std::string FailOpen;
  std::string FailClear;
  std::string FailKeepAlive;
  int32_t RefusedUnit = -1;
  int32_t RefusedCircuit = -1;
  int32_t ShowsEndedCount = 0;

 private:
  template <class... Values>
  void Line(const char* szCall, Values... values) {
    std::string szLine = std::string("io ") + szCall;
    ((szLine += " " + std::to_string(values)), ...);
    m_Transcript.push_back(szLine);
  }

  Transcript& m_Transcript;
};

/// An engine object that plays a script against the clock or the music.
class FakeEngine : public SequenceEngine {
 public:
  using Library = std::map<std::string, SequenceScript>;

  FakeEngine(Transcript& transcript, const Clock& clock, const Library& library)
      : m_Transcript(transcript), m_Clock(clock), m_Library(library) {}

  void AttachControl(std::shared_ptr<ChannelIO> cio) override { m_CIO = std::move(cio); }
  void Load(const std::string& szFilename) override {
    m_Filename = szFilename;
    Line("load");
    const auto found = m_Library.find(szFilename);
    if (found == m_Library.end()) throw Error(53, "Sequence.Load", "File not found");
    if (!found->second.FailLoad.empty()) throw Error(1, "Sequence.Load", found->second.FailLoad);
    m_Script = &found->second;
  }
  void PlayRate(double rate) override { m_Rate = rate; }
  void PlayOptions(bool boolLoopAtEnd, bool boolLightsOffAtEnd) override {
    m_Loop = boolLoopAtEnd;
    m_Options = std::string(boolLoopAtEnd ? " loop" : "") + (boolLightsOffAtEnd ? " lightsoff" : "");
  }
  void PrepareForPlay(bool boolHasMedia) override {
    m_HasMedia = boolHasMedia;
    m_Transcript.push_back("seq prepare " + m_Filename + (boolHasMedia ? " media" : "") + m_Options);
    if (m_Script && !m_Script->FailPrepare.empty()) throw Error(1, "Sequence", m_Script->FailPrepare);
  }
  void Start() override {
    Line("start");
    if (m_Script && !m_Script->FailStart.empty()) throw Error(1, "Sequence", m_Script->FailStart);
    m_Playing = m_Script != nullptr;
    m_Started = m_Clock.Elapsed();
  }
  void Stop() override {
    Line("stop");
    if (m_Script && m_Script->LingerMs > 0) {
      if (!m_StopsAt) m_StopsAt = m_Clock.Elapsed() + std::chrono::milliseconds(m_Script->LingerMs);
      return;
    }
    m_Playing = false;
  }
  int32_t PlayState() override {
    if (m_StopsAt && m_Clock.Elapsed() >= *m_StopsAt) m_Playing = false;
    if (m_Playing && !m_HasMedia && !Looping() && m_Clock.Elapsed() >= End()) m_Playing = false;
    return m_Playing ? 1 : 0;
  }
  [[nodiscard]] const std::shared_ptr<ChannelIO>& Control() const { return m_CIO; }
  [[nodiscard]] double Rate() const { return m_Rate; }
  std::string MediaFile() override { return m_Script ? m_Script->Media : ""; }
  std::any ShellCommand() override { return m_Script ? m_Script->ShellCommand : std::any(); }
  bool UsesNetwork(NetworkKind kind) override {
    if (!m_Script) return false;
    for (const NetworkKind used : m_Script->Networks) {
      if (used == kind) return true;
    }
    return false;
  }
  void InitMusicSync(int32_t lMilliseconds) override {
    m_Transcript.push_back("seq sync from " + std::to_string(lMilliseconds) + " " + m_Filename);
    m_NextEvent = 0;
    m_Position = lMilliseconds;
  }
  void SyncToMusic(int32_t lMilliseconds) override {
    if (m_Script && !m_Script->FailSync.empty()) throw Error(1, "Sequence", m_Script->FailSync);
    m_Position = lMilliseconds;
  }
  bool GetEvent(LightingEvent& event) override {
    if (!m_Script || m_NextEvent >= m_Script->Events.size()) return false;
    if (m_Script->Events[m_NextEvent].StartTime > m_Position) return false;
    event = m_Script->Events[m_NextEvent++];
    return true;
  }
  NextDue NextEventDue() override {
    if (!m_Script || m_NextEvent >= m_Script->Events.size()) return NextDue::Never();
    return NextDue::At(m_Script->Events[m_NextEvent].StartTime);
  }
  NextDue NextStateChange() override {
    if (m_Script && !m_Script->FailHint.empty()) throw Error(1, "Sequence", m_Script->FailHint);
    if (m_StopsAt) return NextDue::EveryTick();
    if (!m_Playing || m_HasMedia || Looping()) return NextDue::Never();
    return NextDue::At(End().count());
  }

 private:
  [[nodiscard]] bool Looping() const { return m_Loop && m_Script->Loops; }
  [[nodiscard]] Elapsed End() const { return m_Started + std::chrono::milliseconds(m_Script->DurationMs); }
  void Line(const char* szCall) { m_Transcript.push_back(std::string("seq ") + szCall + " " + m_Filename); }

  Transcript& m_Transcript;
  const Clock& m_Clock;
  const Library& m_Library;
  std::shared_ptr<ChannelIO> m_CIO;
  std::string m_Filename;
  const SequenceScript* m_Script = nullptr;
  double m_Rate = 0;
  std::string m_Options;
  bool m_Loop = false;
  bool m_HasMedia = false;
  bool m_Playing = false;
  Elapsed m_Started{};
  std::optional<Elapsed> m_StopsAt;
  size_t m_NextEvent = 0;
  int32_t m_Position = 0;
};

class FakeMediaItem : public MediaItem {
 public:
  explicit FakeMediaItem(std::string szUrl) : Url(std::move(szUrl)) {}
  std::string GetItemInfo(const std::string&) override { return Type; }
  std::string Url;
  std::string Type = "audio";
};

/// A media player whose items last as long as told (1000 ms if not) and start at once.
class FakeMediaPlayer : public MediaPlayer {
 public:
  FakeMediaPlayer(Transcript& transcript, const Clock& clock) : m_Transcript(transcript), m_Clock(clock) {}

  std::shared_ptr<MediaItem> NewMedia(const std::string& szUrl) override {
    return std::make_shared<FakeMediaItem>(szUrl);
  }
  void CurrentMedia(std::shared_ptr<MediaItem> media) override {
    m_Media = std::static_pointer_cast<FakeMediaItem>(media);
    m_Transcript.push_back("media open " + m_Media->Url);
  }
  std::shared_ptr<MediaItem> CurrentMedia() override { return m_Media; }
  double CurrentPosition() override {
    if (Position) return *Position;
    return std::chrono::duration<double>(m_Clock.Elapsed() - m_Started).count();
  }
  void CurrentPosition(double seconds) override { PositionsSet.push_back(seconds); }
  void Play() override {
    m_Transcript.push_back("media play");
    if (!FailPlay.empty()) throw Error(1, "Media", FailPlay);
    m_Playing = true;
    m_Started = m_Clock.Elapsed();
  }
  void Stop() override {
    m_Transcript.push_back("media stop");
    if (!FailStop.empty()) throw Error(1, "Media", FailStop);
    m_Playing = false;
  }
  int32_t PlayState() override {
    if (m_Playing && m_Clock.Elapsed() >= End()) m_Playing = false;
    return m_Playing ? StatePlaying : StateStopped;
  }
  int32_t ErrorCount() override { return static_cast<int32_t>(Errors.size()); }
  std::string ErrorDescription(int32_t lIndex) override {
    if (FailErrors) throw Error(1, "Media", "no errors to be had");
    return Errors.at(static_cast<size_t>(lIndex));
  }
  void ClearErrorQueue() override { Errors.clear(); }
  void FullScreen(bool boolFullScreen) override {
    m_Transcript.push_back(std::string("media fullscreen ") + (boolFullScreen ? "on" : "off"));
  }
  void MediaExpected() override { ++ExpectedCount; }
  NextDue WhenPositionReaches(int32_t lMilliseconds) override {
    if (!m_Playing) return NextDue::Never();
    return NextDue::At((m_Started + std::chrono::milliseconds(lMilliseconds)).count());
  }

  NextDue NextStateChange() override { return m_Playing ? NextDue::At(End().count()) : NextDue::Never(); }

  /// The clock's time at which the media ends by itself.
  [[nodiscard]] Elapsed End() const {
    const auto found = Lengths.find(m_Media ? m_Media->Url : "");
    return m_Started + std::chrono::milliseconds(found == Lengths.end() ? 1000 : found->second);
  }
  [[nodiscard]] bool Playing() const { return m_Playing; }

  std::map<std::string, int32_t> Lengths;
  std::vector<std::string> Errors;
  bool FailErrors = false;
  std::string FailPlay;
  std::string FailStop;
  int32_t ExpectedCount = 0;
  /// Told instead of the clock's, if set.
  std::optional<double> Position;
  std::vector<double> PositionsSet;

 private:
  Transcript& m_Transcript;
  const Clock& m_Clock;
  std::shared_ptr<FakeMediaItem> m_Media;
  bool m_Playing = false;
  Elapsed m_Started{};
};

/// The video window, which writes down when it comes and goes.
class FakeWindow : public MediaWindow {
 public:
  explicit FakeWindow(Transcript& transcript) : m_Transcript(transcript) {}
  void Place(int32_t lLeft, int32_t lTop) override {
    if (!FailPlace.empty()) throw Error(1, "Window", FailPlace);
    m_Transcript.push_back("window place " + std::to_string(lLeft) + " " + std::to_string(lTop));
  }
  void Show() override {
    m_Transcript.push_back("window show");
    m_Visible = true;
  }
  void Hide() override {
    if (m_Visible) m_Transcript.push_back("window hide");
    m_Visible = false;
  }
  bool Loaded() const override { return IsLoaded; }
  bool Visible() const override { return m_Visible; }
  void Unload() override {}

  std::string FailPlace;
  bool IsLoaded = true;

 private:
  Transcript& m_Transcript;
  bool m_Visible = false;
};

class FakeShellCommands : public ShellCommandManager {
 public:
  std::string CommandLineFor(const std::any& command) override { return std::any_cast<std::string>(command); }
  int32_t WindowStyleFor(const std::any&) override { return 4; }
};

/// A fired input as the I/O control hands it over.
class FakeInput : public NamedProperties {
 public:
  FakeInput(int32_t lNetwork, int32_t lUnit, int32_t lInput, std::string szName)
      : m_Integers{{"Network", lNetwork}, {"UnitId", lUnit}, {"InputNumber", lInput}},
        m_Name(std::move(szName)) {}
  int32_t Integer(std::string_view szName) const override {
    const auto found = m_Integers.find(std::string(szName));
    if (found == m_Integers.end()) throw Error(438, "", "Object doesn't support this property or method");
    return found->second;
  }
  std::string Text(std::string_view) const override {
    if (!m_Name) throw Error(438, "", "Object doesn't support this property or method");
    return *m_Name;
  }
  void Forget(const std::string& szName) {
    m_Integers.erase(szName);
    if (szName == "Name") m_Name.reset();
  }

 private:
  std::map<std::string, int32_t> m_Integers;
  std::optional<std::string> m_Name;
};

}  // namespace vex::test

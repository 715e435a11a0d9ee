#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "basic/Error.h"
#include "components/open/OpenSequenceEngine.h"
#include "host/virtual/VirtualHost.h"
#include "player/devices/ChannelIO.h"

namespace vex {

/// A cue file of a tenth of a second whose two events stand in the wrong order.
constexpr const char* Two =
    R"({"duration":0.1,"events":[{"circuit":2,"start":0.05,"from":20,"to":20},{"circuit":1,"from":10,"to":10}]})";

/// An I/O control that writes down what is asked of it, "at: unit.circuit from>to duration", and "flush".
class NotedLights final : public ChannelIO {
 public:
  explicit NotedLights(Clock& clock) : m_Clock(clock) {}

  void ConfigureValue(int32_t, int16_t) override {}
  void ConfigureFlag(int32_t, bool) override {}
  void OpenNetwork(uint8_t, uint8_t&, std::optional<bool>) override {}
  void OpenX10(uint8_t&) override {}
  void OpenCourser(uint8_t&) override {}
  void RegisterTrigger(const Trigger&) override {}
  void ClearTriggers() override {}
  void KeepAlive() override {}
  bool AcceptsUnit(int32_t, int32_t lUnit) override {
    if (NoteQuestions) Note("unit?" + std::to_string(lUnit));
    return lUnit <= MostUnits;
  }
  bool AcceptsCircuit(int32_t, int32_t lUnit, int32_t lCircuit) override {
    if (NoteQuestions) Note("circuit?" + std::to_string(lUnit) + "." + std::to_string(lCircuit));
    return lCircuit <= 512;
  }
  void SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel, double endLevel,
                 const std::string& szCommand, double rate, int32_t lStartMs, int32_t lEndMs,
                 int32_t lDurationMs) override {
    if (FailSends || RefuseNext > 0) {
      if (RefuseNext > 0) --RefuseNext;
      throw Error(7, "Lights", "no lights");
    }
    std::ostringstream line;
    line << (lNetwork == 0 ? "" : std::to_string(lNetwork) + "/") << lUnit << '.' << lCircuit << ' '
         << startLevel << '>' << endLevel << ' ' << lDurationMs;
    if (Whole) line << " [" << szCommand << ' ' << rate << ' ' << lStartMs << ' ' << lEndMs << ']';
    Note(line.str());
  }
  void Flush() override { Note("flush"); }
  bool EventsAreSeen() const override { return Seen; }
  void SetLink(const std::string&, int16_t, int16_t) override {}
  void SupportsSpecial(bool) override {}
  void LinkEnabled(bool) override {}

  /// What was noted since the last time.
  std::vector<std::string> Take() { return std::exchange(m_Notes, {}); }

  bool NoteQuestions = false;
  bool Whole = false;
  bool FailSends = false;
  int32_t RefuseNext = 0;  // so many of the next events
  bool Seen = true;
  int32_t MostUnits = 64;

 private:
  void Note(const std::string& szText) {
    m_Notes.push_back(std::to_string(m_Clock.Elapsed().count() / 1000000) + ": " + szText);
  }

  Clock& m_Clock;
  std::vector<std::string> m_Notes;
};

/// An engine on a virtual machine. Sequences lie in C:\seq, media in C:\media.
struct EngineRig {
  VirtualHost Host;
  std::shared_ptr<NotedLights> Lights = std::make_shared<NotedLights>(Host.Clock());
  std::unique_ptr<OpenSequenceEngine> Engine;

  EngineRig() { New(); }

  void New() {
    Engine.reset();
    Engine = std::make_unique<OpenSequenceEngine>(
        Host.Clock(), Host.EventLoop(), Host.Files(), [](const std::string& szName, bool boolIsAudio) {
          if (szName.find(':') != std::string::npos) return szName;
          return (boolIsAudio ? "C:\\media\\" : "C:\\seq\\") + szName;
        });
    Engine->AttachControl(Lights);
  }

  void Put(const std::string& szText) { Host.Files().Put("C:\\seq\\a.vexseq", szText); }
  void Load(const std::string& szText) {
    Put(szText);
    Engine->Load("a.vexseq");
  }
  /// Loads, prepares and starts by the own clock.
  void Play(const std::string& szText, bool boolLoop = false, bool boolLightsOff = false) {
    Load(szText);
    Engine->PlayOptions(boolLoop, boolLightsOff);
    Engine->PrepareForPlay(false);
    Engine->Start();
  }
  /// The same with media.
  void PlayMusic(const std::string& szText, bool boolLightsOff = false) {
    Load(szText);
    Engine->PlayOptions(false, boolLightsOff);
    Engine->PrepareForPlay(true);
    Engine->InitMusicSync(0);
    Engine->Start();
  }
  void Advance(int64_t milliseconds) { Host.EventLoop().Advance(milliseconds); }

  /// What falls due when the music is there, "unit.circuit from>to@start".
  std::vector<std::string> Sync(int32_t lMilliseconds) {
    Engine->SyncToMusic(lMilliseconds);
    std::vector<std::string> events;
    LightingEvent event;
    while (Engine->GetEvent(event)) {
      std::ostringstream line;
      line << event.UnitId << '.' << event.Circuit << ' ' << event.StartLevel << '>' << event.EndLevel << '@'
           << event.StartTime;
      events.push_back(line.str());
    }
    return events;
  }

  std::string LoadFailure(const std::string& szName = "a.vexseq") {
    try {
      Engine->Load(szName);
    } catch (const Error& error) {
      return error.Source + " " + std::to_string(error.Number) + ": " + error.Description;
    }
    return {};
  }
};

}  // namespace vex

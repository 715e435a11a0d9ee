#pragma once

#include <any>
#include <memory>
#include <string>
#include <utility>

#include "player/devices/Devices.h"
#include "tools/faults/FaultPlan.h"

namespace vex {

// The devices with one call that raises instead of being made. Hints and questions may fail like any other.

class FaultyChannelIO final : public ChannelIO {
 public:
  FaultyChannelIO(std::shared_ptr<ChannelIO> cio, FaultPlan& plan) : m_CIO(std::move(cio)), m_Plan(plan) {
    m_CIO->TriggerDetected = [this](const NamedProperties& input) {
      if (TriggerDetected) TriggerDetected(input);
    };
    m_CIO->Trouble = [this](const std::string& szText) {
      if (Trouble) Trouble(szText);
    };
  }
  ~FaultyChannelIO() override {
    m_CIO->TriggerDetected = nullptr;
    m_CIO->Trouble = nullptr;
  }

  void ConfigureValue(int32_t lNetwork, int16_t value) override {
    Made("configureValue").ConfigureValue(lNetwork, value);
  }
  void ConfigureFlag(int32_t lNetwork, bool boolFlag) override {
    Made("configureFlag").ConfigureFlag(lNetwork, boolFlag);
  }
  void OpenNetwork(uint8_t network, uint8_t& port, std::optional<bool> boolForPlay) override {
    Made("openNetwork").OpenNetwork(network, port, boolForPlay);
  }
  void OpenX10(uint8_t& port) override { Made("openX10").OpenX10(port); }
  void OpenCourser(uint8_t& port) override { Made("openCourser").OpenCourser(port); }
  void RegisterTrigger(const Trigger& trigger) override { Made("registerTrigger").RegisterTrigger(trigger); }
  void ClearTriggers() override { Made("clearTriggers").ClearTriggers(); }
  void KeepAlive() override { Made("keepAlive").KeepAlive(); }
  bool AcceptsUnit(int32_t lNetwork, int32_t lUnit) override {
    return Made("acceptsUnit").AcceptsUnit(lNetwork, lUnit);
  }
  bool AcceptsCircuit(int32_t lNetwork, int32_t lUnit, int32_t lCircuit) override {
    return Made("acceptsCircuit").AcceptsCircuit(lNetwork, lUnit, lCircuit);
  }
  void SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel, double endLevel,
                 const std::string& szCommand, double rate, int32_t lStartMs, int32_t lEndMs,
                 int32_t lDurationMs) override {
    Made("sendEvent")
        .SendEvent(lNetwork, lUnit, lCircuit, startLevel, endLevel, szCommand, rate, lStartMs, lEndMs,
                   lDurationMs);
  }
  void Flush() override { Made("flush").Flush(); }
  void SetLink(const std::string& szHost, int16_t localPort, int16_t remotePort) override {
    Made("setLink").SetLink(szHost, localPort, remotePort);
  }
  void SupportsSpecial(bool boolSupports) override { Made("supportsSpecial").SupportsSpecial(boolSupports); }
  void LinkEnabled(bool boolEnabled) override { Made("linkEnabled").LinkEnabled(boolEnabled); }
  void ShowsEnded() override { Made("showsEnded").ShowsEnded(); }

 private:
  ChannelIO& Made(const char* szCall) {
    m_Plan.Check(szCall);
    return *m_CIO;
  }

  std::shared_ptr<ChannelIO> m_CIO;
  FaultPlan& m_Plan;
};

class FaultySequenceEngine final : public SequenceEngine {
 public:
  FaultySequenceEngine(std::shared_ptr<SequenceEngine> engine, FaultPlan& plan)
      : m_Engine(std::move(engine)), m_Plan(plan) {
    m_Engine->KeepAlive = [this] {
      if (KeepAlive) KeepAlive();
    };
  }
  ~FaultySequenceEngine() override { m_Engine->KeepAlive = nullptr; }

  void AttachControl(std::shared_ptr<ChannelIO> cio) override {
    Made("attachControl").AttachControl(std::move(cio));
  }
  void Load(const std::string& szFilename) override {
    m_Filename = szFilename;
    Made("load").Load(szFilename);
  }
  void PlayRate(double rate) override { Made("playRate").PlayRate(rate); }
  void PlayOptions(bool boolLoopAtEnd, bool boolLightsOffAtEnd) override {
    Made("playOptions").PlayOptions(boolLoopAtEnd, boolLightsOffAtEnd);
  }
  void PrepareForPlay(bool boolHasMedia) override { Made("prepareForPlay").PrepareForPlay(boolHasMedia); }
  void Start() override { Made("start").Start(); }
  void Stop() override { Made("stop").Stop(); }
  int32_t PlayState() override { return Made("playState").PlayState(); }
  std::string MediaFile() override { return Made("mediaFile").MediaFile(); }
  std::any ShellCommand() override { return Made("shellCommand").ShellCommand(); }
  bool UsesNetwork(NetworkKind kind) override { return Made("usesNetwork").UsesNetwork(kind); }
  void InitMusicSync(int32_t lMilliseconds) override { Made("initMusicSync").InitMusicSync(lMilliseconds); }
  void SyncToMusic(int32_t lMilliseconds) override { Made("syncToMusic").SyncToMusic(lMilliseconds); }
  bool GetEvent(LightingEvent& event) override { return Made("getEvent").GetEvent(event); }
  NextDue NextEventDue() override { return Made("hint nextEventDue").NextEventDue(); }
  NextDue NextStateChange() override { return Made("hint nextStateChange").NextStateChange(); }
  std::optional<int32_t> Length() override { return m_Engine->Length(); }

 private:
  SequenceEngine& Made(const char* szCall) {
    m_Plan.Check(szCall, m_Filename);
    return *m_Engine;
  }

  std::shared_ptr<SequenceEngine> m_Engine;
  FaultPlan& m_Plan;
  std::string m_Filename;
};

class FaultyShellCommandManager final : public ShellCommandManager {
 public:
  FaultyShellCommandManager(std::shared_ptr<ShellCommandManager> manager, FaultPlan& plan)
      : m_Manager(std::move(manager)), m_Plan(plan) {}

  std::string CommandLineFor(const std::any& command) override {
    m_Plan.Check("commandLineFor");
    return m_Manager->CommandLineFor(command);
  }
  int32_t WindowStyleFor(const std::any& command) override {
    m_Plan.Check("windowStyleFor");
    return m_Manager->WindowStyleFor(command);
  }

 private:
  std::shared_ptr<ShellCommandManager> m_Manager;
  FaultPlan& m_Plan;
};

class FaultyMediaPlayer final : public MediaPlayer {
 public:
  FaultyMediaPlayer(std::shared_ptr<MediaPlayer> player, FaultPlan& plan)
      : m_Player(std::move(player)), m_Plan(plan) {
    m_Player->OpenStateChange = [this](int32_t lState) {
      if (OpenStateChange) OpenStateChange(lState);
    };
    m_Player->ErrorEvent = [this] {
      if (ErrorEvent) ErrorEvent();
    };
    m_Player->Changed = [this] {
      if (Changed) Changed();
    };
    m_Player->Trouble = [this](const std::string& szText) {
      if (Trouble) Trouble(szText);
    };
  }
  ~FaultyMediaPlayer() override {
    m_Player->OpenStateChange = nullptr;
    m_Player->ErrorEvent = nullptr;
    m_Player->Changed = nullptr;
    m_Player->Trouble = nullptr;
  }

  std::shared_ptr<MediaItem> NewMedia(const std::string& szUrl) override {
    return std::make_shared<Item>(Made("newMedia").NewMedia(szUrl), m_Plan);
  }
  void CurrentMedia(std::shared_ptr<MediaItem> media) override {
    Made("put currentMedia").CurrentMedia(std::static_pointer_cast<Item>(std::move(media))->Inner);
  }
  std::shared_ptr<MediaItem> CurrentMedia() override {
    auto media = Made("get currentMedia").CurrentMedia();
    return media ? std::make_shared<Item>(std::move(media), m_Plan) : nullptr;
  }
  double CurrentPosition() override { return Made("get currentPosition").CurrentPosition(); }
  void CurrentPosition(double seconds) override { Made("put currentPosition").CurrentPosition(seconds); }
  void Play() override { Made("play").Play(); }
  void Stop() override { Made("stop").Stop(); }
  int32_t PlayState() override { return Made("playState").PlayState(); }
  int32_t ErrorCount() override { return Made("errorCount").ErrorCount(); }
  std::string ErrorDescription(int32_t lIndex) override {
    return Made("errorDescription").ErrorDescription(lIndex);
  }
  void ClearErrorQueue() override { Made("clearErrorQueue").ClearErrorQueue(); }
  void FullScreen(bool boolFullScreen) override { Made("fullScreen").FullScreen(boolFullScreen); }
  void MediaExpected() override { Made("hint mediaExpected").MediaExpected(); }
  NextDue WhenPositionReaches(int32_t lMilliseconds) override {
    return Made("hint whenPositionReaches").WhenPositionReaches(lMilliseconds);
  }
  NextDue NextStateChange() override { return Made("hint nextStateChange").NextStateChange(); }

 private:
  struct Item final : MediaItem {
    Item(std::shared_ptr<MediaItem> inner, FaultPlan& plan) : Inner(std::move(inner)), Plan(plan) {}
    std::string GetItemInfo(const std::string& szName) override {
      Plan.Check("getItemInfo");
      return Inner->GetItemInfo(szName);
    }
    std::shared_ptr<MediaItem> Inner;
    FaultPlan& Plan;
  };

  MediaPlayer& Made(const char* szCall) {
    m_Plan.Check(szCall);
    return *m_Player;
  }

  std::shared_ptr<MediaPlayer> m_Player;
  FaultPlan& m_Plan;
};

class FaultyMediaWindow final : public MediaWindow {
 public:
  FaultyMediaWindow(std::shared_ptr<MediaWindow> window, FaultPlan& plan)
      : m_Window(std::move(window)), m_Plan(plan) {}

  void Place(int32_t lLeftTwips, int32_t lTopTwips) override { Made("place").Place(lLeftTwips, lTopTwips); }
  void Show() override { Made("show").Show(); }
  void Hide() override { Made("hide").Hide(); }
  bool Loaded() const override {
    m_Plan.Check("loaded");
    return m_Window->Loaded();
  }
  bool Visible() const override { return m_Window->Visible(); }
  void Unload() override { Made("unload").Unload(); }

 private:
  MediaWindow& Made(const char* szCall) {
    m_Plan.Check(szCall);
    return *m_Window;
  }

  std::shared_ptr<MediaWindow> m_Window;
  FaultPlan& m_Plan;
};

/// Puts a wrapper before every device.
inline void WrapDevices(Devices& devices, FaultPlan& plan) {
  devices.Lights = std::make_shared<FaultyChannelIO>(std::move(devices.Lights), plan);
  devices.NewSequence = [&plan, newSequence = std::move(devices.NewSequence)] {
    plan.Check("newSequence");
    return std::make_shared<FaultySequenceEngine>(newSequence(), plan);
  };
  devices.ShellCommands = std::make_shared<FaultyShellCommandManager>(std::move(devices.ShellCommands), plan);
  devices.Media = std::make_shared<FaultyMediaPlayer>(std::move(devices.Media), plan);
  devices.Window = std::make_shared<FaultyMediaWindow>(std::move(devices.Window), plan);
}

}  // namespace vex

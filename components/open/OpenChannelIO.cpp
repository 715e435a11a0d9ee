#include "components/open/OpenChannelIO.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace vex {
namespace {

constexpr Elapsed KeepAlivePause{900'000'000};
constexpr Elapsed DiscoveryPause{10'000'000'000};
constexpr int32_t TerminatedPackets = 3;

}  // namespace

OpenChannelIO::OpenChannelIO(Clock& clock, EventLoop& eventLoop, Datagrams& datagrams,
                             const OutputSettings& settings, const std::string& szMachineId)
    : m_Clock(clock),
      m_Settings(Bounded(settings)),
      m_Network(clock, eventLoop, datagrams, m_Settings, szMachineId),
      m_Timer(eventLoop.NewTimer(TimerOrder::Component)),
      m_Triggers(eventLoop, datagrams) {
  m_Used.reserve(m_Universes.size());
  m_Timer->Tick([this] { m_Timer_Tick(); });
  const auto trouble = [this](const std::string& szText) {
    if (Trouble) Trouble(szText);
  };
  m_Network.Trouble = trouble;
  m_Triggers.Trouble = trouble;
  m_Triggers.Detected = [this](const NamedProperties& input) {
    if (TriggerDetected) TriggerDetected(input);
  };
}

OpenChannelIO::~OpenChannelIO() {
  m_Network.Trouble = nullptr;  // whoever listened may be gone already
  EndStreams();
}

bool OpenChannelIO::AcceptsUnit(int32_t lNetwork, int32_t lUnit) {
  return lNetwork >= 0 && lNetwork < OutputUniverse::Networks && lUnit >= 1 &&
         lUnit <= OutputUniverse::UnitsPerNetwork;
}

bool OpenChannelIO::AcceptsCircuit(int32_t lNetwork, int32_t lUnit, int32_t lCircuit) {
  return AcceptsUnit(lNetwork, lUnit) && lCircuit >= 1 &&
         lCircuit <= static_cast<int32_t>(UniversePacket::SlotCount);
}

void OpenChannelIO::SendEvent(int32_t lNetwork, int32_t lUnit, int32_t lCircuit, double startLevel,
                              double endLevel, const std::string&, double, int32_t, int32_t,
                              int32_t lDurationMs) {
  if (!m_Network.Sends()) m_Network.ExplainSilence();
  if (!m_Network.Sends() || !AcceptsCircuit(lNetwork, lUnit, lCircuit)) return;
  OutputUniverse& universe = Universe(lNetwork, lUnit);
  const auto slot = static_cast<size_t>(lCircuit - 1);
  universe.Touched = true;
  if (startLevel == endLevel || lDurationMs <= 1)
    universe.Set(slot, endLevel);
  else
    universe.Move(slot, startLevel, endLevel, PassTime(), std::chrono::milliseconds(lDurationMs));
}

void OpenChannelIO::Flush() {
  m_PassTime.reset();
  if (m_Used.empty()) return;
  const Elapsed now = m_Clock.Elapsed();
  bool boolMoving = false;
  for (OutputUniverse* universe : m_Used) {
    boolMoving = boolMoving || universe->Moving();
    if (std::exchange(universe->Touched, false) && universe->Changed()) {
      universe->Advance(now);  // the packet holds the newest levels of all slots
      SendOrWait(*universe, now);
    }
  }
  m_Network.Send();
  if (boolMoving && !m_GridStart) {
    m_GridStart = std::chrono::floor<std::chrono::milliseconds>(now);  // this flush was frame 0
    m_NextFrame = 1;
    for (OutputUniverse* universe : m_Used) universe->SentThisFrame = false;
  }
  Schedule();
}

void OpenChannelIO::SetLink(const std::string& szHost, int16_t localPort, int16_t) {
  m_Triggers.SetLink(szHost, static_cast<uint16_t>(localPort));
}

void OpenChannelIO::LinkEnabled(bool boolEnabled) {
  m_Triggers.Enabled(boolEnabled);
}

void OpenChannelIO::ShowsEnded() {
  EndStreams();
}

void OpenChannelIO::m_Timer_Tick() {
  const Elapsed now = m_Clock.Elapsed();
  if (m_GridStart && now >= FrameTime(m_NextFrame)) SendFrame(now);
  for (OutputUniverse* universe : m_Used) {
    if (!universe->Streaming) continue;
    if (universe->Waiting)
      SendWaiting(*universe, now);
    else
      SendUnchanged(*universe, now);
  }
  m_Network.Send();
  Discover(now);
  Schedule();
}

OutputUniverse& OpenChannelIO::Universe(int32_t lNetwork, int32_t lUnit) {
  const int32_t lIndex = OutputUniverse::UnitsPerNetwork * lNetwork + lUnit - 1;
  auto& universe = m_Universes[static_cast<size_t>(lIndex)];
  if (!universe) {
    const int32_t lNumber = m_Settings.FirstUniverse + lIndex;
    universe = std::make_unique<OutputUniverse>(m_Network.NewPacket(lNumber), lNumber, m_Settings.FrameRate);
    const auto place = std::find_if(m_Used.begin(), m_Used.end(), [lNumber](const OutputUniverse* used) {
      return used->Number() > lNumber;
    });
    m_Used.insert(place, universe.get());
  }
  return *universe;
}

/// All moves of one pass begin at the same moment.
Elapsed OpenChannelIO::PassTime() {
  if (!m_PassTime) m_PassTime = m_Clock.Elapsed();
  return *m_PassTime;
}

Elapsed OpenChannelIO::FrameTime(int64_t frame) const {
  return *m_GridStart + frame * PacketPace::Second / m_Settings.FrameRate;
}

void OpenChannelIO::SendFrame(Elapsed now) {
  bool boolGoesOn = false;
  for (OutputUniverse* universe : m_Used) {
    if (universe->Moving()) universe->Advance(now);
    if (universe->Changed() && !universe->SentThisFrame) SendOrWait(*universe, now);
    universe->SentThisFrame = false;
    boolGoesOn = boolGoesOn || universe->Moving() || (universe->Changed() && !universe->Waiting);
  }
  if (!boolGoesOn) {
    m_GridStart.reset();
    return;
  }
  while (FrameTime(m_NextFrame) <= now) ++m_NextFrame;
}

void OpenChannelIO::SendWaiting(OutputUniverse& universe, Elapsed now) {
  if (now < universe.Pace.FreeAt()) return;
  universe.Advance(now);
  Emit(universe, now);
}

void OpenChannelIO::SendUnchanged(OutputUniverse& universe, Elapsed now) {
  if (now < UnchangedDue(universe)) return;
  universe.Advance(now);  // every packet holds the newest levels, one between two frames too
  if (universe.Changed())
    SendOrWait(universe, now);
  else
    Emit(universe, now);
}

void OpenChannelIO::SendOrWait(OutputUniverse& universe, Elapsed now) {
  BeginStream(universe, now);
  if (now >= universe.Pace.FreeAt())
    Emit(universe, now);
  else
    universe.Waiting = true;
}

void OpenChannelIO::Emit(OutputUniverse& universe, Elapsed now) {
  universe.Send(now);
  m_Network.Add(universe.Number(), universe.Packet());
}

void OpenChannelIO::BeginStream(OutputUniverse& universe, Elapsed now) {
  if (universe.Streaming) return;
  universe.Streaming = true;
  if (!m_DiscoveryDue && m_Network.IsE131()) m_DiscoveryDue = now + DiscoveryPause;
}

void OpenChannelIO::Discover(Elapsed now) {
  if (!m_DiscoveryDue || now < *m_DiscoveryDue) return;
  std::vector<uint16_t> universes;
  for (const OutputUniverse* universe : m_Used)
    if (universe->Streaming) universes.push_back(static_cast<uint16_t>(universe->Number()));
  m_Network.SendDiscovery(universes);
  while (*m_DiscoveryDue <= now) *m_DiscoveryDue += DiscoveryPause;
}

/// Levels that have not gone out yet go first, so that the last thing seen is what the show left behind.
void OpenChannelIO::EndStreams() noexcept {
  try {
    const Elapsed now = m_Clock.Elapsed();
    for (OutputUniverse* universe : m_Used) {
      universe->FinishMoves();
      if (universe->Streaming && universe->Changed()) Emit(*universe, now);
    }
    m_Network.Send();
    for (int32_t lPacket = 0; lPacket < TerminatedPackets; ++lPacket) {
      for (OutputUniverse* universe : m_Used) {
        if (!universe->Streaming) continue;
        universe->Packet().Terminated(true);
        if (m_Network.IsE131()) Emit(*universe, now);
      }
      m_Network.Send();
    }
    for (OutputUniverse* universe : m_Used) {
      universe->Packet().Terminated(false);
      universe->Streaming = universe->Waiting = false;
      universe->Repeats = 0;
    }
    m_GridStart.reset();
    m_DiscoveryDue.reset();
    m_Timer->Enabled(false);
  } catch (const std::exception&) {
    // The receivers notice the silence; a show that has ended has nobody left to tell.
  }
}

Elapsed OpenChannelIO::UnchangedDue(const OutputUniverse& universe) const {
  // A repeat comes well after a frame would have, so that it never takes the place of the next change.
  const Elapsed repeatPause = PacketPace::Second * 5 / (2 * m_Settings.FrameRate);
  const Elapsed pause = universe.Repeats > 0 ? std::min(repeatPause, KeepAlivePause) : KeepAlivePause;
  return std::max(universe.LastSent + pause, universe.Pace.RoomAt());
}

Elapsed OpenChannelIO::NextDue() const {
  Elapsed due = m_DiscoveryDue.value_or(Elapsed::max());
  if (m_GridStart) due = std::min(due, FrameTime(m_NextFrame));
  for (const OutputUniverse* universe : m_Used) {
    if (!universe->Streaming) continue;
    due = std::min(due, universe->Waiting ? universe->Pace.FreeAt() : UnchangedDue(*universe));
  }
  return due;
}

void OpenChannelIO::Schedule() {
  const Elapsed due = NextDue();
  if (due == Elapsed::max()) {
    m_Timer->Enabled(false);
    return;
  }
  m_Timer->Enabled(true);
  m_Timer->QuietUntil(due);
}

}  // namespace vex

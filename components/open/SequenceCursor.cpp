#include "components/open/SequenceCursor.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "basic/Error.h"

namespace vex {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr uint32_t CircuitsPerUnit = 512;

std::array<double, 256> LevelTable() {
  constexpr double ByteOfOne = 2.55;
  std::array<double, 256> levels{};
  for (size_t byte = 0; byte < levels.size(); ++byte) levels[byte] = static_cast<double>(byte) / ByteOfOne;
  return levels;
}

const std::array<double, 256> LevelOfByte = LevelTable();

int32_t Milliseconds(nanoseconds time) {
  return static_cast<int32_t>(std::chrono::round<milliseconds>(time).count());
}

/// The first index from `at` on at which a and b differ; their size when there is none.
size_t NextDifference(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b, size_t at) {
  constexpr size_t Stride = 64;
  if (at < a.size() && a[at] != b[at]) return at;  // where much changes
  while (at + Stride <= a.size() && std::memcmp(a.data() + at, b.data() + at, Stride) == 0) at += Stride;
  while (at < a.size() && a[at] == b[at]) ++at;
  return at;
}

void Address(LightingEvent& event, const CircuitAddress& circuit) {
  event.Network = circuit.Network;
  event.UnitId = circuit.Unit;
  event.Circuit = circuit.Circuit;
}

}  // namespace

SequenceCursor::SequenceCursor(OpenSequence& sequence)
    : m_Sequence(sequence), m_CircuitUsed(sequence.Circuits.size()) {
  if (!sequence.Frames) return;
  const FrameHeader& header = sequence.Frames->Header();
  m_FrameCount = header.FrameCount;
  m_Step = milliseconds(header.StepMs);
  m_Set.resize(header.ChannelCount);
  m_Frame.resize(header.ChannelCount);
  m_SetUsed.resize(header.ChannelCount);
  size_t begin = 0;
  for (const FrameRange& range : header.Ranges) {
    m_RangeBegins.push_back(begin);
    begin += range.Count;
  }
}

void SequenceCursor::Restart(nanoseconds position) {
  NextRound();
  m_SetAll = true;
  const auto& events = m_Sequence.Events;
  const auto first =
      std::lower_bound(events.begin(), events.end(), position,
                       [](const CueEvent& event, nanoseconds time) { return event.Start < time; });
  m_NextCue = static_cast<size_t>(first - events.begin());
  if (m_FrameCount > 0)
    m_NextFrame = static_cast<uint32_t>(std::clamp<int64_t>(position / m_Step, 0, m_FrameCount - 1));
}

void SequenceCursor::NextRound() {
  m_Reached = nanoseconds(-1);
  m_NextCue = 0;
  m_NextFrame = 0;
  m_OpenedFrame = false;
}

void SequenceCursor::Reach(nanoseconds position) {
  m_Reached = std::max(m_Reached, position);
}

bool SequenceCursor::Next(LightingEvent& event) {
  for (;;) {
    if (m_OpenedFrame && NextChange(event)) return true;
    if (OpenFrame()) continue;
    const auto cue = NextCue();
    if (!cue || *cue > m_Reached) return false;
    FillCue(event);
    return true;
  }
}

std::optional<nanoseconds> SequenceCursor::NextDue() const {
  if (m_OpenedFrame) return m_Reached;
  const auto cue = NextCue();
  const auto frame = NextFrame();
  if (!cue) return frame;
  return frame ? std::min(*cue, *frame) : *cue;
}

void SequenceCursor::Prefetch() {
  if (m_FrameCount == 0) return;
  try {
    Fetch(m_NextFrame < m_FrameCount ? m_NextFrame : 0);
  } catch (const Error&) {
    // Damage is told when the frame falls due; it may never.
  }
}

// At no time of the sequence: how far the music was when it was last looked at must not be seen.
bool SequenceCursor::NextLightsOff(LightingEvent& event) {
  for (; m_OffFrame < m_SetUsed.size(); ++m_OffFrame) {
    if (m_SetUsed[m_OffFrame] == 0) continue;
    FillFrame(event, m_OffFrame, 0);
    event.StartLevel = event.EndLevel = 0;
    m_Set[m_OffFrame] = 0;
    ++m_OffFrame;
    return true;
  }
  for (; m_OffCircuit < m_CircuitUsed.size(); ++m_OffCircuit) {
    const CircuitAddress& circuit = m_Sequence.Circuits[m_OffCircuit];
    if (m_CircuitUsed[m_OffCircuit] == 0 || FramesUse(circuit)) continue;
    event = {};
    Address(event, circuit);
    ++m_OffCircuit;
    return true;
  }
  std::fill(m_SetUsed.begin(), m_SetUsed.end(), uint8_t{0});
  std::fill(m_CircuitUsed.begin(), m_CircuitUsed.end(), uint8_t{0});
  m_OffFrame = m_OffCircuit = 0;
  return false;
}

nanoseconds SequenceCursor::FrameTime(uint32_t frame) const {
  return int64_t{frame} * m_Step;
}

std::optional<nanoseconds> SequenceCursor::NextCue() const {
  if (m_NextCue >= m_Sequence.Events.size()) return std::nullopt;
  return m_Sequence.Events[m_NextCue].Start;
}

std::optional<nanoseconds> SequenceCursor::NextFrame() const {
  if (m_NextFrame >= m_FrameCount) return std::nullopt;
  return FrameTime(m_NextFrame);
}

/// Takes the last frame that is due before the next cue event; false when there is none.
bool SequenceCursor::OpenFrame() {
  m_OpenedFrame = false;
  const auto until = std::min(m_Reached, NextCue().value_or(m_Reached));
  const auto next = NextFrame();
  if (!next || *next > until) return false;
  const auto frame = static_cast<uint32_t>(std::min<int64_t>(until / m_Step, m_FrameCount - 1));
  Fetch(frame);
  m_NextFrame = frame + 1;
  m_OpenedFrame = true;
  m_OpenedMs = Milliseconds(FrameTime(frame));
  m_Change = 0;
  return true;
}

void SequenceCursor::Fetch(uint32_t frame) {
  if (m_Fetched == frame) return;
  m_Fetched.reset();
  m_Sequence.Frames->Read(frame, m_Frame);
  m_Fetched = frame;
}

bool SequenceCursor::NextChange(LightingEvent& event) {
  for (; m_Change < m_Set.size(); ++m_Change) {
    if (!m_SetAll) m_Change = NextDifference(m_Set, m_Frame, m_Change);
    if (m_Change >= m_Set.size()) break;
    if ((m_Set[m_Change] | m_Frame[m_Change]) == 0) continue;
    m_Set[m_Change] = m_Frame[m_Change];
    m_SetUsed[m_Change] = 1;
    FillFrame(event, m_Change, m_OpenedMs);
    ++m_Change;
    return true;
  }
  m_SetAll = false;
  m_OpenedFrame = false;
  return false;
}

void SequenceCursor::FillCue(LightingEvent& event) {
  const CueEvent& cue = m_Sequence.Events[m_NextCue];
  const uint32_t circuit = m_Sequence.EventCircuits[m_NextCue];
  m_CircuitUsed[circuit] = 1;
  ++m_NextCue;
  Address(event, m_Sequence.Circuits[circuit]);
  event.StartLevel = cue.From;
  event.EndLevel = cue.To;
  event.Command = m_Sequence.Commands[cue.Command];
  event.Rate = cue.Rate;
  event.StartTime = Milliseconds(cue.Start);
  event.EndTime = Milliseconds(cue.End);
}

void SequenceCursor::FillFrame(LightingEvent& event, size_t index, int32_t lTimeMs) {
  Address(event, CircuitOf(index));
  event.StartLevel = event.EndLevel = LevelOfByte[m_Set[index]];
  event.Command.clear();
  event.Rate = 1.0;
  event.StartTime = event.EndTime = lTimeMs;
}

/// Asked in rising order within a frame, so the range is the one of the last answer or soon after it.
CircuitAddress SequenceCursor::CircuitOf(size_t index) {
  const auto& ranges = m_Sequence.Frames->Header().Ranges;
  if (index < m_RangeBegins[m_Range]) m_Range = 0;
  while (index - m_RangeBegins[m_Range] >= ranges[m_Range].Count) ++m_Range;
  const auto channel = static_cast<uint32_t>(ranges[m_Range].First + index - m_RangeBegins[m_Range]);
  return {0, static_cast<int32_t>(channel / CircuitsPerUnit + 1),
          static_cast<int32_t>(channel % CircuitsPerUnit + 1)};
}

bool SequenceCursor::FramesUse(const CircuitAddress& circuit) const {
  if (!m_Sequence.Frames || circuit.Network != 0 || circuit.Circuit < 1 ||
      circuit.Circuit > int32_t{CircuitsPerUnit})
    return false;
  const int64_t channel = (int64_t{circuit.Unit} - 1) * CircuitsPerUnit + circuit.Circuit - 1;
  const auto& ranges = m_Sequence.Frames->Header().Ranges;
  for (size_t range = 0; range < ranges.size(); ++range) {
    const int64_t offset = channel - ranges[range].First;
    if (offset < 0 || offset >= ranges[range].Count) continue;
    if (m_SetUsed[m_RangeBegins[range] + static_cast<size_t>(offset)] != 0) return true;
  }
  return false;
}

}  // namespace vex

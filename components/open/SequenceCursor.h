#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "components/open/OpenSequence.h"
#include "player/devices/SequenceEngine.h"

namespace vex {

/// Walks through a sequence and hands out what has fallen due, cue events and frames in order of time, frames
/// first where they meet. A frame becomes one event for each channel that changed against the frame before;
/// of frames that were all passed between two looks only the last is handed out, for nobody has seen the
/// others. The first frame after a start sets what is lit and what was left lit.
///
/// It also keeps which circuits have been used, so that they can be put out.
class SequenceCursor {
 public:
  /// The sequence outlives the cursor.
  explicit SequenceCursor(OpenSequence& sequence);

  /// Goes to a position; what lies before it is not handed out, but the frame in force there is.
  void Restart(std::chrono::nanoseconds position);
  /// Begins the sequence again as the continuation of what was played: the first frame only sets changes.
  void NextRound();

  /// What starts at or before the position falls due. A position further back changes nothing.
  void Reach(std::chrono::nanoseconds position);
  /// Fills the next event that is due; false when there are no more.
  [[nodiscard]] bool Next(LightingEvent& event);
  /// Where the next event falls due, or is due already; none at the end.
  [[nodiscard]] std::optional<std::chrono::nanoseconds> NextDue() const;
  /// Decodes the next frame while there is time.
  void Prefetch();

  /// Fills the next circuit that has been used with an event that puts it out, and counts it as unused;
  /// false when there are no more.
  [[nodiscard]] bool NextLightsOff(LightingEvent& event);

 private:
  [[nodiscard]] std::chrono::nanoseconds FrameTime(uint32_t frame) const;
  [[nodiscard]] std::optional<std::chrono::nanoseconds> NextCue() const;
  [[nodiscard]] std::optional<std::chrono::nanoseconds> NextFrame() const;
  bool OpenFrame();
  void Fetch(uint32_t frame);
  [[nodiscard]] bool NextChange(LightingEvent& event);
  void FillCue(LightingEvent& event);
  void FillFrame(LightingEvent& event, size_t index, int32_t lTimeMs);
  [[nodiscard]] CircuitAddress CircuitOf(size_t index);
  [[nodiscard]] bool FramesUse(const CircuitAddress& circuit) const;

  OpenSequence& m_Sequence;
  std::chrono::nanoseconds m_Reached{-1};
  size_t m_NextCue = 0;
  std::vector<uint8_t> m_CircuitUsed;

  uint32_t m_FrameCount = 0;
  std::chrono::nanoseconds m_Step{1};
  uint32_t m_NextFrame = 0;
  std::vector<uint8_t> m_Set;         // the levels that the frames have set so far
  std::vector<uint8_t> m_Frame;       // the frame fetched, while m_Fetched
  std::vector<uint8_t> m_SetUsed;     // by frames
  size_t m_Range = 0;                 // the range asked last
  std::vector<size_t> m_RangeBegins;  // where each range of channels begins in a frame
  std::optional<uint32_t> m_Fetched;
  bool m_SetAll = true;        // the frame sets every channel that is or was lit
  bool m_OpenedFrame = false;  // its changes are being handed out
  int32_t m_OpenedMs = 0;      // when it is due
  size_t m_Change = 0;         // where in it
  size_t m_OffFrame = 0;
  size_t m_OffCircuit = 0;
};

}  // namespace vex

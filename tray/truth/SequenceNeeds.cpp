#include "tray/truth/SequenceNeeds.h"

#include <algorithm>
#include <vector>

#include "basic/Error.h"
#include "components/open/OpenSequence.h"
#include "settings/LibFile.h"

namespace vex {

namespace {

using std::chrono::nanoseconds;

void Earlier(std::optional<nanoseconds>& first, nanoseconds moment) {
  first = first ? std::min(*first, moment) : moment;
}

/// The first frame that is not dark. A file that is dark for minutes is not searched to its end: it counts as
/// one that drives no lights.
std::optional<nanoseconds> FirstFrame(FrameReader& frames) {
  constexpr uint32_t most = 4000;
  std::vector<uint8_t> bytes(frames.Header().ChannelCount);
  for (uint32_t frame = 0; frame < std::min(frames.Header().FrameCount, most); ++frame) {
    frames.Read(frame, bytes);
    if (std::ranges::any_of(bytes, [](uint8_t level) { return level != 0; }))
      return std::chrono::milliseconds(frames.Header().StepMs) * frame;
  }
  return std::nullopt;
}

}  // namespace

std::optional<nanoseconds> FirstLight(Files& files, Registry& registry, const std::string& szSequence) {
  std::optional<nanoseconds> first;
  try {
    const OpenSequence sequence = LoadOpenSequence(
        files,
        [&](const std::string& szName, bool boolIsAudio) {
          return FullSequencePath(registry, szName, boolIsAudio);
        },
        szSequence);
    for (const CueEvent& event : sequence.Events) {
      if (event.From > 0) Earlier(first, event.Start);
      if (event.To > 0) Earlier(first, event.End);
    }
    if (!sequence.Frames) return first;
    if (const auto frame = FirstFrame(*sequence.Frames)) Earlier(first, *frame);
  } catch (const Error&) {
    return first;
  }
  return first;
}

}  // namespace vex

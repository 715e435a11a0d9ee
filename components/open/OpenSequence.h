#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "components/open/FrameReader.h"
#include "components/open/OpenShellCommand.h"
#include "components/open/wire/CueFile.h"

namespace vex {

class Files;

/// A circuit by its address.
struct CircuitAddress {
  int32_t Network = 0;
  int32_t Unit = 0;
  int32_t Circuit = 0;
  friend auto operator<=>(const CircuitAddress&, const CircuitAddress&) = default;
};

/// What a sequence file holds, ready to be played: a cue file with or without frames beside it, or a frame
/// file alone. Only events of the main networks are kept, in order of time and then of the file: X10 and
/// Courser events go nowhere and only answer the uses-network question. All texts are single-byte.
struct OpenSequence {
  std::chrono::nanoseconds Duration{0};
  std::string Media;
  OpenShellCommand ShellCommand;  ///< empty command line for none
  bool UsesMain = false;
  bool UsesX10 = false;
  bool UsesCourser = false;

  std::vector<CueEvent> Events;
  std::vector<uint32_t> EventCircuits;   ///< for each event the index of its circuit
  std::vector<CircuitAddress> Circuits;  ///< each circuit of the events once, sorted
  std::vector<std::string> Commands;
  std::unique_ptr<FrameReader> Frames;  ///< empty for none
};

/// FullSequencePath(name, is audio): where a sequence is looked for.
using SequencePathFinder = std::function<std::string(const std::string&, bool)>;

/// Finds and reads a sequence, told apart by content. It is looked for as FullSequencePath(name, false) and,
/// where that does not exist, as FullSequencePath(name, true); the frames that a cue file names are looked
/// for in the same way and then beside the cue file. Raises Error from "Sequence.Load" naming the file.
[[nodiscard]] OpenSequence LoadOpenSequence(Files& files, const SequencePathFinder& fullPath,
                                            const std::string& szName);

}  // namespace vex

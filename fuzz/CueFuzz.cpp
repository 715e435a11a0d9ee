#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "basic/Error.h"
#include "components/open/wire/CueFile.h"

namespace {

/// What every cue file that is accepted must promise, since the engine relies on it.
void Check(const vex::CueFile& file) {
  if (!file.Duration && file.Frames.empty()) std::abort();
  if (file.Duration && file.Duration->count() < 0) std::abort();
  for (const vex::CueEvent& event : file.Events) {
    if (event.Start.count() < 0 || event.End < event.Start) std::abort();
    if (!(event.From >= 0 && event.From <= 100 && event.To >= 0 && event.To <= 100)) std::abort();
    if (!(event.Rate >= 0)) std::abort();
    if (event.Command >= file.Commands.size()) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  try {
    Check(vex::ParseCueFile({reinterpret_cast<const char*>(data), size}, "fuzz"));
  } catch (const vex::Error& error) {
    if (error.Source != "Sequence.Load" || error.Description.empty()) std::abort();
  }
  return 0;
}

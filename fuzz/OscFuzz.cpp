#include <cstdint>
#include <cstdlib>
#include <string>

#include "components/open/wire/OscTrigger.h"

// Whatever comes, every trigger that is read is written as a datagram that is read as the same trigger.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string szWrong;
  for (const vex::OscTrigger& trigger : vex::ReadOscTriggers({data, size}, szWrong)) {
    std::string szWrongAgain;
    const auto again = vex::ReadOscTriggers(vex::WriteOscTrigger(trigger), szWrongAgain);
    if (again.size() != 1 || !(again.front() == trigger) || !szWrongAgain.empty()) std::abort();
  }
  return 0;
}

#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "basic/DateTime.h"
#include "host/Clock.h"

namespace vex {

/// A message from another program; its window stays for the rest of the run. Text is single-byte.
struct InputMessage {
  int32_t Type = 0;
  std::string Text;
  uint32_t Sender = 0;
};

/// An input on the lighting network fires.
struct InputTrigger {
  int32_t Network = 0;
  int32_t Unit = 0;
  int32_t Input = 0;
  std::string Name;
};

/// A file is put in the place of another one; paths of the machine, UTF-8.
struct InputCopy {
  std::string From;
  std::string To;
};

/// What plays fails, with these descriptions (single-byte).
struct InputMediaError {
  std::vector<std::string> Descriptions;
};

/// The next such call on that sequence fails.
struct InputSequenceError {
  std::string File;
  std::string Call;
  std::string Text;
};

/// The wall clock is set.
struct InputClock {
  DateTime To;
};

/// Something that happens from outside during a rehearsal. At counts as if the clock had never been set.
struct RehearsalInput {
  int64_t AtMs = 0;  ///< milliseconds after the rehearsal's first moment
  std::variant<InputMessage, InputTrigger, InputCopy, InputMediaError, InputSequenceError, InputClock> What;
};

/// An inputs file that cannot be used: its line, and what is wrong.
class InputsError : public std::runtime_error {
 public:
  InputsError(int32_t lLine, const std::string& szWhat)
      : std::runtime_error("line " + std::to_string(lLine) + ": " + szWhat) {}
};

/// Reads an inputs file, a JSON object a line in order of time; blank lines are passed over. Raises
/// InputsError for the first line that is wrong. Paths of copies go through beside, which makes of a relative
/// one that which is meant.
[[nodiscard]] std::vector<RehearsalInput> ReadRehearsalInputs(
    std::string_view szText, DateTime from, const std::function<std::string(const std::string&)>& beside);

}  // namespace vex

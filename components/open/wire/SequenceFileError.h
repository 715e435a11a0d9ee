#pragma once

#include <string>
#include <string_view>

#include "basic/Error.h"

namespace vex {

/// The error number of a sequence file whose contents cannot be played.
constexpr int32_t SequenceFileDamaged = 1;

/// A failure to read a sequence file, from "Sequence.Load": file, what is wrong where, and what to do.
[[nodiscard]] inline Error SequenceFileError(const std::string& szName, std::string_view szWhat,
                                             std::string_view szRemedy) {
  std::string szText = "Sequence file \"" + szName + "\": ";
  szText += szWhat;
  szText += "; ";
  szText += szRemedy;
  return {SequenceFileDamaged, "Sequence.Load", szText};
}

}  // namespace vex

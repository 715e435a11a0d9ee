#pragma once

#include <string>
#include <vector>

#include "basic/DateTime.h"

namespace vex::test {

/// Writes short lines out as the lines of a rehearsal; one that is JSON already stays as it is. The date is
/// the first one given until a line says otherwise:
///
///     date 2026-12-25
///     start 17:59:50                                  the three lines of a start-up and its delay
///     18:00:00.001 1 Starting show: eve.shw           a log line of level 1
///     18:00:00.002 1 Starting @ Musical m1.vexseq     one with a sequence
///     18:00:00.002 seq load m1.vexseq                 and so on for media, window, io, sent, shell and box
///     18:00:00.002 io registerTrigger [0,1,3,"x"]
[[nodiscard]] std::vector<std::string> ExpectedLines(const std::vector<std::string>& lines, DateTime first);

}  // namespace vex::test

#pragma once

#include <string>
#include <vector>

#include "tools/timeline/Timeline.h"

namespace vex {

/// A picture of the weeks as SVG (UTF-8): a line for each week from Sunday to Saturday, a day for each
/// seventh of it, shows in colour, one colour a show file, dated shows with a dark frame and a mark, gaps
/// pale, what lies outside the rows white. Below stands which colour is which show and how long it plays.
///
///     Sun 20 Dec |        ##|        ##|        ##|        ##|   [**]###|          |          |
[[nodiscard]] std::string TimelinePicture(const std::vector<TimelineRow>& rows);

}  // namespace vex

#pragma once

namespace vex {

class Registry;
struct Devices;

/// Fills in the suite's lighting components: the I/O control, which makes sequence engines know it, and the
/// shell command manager, both created at once, and a maker of engines. What they are called is read here and
/// not again. Raises Error where the control or the manager cannot be created; an engine that cannot be fails
/// each sequence by itself.
void MakeSuiteLights(Registry& settings, Devices& devices);

}  // namespace vex

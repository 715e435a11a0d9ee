#pragma once

namespace vex {

class Clock;
class EventLoop;
class Registry;
struct Devices;

/// Fills in the suite's lighting components: the I/O control, which makes sequence engines know it, and the
/// shell command manager, both created at once, and a maker of engines. What they are called is read here and
/// not again. Raises Error where the control or the manager cannot be created; an engine that cannot be fails
/// each sequence by itself.
void MakeSuiteLights(Registry& settings, Devices& devices);

/// Whether all three stand in the machine's registry under the program ids that the settings give them.
[[nodiscard]] bool SuiteIsInstalled(Registry& settings);

/// Fills in the machine's media player control and the window that it sits on. Raises Error where there is no
/// such control.
void MakeMediaControl(const Clock& clock, EventLoop& loop, Devices& devices);

}  // namespace vex

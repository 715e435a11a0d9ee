#pragma once

namespace vex {

/// From now on what the program prints in UTF-8 is seen so on a console of this machine, whatever code page
/// that has; the console keeps it for whoever comes next. Where output goes to a file or another program it
/// stays UTF-8, as on every other machine.
void PrintOnConsoles();

}  // namespace vex

#pragma once

namespace vex {

/// What somebody at the page may do: nothing but log in, look, or change what plays.
enum class Role { None, View, Control };

}  // namespace vex

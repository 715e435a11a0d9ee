#pragma once

namespace vex {

/// Tells whether another player of this user runs. The first to ask becomes the running one and stays so
/// until its SingleInstance is destroyed or its process ends, however it ends.
class SingleInstance {
 public:
  virtual ~SingleInstance() = default;
  [[nodiscard]] virtual bool AlreadyRunning() = 0;
};

}  // namespace vex

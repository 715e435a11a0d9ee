#pragma once

#include "host/PlayerFinder.h"

namespace vex {

class Files;

/// The running player's main form by its class and title; the status file lies in the user's local
/// application data folder.
class Win32PlayerFinder : public PlayerFinder {
 public:
  explicit Win32PlayerFinder(Files& files) : m_Files(files) {}

  [[nodiscard]] WindowHandle FindPlayer() override;
  [[nodiscard]] std::string StatusFile() override;

 private:
  Files& m_Files;
};

}  // namespace vex

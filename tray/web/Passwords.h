#pragma once

#include <string>

#include "tray/web/Role.h"

namespace vex {

/// The two passwords of the page, kept as argon2 hashes in a file that only its owner may read. A line holds
/// the word "control" or "view", a blank and the hash; empty lines and lines that begin with # are passed
/// over.
///
///     control $argon2id$v=19$m=65536,t=2,p=1$...
///     view $argon2id$v=19$m=65536,t=2,p=1$...
class Passwords {
 public:
  /// None at all: whoever reaches the page may change.
  Passwords() = default;
  /// Raises Error where the file cannot be read, is another user's, may be read by others (its mode is not
  /// 0600), or holds no password.
  explicit Passwords(const std::string& szFile);

  [[nodiscard]] bool Any() const { return !m_Control.empty() || !m_View.empty(); }
  /// Whose password it is. Takes some tens of milliseconds and 64 MB by design, for a wrong one most of all.
  [[nodiscard]] Role Of(const std::string& szPassword) const;

  /// A line for the file; raises Error for a password that is empty or too long to be one.
  [[nodiscard]] static std::string Line(Role role, const std::string& szPassword);

 private:
  void Take(const std::string& szLine, const std::string& szPlace);

  std::string m_Control;
  std::string m_View;
};

inline constexpr size_t MostPasswordBytes = 1024;

}  // namespace vex

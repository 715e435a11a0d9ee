#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>

#include "tray/web/Role.h"

namespace vex {

/// Those who have logged in. A session is known by a random name that only its owner's browser has; what is
/// kept here is a hash of it. With it goes a token that a page must send with every change, and that no page
/// of another origin can read. Sessions end half a day after they were last used, and a week after they
/// began; there are at most 256, the one unused for longest makes room.
///
/// All methods may be called on any thread.
class Sessions {
 public:
  using Clock = std::chrono::steady_clock;

  struct Session {
    Role May = Role::None;
    std::string Token;
    Clock::time_point Began;
    Clock::time_point Used;
  };

  Sessions();

  /// Begins one and returns its name.
  std::string Open(Role role, Clock::time_point now);
  /// The session of that name, now used; May is Role::None where there is none.
  [[nodiscard]] Session Find(const std::string& szName, Clock::time_point now);
  void End(const std::string& szName);
  [[nodiscard]] size_t Count() const;

  /// The token of those who have no session; a new one each time the program starts.
  [[nodiscard]] const std::string& OpenToken() const { return m_OpenToken; }

  /// A new random word that nobody guesses.
  [[nodiscard]] static std::string Secret();
  /// Whether two secrets are the same, in a time that does not tell where they differ.
  [[nodiscard]] static bool Same(const std::string& szLeft, const std::string& szRight);

 private:
  void MakeRoom();

  mutable std::mutex m_Mutex;
  std::map<std::string, Session> m_Sessions;  // by the hash of the name
  std::string m_OpenToken;
};

}  // namespace vex

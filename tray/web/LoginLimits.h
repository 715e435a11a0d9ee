#pragma once

#include <chrono>
#include <map>
#include <string>

namespace vex {

/// Slows those who guess passwords. Five wrong ones from a source are free, each further one doubles the time
/// until the next is looked at, from half a minute to a quarter of an hour; a right one forgives. What all
/// sources together get wrong is slowed in the same way after fifty, so that many sources do not help. Who is
/// logged in already stays so.
///
/// A source is an address; of an IPv6 address its network, as one guest has the whole of it. Not for several
/// threads.
class LoginLimits {
 public:
  using Clock = std::chrono::steady_clock;

  /// How long that source has to wait; zero where it may try.
  [[nodiscard]] std::chrono::seconds Wait(const std::string& szAddress, Clock::time_point now) const;
  void Failed(const std::string& szAddress, Clock::time_point now);
  void Succeeded(const std::string& szAddress);
  /// How many are remembered, at most 1024.
  [[nodiscard]] size_t Sources() const { return m_Sources.size(); }

 private:
  struct Record {
    int Failures = 0;
    Clock::time_point Last;
    Clock::time_point Until;
  };
  static void Count(Record& record, int free, Clock::time_point now);
  void MakeRoom();

  std::map<std::string, Record> m_Sources;
  Record m_All;
};

}  // namespace vex

#include "host/linux/LinuxClock.h"

#include <time.h>

#include <algorithm>

namespace vex {
namespace {

struct CivilTime {
  tm Parts{};
  double Fraction = 0;
};

CivilTime ReadWallClock() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  // localtime_r alone keeps the first zone it has seen.
  tzset();
  CivilTime civil;
  localtime_r(&now.tv_sec, &civil.Parts);
  // Zones that count leap seconds have a second 60, which no calendar here knows.
  civil.Parts.tm_sec = std::min(civil.Parts.tm_sec, 59);
  civil.Fraction = static_cast<double>(now.tv_nsec) * 1e-9;
  return civil;
}

}  // namespace

DateTime LinuxClock::Now() const {
  const tm parts = ReadWallClock().Parts;
  return DateTime::FromParts(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                             parts.tm_min, parts.tm_sec);
}

double LinuxClock::SecondsOfDay() const {
  const CivilTime civil = ReadWallClock();
  const int seconds = (civil.Parts.tm_hour * 60 + civil.Parts.tm_min) * 60 + civil.Parts.tm_sec;
  return seconds + civil.Fraction;
}

std::string LinuxClock::ShortTime() const {
  const tm parts = ReadWallClock().Parts;
  const auto digits = [](int number) {
    return std::string{static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
  };
  return digits(parts.tm_hour) + ":" + digits(parts.tm_min);
}

Elapsed LinuxClock::Elapsed() const {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace vex

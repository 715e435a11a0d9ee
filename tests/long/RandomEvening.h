#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/virtual/VirtualFiles.h"
#include "player/RandomNumbers.h"
#include "tools/rehearsal/Rehearsal.h"

namespace vex::test {

/// An evening of a season as nobody would plan it: schedules, shows, sequences (some missing, some damaged)
/// and what happens from outside, all drawn by a seed. In every second one, devices and files fail too.
class RandomEvening {
 public:
  explicit RandomEvening(uint64_t seed);

  VirtualFiles Files;
  std::string Settings;
  RehearsalOptions Options;
  std::vector<RehearsalInput> Inputs;

 private:
  void DrawSequences();
  void DrawShow(const std::string& szName);
  void DrawSchedules();
  void DrawInputs();
  [[nodiscard]] RehearsalInput DrawInput(int64_t atMs);

  [[nodiscard]] std::string DaySchedule(int64_t midnight);
  [[nodiscard]] std::string Playlist(const std::string& szKind, const std::string& szDelay, int32_t lMost);
  [[nodiscard]] std::string Names(int32_t lMost);
  [[nodiscard]] std::string Groups();
  [[nodiscard]] std::string ShowName() { return "show" + Number(Shows) + ".shw"; }
  [[nodiscard]] std::string SequenceName() { return "s" + Number(Sequences) + ".vexseq"; }

  /// From 1 to that many.
  [[nodiscard]] int32_t Draw(int32_t lMost) { return m_Random.Pick(lMost); }
  [[nodiscard]] std::string Number(int32_t lMost) { return std::to_string(Draw(lMost)); }
  [[nodiscard]] bool OnceIn(int32_t lTimes) { return Draw(lTimes) == 1; }
  [[nodiscard]] std::string Flag(int32_t lClearOnceIn) { return OnceIn(lClearOnceIn) ? "F" : "T"; }

  static constexpr int32_t Shows = 4;
  static constexpr int32_t Sequences = 16;

  RandomNumbers m_Random;
  bool m_LightsStay = false;  // in some evenings, some lists leave their lights on
};

}  // namespace vex::test

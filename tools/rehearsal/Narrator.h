#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>

#include "basic/DateTime.h"
#include "tools/rehearsal/Rehearsal.h"

namespace vex {

/// Tells what happens in a rehearsal as a person would: the day once, then the time and what began, ended,
/// was pressed or failed; failures that repeat themselves, alone or in turn, are told once and then how
/// often. It counts as it goes, for the summary at the end.
class Narrator {
 public:
  /// Each line without its end; single-byte.
  using Teller = std::function<void(const std::string& szLine)>;

  /// The clock tells the wall clock's time of each event. Without a teller it only counts.
  Narrator(std::function<DateTime()> now, Teller teller);

  void Hear(const RehearsalEvent& event);
  /// Nothing more comes: what is held back is told.
  void Finish();
  /// The counts: shows, songs, stretches without a show, triggers, errors.
  [[nodiscard]] std::string Summary(DateTime from, DateTime until) const;
  [[nodiscard]] int64_t Errors() const { return m_Errors; }

 private:
  void HearLog(const RehearsalEvent& event);
  void HearCourse(const std::string& szText, const RehearsalEvent& event);
  void TellFailure(const std::string& szText);
  void Tell(const std::string& szText);
  void ShowBegins();
  void ShowEnds();

  std::function<DateTime()> m_Now;
  Teller m_Teller;
  DateTime m_Day;
  std::set<std::string> m_ToldFailures;  // since something else was told
  int64_t m_Repeats = 0;
  int64_t m_Shows = 0;
  int64_t m_Songs = 0;
  int64_t m_Gaps = 0;
  int64_t m_Triggers = 0;
  int64_t m_Errors = 0;
  int64_t m_Boxes = 0;
  int64_t m_Faults = 0;
  int64_t m_SecondsOfShows = 0;
  bool m_ShowPlays = false;
  DateTime m_ShowSince;
};

}  // namespace vex

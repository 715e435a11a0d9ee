#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tools/doctor/Doctor.h"

namespace vex {

class Schedule;
class YearSchedule;

/// An examination under way: what is looked at, what has been found, and what one part learns for the next.
struct Examination {
  const DoctorNeeds& Needs;
  std::vector<Finding> Findings;
  /// With its trailing "\", as the settings name it; empty where they name none.
  std::string UserDataPath;
  /// Shows that a schedule names, single-byte, each once.
  std::set<std::string> Shows;
  /// A show of these names a song.
  bool HasSongs = false;

  void Good(std::string szSubject, std::string szFound) {
    Findings.push_back({FindingLevel::Good, std::move(szSubject), std::move(szFound), ""});
  }
  void Warn(std::string szSubject, std::string szFound, std::string szRemedy) {
    Findings.push_back(
        {FindingLevel::Warning, std::move(szSubject), std::move(szFound), std::move(szRemedy)});
  }
  void Bad(std::string szSubject, std::string szFound, std::string szRemedy) {
    Findings.push_back({FindingLevel::Bad, std::move(szSubject), std::move(szFound), std::move(szRemedy)});
  }
};

// What a start needs: the account, the programs, the settings, the folders, the place to meet.
void ExamineAccount(Examination& examination);
void ExamineInstallation(Examination& examination);
void ExamineSettings(Examination& examination);
void ExamineUserData(Examination& examination);
void ExamineSequenceFolders(Examination& examination);
void ExamineMeetingPlace(Examination& examination);
void ExaminePlayer(Examination& examination);

// What is to be played.
void ExamineSchedules(Examination& examination);
void ExamineShows(Examination& examination);
/// Who else may change settings, schedules and shows.
void ExamineRights(Examination& examination);

// What it is played with.
void ExamineComponents(Examination& examination);
void ExamineLights(Examination& examination);
void ExamineLink(Examination& examination);
void ExamineSound(Examination& examination);
void ExamineDisplay(Examination& examination);
void ExamineClock(Examination& examination);
void ExamineDisk(Examination& examination);

}  // namespace vex

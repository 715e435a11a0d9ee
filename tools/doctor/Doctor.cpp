#include "tools/doctor/Doctor.h"

#include "tools/doctor/Examination.h"

namespace vex {

std::vector<Finding> Examine(const DoctorNeeds& needs) {
  Examination examination{needs, {}, {}, {}, false};
  ExamineAccount(examination);
  ExamineInstallation(examination);
  ExamineSettings(examination);
  ExamineUserData(examination);
  ExamineSequenceFolders(examination);
  ExamineSchedules(examination);
  ExamineShows(examination);
  ExamineRights(examination);
  ExamineComponents(examination);
  ExamineLights(examination);
  ExamineLink(examination);
  ExamineSound(examination);
  ExamineDisplay(examination);
  ExamineClock(examination);
  ExamineDisk(examination);
  ExamineMeetingPlace(examination);
  ExaminePlayer(examination);
  return std::move(examination.Findings);
}

}  // namespace vex

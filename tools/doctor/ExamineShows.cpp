#include "basic/Error.h"
#include "host/CodePage.h"
#include "host/Facilities.h"
#include "host/Files.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "tools/authoring/DamagePlace.h"
#include "tools/doctor/Examination.h"
#include "tools/timeline/ShowContents.h"

// What is to be played: the schedules, the shows that they name, and what these name in turn.

namespace vex {
namespace {

constexpr const char* WeekFilename = "weeksched.qsc";
constexpr const char* YearFilename = "yearsched.qsc";

/// How many shows it holds; their names go to the others.
int32_t CollectShows(const Schedule& schedule, std::set<std::string>& shows) {
  int32_t lCount = 0;
  for (const auto* node = schedule.FirstNode(); node != nullptr; node = node->NextNode()) {
    if (node->Obj()->EventType() != ShowFileEvent) continue;
    shows.insert(node->Obj()->Filename());
    ++lCount;
  }
  return lCount;
}

int32_t ShowsInWeek(const std::string& szText, std::set<std::string>& shows) {
  return CollectShows(*ScheduleFromText(szText), shows);
}

int32_t ShowsInYear(const std::string& szText, std::set<std::string>& shows) {
  const auto year = YearScheduleFromText(szText);
  int32_t lCount = 0;
  for (const std::string& szDate : year->Keys())
    lCount += CollectShows(Required(year->ScheduleByKey(szDate)), shows);
  return lCount;
}

/// False for a schedule that is damaged or cannot be read: what it holds is not known.
bool ExamineSchedule(Examination& examination, const std::string& szSubject, const char* szFilename,
                     FileKind kind, int32_t (*showsIn)(const std::string&, std::set<std::string>&)) {
  Files& files = examination.Needs.FileSystem;
  const std::string szPath = examination.UserDataPath + szFilename;
  const std::string szHostPath = files.HostPath(szPath);
  std::string szText;
  std::string szReason;
  if (!files.Read(szPath, szText, &szReason)) {
    if (MissingFile(szReason)) {
      examination.Good(szSubject, "none; there is no " + szHostPath);
      return true;
    }
    examination.Bad(szSubject, szHostPath + " cannot be read: " + szReason,
                    "give this account the right to read it; until then it counts as empty");
    return false;
  }
  try {
    const int32_t lCount = showsIn(szText, examination.Shows);
    examination.Good(szSubject,
                     std::to_string(lCount) + (lCount == 1 ? " show in " : " shows in ") + szHostPath);
    return true;
  } catch (const Error& error) {
    const std::string szPlace = DamagePlace(kind, szText);
    examination.Bad(szSubject,
                    szHostPath + " is damaged: " + AnsiToUtf8(szPlace.empty() ? error.Description : szPlace),
                    "mend or remove it: the player cannot start with it");
    return false;
  }
}

void ExamineShow(Examination& examination, const ShowContents& contents, const std::string& szShow) {
  const std::string szSubject = "show " + AnsiToUtf8(szShow);
  const std::vector<std::string> troubles = contents.Troubles(szShow);
  const std::string szNamed = "show \"" + szShow + "\": ";
  for (const std::string& szTrouble : troubles) {
    std::string szWords = szTrouble.starts_with(szNamed) ? szTrouble.substr(szNamed.size()) : szTrouble;
    std::string szRemedy = "put the file there, or another one, or take its name out of the show";
    if (szWords.starts_with("its file")) szRemedy = "mend it, or take its name out of the schedule";
    if (const size_t put = szWords.find("; put it"); put != std::string::npos) {
      szRemedy = szWords.substr(put + 2);
      szWords.erase(put);
    }
    examination.Bad(szSubject, AnsiToUtf8(szWords), AnsiToUtf8(szRemedy));
  }
  if (troubles.empty()) examination.Good(szSubject, "everything that it names is there");
}

void ExamineRightsOf(Examination& examination, const std::string& szHostPath, bool& boolAlone) {
  const auto rights = examination.Needs.Machine.Rights(szHostPath);
  if (!rights || !rights->OthersWrite) return;
  boolAlone = false;
  examination.Warn("rights", szHostPath + " (of " + rights->Owner + ") may be changed by other accounts",
                   "take the right to write from them: chmod go-w");
}

}  // namespace

void ExamineSchedules(Examination& examination) {
  if (examination.UserDataPath.empty()) return;
  const bool boolWeek =
      ExamineSchedule(examination, "weekly schedule", WeekFilename, FileKind::Week, ShowsInWeek);
  const bool boolYear =
      ExamineSchedule(examination, "dated schedule", YearFilename, FileKind::Year, ShowsInYear);
  if (boolWeek && boolYear && examination.Shows.empty())
    examination.Warn("schedules", "no show stands in them, so only shows on demand play",
                     "add one: vexctl week add \"Fri 17:30\" \"Fri 22:00\" eve.shw");
}

void ExamineShows(Examination& examination) {
  ShowContents contents(examination.Needs.FileSystem, examination.Needs.Settings, examination.UserDataPath);
  if (examination.Needs.SongTrouble) contents.LookIntoSongs(examination.Needs.SongTrouble);
  for (const std::string& szShow : examination.Shows) {
    ExamineShow(examination, contents, szShow);
    examination.HasSongs = examination.HasSongs || contents.HasSongs(szShow);
  }
}

void ExamineRights(Examination& examination) {
  Files& files = examination.Needs.FileSystem;
  bool boolAlone = true;
  ExamineRightsOf(examination, examination.Needs.SettingsFile, boolAlone);
  if (!examination.UserDataPath.empty()) {
    std::vector<std::string> names{"", WeekFilename, YearFilename};
    names.insert(names.end(), examination.Shows.begin(), examination.Shows.end());
    for (const std::string& szName : names) {
      const bool boolElsewhere = szName.find(':') != std::string::npos || szName.starts_with('\\');
      ExamineRightsOf(examination, files.HostPath(boolElsewhere ? szName : examination.UserDataPath + szName),
                      boolAlone);
    }
  }
  if (boolAlone) examination.Good("rights", "nobody else may change settings, schedules or shows");
}

}  // namespace vex

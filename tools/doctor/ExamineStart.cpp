#include "host/CodePage.h"
#include "host/Facilities.h"
#include "host/Files.h"
#include "host/RegistryText.h"
#include "monitor/Installation.h"
#include "settings/LibFile.h"
#include "tools/authoring/FileOutcome.h"
#include "tools/doctor/Examination.h"

// What a start needs, in the order in which the player comes upon it.

namespace vex {
namespace {

using Verdict = FacilityAnswer::Verdict;

Installation InstallationOf(const Examination& examination) {
  const DoctorNeeds& needs = examination.Needs;
  return {needs.Settings, needs.FileSystem, needs.Programs, needs.Boxes};
}

/// A folder that the settings name, single-byte; what else is wrong with it is the caller's.
bool FolderCanBeRead(Examination& examination, const std::string& szSubject, const std::string& szFolder,
                     const std::string& szSetting) {
  const std::string szPath = examination.Needs.FileSystem.HostPath(szFolder);
  const auto rights = examination.Needs.Machine.Rights(szPath);
  if (!rights)
    examination.Warn(szSubject, szPath + ": whether it can be read cannot be asked here",
                     "look for yourself");
  else if (!rights->IsFolder)
    examination.Bad(szSubject, szPath + " is no folder", "make it, or correct " + szSetting);
  else if (!rights->Read)
    examination.Bad(szSubject,
                    szPath + " may not be read by this account (it belongs to " + rights->Owner + ")",
                    "give this account the right to read it and to enter it");
  return rights && rights->IsFolder && rights->Read;
}

void ExamineFolder(Examination& examination, const std::string& szSubject, const std::string& szFolder,
                   const std::string& szSetting) {
  if (szFolder.empty())
    examination.Warn(szSubject, "the settings name none, so names count from where the player is started",
                     "set " + szSetting);
  else if (FolderCanBeRead(examination, szSubject, szFolder, szSetting))
    examination.Good(szSubject, examination.Needs.FileSystem.HostPath(szFolder));
}

}  // namespace

void ExamineAccount(Examination& examination) {
  const FacilityAnswer account = examination.Needs.Machine.OrdinaryAccount();
  if (account.Is == Verdict::No)
    examination.Warn("account", "this is " + account.Words + ", who may do everything",
                     "run the doctor, and the player, as the ordinary account that plays");
  else if (account.Is == Verdict::Yes)
    examination.Good("account", account.Words);
}

void ExamineInstallation(Examination& examination) {
  Installation installation = InstallationOf(examination);
  Files& files = examination.Needs.FileSystem;
  if (installation.InstallationValid(true)) {
    examination.Good("installation", files.HostPath(installation.AppPath()));
  } else if (FileExists(files, installation.ProgramFile("VexPostInstall"))) {
    examination.Warn(
        "installation",
        "the settings have no record of the programs in " + files.HostPath(installation.ProgramFolder()),
        "run VexPostInstall, or start the player, which does so by itself");
  } else {
    examination.Bad("installation",
                    "VexPostInstall is missing in " + files.HostPath(installation.ProgramFolder()),
                    "install the programs together, in one folder");
  }
}

void ExamineSettings(Examination& examination) {
  const std::string& szFile = examination.Needs.SettingsFile;
  if (szFile.empty()) {
    examination.Good("settings", "kept by the machine's registry");
    return;
  }
  Files& files = examination.Needs.FileSystem;
  std::string szBytes;
  std::string szReason;
  if (!files.Read(files.SystemPath(szFile), szBytes, &szReason)) {
    if (MissingFile(szReason))
      examination.Warn("settings", "there is no " + szFile + ", so every setting has its default",
                       "run VexPostInstall, or start the player, which does so by itself");
    else
      examination.Bad("settings", szFile + " cannot be read: " + szReason,
                      "give this account the right to read it");
    return;
  }
  const RegistryText text(szBytes);
  for (const RegistryTextError& error : text.Errors())
    examination.Bad("settings", szFile + " line " + std::to_string(error.Line) + ": " + error.Message,
                    "correct that line; until then it is passed over");
  if (text.Errors().empty()) examination.Good("settings", szFile);
}

void ExamineUserData(Examination& examination) {
  examination.UserDataPath = InstallationOf(examination).UserDataPath();
  const std::string szSubject = "user data folder";
  if (examination.UserDataPath.empty()) {
    examination.Bad(szSubject, "the settings name none",
                    "run VexPostInstall, or set UserDataPath in the product key");
    return;
  }
  if (!FolderCanBeRead(examination, szSubject, examination.UserDataPath, "UserDataPath in the product key"))
    return;
  const std::string szPath = examination.Needs.FileSystem.HostPath(examination.UserDataPath);
  if (examination.Needs.Machine.Rights(szPath)->Write)
    examination.Good(szSubject, szPath);
  else
    examination.Warn(szSubject, szPath + " may not be written to by this account",
                     "give the right to write, unless schedules are made by another account");
}

void ExamineSequenceFolders(Examination& examination) {
  Registry& registry = examination.Needs.Settings;
  ExamineFolder(examination, "sequence folder", NonAudioPath(registry), "NonAudioPath in the subkey Shared");
  ExamineFolder(examination, "song folder", AudioPath(registry), "AudioPath in the subkey Shared");
}

void ExamineMeetingPlace(Examination& examination) {
  const FacilityAnswer place = examination.Needs.Machine.MeetingPlace();
  if (place.Is == Verdict::No)
    examination.Bad("meeting place", place.Words, examination.Needs.Places.MendMeetingPlace);
  else if (place.Is == Verdict::Yes)
    examination.Good("meeting place", place.Words);
}

void ExaminePlayer(Examination& examination) {
  if (examination.Needs.Player == 0)
    examination.Warn("player", "no player is running", examination.Needs.Places.StartPlayer);
  else
    examination.Good("player", "running; vexctl status tells what it plays");
}

}  // namespace vex

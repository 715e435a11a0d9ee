#include "host/linux/LinuxFacilities.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/timex.h>
#include <unistd.h>

#include <cstdlib>

#include "host/linux/LocalSockets.h"
#include "host/linux/NearestFolder.h"
#include "host/linux/SoundCards.h"
#include "host/linux/SystemError.h"

namespace vex {
namespace {

using Verdict = FacilityAnswer::Verdict;

std::string Variable(const char* szName) {
  const char* const szValue = std::getenv(szName);
  return szValue == nullptr ? "" : szValue;
}

std::string AccountName(uid_t user) {
  const passwd* const entry = getpwuid(user);
  return entry == nullptr ? "account " + std::to_string(user) : entry->pw_name;
}

/// A group of its own is nobody else; any other has, or may have, more members.
bool OthersAreInGroup(gid_t group, uid_t owner) {
  const struct group* const entry = getgrgid(group);
  const passwd* const user = getpwuid(owner);
  const bool boolPrivate = user != nullptr && user->pw_gid == group && entry != nullptr &&
                           (entry->gr_mem == nullptr || entry->gr_mem[0] == nullptr);
  return !boolPrivate;
}

}  // namespace

std::optional<DiskSpace> LinuxFacilities::Space(const std::string& szHostPath) {
  struct statvfs state {};
  if (statvfs(NearestFolder(szHostPath).c_str(), &state) != 0) return std::nullopt;
  return DiskSpace{static_cast<uint64_t>(state.f_bavail) * state.f_frsize, (state.f_flag & ST_RDONLY) != 0};
}

std::optional<FileRights> LinuxFacilities::Rights(const std::string& szHostPath) {
  struct stat state {};
  FileRights rights;
  if (stat(szHostPath.c_str(), &state) != 0) return rights;
  rights.Exists = true;
  rights.IsFolder = S_ISDIR(state.st_mode);
  const int enter = rights.IsFolder ? X_OK : 0;
  rights.Read = access(szHostPath.c_str(), R_OK | enter) == 0;
  rights.Write = access(szHostPath.c_str(), W_OK | enter) == 0;
  // In a folder with this mark nobody takes away what belongs to another.
  const bool boolGuarded = rights.IsFolder && (state.st_mode & S_ISVTX) != 0;
  const bool boolByGroup = (state.st_mode & S_IWGRP) != 0 && OthersAreInGroup(state.st_gid, state.st_uid);
  rights.OthersWrite = !boolGuarded && ((state.st_mode & S_IWOTH) != 0 || boolByGroup);
  rights.Owner = AccountName(state.st_uid);
  return rights;
}

FacilityAnswer LinuxFacilities::OrdinaryAccount() {
  return {geteuid() == 0 ? Verdict::No : Verdict::Yes, AccountName(geteuid())};
}

FacilityAnswer LinuxFacilities::ClockSynchronised() {
  timex state{};
  const int clock = adjtimex(&state);
  if (clock < 0) return {Verdict::Unknown, DescribeCode(errno)};
  const bool boolKept = clock != TIME_ERROR && (state.status & STA_UNSYNC) == 0;
  return {boolKept ? Verdict::Yes : Verdict::No,
          boolKept ? "kept by a time service" : "no time service keeps the clock"};
}

FacilityAnswer LinuxFacilities::SoundDevice() {
  if (const std::string szServer = Variable("PULSE_SERVER"); !szServer.empty())
    return {Verdict::Unknown, "the sound server " + szServer + " (PULSE_SERVER) is not tried"};
  const std::string szRuntime = Variable("XDG_RUNTIME_DIR");
  for (const char* const szServer : {"/pulse/native", "/pipewire-0"}) {
    if (!szRuntime.empty() && LocalSocketAccepts(szRuntime + szServer))
      return {Verdict::Yes, "sound server at " + szRuntime + szServer};
  }
  const SoundCards cards = FindSoundCards();
  if (!cards.Usable.empty()) return {Verdict::Yes, cards.Usable};
  if (cards.Locked.empty()) return {Verdict::No, "there is neither a sound server nor a sound card"};
  return {Verdict::No, "there is " + cards.Locked + ", and this account may not use it"};
}

FacilityAnswer LinuxFacilities::Display() {
  const std::string szDisplay = Variable("DISPLAY");
  if (szDisplay.empty()) return {Verdict::No, "DISPLAY is not set: there is no X display"};
  const size_t colon = szDisplay.rfind(':');
  if (colon == std::string::npos) return {Verdict::No, "DISPLAY=" + szDisplay + " names no display"};
  const std::string szHost = szDisplay.substr(0, colon);
  if (!szHost.empty() && szHost != "unix")
    return {Verdict::Unknown, "the display of another machine, DISPLAY=" + szDisplay + ", is not tried"};
  const std::string szNumber = szDisplay.substr(colon + 1, szDisplay.find('.', colon) - colon - 1);
  const std::string szSocket = "/tmp/.X11-unix/X" + szNumber;
  if (LocalSocketAccepts(szSocket) || AbstractSocketAccepts(szSocket))
    return {Verdict::Yes, "display " + szDisplay};
  return {Verdict::No, "nobody answers at DISPLAY=" + szDisplay};
}

FacilityAnswer LinuxFacilities::MeetingPlace() {
  const std::string szTrouble = m_Folder.Trouble();
  if (!szTrouble.empty()) return {Verdict::No, m_Folder.Path() + " " + szTrouble};
  return {Verdict::Yes, m_Folder.Path()};
}

}  // namespace vex

#include "settings/LibFile.h"

#include "host/CodePage.h"
#include "settings/LibRegistryVexShared.h"

namespace vex {

namespace {

std::string SharedFolder(Registry& registry, const std::string& szName) {
  std::string szFolder = GetSharedString(registry, szName, "", "");
  if (!szFolder.empty() && !AnsiEndsWith(szFolder, '\\')) szFolder += '\\';
  return szFolder;
}

}  // namespace

std::string AudioPath(Registry& registry) {
  return SharedFolder(registry, "AudioPath");
}

std::string NonAudioPath(Registry& registry) {
  return SharedFolder(registry, "NonAudioPath");
}

std::string FullSequencePath(Registry& registry, const std::string& szName, bool boolIsAudio) {
  if (szName.empty()) return "";
  if (szName.find(':') != std::string::npos || szName.starts_with("\\\\")) return szName;
  const std::string szFolder = boolIsAudio ? AudioPath(registry) : NonAudioPath(registry);
  if (szFolder.empty()) return szName;
  return szFolder + szName.substr(szName.front() == '\\' ? 1 : 0);
}

bool FileExists(Files& files, const std::string& szPath) {
  return files.Exists(szPath);
}

bool ReadFile(Files& files, const std::string& szPath, std::string& szContents) {
  return files.Read(szPath, szContents);
}

bool WriteFile(Files& files, const std::string& szPath, const std::string& szText) {
  return files.Write(szPath, szText);
}

}  // namespace vex

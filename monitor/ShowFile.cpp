#include "monitor/ShowFile.h"

#include "settings/LibFile.h"

namespace vex {
namespace {

/// With a drive or from the root on, in either way of writing.
bool NamesItsPlace(const std::string& szFilename) {
  return szFilename.find(':') != std::string::npos || szFilename.front() == '\\' || szFilename.front() == '/';
}

}  // namespace

bool ReadShowFile(Files& files, const std::string& szUserDataPath, const std::string& szFilename,
                  std::string& szText) {
  if (ReadFile(files, szFilename, szText)) return true;
  if (szFilename.empty() || NamesItsPlace(szFilename) || szUserDataPath.empty()) return false;
  return ReadFile(files, szUserDataPath + szFilename, szText);
}

}  // namespace vex

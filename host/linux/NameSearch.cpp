#include "host/linux/NameSearch.h"

#include <dirent.h>
#include <unistd.h>

#include <memory>

#include "host/CodePage.h"

namespace vex {
namespace {

bool Stands(const std::string& szPath) {
  return access(szPath.c_str(), F_OK) == 0;
}

/// The entry of the folder that is the name in other cases; empty when there is none.
std::string FindInFolder(const std::string& szFolder, const std::string& szName) {
  std::string szAnsi;
  if (!Utf8ToAnsi(szName, szAnsi)) return "";
  const std::string szWanted = FoldCase(szAnsi);
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(szFolder.empty() ? "." : szFolder.c_str()),
                                                   closedir);
  std::string szFound;
  while (const dirent* const entry = folder ? readdir(folder.get()) : nullptr) {
    const std::string szEntry = entry->d_name;
    if (!szFound.empty() && szEntry > szFound) continue;
    if (Utf8ToAnsi(szEntry, szAnsi) && FoldCase(szAnsi) == szWanted) szFound = szEntry;
  }
  return szFound;
}

}  // namespace

std::string FindWithoutCase(const std::string& szHostPath) {
  if (Stands(szHostPath)) return szHostPath;
  std::string szFound;
  size_t from = 0;
  while (from < szHostPath.size()) {
    const size_t slash = szHostPath.find('/', from);
    const size_t end = slash == std::string::npos ? szHostPath.size() : slash;
    std::string szPart = szHostPath.substr(from, end - from);
    if (!szPart.empty() && !Stands(szFound + szPart)) szPart = FindInFolder(szFound, szPart);
    if (szPart.empty() && end > from) return szFound + szHostPath.substr(from);
    szFound += szPart;
    if (slash != std::string::npos) szFound += '/';
    from = end + 1;
  }
  return szFound;
}

}  // namespace vex

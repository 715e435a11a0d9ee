#include "tray/log/RotatedFile.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vex {

RotatedFile::RotatedFile(Files& files, std::string szPath, RotationLimits limits)
    : m_Files(files), m_Path(std::move(szPath)), m_Limits(limits) {
  m_Limits.Files = std::clamp(m_Limits.Files, 1, MostFiles);
}

std::string RotatedFile::PathOf(const std::string& szPath, int32_t lNumber) {
  return lNumber == 0 ? szPath : szPath + "." + std::to_string(lNumber);
}

bool RotatedFile::Append(std::string_view szLine) {
  if (!Open()) return false;
  const bool boolFull = m_End > 0 && m_End + szLine.size() + 1 > m_Limits.Size;
  if (boolFull && !Rotate()) return false;
  if (!WriteEnd(szLine)) return false;
  m_Amended = false;
  return true;
}

bool RotatedFile::Amend(std::string_view szLine) {
  if (!Open()) return false;
  const uint64_t end = std::exchange(m_End, m_Amended ? m_AmendedAt : m_End);
  const uint64_t at = m_End;
  if (!WriteEnd(szLine)) {
    m_End = end;
    return false;
  }
  m_AmendedAt = at;
  m_Amended = true;
  return true;
}

bool RotatedFile::Flush() {
  if (!m_Dirty) return true;
  if (!m_File || !m_File->Flush()) return false;
  m_Dirty = false;
  return true;
}

bool RotatedFile::WriteEnd(std::string_view szLine) {
  const std::string szWithEnd = std::string(szLine) + "\n";
  if (!m_File->WriteAt(m_End, szWithEnd)) return false;
  m_End += szWithEnd.size();
  m_Dirty = true;
  return true;
}

bool RotatedFile::EndsInsideLine() {
  const auto file = m_Files.Open(m_Path);
  std::array<uint8_t, 1> last{'\n'};
  return file && file->Size() > 0 && file->ReadAt(file->Size() - 1, last) && last[0] != '\n';
}

bool RotatedFile::Open() {
  if (m_File) return true;
  m_Files.MakeFolder(m_Path.substr(0, m_Path.find_last_of("\\/") + 1));
  const bool boolInsideLine = EndsInsideLine();
  m_File = m_Files.Grow(m_Path);
  if (!m_File) return false;
  m_End = m_File->Size();
  m_Amended = false;
  if (!boolInsideLine) return true;
  if (m_File->WriteAt(m_End, "\n")) {
    ++m_End;
    return true;
  }
  m_File.reset();
  return false;
}

// Only the files up to the first number that is free move; it is the oldest one's where none is. An end of
// the program between two of the renamings leaves a number free, which readers pass over and the next time
// fills.
bool RotatedFile::Rotate() {
  (void)Flush();
  int32_t lFree = 1;
  while (lFree < m_Limits.Files - 1 && m_Files.Exists(PathOf(m_Path, lFree))) ++lFree;
  if (m_Limits.Files == 1) lFree = 0;
  for (int32_t lNumber = lFree - 1; lNumber >= 0; --lNumber) {
    if (!m_Files.Rename(PathOf(m_Path, lNumber), PathOf(m_Path, lNumber + 1))) return false;
  }
  if (lFree == 0 && !m_Files.Remove(m_Path)) return false;
  for (int32_t lNumber = m_Limits.Files; m_Files.Remove(PathOf(m_Path, lNumber));) ++lNumber;
  m_File.reset();
  return Open();
}

}  // namespace vex

#include "tray/log/LogReader.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "tray/log/RotatedFile.h"

namespace vex {

namespace {

void SplitLines(std::string_view szText, const std::function<void(std::string_view)>& handler) {
  while (!szText.empty()) {
    const size_t end = std::min(szText.find('\n'), szText.size());
    if (end > 0) handler(szText.substr(0, end));
    szText.remove_prefix(std::min(szText.size(), end + 1));
  }
}

bool ReadFrom(OpenFile& file, uint64_t from, std::string& szText) {
  if (file.Size() < from) return false;
  szText.resize(static_cast<size_t>(file.Size() - from));
  return file.ReadAt(from, {reinterpret_cast<uint8_t*>(szText.data()), szText.size()});
}

std::string FirstLine(OpenFile& file) {
  constexpr uint64_t enough = 200;
  std::string szText(static_cast<size_t>(std::min(file.Size(), enough)), ' ');
  if (!file.ReadAt(0, {reinterpret_cast<uint8_t*>(szText.data()), szText.size()})) return {};
  return szText.substr(0, szText.find('\n'));
}

}  // namespace

// All files are opened before the first is read, so that a rotation meanwhile takes none away.
bool ReadRotatedLines(Files& files, const std::string& szPath,
                      const std::function<void(std::string_view)>& handler) {
  std::vector<std::unique_ptr<OpenFile>> opened;
  // A rotation that was cut short leaves a number out, never two.
  for (int32_t lNumber = 0, lMissing = 0; lNumber < RotatedFile::MostFiles && lMissing < 2; ++lNumber) {
    auto file = files.Open(RotatedFile::PathOf(szPath, lNumber));
    lMissing = file ? 0 : lMissing + 1;
    if (file) opened.push_back(std::move(file));
  }
  std::string szContents;
  for (auto file = opened.rbegin(); file != opened.rend(); ++file) {
    if (ReadFrom(**file, 0, szContents)) SplitLines(szContents, handler);
  }
  return !opened.empty();
}

void LogReader::Take(std::string_view szLine, const Handler& handler) {
  LogRecord record = LogRecordFromJson(szLine);
  if (record.Line) {
    if (m_Newest) handler(*m_Newest);
    m_Newest = std::move(record.Line);
  } else if (record.Repeat && m_Newest) {
    m_Newest->Count = record.Repeat->Count;
    m_Newest->Last = record.Repeat->Last;
  } else {
    ++m_Damaged;
  }
}

void LogReader::TakeLast(const Handler& handler) {
  if (m_Newest) handler(*m_Newest);
  m_Newest.reset();
}

bool LogReader::Read(const Handler& handler) {
  m_Damaged = 0;
  const bool boolAny =
      ReadRotatedLines(m_Files, m_Path, [&](std::string_view szLine) { Take(szLine, handler); });
  TakeLast(handler);
  return boolAny;
}

// The newest file may have just begun, so the one before it counts too.
bool LogReader::ReadEnd(uint64_t bytes, const Handler& handler) {
  m_Damaged = 0;
  std::string szEnd;
  bool boolAny = false;
  for (int32_t lNumber = 0; lNumber < 2 && szEnd.size() < bytes; ++lNumber) {
    const auto file = m_Files.Open(RotatedFile::PathOf(m_Path, lNumber));
    if (!file) break;
    const uint64_t left = bytes - szEnd.size();
    const uint64_t from = file->Size() > left ? file->Size() - left : 0;
    std::string szText;
    if (!ReadFrom(*file, from, szText)) break;
    if (from > 0) szText.erase(0, std::min(szText.find('\n'), szText.size() - 1) + 1);
    szEnd.insert(0, szText);
    boolAny = true;
    if (from > 0) break;
  }
  SplitLines(szEnd, [&](std::string_view szLine) { Take(szLine, handler); });
  TakeLast(handler);
  return boolAny;
}

LogFollower::LogFollower(Files& files, std::string szPath) : m_Files(files), m_Path(std::move(szPath)) {
  Look([](const LogLine&) {});
}

// Only whole lines count: the rest is read again.
void LogFollower::Take(std::string_view szText, const std::function<void(const LogLine&)>& handler) {
  const size_t whole = szText.rfind('\n');
  if (whole == std::string_view::npos) return;
  uint64_t lastRecord = 0;
  SplitLines(szText.substr(0, whole), [&](std::string_view szLine) {
    LogRecord record = LogRecordFromJson(szLine);
    lastRecord = record.Repeat ? szLine.size() + 1 : 0;
    if (record.Line) {
      m_Newest = *record.Line;
      handler(m_Newest);
    } else if (record.Repeat && record.Repeat->Count > m_Newest.Count) {
      m_Newest.Count = record.Repeat->Count;
      m_Newest.Last = record.Repeat->Last;
      handler(m_Newest);
    }
  });
  m_From += whole + 1 - lastRecord;
}

void LogFollower::Look(const std::function<void(const LogLine&)>& handler) {
  const auto file = m_Files.Open(m_Path);
  if (!file) return;
  const std::string szFirst = FirstLine(*file);
  if (!m_First.empty() && szFirst != m_First) {
    TakeRest(handler);
    m_From = 0;
  }
  m_First = szFirst;
  if (std::string szText; ReadFrom(*file, m_From, szText)) Take(szText, handler);
}

/// What the file got after the last look and before it was put aside.
void LogFollower::TakeRest(const std::function<void(const LogLine&)>& handler) {
  const auto file = m_Files.Open(RotatedFile::PathOf(m_Path, 1));
  if (!file || FirstLine(*file) != m_First) return;
  if (std::string szText; ReadFrom(*file, m_From, szText)) Take(szText, handler);
}

}  // namespace vex

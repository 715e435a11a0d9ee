#include "tray/log/LogWriter.h"

#include <utility>

namespace vex {

namespace {

constexpr size_t MostWaitingBytes = 4'000'000;

}  // namespace

LogWriter::LogWriter(Files& files, const std::string& szPath, RotationLimits limits)
    : m_File(files, szPath, limits) {}

bool LogWriter::Add(const LogLine& line) {
  if (m_Newest && m_Newest->Level == line.Level && m_Newest->Text == line.Text) {
    ++m_Newest->Count;
    m_Newest->Last = line.Time;
    Put(LogRepeatToJson({m_Newest->Count, m_Newest->Last}), true);
    return false;
  }
  m_Newest = line;
  Put(LogLineToJson(line), false);
  return true;
}

void LogWriter::Put(std::string szText, bool boolAmends) {
  if (boolAmends && !m_Waiting.empty() && m_Waiting.back().Amends) {
    m_WaitingBytes -= m_Waiting.back().Text.size();
    m_Waiting.pop_back();
  }
  m_WaitingBytes += szText.size();
  m_Waiting.push_back({std::move(szText), boolAmends});
  while (m_WaitingBytes > MostWaitingBytes) {
    m_WaitingBytes -= m_Waiting.front().Text.size();
    m_Waiting.pop_front();
    ++m_Lost;
    m_LostAt = m_Newest ? m_Newest->Last : DateTime();
  }
}

bool LogWriter::SaveLost() {
  if (m_Lost == 0) return true;
  LogLine line;
  line.Time = line.Last = m_LostAt;
  line.Level = LogLine::LevelError;
  line.Text = std::to_string(m_Lost) + " lines were lost here because the log could not be written";
  if (!m_File.Append(LogLineToJson(line))) return false;
  m_Lost = 0;
  // What follows must not count for that line.
  while (!m_Waiting.empty() && m_Waiting.front().Amends) {
    m_WaitingBytes -= m_Waiting.front().Text.size();
    m_Waiting.pop_front();
  }
  return true;
}

bool LogWriter::Save() {
  if (!SaveLost()) return false;
  while (!m_Waiting.empty()) {
    const Waiting& next = m_Waiting.front();
    if (!(next.Amends ? m_File.Amend(next.Text) : m_File.Append(next.Text))) return false;
    m_WaitingBytes -= next.Text.size();
    m_Waiting.pop_front();
  }
  return true;
}

bool LogWriter::Flush() {
  return Save() && m_File.Flush();
}

}  // namespace vex

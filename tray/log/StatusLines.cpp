#include "tray/log/StatusLines.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "host/CodePage.h"

namespace vex {

namespace {

constexpr std::array<std::string_view, 8> ErrorBeginnings = {
    "ERROR WITH SEQUENCE (",       "ERROR PLAYING SEQUENCE (",         "WINDOWS MEDIA PLAYER ERROR (",
    "Cannot read show file: ",     "Show on demand error: ",           "Lighting network unreachable: ",
    "No triggers from the link (", "The link got what is no trigger: "};
constexpr std::string_view HandlerError = " Error: ";

bool Digit(char character) {
  return character >= '0' && character <= '9';
}

int32_t TwoDigits(std::string_view szText) {
  return (szText[0] - '0') * 10 + (szText[1] - '0');
}

/// "18:05: " in front: the minute of the day, or -1.
int32_t MinuteOf(std::string_view szLine) {
  constexpr size_t length = 7;
  constexpr int32_t minutesPerHour = 60;
  constexpr int32_t hoursPerDay = 24;
  if (szLine.size() < length || szLine[2] != ':' || szLine.substr(5, 2) != ": ") return -1;
  if (!Digit(szLine[0]) || !Digit(szLine[1]) || !Digit(szLine[3]) || !Digit(szLine[4])) return -1;
  const int32_t lHour = TwoDigits(szLine);
  const int32_t lMinute = TwoDigits(szLine.substr(3));
  return lHour < hoursPerDay && lMinute < minutesPerHour ? lHour * minutesPerHour + lMinute : -1;
}

/// Handlers write their own name, one word, before what went wrong.
bool NamesHandler(std::string_view szText) {
  const size_t at = szText.find(HandlerError);
  return at != std::string_view::npos && at > 0 && szText.find(' ') == at;
}

LogLine LineOf(std::string_view szLine, DateTime dtNow) {
  constexpr size_t timeLength = 7;
  constexpr int32_t minutesPerHour = 60;
  constexpr int64_t secondsPerMinute = 60;
  LogLine line;
  line.Time = dtNow;
  const int32_t lMinute = MinuteOf(szLine);
  const std::string_view szText = lMinute < 0 ? szLine : szLine.substr(timeLength);
  const int32_t lNow = dtNow.Hour() * minutesPerHour + dtNow.Minute();
  if (lMinute >= 0 && lMinute != lNow) {
    const DateTime date = dtNow.DatePart().PlusDays(lMinute > lNow ? -1 : 0);
    line.Time = date.PlusSeconds(lMinute * secondsPerMinute);
  }
  line.Last = line.Time;
  line.Level = LevelOfLine(szText);
  line.Text = AnsiToUtf8(szText);
  return line;
}

}  // namespace

int32_t LevelOfLine(std::string_view szText) {
  const bool boolError = std::ranges::any_of(
      ErrorBeginnings, [&](std::string_view szBeginning) { return szText.starts_with(szBeginning); });
  return boolError || NamesHandler(szText) ? LogLine::LevelError : LogLine::LevelCourse;
}

std::vector<LogLine> LinesOfStatus(std::string_view szMessage, DateTime dtNow) {
  constexpr std::string_view lineEnd = "\r\n";
  std::vector<LogLine> lines;
  while (!szMessage.empty()) {
    const size_t end = std::min(szMessage.find(lineEnd), szMessage.size());
    if (end > 0) lines.push_back(LineOf(szMessage.substr(0, end), dtNow));
    szMessage.remove_prefix(std::min(szMessage.size(), end + lineEnd.size()));
  }
  return lines;
}

}  // namespace vex

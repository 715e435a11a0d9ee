#include "tools/timeline/TimelinePicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

#include "host/CodePage.h"
#include "time/TimeRange.h"
#include "tools/timeline/Explanation.h"

namespace vex {
namespace {

constexpr int64_t SecondsOfDay = 86400;
constexpr int64_t DaysOfWeek = 7;
constexpr int32_t Left = 140;
constexpr int32_t DayWidth = 150;
constexpr int32_t Top = 70;
constexpr int32_t LineHeight = 34;
constexpr int32_t BarHeight = 24;
constexpr int32_t LegendHeight = 22;
constexpr int32_t Width = Left + 7 * DayWidth + 20;

/// Told apart by people who see colours differently, too (the palette of Okabe and Ito, without yellow and
/// black).
constexpr std::array<const char*, 6> Colours{"#0072b2", "#d55e00", "#009e73",
                                             "#cc79a7", "#56b4e9", "#e69f00"};
constexpr std::array<const char*, 7> Days{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                          "Thursday", "Friday", "Saturday"};

std::string Escaped(const std::string& szText) {
  std::string szEscaped;
  for (const char letter : AnsiToUtf8(szText)) {
    switch (letter) {
      case '&':
        szEscaped += "&amp;";
        break;
      case '<':
        szEscaped += "&lt;";
        break;
      case '>':
        szEscaped += "&gt;";
        break;
      case '"':
        szEscaped += "&quot;";
        break;
      default:
        // Control characters have no place in XML.
        szEscaped += static_cast<unsigned char>(letter) < ' ' ? ' ' : letter;
    }
  }
  return szEscaped;
}

std::string Number(double value) {
  const auto tenths = std::llround(value * 10);
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

std::string Attribute(const char* szName, const std::string& szValue) {
  return std::string(" ") + szName + "=\"" + szValue + "\"";
}

std::string Box(double x, double y, double width, double height, const std::string& szLook,
                const std::string& szTitle) {
  return "<rect" + Attribute("x", Number(x)) + Attribute("y", Number(y)) + Attribute("width", Number(width)) +
         Attribute("height", Number(height)) + szLook + "><title>" + szTitle + "</title></rect>\n";
}

std::string Text(double x, double y, const std::string& szLook, const std::string& szText) {
  return "<text" + Attribute("x", Number(x)) + Attribute("y", Number(y)) + szLook + ">" + szText +
         "</text>\n";
}

std::string Hours(int64_t seconds) {
  return std::to_string(seconds / 3600) + " h" +
         (seconds % 3600 == 0 ? "" : " " + std::to_string(seconds % 3600 / 60) + " min");
}

class Picture {
 public:
  explicit Picture(const std::vector<TimelineRow>& rows) : m_Rows(rows) {
    const DateTime dtFirst = rows.front().From.DatePart();
    m_Sunday = dtFirst.PlusDays(1 - dtFirst.WeekDay());
    const int64_t days = rows.back().To.PlusSeconds(-1).DaysSince(m_Sunday) + 1;
    m_Weeks = (days + DaysOfWeek - 1) / DaysOfWeek;
    for (const TimelineRow& row : rows) Count(row);
  }

  [[nodiscard]] std::string Draw() {
    DrawFrame();
    for (const TimelineRow& row : m_Rows) DrawRow(row);
    DrawLegend();
    const auto height =
        Top + m_Weeks * LineHeight + LegendHeight * static_cast<int64_t>(m_Shows.size() + 1) + 30;
    return "<svg xmlns=\"http://www.w3.org/2000/svg\"" + Attribute("width", std::to_string(Width)) +
           Attribute("height", std::to_string(height)) +
           Attribute("viewBox", "0 0 " + std::to_string(Width) + " " + std::to_string(height)) +
           " font-family=\"sans-serif\" font-size=\"12\">\n<rect width=\"100%\" height=\"100%\" "
           "fill=\"white\"/>\n" +
           m_Body + "</svg>\n";
  }

 private:
  struct ShowCount {
    std::string Name;
    int64_t Seconds = 0;
    bool Dated = false;
  };

  void Count(const TimelineRow& row) {
    const std::string& szName = row.Event->Filename();
    if (szName.empty()) return;
    const auto [place, boolNew] = m_Places.emplace(szName, m_Shows.size());
    if (boolNew) m_Shows.push_back({szName});
    ShowCount& show = m_Shows[place->second];
    show.Seconds += row.To.SecondsSince(row.From);
    show.Dated = show.Dated || row.Event->ScheduleType() == YearScheduleType;
  }

  [[nodiscard]] const char* Colour(const std::string& szName) const {
    return Colours.at(m_Places.at(szName) % Colours.size());
  }

  [[nodiscard]] static double LineTop(int64_t week) { return static_cast<double>(Top + week * LineHeight); }

  void DrawFrame() {
    const TimelineRow& last = m_Rows.back();
    m_Body += Text(Left, 24, " font-size=\"16\" font-weight=\"bold\"",
                   "Shows from " + DateInWords(m_Rows.front().From) + " " + TimeInWords(m_Rows.front().From) +
                       " to " + DateInWords(last.To) + " " + TimeInWords(last.To));
    for (size_t day = 0; day < Days.size(); ++day)
      m_Body += Text(Left + static_cast<double>(day) * DayWidth + DayWidth / 2.0, Top - 22,
                     " text-anchor=\"middle\"", Days.at(day));
    for (int64_t week = 0; week < m_Weeks; ++week) {
      const DateTime dtSunday = m_Sunday.PlusDays(week * DaysOfWeek);
      m_Body +=
          Text(Left - 8, LineTop(week) + 17, " text-anchor=\"end\" fill=\"#444\"", DateInWords(dtSunday));
    }
    const double bottom = LineTop(m_Weeks) - (LineHeight - BarHeight);
    for (int64_t day = 0; day <= DaysOfWeek; ++day)
      DrawHour(static_cast<double>(Left + day * DayWidth), bottom, day < DaysOfWeek);
  }

  /// Midnight as a line from top to bottom, noon as a small number.
  void DrawHour(double x, double bottom, bool boolNoon) {
    m_Body += "<line" + Attribute("x1", Number(x)) + Attribute("x2", Number(x)) +
              Attribute("y1", Number(Top - 6)) + Attribute("y2", Number(bottom)) + " stroke=\"#bbb\"/>\n";
    if (boolNoon)
      m_Body +=
          Text(x + DayWidth / 2.0, Top - 7, " text-anchor=\"middle\" font-size=\"9\" fill=\"#777\"", "12");
  }

  /// A row in pieces, one for each week that it touches.
  void DrawRow(const TimelineRow& row) {
    for (DateTime from = row.From; from < row.To;) {
      const int64_t week = from.DaysSince(m_Sunday) / DaysOfWeek;
      const int64_t start = from.SecondsSince(m_Sunday.PlusDays(week * DaysOfWeek));
      const int64_t length = std::min(row.To.SecondsSince(from), DaysOfWeek * SecondsOfDay - start);
      DrawPiece(row, week, start, length);
      from = from.PlusSeconds(length);
    }
  }

  void DrawPiece(const TimelineRow& row, int64_t week, int64_t start, int64_t length) {
    constexpr double PixelsASecond = static_cast<double>(DayWidth) / SecondsOfDay;
    const double x = Left + static_cast<double>(start) * PixelsASecond;
    const double width = std::max(static_cast<double>(length) * PixelsASecond, 0.5);
    const std::string& szName = row.Event->Filename();
    const std::string szSpan = DateInWords(row.From) + " " + TimeInWords(row.From) + " to " +
                               DateInWords(row.To) + " " + TimeInWords(row.To);
    if (szName.empty()) {
      m_Body += Box(x, LineTop(week), width, BarHeight, " fill=\"#eef1f4\"", "no show, " + szSpan);
      return;
    }
    const bool boolDated = row.Event->ScheduleType() == YearScheduleType;
    m_Body +=
        Box(x, LineTop(week), width, BarHeight,
            Attribute("fill", Colour(szName)) + (boolDated ? " stroke=\"black\" stroke-width=\"2\"" : ""),
            Escaped(szName) + (boolDated ? ", dated, " : ", ") + szSpan);
    if (boolDated)
      m_Body += Text(x + width / 2, LineTop(week) + 17, " text-anchor=\"middle\" fill=\"white\"", "&#9733;");
  }

  void DrawLegend() {
    double y = LineTop(m_Weeks) + 14;
    for (const ShowCount& show : m_Shows) {
      m_Body += Box(Left, y - 11, 14, 14, Attribute("fill", Colour(show.Name)), Escaped(show.Name));
      m_Body += Text(Left + 22, y, "",
                     Escaped(show.Name) + ", " + Hours(show.Seconds) +
                         (show.Dated ? " (&#9733; in a black frame: dated)" : ""));
      y += LegendHeight;
    }
    m_Body += Box(Left, y - 11, 14, 14, " fill=\"#eef1f4\"", "no show");
    m_Body += Text(Left + 22, y, "", "no show");
  }

  const std::vector<TimelineRow>& m_Rows;
  DateTime m_Sunday;
  int64_t m_Weeks = 0;
  std::map<std::string, size_t> m_Places;
  std::vector<ShowCount> m_Shows;
  std::string m_Body;
};

}  // namespace

std::string TimelinePicture(const std::vector<TimelineRow>& rows) {
  if (rows.empty()) return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1\" height=\"1\"/>\n";
  return Picture(rows).Draw();
}

}  // namespace vex

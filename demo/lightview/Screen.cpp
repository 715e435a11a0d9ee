#include "demo/lightview/Screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace vex {

namespace {

constexpr std::string_view Plain = "\x1b[0m";

void Write(const std::string& szText) {
  size_t done = 0;
  while (done < szText.size()) {
    const ssize_t count = write(STDOUT_FILENO, szText.data() + done, szText.size() - done);
    if (count <= 0) return;
    done += static_cast<size_t>(count);
  }
}

}  // namespace

ColourDepth TerminalColours() {
  const auto variable = [](const char* szName) {
    const char* const szValue = std::getenv(szName);
    return std::string_view(szValue ? szValue : "");
  };
  if (!variable("NO_COLOR").empty() || variable("TERM") == "dumb") return ColourDepth::None;
  const std::string_view depth = variable("COLORTERM");
  return depth == "truecolor" || depth == "24bit" ? ColourDepth::True : ColourDepth::Palette;
}

Screen::Screen(const Picture& picture, ColourDepth depth) : m_Picture(picture), m_Depth(depth) {
  Write("\x1b[?1049h\x1b[?25l\x1b[2J");
}

Screen::~Screen() {
  Write("\x1b[0m\x1b[?25h\x1b[?1049l");
}

void Screen::Measure() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return;
  if (size.ws_col == m_Columns && size.ws_row == m_Rows) return;
  m_Columns = size.ws_col;
  m_Rows = size.ws_row;
  m_Shown.clear();
  Write("\x1b[2J");
}

std::string Screen::Ink(Colour colour) const {
  if (m_Depth == ColourDepth::None) return "";
  if (m_Depth == ColourDepth::True) {
    return "\x1b[38;2;" + std::to_string(colour.Red) + ";" + std::to_string(colour.Green) + ";" +
           std::to_string(colour.Blue) + "m";
  }
  // The palette's cube has six steps a colour: 0, 95, 135, 175, 215, 255.
  const auto step = [](uint8_t level) { return level < 48 ? 0 : level < 115 ? 1 : (level - 35) / 40; };
  return "\x1b[38;5;" +
         std::to_string(16 + 36 * step(colour.Red) + 6 * step(colour.Green) + step(colour.Blue)) + "m";
}

/// Two columns of light. A lamp that is out is seen as a shade, so that the house stands there in the dark.
std::string Screen::Lamp(Colour colour, const std::string& szGlyph) const {
  constexpr uint8_t shade = 38;
  constexpr uint8_t faintest = 6;
  const uint8_t brightest = std::max({colour.Red, colour.Green, colour.Blue});
  if (m_Depth == ColourDepth::None) {
    constexpr std::string_view shades[] = {"··", "░░", "▒▒", "▓▓", "██"};
    return std::string(shades[(brightest + 63U) / 64U]);
  }
  if (brightest < faintest) return Ink({shade, shade, shade + 6}) + (szGlyph == "██" ? "▒▒" : szGlyph);
  // Lamps at night look brighter than their level says; a screen shows the level.
  const auto lift = [](uint8_t level) {
    return static_cast<uint8_t>(std::lround(255.0 * std::pow(level / 255.0, 0.6)));
  };
  return Ink({lift(colour.Red), lift(colour.Green), lift(colour.Blue)}) + szGlyph;
}

std::vector<std::string> Screen::PictureLines(const Receiver& receiver) const {
  std::vector<std::vector<std::string>> cells = m_Picture.Scenery;
  const std::string szScenery = Ink({88, 92, 104});
  for (auto& row : cells) {
    for (std::string& cell : row) {
      if (cell != " ") cell.insert(0, szScenery);
    }
  }
  for (const Picture::Light& light : m_Picture.Lights) {
    const Colour colour{receiver.Level(light.Universe, light.Slot),
                        receiver.Level(light.Universe, light.Slot + 1),
                        receiver.Level(light.Universe, light.Slot + 2)};
    const std::string szLamp = Lamp(colour, light.Glyph);
    for (const Picture::Cell& cell : light.Cells) {
      auto& row = cells[static_cast<size_t>(cell.Row)];
      row[static_cast<size_t>(cell.Column)] = szLamp;
      row[static_cast<size_t>(cell.Column) + 1].clear();
    }
  }
  std::vector<std::string> lines;
  for (const auto& row : cells) {
    std::string szLine;
    for (const std::string& cell : row) szLine += cell;
    if (m_Depth != ColourDepth::None) szLine += Plain;
    lines.push_back(std::move(szLine));
  }
  return lines;
}

/// The line cut to the terminal's width, counted in characters.
std::string Screen::Fitted(const std::string& szLine) const {
  int32_t lColumns = 0;
  for (size_t i = 0; i < szLine.size(); ++i) {
    const bool boolContinues = (static_cast<uint8_t>(szLine[i]) & 0xC0U) == 0x80U;
    if (!boolContinues && ++lColumns > m_Columns) return szLine.substr(0, i);
  }
  return szLine;
}

void Screen::Draw(const Receiver& receiver, const std::string& szCounts,
                  const std::deque<std::string>& lines) {
  Measure();
  std::vector<std::string> wanted;
  if (m_Columns >= m_Picture.Columns && m_Rows >= m_Picture.Rows() + 3) {
    const std::string szMargin(static_cast<size_t>((m_Columns - m_Picture.Columns) / 2), ' ');
    for (const std::string& szLine : PictureLines(receiver)) wanted.push_back(szMargin + szLine);
  } else {
    wanted.push_back(Fitted("The picture needs " + std::to_string(m_Picture.Columns) + " columns and " +
                            std::to_string(m_Picture.Rows() + 3) + " lines; this terminal has " +
                            std::to_string(m_Columns) + " and " + std::to_string(m_Rows) + "."));
  }
  wanted.push_back((m_Depth == ColourDepth::None ? "" : "\x1b[7m") + Fitted(szCounts) + std::string(Plain));
  const size_t room = static_cast<size_t>(m_Rows) - std::min(static_cast<size_t>(m_Rows), wanted.size());
  const size_t first = lines.size() > room ? lines.size() - room : 0;
  for (size_t i = first; i < lines.size(); ++i) wanted.push_back(Fitted(lines[i]));
  wanted.resize(static_cast<size_t>(m_Rows));

  std::string szOutput;
  for (size_t i = 0; i < wanted.size(); ++i) {
    if (i < m_Shown.size() && m_Shown[i] == wanted[i]) continue;
    szOutput += "\x1b[" + std::to_string(i + 1) + ";1H" + wanted[i] + "\x1b[K";
  }
  m_Shown = std::move(wanted);
  Write(szOutput);
}

}  // namespace vex

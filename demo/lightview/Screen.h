#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "demo/lightview/Picture.h"
#include "demo/lightview/Receiver.h"

namespace vex {

/// How colours reach the terminal.
enum class ColourDepth : uint8_t { True, Palette, None };

/// COLORTERM, TERM and NO_COLOR as terminals and users set them.
[[nodiscard]] ColourDepth TerminalColours();

/// The terminal as a picture: the lights above, a line of counts, the newest status lines below. It takes
/// the terminal's second screen for as long as it lives and gives the first one back as it was. Only lines
/// that changed are written.
class Screen {
 public:
  Screen(const Picture& picture, ColourDepth depth);
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  void Draw(const Receiver& receiver, const std::string& szCounts, const std::deque<std::string>& lines);
  /// The picture's lines with their colours, without any movement of the cursor.
  [[nodiscard]] std::vector<std::string> PictureLines(const Receiver& receiver) const;

 private:
  struct Colour {
    uint8_t Red = 0;
    uint8_t Green = 0;
    uint8_t Blue = 0;
    friend bool operator==(const Colour&, const Colour&) = default;
  };

  void Measure();
  [[nodiscard]] std::string Ink(Colour colour) const;
  [[nodiscard]] std::string Lamp(Colour colour, const std::string& szGlyph) const;
  [[nodiscard]] std::string Fitted(const std::string& szLine) const;

  const Picture& m_Picture;
  ColourDepth m_Depth;
  int32_t m_Columns = 80;
  int32_t m_Rows = 24;
  std::vector<std::string> m_Shown;
};

}  // namespace vex

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vex {

/// What the viewer draws: scenery, and RGB lights with the cells in which they shine and the first of the
/// three slots that they hang on. A cell is two columns wide. Read from the picture.json that the
/// demonstration's maker writes.
struct Picture {
  struct Cell {
    int32_t Column = 0;
    int32_t Row = 0;
  };
  struct Light {
    uint16_t Universe = 0;
    int32_t Slot = 0;
    std::string Glyph;  ///< two columns
    std::vector<Cell> Cells;
  };

  int32_t Columns = 0;
  std::vector<std::vector<std::string>> Scenery;  ///< rows of columns, each one character in UTF-8
  std::vector<Light> Lights;

  [[nodiscard]] int32_t Rows() const { return static_cast<int32_t>(Scenery.size()); }
};

/// Raises std::runtime_error naming the file when it cannot be read or a cell lies outside the picture.
[[nodiscard]] Picture ReadPicture(const std::string& szPath);

}  // namespace vex

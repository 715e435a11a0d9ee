#include "demo/lightview/Picture.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace vex {

namespace {

/// The characters of a line of UTF-8, each as its own text.
std::vector<std::string> Characters(const std::string& szLine) {
  std::vector<std::string> characters;
  for (const char byte : szLine) {
    const bool boolContinues = (static_cast<uint8_t>(byte) & 0xC0U) == 0x80U;
    if (boolContinues && !characters.empty()) {
      characters.back() += byte;
    } else {
      characters.emplace_back(1, byte);
    }
  }
  return characters;
}

Picture::Light LightFrom(const nlohmann::json& json, const Picture& picture) {
  Picture::Light light;
  light.Universe = json.at("universe").get<uint16_t>();
  light.Slot = json.at("slot").get<int32_t>();
  light.Glyph = json.at("glyph").get<std::string>();
  for (const auto& cell : json.at("cells")) {
    light.Cells.push_back({cell.at(0).get<int32_t>(), cell.at(1).get<int32_t>()});
    const Picture::Cell& last = light.Cells.back();
    if (last.Column < 0 || last.Column + 2 > picture.Columns || last.Row < 0 || last.Row >= picture.Rows()) {
      throw std::runtime_error("a light lies outside the picture");
    }
  }
  return light;
}

}  // namespace

Picture ReadPicture(const std::string& szPath) {
  try {
    std::ifstream file(szPath);
    if (!file) throw std::runtime_error("the file cannot be opened");
    const nlohmann::json json = nlohmann::json::parse(file);
    Picture picture;
    picture.Columns = json.at("columns").get<int32_t>();
    for (const auto& line : json.at("scenery")) {
      picture.Scenery.push_back(Characters(line.get<std::string>()));
      picture.Scenery.back().resize(static_cast<size_t>(picture.Columns), " ");
    }
    for (const auto& light : json.at("lights")) picture.Lights.push_back(LightFrom(light, picture));
    return picture;
  } catch (const std::exception& error) {
    throw std::runtime_error("cannot read the picture \"" + szPath + "\": " + error.what());
  }
}

}  // namespace vex

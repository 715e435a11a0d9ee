#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

namespace vex {

/// An object in a JSON text that a person has written: its values by name, each with what counts where it is
/// missing. Every complaint is number 13 and names the place, as in "main.sequences[2]".
class JsonObject {
 public:
  /// Raises unless the value is an object. The value outlives this.
  JsonObject(const nlohmann::ordered_json& value, std::string szPlace);

  [[nodiscard]] bool Flag(const char* szName, bool boolDefault);
  [[nodiscard]] int32_t Number(const char* szName, int32_t lDefault);
  /// Single-byte text.
  [[nodiscard]] std::string Text(const char* szName);
  [[nodiscard]] std::vector<std::string> Texts(const char* szName);
  /// Null where it is missing, or null itself.
  [[nodiscard]] const nlohmann::ordered_json* Value(const char* szName);
  /// The objects of a list.
  [[nodiscard]] std::vector<JsonObject> Objects(const char* szName);
  [[nodiscard]] std::string PlaceOf(const std::string& szName) const;
  /// Raises for a name that nobody has asked for: a misspelt one would be lost without a word.
  void NothingElse() const;

 private:
  const nlohmann::ordered_json* m_Value;
  std::string m_Place;
  std::set<std::string> m_Asked;
};

/// Raises number 13, "PLACE: WHAT".
[[noreturn]] void RefuseJson(const std::string& szPlace, const std::string& szWhat);

}  // namespace vex

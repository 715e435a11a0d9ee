#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vex {

class Clock;

/// One value of a line: nothing, a yes or no, a number, or single-byte text.
using JsonValue = std::variant<std::nullptr_t, bool, int32_t, double, std::string>;

/// One line of what happened: a JSON object whose first members are the wall clock with milliseconds and the
/// kind ("t", "kind"); the others follow in the order in which they are added. Text comes in as single-byte
/// text and stands in the line as UTF-8. Numbers are written the shortest way that reads back the same.
class JsonLine {
 public:
  JsonLine(const Clock& clock, std::string_view szKind);

  JsonLine& Add(std::string_view szKey, const JsonValue& value);
  JsonLine& Add(std::string_view szKey, const std::vector<JsonValue>& values);

  [[nodiscard]] const std::string& Kind() const { return m_Kind; }
  /// The whole object, without an end of line.
  [[nodiscard]] std::string Text() const { return m_Text + "}"; }

 private:
  void AddKey(std::string_view szKey);

  std::string m_Kind;
  std::string m_Text;
};

/// The wall clock as "yyyy-mm-dd hh:mm:ss.mmm".
[[nodiscard]] std::string WallClockText(const Clock& clock);

}  // namespace vex

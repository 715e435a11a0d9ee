#include "components/recorded/JsonLine.h"

#include <cmath>

#include "components/recorded/ShortestNumber.h"
#include "host/Clock.h"
#include "host/CodePage.h"

namespace vex {

namespace {

void AppendEscaped(std::string& szLine, char c) {
  static constexpr std::string_view kDigits = "0123456789abcdef";
  const auto value = static_cast<unsigned char>(c);
  if (c == '"' || c == '\\') {
    szLine += '\\';
    szLine += c;
  } else if (c == '\n') {
    szLine += "\\n";
  } else if (c == '\r') {
    szLine += "\\r";
  } else if (c == '\t') {
    szLine += "\\t";
  } else if (value < 0x20) {
    szLine += "\\u00";
    szLine += kDigits[value >> 4];
    szLine += kDigits[value & 15];
  } else {
    szLine += c;
  }
}

struct ValueWriter {
  std::string& Line;

  void operator()(std::nullptr_t) const { Line += "null"; }
  void operator()(bool boolValue) const { Line += boolValue ? "true" : "false"; }
  void operator()(int32_t lValue) const { Line += std::to_string(lValue); }
  void operator()(double value) const { Line += std::isfinite(value) ? ShortestNumber(value) : "null"; }
  void operator()(const std::string& szText) const {
    Line += '"';
    for (const char c : AnsiToUtf8(szText)) AppendEscaped(Line, c);
    Line += '"';
  }
};

}  // namespace

std::string WallClockText(const Clock& clock) {
  DateTime dtNow = clock.Now();
  double seconds = clock.SecondsOfDay();
  // The two answers must be of the same second, also where the second ends between them.
  for (DateTime dtAfter = clock.Now(); dtAfter != dtNow; dtAfter = clock.Now()) {
    dtNow = dtAfter;
    seconds = clock.SecondsOfDay();
  }
  const double fraction = seconds - std::floor(seconds + 1e-6);
  const int lMilliseconds = std::min(999, std::max(0, static_cast<int>(std::floor(fraction * 1000 + 1e-3))));
  const std::string szDigits = std::to_string(1000 + lMilliseconds);
  return FormatDateTime(dtNow) + "." + szDigits.substr(1);
}

JsonLine::JsonLine(const Clock& clock, std::string_view szKind) : m_Kind(szKind) {
  m_Text = "{\"t\":\"" + WallClockText(clock) + "\"";
  Add("kind", m_Kind);
}

void JsonLine::AddKey(std::string_view szKey) {
  m_Text += ",\"";
  m_Text += szKey;
  m_Text += "\":";
}

JsonLine& JsonLine::Add(std::string_view szKey, const JsonValue& value) {
  AddKey(szKey);
  std::visit(ValueWriter{m_Text}, value);
  return *this;
}

JsonLine& JsonLine::Add(std::string_view szKey, const std::vector<JsonValue>& values) {
  AddKey(szKey);
  m_Text += '[';
  for (const JsonValue& value : values) {
    if (&value != values.data()) m_Text += ',';
    std::visit(ValueWriter{m_Text}, value);
  }
  m_Text += ']';
  return *this;
}

}  // namespace vex

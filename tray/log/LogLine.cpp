#include "tray/log/LogLine.h"

#include <nlohmann/json.hpp>

#include "basic/Error.h"

namespace vex {

namespace {

using Json = nlohmann::ordered_json;

std::string Dump(const Json& json) {
  // Bytes that are no UTF-8 must not cost the line.
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

LogLine LineFrom(const Json& json) {
  LogLine line;
  line.Time = ParseDateTime(json.at("time").get<std::string>());
  line.Level = json.at("level").get<int32_t>();
  line.Text = json.at("text").get<std::string>();
  line.Count = json.value("count", int64_t{1});
  line.Last = json.contains("last") ? ParseDateTime(json.at("last").get<std::string>()) : line.Time;
  return line;
}

}  // namespace

std::string LogLineToJson(const LogLine& line) {
  Json json{{"time", FormatDateTime(line.Time)}, {"level", line.Level}, {"text", line.Text}};
  if (line.Count > 1) {
    json["count"] = line.Count;
    json["last"] = FormatDateTime(line.Last);
  }
  return Dump(json);
}

std::string LogRepeatToJson(const LogRepeat& repeat) {
  return Dump(Json{{"count", repeat.Count}, {"last", FormatDateTime(repeat.Last)}});
}

// In UTF-8 the control characters from U+0080 to U+009F are 0xC2 and their own value.
std::string Printable(std::string_view szUtf8) {
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr auto delete_ = 0x7FU;
  std::string szText;
  for (size_t i = 0; i < szUtf8.size(); ++i) {
    auto byte = static_cast<unsigned char>(szUtf8[i]);
    const auto next = i + 1 < szUtf8.size() ? static_cast<unsigned char>(szUtf8[i + 1]) : 0U;
    const bool boolUpper = byte == 0xC2U && next >= 0x80U && next < 0xA0U;
    if (!boolUpper && byte >= ' ' && byte != delete_) {
      szText += szUtf8[i];
      continue;
    }
    if (boolUpper) byte = static_cast<unsigned char>(szUtf8[++i]);
    szText += "\\x";
    szText += digits[byte >> 4U];
    szText += digits[byte & 0xFU];
  }
  return szText;
}

LogRecord LogRecordFromJson(std::string_view szJson) {
  LogRecord record;
  try {
    const Json json = Json::parse(szJson);
    if (json.contains("text")) {
      record.Line = LineFrom(json);
    } else {
      record.Repeat =
          LogRepeat{json.at("count").get<int64_t>(), ParseDateTime(json.at("last").get<std::string>())};
    }
  } catch (const Json::exception&) {
    return {};
  } catch (const Error&) {
    return {};
  }
  return record;
}

}  // namespace vex

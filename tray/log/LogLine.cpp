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

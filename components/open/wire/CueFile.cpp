#include "components/open/wire/CueFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "components/open/wire/SequenceFileError.h"

namespace vex {
namespace {

using Json = nlohmann::ordered_json;

constexpr double LatestSecond = std::numeric_limits<int32_t>::max() / 1000.0;  // times are asked in ms
constexpr double HighestLevel = 100;

/// A value as the file has it; texts are looked at where they lie.
struct Value {
  enum class Type { Number, Text, Other } Kind = Type::Other;
  double Number = 0;
  std::string* Text = nullptr;
};

/// Where in the file a member stands: which object of the format holds it.
enum class Place { Outside, Root, ShellCommand, EventList, Event };

/// Takes the JSON as it is read, token by token, so that a file of any size needs no second form of itself
/// in memory. Members that are not known are passed over, however deep they go.
class CueReader : public nlohmann::json_sax<Json> {
 public:
  CueReader(std::string_view szText, const std::string& szName) : m_Text(szText), m_Name(szName) {}

  CueFile Result();

  bool null() override { return Take({}); }
  bool boolean(bool) override { return Take({}); }
  bool number_integer(number_integer_t value) override { return TakeNumber(static_cast<double>(value)); }
  bool number_unsigned(number_unsigned_t value) override { return TakeNumber(static_cast<double>(value)); }
  bool number_float(number_float_t value, const string_t&) override { return TakeNumber(value); }
  bool string(string_t& value) override { return Take({Value::Type::Text, 0, &value}); }
  bool binary(binary_t&) override { return Take({}); }
  bool start_object(size_t) override;
  bool end_object() override;
  bool start_array(size_t) override;
  bool end_array() override;
  bool key(string_t& value) override;
  bool parse_error(size_t position, const std::string& lastToken, const Json::exception& exception) override;

 private:
  bool TakeNumber(double number) { return Take({Value::Type::Number, number, nullptr}); }
  bool Take(const Value& value);
  void TakeRoot(const Value& value);
  void TakeShellCommand(const Value& value);
  void TakeEvent(const Value& value);
  void EndEvent();

  [[nodiscard]] double Number(const Value& value, double lowest, double highest) const;
  [[nodiscard]] int32_t Long(const Value& value) const;
  [[nodiscard]] std::chrono::nanoseconds Seconds(const Value& value) const;
  [[nodiscard]] std::string& Text(const Value& value) const;
  [[nodiscard]] CueKind Kind(const Value& value) const;
  [[nodiscard]] uint32_t Command(const Value& value);

  [[nodiscard]] std::string Where() const;
  [[noreturn]] void Refuse(const std::string& szWhat, std::string_view szRemedy) const;
  [[noreturn]] void RefuseValue(const std::string& szWanted) const;

  std::string_view m_Text;
  const std::string& m_Name;
  CueFile m_File;
  std::unordered_map<std::string, uint32_t> m_Commands;

  Place m_Place = Place::Outside;
  size_t m_Unknown = 0;  // depth inside a value that is passed over
  std::string m_Key;     // the member whose value comes next
  CueEvent m_Event;
  bool m_HasEnd = false;
  bool m_HasTo = false;
};

CueFile CueReader::Result() {
  if (!m_File.Duration && m_File.Frames.empty())
    Refuse("\"duration\" is missing",
           "add the sequence's length in seconds, or name a frame file in \"frames\"");
  return std::move(m_File);
}

bool CueReader::start_object(size_t) {
  if (m_Unknown > 0) {
    ++m_Unknown;
  } else if (m_Place == Place::Outside) {
    m_Place = Place::Root;
  } else if (m_Place == Place::EventList) {
    m_Place = Place::Event;
    m_Event = {};
    m_HasEnd = m_HasTo = false;
    m_Key.clear();
  } else if (m_Place == Place::Root && m_Key == "shellCommand") {
    m_Place = Place::ShellCommand;
  } else {
    Take({});  // refuses, where the member is known and wants something else
    m_Unknown = 1;
  }
  return true;
}

bool CueReader::end_object() {
  if (m_Unknown > 0) {
    --m_Unknown;
  } else if (m_Place == Place::Event) {
    EndEvent();
    m_Place = Place::EventList;
    m_Key.clear();
  } else {
    m_Place = m_Place == Place::ShellCommand ? Place::Root : Place::Outside;
  }
  return true;
}

bool CueReader::start_array(size_t) {
  if (m_Unknown > 0) {
    ++m_Unknown;
  } else if (m_Place == Place::Root && m_Key == "events") {
    m_Place = Place::EventList;
    m_File.Events.clear();  // of a member given twice the later one holds
    m_Key.clear();
  } else {
    Take({});
    m_Unknown = 1;
  }
  return true;
}

bool CueReader::end_array() {
  if (m_Unknown > 0)
    --m_Unknown;
  else
    m_Place = Place::Root;
  return true;
}

bool CueReader::key(string_t& value) {
  if (m_Unknown == 0) m_Key = value;
  return true;
}

bool CueReader::parse_error(size_t position, const std::string&, const Json::exception& exception) {
  const auto before = m_Text.substr(0, std::min(position == 0 ? 0 : position - 1, m_Text.size()));
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const size_t lineStart = before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
  constexpr int32_t NumberOutOfRange = 406;
  Refuse((exception.id == NumberOutOfRange ? "number too large, line " : "not valid JSON in UTF-8, line ") +
             std::to_string(line) + ", column " + std::to_string(before.size() - lineStart + 1),
         "correct it there or export the sequence again");
}

bool CueReader::Take(const Value& value) {
  if (m_Unknown > 0) return true;
  switch (m_Place) {
    case Place::Outside:
      Refuse("holds no object", "a cue file begins with { and ends with }");
    case Place::Root:
      TakeRoot(value);
      break;
    case Place::ShellCommand:
      TakeShellCommand(value);
      break;
    case Place::EventList:
      RefuseValue("an object");
    case Place::Event:
      TakeEvent(value);
      break;
  }
  return true;
}

void CueReader::TakeRoot(const Value& value) {
  if (m_Key == "format") {
    if (Text(value) != "vexseq") RefuseValue("\"vexseq\"");
  } else if (m_Key == "version") {
    if (Number(value, 0, LatestSecond) != 1) RefuseValue("1");
  } else if (m_Key == "duration") {
    m_File.Duration = Seconds(value);
  } else if (m_Key == "media") {
    m_File.Media = std::move(Text(value));
  } else if (m_Key == "frames") {
    m_File.Frames = std::move(Text(value));
  } else if (m_Key == "shellCommand") {
    RefuseValue("an object");
  } else if (m_Key == "events") {
    RefuseValue("a list");
  }
}

void CueReader::TakeShellCommand(const Value& value) {
  if (m_Key == "commandLine")
    m_File.CommandLine = std::move(Text(value));
  else if (m_Key == "windowStyle")
    m_File.WindowStyle = Long(value);
}

void CueReader::TakeEvent(const Value& value) {
  if (m_Key == "kind") {
    m_Event.Kind = Kind(value);
  } else if (m_Key == "network") {
    m_Event.Network = Long(value);
  } else if (m_Key == "unit") {
    m_Event.Unit = Long(value);
  } else if (m_Key == "circuit") {
    m_Event.Circuit = Long(value);
  } else if (m_Key == "start") {
    m_Event.Start = Seconds(value);
  } else if (m_Key == "end") {
    m_Event.End = Seconds(value);
    m_HasEnd = true;
  } else if (m_Key == "from") {
    m_Event.From = Number(value, 0, HighestLevel);
  } else if (m_Key == "to") {
    m_Event.To = Number(value, 0, HighestLevel);
    m_HasTo = true;
  } else if (m_Key == "rate") {
    m_Event.Rate = Number(value, 0, std::numeric_limits<double>::max());
  } else if (m_Key == "command") {
    m_Event.Command = Command(value);
  }
}

void CueReader::EndEvent() {
  if (!m_HasEnd) m_Event.End = m_Event.Start;
  if (!m_HasTo) m_Event.To = m_Event.From;
  if (m_Event.End < m_Event.Start) {
    m_Key = "end";
    Refuse(Where() + " lies before its start", "let the event end at or after its start");
  }
  m_File.Events.push_back(m_Event);
}

double CueReader::Number(const Value& value, double lowest, double highest) const {
  if (value.Kind != Value::Type::Number) RefuseValue("a number");
  if (!std::isfinite(value.Number) || value.Number < lowest || value.Number > highest) {
    const bool boolOpen = highest == std::numeric_limits<double>::max();
    RefuseValue(boolOpen ? "a number that is not negative"
                         : "a number from " + std::to_string(static_cast<int64_t>(lowest)) + " to " +
                               std::to_string(static_cast<int64_t>(highest)));
  }
  return value.Number;
}

int32_t CueReader::Long(const Value& value) const {
  constexpr double lowest = std::numeric_limits<int32_t>::min();
  constexpr double highest = std::numeric_limits<int32_t>::max();
  if (value.Kind != Value::Type::Number || !(value.Number >= lowest && value.Number <= highest) ||
      value.Number != std::floor(value.Number))
    RefuseValue("a whole number");
  return static_cast<int32_t>(value.Number);
}

std::chrono::nanoseconds CueReader::Seconds(const Value& value) const {
  return std::chrono::nanoseconds(std::llround(Number(value, 0, LatestSecond) * 1e9));
}

std::string& CueReader::Text(const Value& value) const {
  if (value.Kind != Value::Type::Text) RefuseValue("a text");
  return *value.Text;
}

CueKind CueReader::Kind(const Value& value) const {
  const std::string& szKind = Text(value);
  if (szKind == "main") return CueKind::Main;
  if (szKind == "x10") return CueKind::X10;
  if (szKind == "courser") return CueKind::Courser;
  RefuseValue("\"main\", \"x10\" or \"courser\"");
}

uint32_t CueReader::Command(const Value& value) {
  std::string& szCommand = Text(value);
  if (szCommand.empty()) return 0;
  const auto [known, boolNew] =
      m_Commands.try_emplace(szCommand, static_cast<uint32_t>(m_File.Commands.size()));
  if (boolNew) m_File.Commands.push_back(std::move(szCommand));
  return known->second;
}

std::string CueReader::Where() const {
  std::string szWhere = "\"";
  if (m_Place == Place::ShellCommand) szWhere += "shellCommand.";
  if (m_Place == Place::Event || m_Place == Place::EventList)
    szWhere += "events[" + std::to_string(m_File.Events.size()) + "]" + (m_Key.empty() ? "" : ".");
  return szWhere + m_Key + "\"";
}

void CueReader::Refuse(const std::string& szWhat, std::string_view szRemedy) const {
  throw SequenceFileError(m_Name, szWhat, szRemedy);
}

void CueReader::RefuseValue(const std::string& szWanted) const {
  Refuse(Where() + " has a wrong value", "write " + szWanted);
}

}  // namespace

CueFile ParseCueFile(std::string_view szText, const std::string& szName) {
  CueReader reader(szText, szName);
  Json::sax_parse(szText, &reader);
  return reader.Result();
}

}  // namespace vex

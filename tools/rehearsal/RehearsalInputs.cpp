#include "tools/rehearsal/RehearsalInputs.h"

#include <nlohmann/json.hpp>
#include <set>

#include "basic/Error.h"
#include "host/CodePage.h"

namespace vex {
namespace {

using json = nlohmann::ordered_json;

/// One line of the file, with its members asked for one by one; those that nobody asked for are wrong.
class InputLine {
 public:
  InputLine(const std::string& szText, int32_t lLine, DateTime from,
            const std::function<std::string(const std::string&)>& beside)
      : m_Line(lLine), m_From(from), m_Beside(beside) {
    m_Object = json::parse(szText, nullptr, false);
    if (!m_Object.is_object()) Fail("this is no JSON object");
  }

  [[nodiscard]] RehearsalInput Read() {
    RehearsalInput input;
    input.AtMs = Moment(Text(m_Object, "at"));
    int kinds = 0;
    const auto kind = [&](const char* szName, auto read) {
      if (!m_Object.contains(szName)) return;
      ++kinds;
      input.What = read(m_Object.at(szName));
    };
    kind("message", [this](const json& type) { return Message(type); });
    kind("trigger", [this](const json& trigger) { return Trigger(trigger); });
    kind("copy", [this](const json& copy) { return Copy(copy); });
    kind("mediaError", [this](const json& errors) { return MediaError(errors); });
    kind("sequenceError", [this](const json& error) { return SequenceError(error); });
    kind("clock", [this](const json& time) { return InputClock{Time(time)}; });
    if (kinds != 1)
      Fail(
          "an input has \"at\" and one of \"message\", \"trigger\", \"copy\", \"mediaError\", "
          "\"sequenceError\" and "
          "\"clock\"");
    return input;
  }

 private:
  [[noreturn]] void Fail(const std::string& szWhat) const { throw InputsError(m_Line, szWhat); }

  [[nodiscard]] const json& Member(const json& object, const char* szName) const {
    if (!object.is_object() || !object.contains(szName)) Fail(std::string("\"") + szName + "\" is missing");
    return object.at(szName);
  }

  [[nodiscard]] std::string AnsiText(const json& value, const char* szName) const {
    std::string szText;
    if (!value.is_string()) Fail(std::string("\"") + szName + "\" is no text");
    if (!Utf8ToAnsi(value.get<std::string>(), szText))
      Fail(std::string("\"") + szName + "\" has a character outside " + CodePageName());
    return szText;
  }

  [[nodiscard]] std::string Text(const json& object, const char* szName) const {
    return AnsiText(Member(object, szName), szName);
  }

  [[nodiscard]] int32_t Integer(const json& value, const char* szName) const {
    const bool boolFits =
        value.is_number_integer() && value.get<int64_t>() >= INT32_MIN && value.get<int64_t>() <= INT32_MAX;
    if (!boolFits) Fail(std::string("\"") + szName + "\" is no whole number of 32 bits");
    return value.get<int32_t>();
  }

  [[nodiscard]] DateTime Time(const json& value) const {
    try {
      return ParseDateTime(AnsiText(value, "clock"));
    } catch (const Error&) {
      Fail("\"clock\" is no date and time; write it as 2026-12-24 18:00:00");
    }
  }

  /// "2026-12-24 18:01:00.000", the fraction optional.
  [[nodiscard]] int64_t Moment(const std::string& szAt) const {
    constexpr int64_t perSecond = 1000;
    const size_t dot = szAt.find('.');
    int64_t fraction = 0;
    try {
      if (dot != std::string::npos) {
        const std::string szDigits = szAt.substr(dot + 1);
        if (szDigits.size() != 3 || szDigits.find_first_not_of("0123456789") != std::string::npos)
          throw PlatformError(ErrorTypeMismatch);
        fraction = std::stoll(szDigits);
      }
      const int64_t at = ParseDateTime(szAt.substr(0, dot)).SecondsSince(m_From) * perSecond + fraction;
      if (at < 0) Fail("\"at\" lies before the rehearsal's beginning");
      return at;
    } catch (const Error&) {
      Fail("\"at\" is no moment; write it as 2026-12-24 18:01:00.000");
    }
  }

  [[nodiscard]] InputMessage Message(const json& type) const {
    InputMessage message{Integer(type, "message"), "", 0};
    if (m_Object.contains("text")) message.Text = Text(m_Object, "text");
    if (m_Object.contains("sender")) {
      const json& sender = m_Object.at("sender");
      if (!sender.is_number_unsigned() || sender.get<uint64_t>() > UINT32_MAX)
        Fail("\"sender\" is no window");
      message.Sender = sender.get<uint32_t>();
    }
    return message;
  }

  [[nodiscard]] InputTrigger Trigger(const json& trigger) const {
    return {Integer(Member(trigger, "network"), "network"), Integer(Member(trigger, "unit"), "unit"),
            Integer(Member(trigger, "input"), "input"),
            trigger.contains("name") ? Text(trigger, "name") : std::string()};
  }

  [[nodiscard]] std::string Path(const json& copy, const char* szName) const {
    const json& value = Member(copy, szName);
    if (!value.is_string() || value.get<std::string>().empty())
      Fail(std::string("\"") + szName + "\" is no path");
    return m_Beside(value.get<std::string>());
  }

  [[nodiscard]] InputCopy Copy(const json& copy) const { return {Path(copy, "from"), Path(copy, "to")}; }

  [[nodiscard]] InputMediaError MediaError(const json& errors) const {
    InputMediaError error;
    if (!errors.is_array()) Fail("\"mediaError\" is no list of texts");
    for (const json& description : errors) error.Descriptions.push_back(AnsiText(description, "mediaError"));
    return error;
  }

  [[nodiscard]] InputSequenceError SequenceError(const json& error) const {
    static const std::set<std::string> calls{"load", "prepare",  "start", "stop",  "attach",
                                             "rate", "options",  "state", "media", "shell",
                                             "uses", "initSync", "sync",  "event"};
    InputSequenceError result{Text(error, "file"), Text(error, "call"), Text(error, "text")};
    if (!calls.contains(result.Call)) Fail("there is no call \"" + result.Call + "\" of a sequence");
    return result;
  }

  int32_t m_Line;
  DateTime m_From;
  const std::function<std::string(const std::string&)>& m_Beside;
  json m_Object;
};

}  // namespace

std::vector<RehearsalInput> ReadRehearsalInputs(
    std::string_view szText, DateTime from, const std::function<std::string(const std::string&)>& beside) {
  std::vector<RehearsalInput> inputs;
  int32_t lLine = 0;
  while (!szText.empty()) {
    const size_t end = std::min(szText.find('\n'), szText.size());
    const std::string szLine(szText.substr(0, end));
    szText.remove_prefix(std::min(end + 1, szText.size()));
    ++lLine;
    if (szLine.find_first_not_of(" \t\r") == std::string::npos) continue;
    inputs.push_back(InputLine(szLine, lLine, from, beside).Read());
    if (inputs.size() > 1 && inputs[inputs.size() - 2].AtMs > inputs.back().AtMs)
      throw InputsError(lLine, "\"at\" lies before that of the line above; put the inputs in order of time");
  }
  return inputs;
}

}  // namespace vex

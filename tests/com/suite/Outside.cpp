#include "tests/com/suite/Outside.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/com/suite/PropertiesOf.h"
#include "tests/com/suite/Script.h"

namespace suite {
namespace {

const std::string& File() {
  static const std::string file = [] {
    const char* named = std::getenv("VEX_SUITE");
    return std::string(named == nullptr ? "" : named);
  }();
  return file;
}

std::wstring Wide(const std::string& text) {
  return {text.begin(), text.end()};
}

VARIANT ValueOf(const std::string& kind, const std::string& text) {
  VARIANT value;
  VariantInit(&value);
  if (kind == "text") {
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocString(Wide(text).c_str());
  } else if (kind == "bool") {
    value.vt = VT_BOOL;
    value.boolVal = text == "1" ? VARIANT_TRUE : VARIANT_FALSE;
  } else {
    value.vt = VT_I4;
    value.lVal = std::atol(text.c_str());
  }
  return value;
}

VARIANT ObjectOf(PropertiesOf::Values values) {
  VARIANT value;
  value.vt = VT_DISPATCH;
  value.pdispVal = new PropertiesOf(std::move(values));
  return value;
}

void GiveLights(int count) {
  for (int i = 0; i < count; ++i) {
    VARIANT event = ObjectOf({{L"Network", ValueOf("long", "0")},
                              {L"UnitId", ValueOf("long", "1")},
                              {L"Circuit", ValueOf("long", std::to_string(i + 1))},
                              {L"StartLevel", ValueOf("long", "0")},
                              {L"EndLevel", ValueOf("long", "100")},
                              {L"Command", ValueOf("text", "fade")},
                              {L"Rate", ValueOf("long", "1")},
                              {L"StartTime", ValueOf("long", "0")},
                              {L"EndTime", ValueOf("long", "500")}});
    SuiteReturnNext("SequenceEngine.GetEvent", &event);
    VariantClear(&event);
  }
}

void Press(const std::string& name) {
  VARIANT input = ObjectOf({{L"Network", ValueOf("long", "0")},
                            {L"UnitId", ValueOf("long", "1")},
                            {L"InputNumber", ValueOf("long", "3")},
                            {L"Name", ValueOf("text", name)}});
  TheScript().Calls += "pressed, " + std::to_string(SuiteFire("ChannelIO", 1, &input, 1)) + "\n";
  VariantClear(&input);
}

void Follow(const std::string& word, const std::string& member, const std::string& rest) {
  if (word == "raise") {
    const std::wstring words = Wide(rest);
    SuiteRaise(member.c_str(), E_FAIL, 0, L"Suite", rest.empty() ? nullptr : words.c_str(), FALSE);
  } else if (word == "lack") {
    SuiteRename(member.c_str(), nullptr);
  } else if (word == "light") {
    GiveLights(std::atoi(member.c_str()));
  } else if (word == "hangup") {
    SuiteHangUp(member.c_str());
  } else if (word == "press") {
    Press(member);
  } else {
    VARIANT value = ValueOf(word, rest);
    SuiteReturn(member.c_str(), &value);
    VariantClear(&value);
  }
}

}  // namespace

void ListenOutside() {
  static bool following = false;  // what is told may call a component
  if (File().empty() || following) return;
  std::ifstream told(File());
  if (!told) return;
  following = true;
  TheScript().HarmOnce = true;
  for (std::string line; std::getline(told, line);) {
    std::istringstream words(line);
    std::string word;
    std::string member;
    std::string rest;
    words >> word >> member >> std::ws;
    std::getline(words, rest);
    Follow(word, member, rest);
  }
  told.close();
  following = false;
  std::remove(File().c_str());
}

void TellOutside() {
  if (File().empty() || TheScript().Calls.empty()) return;
  std::ofstream(File() + ".log", std::ios::app) << TheScript().Calls;
  TheScript().Calls.clear();
}

}  // namespace suite

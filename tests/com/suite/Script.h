#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/com/suite/SuiteScript.h"

namespace suite {

/// What a component is to raise instead of answering.
struct Raising {
  HRESULT Code = E_FAIL;
  WORD Number = 0;
  std::optional<std::wstring> Source;
  std::optional<std::wstring> Description;
  bool Late = false;
};

/// All that tests have told and all that was asked; "Component.Member" is the key everywhere.
struct Script {
  std::string Calls;
  std::string Taken;
  std::map<std::string, VARIANT> Results;
  std::map<std::string, std::deque<VARIANT>> NextResults;
  std::map<std::string, Raising> Raisings;
  std::map<std::string, std::optional<std::string>> Names;
  std::map<std::string, bool> Deaf;
  std::map<std::string, SuiteEvents> Events;
  std::map<std::string, bool> Controls;
  bool HarmOnce = false;  // what raises or lacks does so once
  int PortDelta = 0;
  long Objects = 0;
};
Script& TheScript();

/// One argument as it came, "I4:3"; of an object, what it is.
std::string Described(const VARIANT& value);
std::string Narrow(const wchar_t* text, size_t length);

}  // namespace suite

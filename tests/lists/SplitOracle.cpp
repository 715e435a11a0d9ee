#include "tests/lists/SplitOracle.h"

#include <set>
#include <tuple>

#include "basic/Error.h"
#include "show/lists/Serialize.h"

namespace vex::test {

namespace {

constexpr const char* Source = "Serialize.ListFromText";

SplitOutcome Failure(int32_t lNumber, const std::string& szWhat) {
  return {{}, lNumber, Source, "Badly formatted list, " + szWhat};
}

/// The position of a character at or behind from, counted from 1; 0 when there is none.
size_t Search(const std::string& szText, char character, size_t from) {
  if (from > szText.size()) return 0;
  const size_t found = szText.find(character, from - 1);
  return found == std::string::npos ? 0 : found + 1;
}

SplitOutcome SplitBody(std::string szBody) {
  SplitOutcome outcome;
  size_t depth = 0;
  size_t start = 1;
  std::set<std::tuple<size_t, size_t, size_t>> seen;  // body length, search start, depth
  for (;;) {
    if (!seen.insert({szBody.size(), start, depth}).second) return Failure(3, "unexpected closing paren");
    const size_t po = Search(szBody, '(', start);
    const size_t pc = Search(szBody, ')', start);
    const size_t ps = Search(szBody, ',', start);
    if (ps == 0 && depth == 0) break;
    if (depth >= 1) {
      if (pc == 0) return Failure(4, "missing closing paren");
      if (po == 0 || po >= pc) {
        start = pc + 1;
        --depth;
      } else {
        start = po + 1;
        ++depth;
      }
    } else if (pc >= po) {
      if ((po != 0 || pc != 0) && ps >= po) {
        depth = 1;
        start = po + 1;
      } else {
        outcome.Fields.push_back(szBody.substr(0, ps - 1));
        szBody.erase(0, ps);
        start = 1;
      }
    } else if (pc != 0) {
      return Failure(3, "unexpected closing paren");
    } else {
      return Failure(2, "missing closing paren");
    }
  }
  outcome.Fields.push_back(szBody);
  return outcome;
}

}  // namespace

SplitOutcome SplitBySearching(const std::string& szText) {
  const size_t open = szText.find('(');
  const size_t close = szText.rfind(')');
  if (open == std::string::npos && close == std::string::npos) return {};
  if (open == std::string::npos || close == std::string::npos || open > close) {
    return Failure(1, "enclosing parens");
  }
  return SplitBody(szText.substr(open + 1, close - open - 1));
}

SplitOutcome SplitBySystem(const std::string& szText) {
  SplitOutcome outcome;
  try {
    for (const std::string_view szField : SplitList(szText)) outcome.Fields.emplace_back(szField);
  } catch (const Error& error) {
    outcome.ErrorNumber = error.Number;
    outcome.ErrorSource = error.Source;
    outcome.ErrorDescription = error.Description;
  }
  return outcome;
}

}  // namespace vex::test

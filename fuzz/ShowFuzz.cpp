#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "show/PlainShow.h"
#include "show/Show.h"
#include "show/ShowFunctions.h"
#include "show/ShowReader.h"

namespace {

using namespace vex;

void Expect(bool boolHolds) {
  if (!boolHolds) std::abort();
}

/// The show's text, empty when it cannot be written.
std::string TextOf(const Show& show) {
  try {
    return ShowToText(show);
  } catch (const Error&) {
    return "";
  }
}

/// Reading either raises one of the list's errors or gives a show or none; what was written once comes back
/// to the byte but for the names in groups, whose escapes grow; the reader gives what parsing gives.
void ReadShow(std::string_view szText) {
  const auto show = ShowFromText(szText);
  ShowReader reader;
  const auto first = reader.Read(szText), second = reader.Read(szText);
  Expect((show != nullptr) == (first != nullptr) && (show != nullptr) == (second != nullptr));
  if (!show) return;
  const std::string szWritten = TextOf(*show);
  Expect(TextOf(*first) == szWritten && TextOf(*second) == szWritten);
  Expect(first->HasSameContents(second.get()) == !szWritten.empty());
  if (szWritten.empty()) return;
  const auto again = ShowFromText(szWritten);
  Expect(again != nullptr);
  Expect(TextOf(*again).size() >= szWritten.size());
  const bool boolPlain = szWritten.find('*') == std::string::npos;
  Expect(!boolPlain || TextOf(*again) == szWritten);
}

/// What the quick reader takes is what the rules give; one field more than is known keeps it away.
void ReadPlainShow(std::string_view szText) {
  const auto plain = PlainShowFromText(szText);
  if (!plain) return;
  const auto byTheRules = ShowFromText(std::string(szText.substr(0, szText.rfind(')'))) + ",x)");
  Expect(byTheRules != nullptr && TextOf(*plain) == TextOf(*byTheRules));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  try {
    ReadPlainShow({reinterpret_cast<const char*>(data), size});
    ReadShow({reinterpret_cast<const char*>(data), size});
  } catch (const Error& error) {
    Expect(error.Source == "Serialize.ListFromText");
  }
  return 0;
}

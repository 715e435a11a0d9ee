#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "basic/Error.h"
#include "show/ShowFunctions.h"
#include "tools/authoring/ShowJson.h"

namespace {

using namespace vex;

void Expect(bool boolHolds) {
  if (!boolHolds) std::abort();
}

}  // namespace

/// JSON is refused with a place, or gives a show that can be written and comes back through JSON to the byte.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  try {
    const auto show = ShowFromJson({reinterpret_cast<const char*>(data), size});
    const std::string szText = ShowToText(*show);
    Expect(ShowToText(*ShowFromJson(ShowToJson(*show, true))) == szText);
  } catch (const Error& error) {
    Expect(error.Number == ErrorTypeMismatch && error.Description.find(": ") != std::string::npos);
  }
  return 0;
}

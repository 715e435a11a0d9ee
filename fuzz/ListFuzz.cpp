#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "show/lists/Serialize.h"

namespace {

void Check(bool boolHolds) {
  if (!boolHolds) std::abort();
}

/// Runs a reader on a text; a failure must be one of the platform's that readers of scalars raise.
template <class Reader>
void Read(Reader reader, std::string_view szField) {
  try {
    static_cast<void>(reader(szField));
  } catch (const vex::Error& error) {
    Check(error.Source.empty());
    Check(error.Number == vex::ErrorTypeMismatch || error.Number == vex::ErrorOverflow);
  }
}

void ReadScalars(std::string_view szField) {
  const std::string szPlain = vex::UnescapeText(szField);
  Check(vex::UnescapeText(vex::EscapeText(szPlain)) == szPlain);
  Read(vex::IntFromText, szField);
  Read(vex::DateFromText, szField);
  Check(!vex::BoolFromText(szField) || szField == "T" || szField == "t");
}

/// The text between the first "(" and the last ")".
std::string_view Body(std::string_view szText) {
  const size_t open = szText.find('(');
  return szText.substr(open + 1, szText.rfind(')') - open - 1);
}

void Split(std::string_view szText) {
  const vex::FieldViews views = vex::SplitList(szText);
  const vex::FieldArray fields = vex::ListFromText(szText, 0);
  Check(views.Length() == fields.Length());
  if (views.Length() == 0) {
    Check(szText.find_first_of("()") == std::string_view::npos);
    return;
  }
  for (int32_t lIndex = 0; lIndex < fields.Length(); ++lIndex) {
    Check(views.Element(lIndex + 1) == fields.Element(lIndex));
    ReadScalars(views.Element(lIndex + 1));
  }
  const std::string szJoined = vex::ListToText(fields);
  Check(Body(szJoined) == Body(szText));
  Check(vex::SplitList(szJoined).Length() == views.Length());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view szText(reinterpret_cast<const char*>(data), size);
  try {
    Split(szText);
  } catch (const vex::Error& error) {
    Check(error.Source == "Serialize.ListFromText");
    Check(error.Number >= 1 && error.Number <= 4);
  }
  ReadScalars(szText);
  return 0;
}

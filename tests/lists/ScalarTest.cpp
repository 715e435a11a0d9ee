#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "show/lists/Serialize.h"
#include "tests/basic/Raises.h"
#include "tests/lists/EveryText.h"

namespace vex::test {

namespace {

void ReplaceAll(std::string& szText, std::string_view szOld, std::string_view szNew) {
  for (size_t at = szText.find(szOld); at != std::string::npos; at = szText.find(szOld, at + szNew.size())) {
    szText.replace(at, szOld.size(), szNew);
  }
}

/// The four replacements over the whole text, one after another.
std::string EscapeByReplacing(std::string szText) {
  ReplaceAll(szText, "*", "*E");
  ReplaceAll(szText, "(", "*O");
  ReplaceAll(szText, ")", "*C");
  ReplaceAll(szText, ",", "*S");
  return szText;
}

std::string UnescapeByReplacing(std::string szText) {
  ReplaceAll(szText, "*S", ",");
  ReplaceAll(szText, "*C", ")");
  ReplaceAll(szText, "*O", "(");
  ReplaceAll(szText, "*E", "*");
  return szText;
}

}  // namespace

TEST(EscapeText, WritesTheFourSpecialCharacters) {
  EXPECT_EQ(EscapeText("a*(b),c"), "a*E*Ob*C*Sc");
  EXPECT_EQ(EscapeText("*E"), "*EE");
  EXPECT_EQ(EscapeText(""), "");
  EXPECT_EQ(EscapeText("plain text"), "plain text");
  EXPECT_EQ(EscapeText(std::string_view("\0,\0", 3)), std::string("\0*S\0", 4));
}

TEST(UnescapeText, ReadsThemBack) {
  EXPECT_EQ(UnescapeText("a*E*Ob*C*Sc"), "a*(b),c");
  EXPECT_EQ(UnescapeText(""), "");
  EXPECT_EQ(UnescapeText("plain text"), "plain text");
}

TEST(UnescapeText, AStarThatIsReadBeginsNoOtherEscape) {
  EXPECT_EQ(UnescapeText("*ES"), "*S");
  EXPECT_EQ(UnescapeText("*EE"), "*E");
  EXPECT_EQ(UnescapeText("*E*E"), "**");
}

TEST(UnescapeText, WhatIsNoEscapeStays) {
  EXPECT_EQ(UnescapeText("*"), "*");
  EXPECT_EQ(UnescapeText("a*"), "a*");
  EXPECT_EQ(UnescapeText("**"), "**");
  EXPECT_EQ(UnescapeText("**S"), "*,");
  EXPECT_EQ(UnescapeText("*x*s*e*o*c"), "*x*s*e*o*c");
  EXPECT_EQ(UnescapeText(std::string_view("*\0", 2)), std::string("*\0", 2));
}

TEST(EscapeProperty, EveryShortTextIsReplacedAsOneEscapeAfterAnother) {
  size_t differing = 0;
  for (size_t length = 0; length <= 6; ++length) {
    EveryText("*EOCS(),a", length, [&](const std::string& szText) {
      if (EscapeText(szText) != EscapeByReplacing(szText) && ++differing == 1) ADD_FAILURE() << szText;
      if (UnescapeText(szText) != UnescapeByReplacing(szText) && ++differing == 1) ADD_FAILURE() << szText;
    });
  }
  EXPECT_EQ(differing, 0u);
}

TEST(EscapeProperty, AnyTextComesBack) {
  EXPECT_TRUE(rc::check("unescape(escape)", [](const std::string& szText) {
    const std::string szEscaped = EscapeText(szText);
    RC_ASSERT(szEscaped.find_first_of("(),") == std::string::npos);
    RC_ASSERT(UnescapeText(szEscaped) == szText);
  }));
}

TEST(EscapeProperty, ATextOfSpecialCharactersComesBack) {
  EXPECT_TRUE(rc::check("unescape(escape), special", [] {
    const auto szText = *rc::gen::container<std::string>(rc::gen::elementOf(std::string("*EOCS(),a")));
    RC_ASSERT(UnescapeText(EscapeText(szText)) == szText);
    RC_ASSERT(EscapeText(szText) == EscapeByReplacing(szText));
    RC_ASSERT(UnescapeText(szText) == UnescapeByReplacing(szText));
  }));
}

TEST(IntToText, IsPlainDecimal) {
  EXPECT_EQ(IntToText(0), "0");
  EXPECT_EQ(IntToText(-12), "-12");
  EXPECT_EQ(IntToText(std::numeric_limits<int32_t>::max()), "2147483647");
  EXPECT_EQ(IntToText(std::numeric_limits<int32_t>::min()), "-2147483648");
}

TEST(IntFromText, RoundsFractionsDown) {
  EXPECT_EQ(IntFromText("2.7"), 2);
  EXPECT_EQ(IntFromText("-2.5"), -3);
  EXPECT_EQ(IntFromText("-0.1"), -1);
  EXPECT_EQ(IntFromText(" 17 "), 17);
  EXPECT_EQ(IntFromText("1e2"), 100);
  EXPECT_EQ(IntFromText("2147483647.9"), 2147483647);
}

TEST(IntFromText, RefusesWhatIsNoNumber) {
  for (const char* szField : {"", "x", "12x", "*S", "1*S5", "T", "()"}) {
    SCOPED_TRACE(szField);
    ExpectPlatformError([&] { return IntFromText(szField); }, ErrorTypeMismatch);
  }
}

TEST(IntFromText, OverflowsBeyond32Bits) {
  for (const char* szField : {"2147483648", "-2147483649", "-2147483648.5", "1e10", "1e999"}) {
    SCOPED_TRACE(szField);
    ExpectPlatformError([&] { return IntFromText(szField); }, ErrorOverflow);
  }
}

TEST(IntProperty, AnyIntegerComesBack) {
  EXPECT_TRUE(rc::check("int", [](int32_t lValue) { RC_ASSERT(IntFromText(IntToText(lValue)) == lValue); }));
}

TEST(BoolToText, OnlyTheCanonicalTrueIsTrue) {
  EXPECT_EQ(BoolToText(-1), "T");
  for (const int32_t lStored : {0, 1, 2, -2, 255, 65535}) EXPECT_EQ(BoolToText(lStored), "F") << lStored;
  EXPECT_EQ(BoolToText(true), "T");
  EXPECT_EQ(BoolToText(false), "F");
}

TEST(BoolFromText, OnlyTIsTrueInEitherCase) {
  EXPECT_TRUE(BoolFromText("T"));
  EXPECT_TRUE(BoolFromText("t"));
  for (const char* szField : {"", "F", "f", "X", "TT", " T", "T ", "-1", "true", "*T", "(T)"}) {
    EXPECT_FALSE(BoolFromText(szField)) << szField;
  }
}

TEST(DateToText, WritesThePicture) {
  EXPECT_EQ(DateToText(DateTime::FromParts(2009, 12, 24, 18, 30)), "2009-12-24 18:30:00");
  EXPECT_EQ(DateFromText("2009-12-24 18:30:00"), DateTime::FromParts(2009, 12, 24, 18, 30));
}

TEST(DateFromText, RefusesWhatIsNoDate) {
  for (const char* szField : {"", "x", "2009-12-32 00:00:00", "2009-12-24*S18:30:00"}) {
    SCOPED_TRACE(szField);
    ExpectPlatformError([&] { return DateFromText(szField); }, ErrorTypeMismatch);
  }
}

}  // namespace vex::test

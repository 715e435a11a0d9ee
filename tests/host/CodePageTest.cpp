#include "host/CodePage.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace vex::test {
namespace {

std::string Ansi(std::string_view szUtf8) {
  std::string szAnsi = "?";
  EXPECT_TRUE(Utf8ToAnsi(szUtf8, szAnsi)) << szUtf8;
  return szAnsi;
}

TEST(CodePage, LettersAndSignsHaveTheirBytes) {
  EXPECT_EQ(Ansi("F\xC3\xBCr Elise"), "F\xFCr Elise");
  EXPECT_EQ(Ansi("\xE2\x82\xAC"), "\x80");  // euro
  EXPECT_EQ(Ansi("\xE2\x80\x93"), "\x96");  // en dash
  EXPECT_EQ(Ansi("\xC5\xB8"), "\x9F");      // Y with diaeresis
  EXPECT_EQ(Ansi(""), "");
}

TEST(CodePage, BytesWithoutACharacterAreControlCharacters) {
  for (const char* szByte : {"\x81", "\x8D", "\x8F", "\x90", "\x9D"}) {
    const std::string szUtf8 = std::string("\xC2") + szByte;
    EXPECT_EQ(AnsiToUtf8(szByte), szUtf8);
    EXPECT_EQ(Ansi(szUtf8), szByte);
  }
}

TEST(CodePage, CharactersOutsideAreRefused) {
  std::string szAnsi;
  for (const char* szUtf8 : {"a\xC2\x80", "a\xE2\x98\x83", "a\xF0\x9F\x8E\x84", "a\xCC\x88", "a\xC4\x80"}) {
    EXPECT_FALSE(Utf8ToAnsi(szUtf8, szAnsi)) << szUtf8;
    EXPECT_EQ(szAnsi, "a");
  }
}

TEST(CodePage, MalformedUtf8IsRefused) {
  std::string szAnsi;
  for (const char* szBad : {"\x80", "\xC3", "\xC3(", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80",
                            "\xF4\x90\x80\x80", "\xFF", "\xF0\x9F\x8E"}) {
    EXPECT_FALSE(IsUtf8(szBad));
    EXPECT_FALSE(Utf8ToAnsi(szBad, szAnsi));
  }
  EXPECT_TRUE(IsUtf8("F\xC3\xBCr \xF0\x9F\x8E\x84"));
}

TEST(CodePage, Utf16IsConvertedToo) {
  std::string szAnsi;
  EXPECT_TRUE(Utf16ToAnsi(u"F\u00FCr \u20AC", szAnsi));
  EXPECT_EQ(szAnsi, "F\xFCr \x80");
  EXPECT_FALSE(Utf16ToAnsi(u"\U0001F384", szAnsi));
  EXPECT_FALSE(Utf16ToAnsi(std::u16string(1, char16_t{0xD800}), szAnsi));
}

TEST(CodePage, Utf16PassesThroughUtf8WithItsLoneSurrogates) {
  std::u16string szText = u"a\u00FC\u20AC\U0001F384";
  szText += char16_t{0xDC00};
  szText += char16_t{0xD800};
  EXPECT_EQ(Utf8ToUtf16(Utf16ToUtf8(szText)), szText);
  EXPECT_EQ(Utf8ToUtf16("a\xFF z"), u"a\uFFFD z");
}

TEST(CodePage, FoldCaseKnowsTheLettersOfTheCodePage) {
  EXPECT_EQ(FoldCase("Software\\BRILLARA 09_"), "software\\brillara 09_");
  EXPECT_EQ(FoldCase("\xC0\xDC\xDE\x8A\x8C\x8E\x9F"), "\xE0\xFC\xFE\x9A\x9C\x9E\xFF");
  EXPECT_EQ(FoldCase("\xD7\xDF\xF7\x80\xAA"), "\xD7\xDF\xF7\x80\xAA");
}

TEST(CodePage, SignsAreFoundFromTheFrontAndFromTheBack) {
  const std::string szPath = "C:\\F\xFCr\\eve.shw";
  EXPECT_EQ(FindInAnsi(szPath, "\\"), 2U);
  EXPECT_EQ(FindInAnsi(szPath, "\\", 3), 6U);
  EXPECT_EQ(FindInAnsi(szPath, "\\", 7), std::string::npos);
  EXPECT_EQ(FindInAnsi(szPath, "\\", 100), std::string::npos);
  EXPECT_EQ(FindLastInAnsi(szPath, "/\\"), 6U);
  EXPECT_EQ(FindLastInAnsi(szPath, "|"), std::string::npos);
  EXPECT_EQ(FindLastInAnsi("", "\\"), std::string::npos);
}

TEST(CodePage, TheEndIsSeen) {
  EXPECT_TRUE(AnsiEndsWith("C:\\", '\\'));
  EXPECT_TRUE(AnsiEndsWith("\\", '\\'));
  EXPECT_FALSE(AnsiEndsWith("C:\\a", '\\'));
  EXPECT_FALSE(AnsiEndsWith("", '\\'));
}

TEST(CodePage, WordsOfEitherKindBecomeUtf8) {
  EXPECT_EQ(WordsToUtf8("no F\xFCr.shw"), "no F\xC3\xBCr.shw");
  EXPECT_EQ(WordsToUtf8("no \xE2\x9C\x93.shw"), "no \xE2\x9C\x93.shw");
}

TEST(CodePageProperty, EverySingleByteTextComesBack) {
  EXPECT_TRUE(rc::check("through UTF-8 and UTF-16", [](const std::string& szText) {
    std::string szBack;
    RC_ASSERT(IsUtf8(AnsiToUtf8(szText)));
    RC_ASSERT(Utf8ToAnsi(AnsiToUtf8(szText), szBack));
    RC_ASSERT(szBack == szText);
    RC_ASSERT(Utf16ToAnsi(Utf8ToUtf16(AnsiToUtf8(szText)), szBack));
    RC_ASSERT(szBack == szText);
  }));
}

TEST(CodePageProperty, EveryUtf16TextComesBack) {
  EXPECT_TRUE(rc::check("through UTF-8", [](const std::vector<uint16_t>& units) {
    const std::u16string szText(units.begin(), units.end());
    RC_ASSERT(Utf8ToUtf16(Utf16ToUtf8(szText)) == szText);
  }));
}

}  // namespace
}  // namespace vex::test

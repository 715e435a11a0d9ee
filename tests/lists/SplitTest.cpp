#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "show/lists/Serialize.h"
#include "tests/basic/Raises.h"

namespace vex::test {

namespace {

using Fields = std::vector<std::string>;

Fields Split(std::string_view szText) {
  const FieldArray fields = ListFromText(szText);
  Fields viewed;
  for (const std::string_view szField : SplitList(szText)) viewed.emplace_back(szField);
  EXPECT_EQ(Fields(fields.begin(), fields.end()), viewed);
  return viewed;
}

void ExpectBadlyFormatted(const std::string& szText, int32_t lNumber, const std::string& szWhat) {
  SCOPED_TRACE(szText);
  ExpectError([&] { return SplitList(szText); }, lNumber, "Serialize.ListFromText",
              "Badly formatted list, " + szWhat);
  ExpectError([&] { return ListFromText(szText); }, lNumber, "Serialize.ListFromText",
              "Badly formatted list, " + szWhat);
}

void ExpectNoParens(const std::string& szText) {
  ExpectBadlyFormatted(szText, 1, "enclosing parens");
}
void ExpectNoneCloses(const std::string& szText) {
  ExpectBadlyFormatted(szText, 2, "missing closing paren");
}
void ExpectUnexpectedClose(const std::string& szText) {
  ExpectBadlyFormatted(szText, 3, "unexpected closing paren");
}
void ExpectInnerNeverCloses(const std::string& szText) {
  ExpectBadlyFormatted(szText, 4, "missing closing paren");
}

}  // namespace

TEST(SplitList, EmptyParensAreOneEmptyField) {
  EXPECT_EQ(Split("()"), Fields{""});
  EXPECT_EQ(ListFromText("()").Length(), 1);
  EXPECT_EQ(ListFromText("()").Element(1), "");
}

TEST(SplitList, WithoutAnyParenThereIsNoField) {
  for (const char* szText : {"", "a", "a,b,c", "*"}) {
    EXPECT_EQ(ListFromText(szText).Length(), 0) << szText;
    EXPECT_EQ(SplitList(szText).Length(), 0) << szText;
  }
}

TEST(SplitList, FieldsRunFromCommaToComma) {
  EXPECT_EQ(Split("(a)"), Fields{"a"});
  EXPECT_EQ(Split("(a,b,c)"), (Fields{"a", "b", "c"}));
  EXPECT_EQ(Split("(a,)"), (Fields{"a", ""}));
  EXPECT_EQ(Split("(,)"), (Fields{"", ""}));
  EXPECT_EQ(Split("(,,a)"), (Fields{"", "", "a"}));
}

TEST(SplitList, BlanksBelongToTheField) {
  EXPECT_EQ(Split("( a , b )"), (Fields{" a ", " b "}));
}

TEST(SplitList, EscapesAreLeftAlone) {
  EXPECT_EQ(Split("(a*Sb,*O)"), (Fields{"a*Sb", "*O"}));
}

TEST(SplitList, InnerListsComeWhole) {
  EXPECT_EQ(Split("(a,(b,c),d)"), (Fields{"a", "(b,c)", "d"}));
  EXPECT_EQ(Split("((x))"), Fields{"(x)"});
  EXPECT_EQ(Split("((a,(b,(c,d))),((e)))"), (Fields{"(a,(b,(c,d)))", "((e))"}));
  EXPECT_EQ(Split("(x(a,b)y,z)"), (Fields{"x(a,b)y", "z"}));
  EXPECT_EQ(Split("((a,b)(c,d),e)"), (Fields{"(a,b)(c,d)", "e"}));
}

TEST(SplitList, WhatSurroundsTheOuterParensIsIgnored) {
  EXPECT_EQ(Split("xx(1,2)yy"), (Fields{"1", "2"}));
  EXPECT_EQ(Split(",(1),"), Fields{"1"});
}

TEST(SplitList, OneOfTheOuterParensAloneIsAnError) {
  for (const char* szText : {"(a,b", "a)", ")(", "(", ")", "a),(b"}) ExpectNoParens(szText);
}

TEST(SplitList, AnOpeningParenThatNoneClosesIsFoundBeforeAnyFieldIsCut) {
  ExpectNoneCloses("(a,(b)");
  ExpectNoneCloses("(a,b,c,(d)");
  ExpectNoneCloses("((a),b,(c)");
}

TEST(SplitList, WithoutACommaToComeParensAreNotLookedAt) {
  EXPECT_EQ(Split("((a)"), Fields{"(a"});
  EXPECT_EQ(Split("((()"), Fields{"(("});
  EXPECT_EQ(Split("(a))"), Fields{"a)"});
  EXPECT_EQ(Split("(a)))"), Fields{"a))"});
  EXPECT_EQ(Split("(a)b(c)"), Fields{"a)b(c"});
}

TEST(SplitList, BehindTheLastCommaParensAreNotLookedAt) {
  EXPECT_EQ(Split("(a,(b),(c)d)"), (Fields{"a", "(b)", "(c)d"}));
  EXPECT_EQ(Split("((b,c),(d))e(f)"), (Fields{"(b,c)", "(d))e(f"}));
}

TEST(SplitList, AnInnerListThatNeverClosesIsAnErrorOfItsOwn) {
  ExpectInnerNeverCloses("((a,(b),c)");
  ExpectInnerNeverCloses("(x,((a),b)");
  ExpectInnerNeverCloses("((((a),b)");
}

TEST(SplitList, AClosingParenBeforeTheNextOpeningOneIsUnexpected) {
  ExpectUnexpectedClose("(a),(b)");
  ExpectUnexpectedClose("(a,b),c,(d))");
  ExpectUnexpectedClose("((a)),(b),c)");
}

TEST(SplitList, AStrayClosingParenEndsAnInnerListThatBeganWithTheField) {
  EXPECT_EQ(Split("(a,b),c)"), (Fields{"a,b)", "c"}));
  EXPECT_EQ(Split("(x,(y),a),b)"), (Fields{"x", "(y),a)", "b"}));
  EXPECT_EQ(Split("((x),a),b,c)"), (Fields{"(x),a)", "b", "c"}));
}

TEST(SplitList, CommasBeforeAStrayClosingParenBelongToItsInnerList) {
  EXPECT_EQ(Split("(a,b,c,d),e)"), (Fields{"a,b,c,d)", "e"}));
  EXPECT_EQ(Split("(u,(v),w,x),y)"), (Fields{"u", "(v),w,x)", "y"}));
}

TEST(SplitList, ATextThatWouldNeverEndHasAnUnexpectedClosingParen) {
  ExpectUnexpectedClose("(a),b),c)");
  ExpectUnexpectedClose("(a)),c)");
  ExpectUnexpectedClose("((x),a),b),c)");
}

TEST(SplitList, AStrayClosingParenBehindTheLastCommaEndsTheText) {
  EXPECT_EQ(Split("(a,b)c))"), Fields{"a,b)c)"});
}

TEST(SplitList, AMillionParensDeepIsNoHarderThanOne) {
  constexpr size_t depth = 1'000'000;
  const std::string szInner = std::string(depth, '(') + "," + std::string(depth, ')');
  EXPECT_EQ(Split("(" + szInner + ",b)"), (Fields{szInner, "b"}));
  ExpectInnerNeverCloses("((" + szInner + ",b)");
}

TEST(SplitList, FieldsMayBeLongerThanAnyBlock) {
  const std::string szLong(1000, 'x');
  EXPECT_EQ(Split("(" + szLong + ",(" + szLong + ",a)," + szLong + ")"),
            (Fields{szLong, "(" + szLong + ",a)", szLong}));
}

TEST(SplitList, ManyFieldsBehindFewLongOnes) {
  const std::string szText = "(" + std::string(100'000, 'x') + std::string(99'999, ',') + ")";
  const FieldViews fields = SplitList(szText);
  EXPECT_EQ(fields.Length(), 100'000);
  EXPECT_EQ(fields.Element(1).size(), 100'000u);
  EXPECT_EQ(fields.Element(100'000), "");
}

TEST(FieldArray, CountsFromItsLowerBound) {
  for (const int32_t lLowerBound : {0, 1, -3}) {
    const FieldArray fields = ListFromText("(a,b)", lLowerBound);
    const FieldViews views = SplitList("(a,b)", lLowerBound);
    EXPECT_EQ(fields.LowerBound(), lLowerBound);
    EXPECT_EQ(fields.UpperBound(), lLowerBound + 1);
    EXPECT_EQ(views.LowerBound(), lLowerBound);
    EXPECT_EQ(views.UpperBound(), lLowerBound + 1);
    EXPECT_EQ(fields.Element(lLowerBound), "a");
    EXPECT_EQ(views.Element(lLowerBound + 1), "b");
    for (const int32_t lOutside : {lLowerBound - 1, lLowerBound + 2}) {
      ExpectPlatformError([&] { return fields.Element(lOutside); }, ErrorSubscript);
      ExpectPlatformError([&] { return views.Element(lOutside); }, ErrorSubscript);
    }
  }
}

TEST(FieldArray, NeverSizedItHasNoElement) {
  const FieldArray fields = ListFromText("");
  EXPECT_EQ(fields.Length(), 0);
  EXPECT_EQ(fields.LowerBound(), 1);
  EXPECT_EQ(fields.UpperBound(), 0);
  ExpectPlatformError([&] { return fields.Element(1); }, ErrorSubscript);
  ExpectPlatformError([&] { return SplitList("").Element(1); }, ErrorSubscript);
  EXPECT_EQ(FieldArray().Length(), 0);
}

TEST(FieldArray, GrowsAndClears) {
  FieldArray fields(0);
  fields.Append("a");
  fields.Append("b");
  EXPECT_EQ(fields.Element(1), "b");
  fields.Clear();
  EXPECT_EQ(fields.Length(), 0);
}

TEST(ListToText, JoinsWithCommasBetweenParens) {
  FieldArray fields;
  EXPECT_EQ(ListToText(fields), "()");
  fields.Append("");
  EXPECT_EQ(ListToText(fields), "()");
  fields.Append("");
  EXPECT_EQ(ListToText(fields), "(,)");
  fields.Append("(x,y)");
  EXPECT_EQ(ListToText(fields), "(,,(x,y))");
}

}  // namespace vex::test

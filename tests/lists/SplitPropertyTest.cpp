#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>
#include <vector>

#include "show/lists/ListShape.h"
#include "show/lists/Serialize.h"
#include "tests/lists/EveryText.h"
#include "tests/lists/SplitOracle.h"

namespace vex::test {

namespace {

rc::Gen<std::string> TextOver(std::string szAlphabet, size_t longest) {
  return rc::gen::mapcat(rc::gen::inRange<size_t>(0, longest + 1), [szAlphabet](size_t length) {
    return rc::gen::container<std::string>(length, rc::gen::elementOf(szAlphabet));
  });
}

}  // namespace

TEST(SplitProperty, EveryShortTextSplitsAsSearchingDoes) {
  size_t differing = 0;
  size_t succeeding = 0;
  for (size_t length = 0; length <= 9; ++length) {
    EveryText("(),a", length, [&](const std::string& szText) {
      const SplitOutcome expected = SplitBySearching(szText);
      if (SplitBySystem(szText) != expected && ++differing == 1) ADD_FAILURE() << "first: " << szText;
      if (expected.ErrorNumber == 0) ++succeeding;
    });
  }
  EXPECT_EQ(differing, 0u);
  EXPECT_GT(succeeding, 10000u);
}

TEST(SplitProperty, EveryShortBodySplitsAsSearchingDoes) {
  size_t differing = 0;
  for (size_t length = 0; length <= 8; ++length) {
    EveryText("(),*a", length, [&](const std::string& szBody) {
      const std::string szText = "(" + szBody + ")";
      if (SplitBySystem(szText) != SplitBySearching(szText) && ++differing == 1) {
        ADD_FAILURE() << "first: " << szText;
      }
    });
  }
  EXPECT_EQ(differing, 0u);
}

TEST(SplitProperty, RandomTextsSplitAsSearchingDoes) {
  EXPECT_TRUE(rc::check("as searching", [] {
    for (const auto& szText : *rc::gen::container<std::vector<std::string>>(200, TextOver("(),*a", 40))) {
      RC_ASSERT(SplitBySystem(szText) == SplitBySearching(szText));
    }
  }));
}

// Most random texts fail at once; these are made to come through, with strays here and there.
TEST(SplitProperty, LongBalancedTextsWithStraysSplitAsSearchingDoes) {
  EXPECT_TRUE(rc::check("as searching, long", [] {
    const auto pieces = *rc::gen::container<std::vector<std::string>>(
        rc::gen::weightedElement<std::string>({{12, "a"},
                                               {8, ","},
                                               {3, "-a\xA8\xAC"},
                                               {3, "(a,b)"},
                                               {2, "((a),(,))"},
                                               {1, "abcdefghijklmnopqrstuvwxyz0123456789+-/.<>=;"}}));
    std::string szBody;
    for (const auto& szPiece : pieces) szBody += szPiece;
    const auto strays = *rc::gen::inRange(0, 4);
    for (int stray = 0; stray < strays; ++stray) {
      const auto place = *rc::gen::inRange<size_t>(0, szBody.size() + 1);
      szBody.insert(place, 1, *rc::gen::element(')', ')', '('));
    }
    const std::string szText = "(" + szBody + ")";
    const SplitOutcome expected = SplitBySearching(szText);
    RC_CLASSIFY(expected.ErrorNumber == 0, "splits");
    RC_ASSERT(SplitBySystem(szText) == expected);
  }));
}

TEST(SplitProperty, WhatIsJoinedSplitsAgain) {
  EXPECT_TRUE(rc::check("round trip", [](const std::vector<std::string>& texts) {
    FieldArray fields;
    for (const auto& szText : texts) fields.Append(EscapeText(szText));
    const FieldArray again = ListFromText(ListToText(fields));
    if (texts.empty()) {
      RC_ASSERT(again.Length() == 1 && again.Element(1).empty());
    } else {
      RC_ASSERT(std::vector(again.begin(), again.end()) == std::vector(fields.begin(), fields.end()));
    }
  }));
}

TEST(SplitProperty, BothWaysToLookAtABlockSeeTheSame) {
  EXPECT_TRUE(rc::check("shape", [] {
    const auto szBlock = *rc::gen::container<std::string>(
        ListShape::BlockSize,
        rc::gen::oneOf(rc::gen::arbitrary<char>(), rc::gen::elementOf(std::string("(),-+*\xA8\xAC"))));
    const ListShape shape = ShapeOf(szBlock.data());
    const ListShape plain = PlainShapeOf(szBlock.data());
    RC_ASSERT(shape.Commas == plain.Commas);
    RC_ASSERT(shape.Parens == plain.Parens);
    for (size_t i = 0; i < szBlock.size(); ++i) {
      RC_ASSERT((shape.Commas >> i & 1) == uint64_t{szBlock[i] == ','});
      RC_ASSERT((shape.Parens >> i & 1) == uint64_t{szBlock[i] == '(' || szBlock[i] == ')'});
    }
  }));
}

}  // namespace vex::test

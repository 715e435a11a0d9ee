#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <memory>
#include <string>
#include <vector>

#include "show/PlainShow.h"
#include "show/PlaylistFunctions.h"
#include "show/Show.h"
#include "show/ShowFunctions.h"
#include "show/ShowReader.h"
#include "show/TriggerFunctions.h"
#include "show/TriggeredSequencesFunctions.h"
#include "tests/show/AnyShow.h"

namespace vex {
namespace {

TEST(ShowProperty, AnyShowComesBackToTheByte) {
  EXPECT_TRUE(rc::check("read(write(show)) writes the same", [] {
    const auto show = AnyShow();
    const std::string szText = ShowToText(*show);
    const auto read = ShowFromText(szText);
    RC_ASSERT(read != nullptr);
    RC_ASSERT(ShowToText(*read) == szText);
    RC_ASSERT(show->HasSameContents(read.get()));
  }));
}

/// The same show with one field more than is known: it is read by the rules, field by field.
std::string NotPlain(const std::string& szText) {
  return szText.substr(0, szText.rfind(')')) + ",x)";
}

void CheckSameShow(const Show& one, const Show& other) {
  RC_ASSERT(ShowToText(one) == ShowToText(other));
  RC_ASSERT(one.InteractiveGroups().Count() == other.InteractiveGroups().Count());
  for (int32_t lIndex = 1; lIndex <= one.InteractiveGroups().Count(); ++lIndex) {
    const auto& group = *one.InteractiveGroups().Item(lIndex);
    const auto& otherGroup = *other.InteractiveGroups().Item(lIndex);
    RC_ASSERT(group.TypeName() == otherGroup.TypeName());
    RC_ASSERT(group.TypeDesc() == otherGroup.TypeDesc());
  }
}

TEST(ShowProperty, ThePlainReaderGivesWhatTheRulesGive) {
  EXPECT_TRUE(rc::check("plain == by the rules", [] {
    const std::string szText = ShowToText(*AnyShow());
    const auto plain = PlainShowFromText(szText);
    RC_ASSERT(plain != nullptr);
    RC_ASSERT(PlainShowFromText(NotPlain(szText)) == nullptr);
    const auto byTheRules = ShowFromText(NotPlain(szText));
    RC_ASSERT(byTheRules != nullptr);
    CheckSameShow(*plain, *byTheRules);
  }));
}

TEST(ShowProperty, ThePlainReaderPassesOnWhatIsDamaged) {
  EXPECT_TRUE(rc::check("damaged text", [] {
    std::string szText = ShowToText(*AnyShow());
    const std::string szDamages = "(),*TFx0-";
    for (int32_t lLeft = *rc::gen::inRange(1, 4); lLeft > 0; --lLeft) {
      const size_t position = *rc::gen::inRange<size_t>(0, szText.size());
      szText[position] = szDamages[*rc::gen::inRange<size_t>(0, szDamages.size())];
    }
    const auto plain = PlainShowFromText(szText);
    if (!plain) return;
    const auto byTheRules = ShowFromText(NotPlain(szText));
    RC_ASSERT(byTheRules != nullptr);
    CheckSameShow(*plain, *byTheRules);
  }));
}

TEST(ShowProperty, NamesOfPlaylistsComeBackAsTheyWere) {
  EXPECT_TRUE(rc::check("names survive", [] {
    const auto playlist = AnyPlaylist(AnyFlag());
    const auto read = PlaylistFromText(PlaylistToText(*playlist));
    RC_ASSERT(read->Count() == playlist->Count());
    for (int32_t lIndex = 1; lIndex <= read->Count(); ++lIndex) {
      RC_ASSERT(read->List().Item(lIndex) == playlist->List().Item(lIndex));
    }
    RC_ASSERT(read->CleanUp() == playlist->CleanUp());
  }));
}

/// The reader against parsing anew at every step, whatever is done with the shows between.
TEST(ShowProperty, TheReaderGivesWhatParsingGives) {
  EXPECT_TRUE(rc::check("reader == ShowFromText", [] {
    const std::vector<std::string> texts = {
        ShowToText(*AnyShow()), ShowToText(*AnyShow()), "", "(x)",
        "((1,0,1,0,,),(1,0,1,0,,),(1,0,1,0,,),(1,0,1,0,,),,,((0,,F,F,T,,)))"};
    ShowReader reader;
    std::vector<std::shared_ptr<Show>> held;
    for (int32_t lStep = 0; lStep < 20; ++lStep) {
      const std::string& szText = texts[*rc::gen::inRange<size_t>(0, texts.size())];
      const auto parsed = ShowFromText(szText);
      auto read = reader.Read(szText);
      RC_ASSERT((parsed == nullptr) == (read == nullptr));
      if (!read) continue;
      RC_ASSERT(read->HasSameContents(parsed.get()) == parsed->HasSameContents(parsed.get()));
      RC_ASSERT(read->Monitoring()->MemberwiseEquals(nullptr));
      for (const auto& show : held) {
        RC_ASSERT(show != read);
        RC_ASSERT(show->HasSameContents(read.get()) == show->HasSameContents(parsed.get()));
      }
      for (const auto& group : read->InteractiveGroups()) {
        for (int32_t lEntry = 0; lEntry < group->Count(); ++lEntry) {
          if (AnyFlag()) RC_ASSERT(group->GetTriggeredSequences(lEntry)->RoundRobinIndex() == 0);
        }
      }
      if (AnyFlag()) read->Monitoring()->Filename("x");
      if (SmallCount() == 0) read->Main()->Delay(3), read->StartupType(AnyNumber());
      if (AnyFlag()) held.push_back(read);
      if (SmallCount() == 0) held.clear();
    }
  }));
}

}  // namespace
}  // namespace vex

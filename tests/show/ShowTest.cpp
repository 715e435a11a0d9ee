#include "show/Show.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "show/PlaylistFunctions.h"
#include "show/ShowFunctions.h"
#include "show/TriggerFunctions.h"
#include "show/TriggeredSequencesFunctions.h"
#include "tests/show/RaisedError.h"

namespace vex {
namespace {

std::shared_ptr<InteractiveGroup> Group() {
  auto group = std::make_shared<InteractiveGroup>();
  group->AddTriggeredSequences(
      NewTriggeredSequences(NewTrigger(0, 1, 2, "Door"), std::vector<std::string>{"a", "b"}));
  return group;
}

InteractiveGroupCollection Groups() {
  InteractiveGroupCollection groups;
  groups.Add(Group());
  return groups;
}

void ExpectPlaylist(const Playlist& playlist, int32_t lKind, int32_t lAnimationType, int32_t lMusicalType) {
  EXPECT_EQ(lKind, playlist.PlaylistType());
  EXPECT_EQ(lAnimationType, playlist.AnimationType());
  EXPECT_EQ(lMusicalType, playlist.MusicalType());
  EXPECT_EQ(0, playlist.Delay());
  EXPECT_EQ(0, playlist.Count());
}

TEST(Show, HasItsDefaultsWhenNew) {
  const Show show;
  ExpectPlaylist(*show.Startup(), 2, 0, 1);
  ExpectPlaylist(*show.Shutdown(), 2, 0, 1);
  ExpectPlaylist(*show.Main(), 1, 1, 0);
  ExpectPlaylist(*show.Musical(), 2, 0, 1);
  ExpectPlaylist(*show.Background(), 1, 2, 0);
  EXPECT_EQ(0, show.InteractiveGroups().Count());
  EXPECT_EQ(0, show.StartupType());
  EXPECT_EQ(nullptr, show.StartupTrigger());
  EXPECT_FALSE(show.PreloadSequences());
  ASSERT_NE(nullptr, show.Monitoring());
  EXPECT_EQ("", show.Monitoring()->Filename());
}

TEST(Show, PropertiesStoreWhatIsGiven) {
  Show show;
  const auto list = std::make_shared<Playlist>();
  show.Startup(list);
  EXPECT_EQ(list, show.Startup());
  show.Shutdown(nullptr);
  EXPECT_EQ(nullptr, show.Shutdown());
  show.Main(list);
  EXPECT_EQ(list, show.Main());
  show.Musical(list);
  EXPECT_EQ(list, show.Musical());
  show.Background(list);
  EXPECT_EQ(list, show.Background());
  show.InteractiveGroups(Groups());
  EXPECT_EQ(1, show.InteractiveGroups().Count());
  show.StartupType(-3);
  EXPECT_EQ(-3, show.StartupType());
  const auto trigger = NewTrigger(0, 1, 2, "");
  show.StartupTrigger(trigger);
  EXPECT_EQ(trigger, show.StartupTrigger());
  show.PreloadSequences(true);
  EXPECT_TRUE(show.PreloadSequences());
}

TEST(Show, MonitoringIsNeverEmpty) {
  Show show;
  const auto event = std::make_shared<MonitoredShowEvent>();
  show.Monitoring(event);
  EXPECT_EQ(event, show.Monitoring());
  show.Monitoring(nullptr);
  ASSERT_NE(nullptr, show.Monitoring());
  EXPECT_NE(event, show.Monitoring());
}

TEST(ShowContents, AreTheSameWhenOnlyMonitoringDiffers) {
  Show one, other;
  other.Monitoring()->Filename("eve.shw");
  EXPECT_TRUE(one.HasSameContents(&other));
  EXPECT_TRUE(other.HasSameContents(&one));
}

TEST(ShowContents, DifferWhenTheTextDiffersByCaseOnly) {
  Show one, other;
  one.Main()->List().Add("a.seq");
  other.Main()->List().Add("A.seq");
  EXPECT_FALSE(one.HasSameContents(&other));
}

TEST(ShowContents, OfNoShowOrOfOneThatCannotBeWrittenAreNeverTheSame) {
  Show show;
  EXPECT_FALSE(show.HasSameContents(nullptr));
  InteractiveGroupCollection groups;
  groups.Add(std::make_shared<InteractiveGroup>());
  show.InteractiveGroups(groups);
  EXPECT_FALSE(show.HasSameContents(&show));
  Show lacking;
  lacking.Main(nullptr);
  EXPECT_FALSE(lacking.HasSameContents(&lacking));
}

std::shared_ptr<Show> Sealed(const std::string& szText) {
  auto show = std::make_shared<Show>();
  show->InteractiveGroups(Groups());
  show->StartupTrigger(NewTrigger(0, 1, 2, ""));
  show->Seal(std::make_shared<const std::string>(szText));
  return show;
}

TEST(ShowSeal, SealedShowsAreComparedByTheirSealedTexts) {
  EXPECT_TRUE(Sealed("one")->HasSameContents(Sealed("one").get()));
  EXPECT_FALSE(Sealed("one")->HasSameContents(Sealed("two").get()));
}

TEST(ShowSeal, ASealedAndAnUnsealedShowAreWrittenOut) {
  const auto sealed = Sealed("not its text");
  const auto same = ShowFromText(ShowToText(*sealed));
  EXPECT_TRUE(sealed->HasSameContents(same.get()));
  EXPECT_TRUE(same->HasSameContents(sealed.get()));
}

TEST(ShowSeal, AnUnsealedShowHasNoSealedContents) {
  const Show show;
  EXPECT_EQ(nullptr, show.SealedContents());
  EXPECT_FALSE(show.AsRead());
}

using Change = void (*)(Show&);

TEST(ShowSeal, AnyChangeToTheShowOrAPartBreaksIt) {
  const std::vector<std::pair<const char*, Change>> changes = {
      {"Background", [](Show& s) { s.Background(s.Main()); }},
      {"InteractiveGroups", [](Show& s) { s.InteractiveGroups({}); }},
      {"Main", [](Show& s) { s.Main(s.Background()); }},
      {"Musical", [](Show& s) { s.Musical(s.Startup()); }},
      {"PreloadSequences", [](Show& s) { s.PreloadSequences(true); }},
      {"Shutdown", [](Show& s) { s.Shutdown(s.Startup()); }},
      {"Startup", [](Show& s) { s.Startup(s.Musical()); }},
      {"StartupTrigger", [](Show& s) { s.StartupTrigger(nullptr); }},
      {"StartupType", [](Show& s) { s.StartupType(1); }},
      {"a name added", [](Show& s) { s.Main()->List().Add("x"); }},
      {"names cleared", [](Show& s) { s.Shutdown()->List().Clear(); }},
      {"AnimationType", [](Show& s) { s.Background()->AnimationType(1); }},
      {"MusicalType", [](Show& s) { s.Musical()->MusicalType(2); }},
      {"Delay", [](Show& s) { s.Startup()->Delay(1); }},
      {"PlaylistType", [](Show& s) { s.Main()->PlaylistType(2); }},
      {"CleanUp", [](Show& s) { s.Musical()->CleanUp("x"); }},
      {"LightsOffAtEnd", [](Show& s) { s.Main()->LightsOffAtEnd(false); }},
      {"ShuffleAllowsBackToBack", [](Show& s) { s.Main()->ShuffleAllowsBackToBack(true); }},
      {"ShuffleWithReplacement", [](Show& s) { s.Main()->ShuffleWithReplacement(true); }},
      {"trigger unit", [](Show& s) { s.StartupTrigger()->UnitId(5); }},
      {"trigger input", [](Show& s) { s.StartupTrigger()->InputNumber(5); }},
      {"trigger network", [](Show& s) { s.StartupTrigger()->Network(5); }},
      {"trigger name", [](Show& s) { s.StartupTrigger()->Name("x"); }},
      {"group name", [](Show& s) { s.InteractiveGroups().Item(1)->Name("x"); }},
      {"group description", [](Show& s) { s.InteractiveGroups().Item(1)->Description("x"); }},
      {"group flag", [](Show& s) { s.InteractiveGroups().Item(1)->Independent(true); }},
      {"group flag 2", [](Show& s) { s.InteractiveGroups().Item(1)->Interruptible(true); }},
      {"group flag 3", [](Show& s) { s.InteractiveGroups().Item(1)->MusicalAllowed(false); }},
      {"group lights off", [](Show& s) { s.InteractiveGroups().Item(1)->LightsOffAtEnd(false); }},
      {"entry added", [](Show& s) { s.InteractiveGroups().Item(1)->AddTriggeredSequences(nullptr); }},
      {"entry deleted", [](Show& s) { s.InteractiveGroups().Item(1)->DeleteTriggeredSequence(0); }},
      {"group copied over", [](Show& s) { s.InteractiveGroups().Item(1)->Copy(InteractiveGroup()); }},
      {"sequence added",
       [](Show& s) { s.InteractiveGroups().Item(1)->GetTriggeredSequences(0)->AddSequence("x"); }},
      {"sequence assigned",
       [](Show& s) { s.InteractiveGroups().Item(1)->GetTriggeredSequences(0)->Sequence(0, "x"); }},
      {"sequences cleared",
       [](Show& s) { s.InteractiveGroups().Item(1)->GetTriggeredSequences(0)->ClearSequences(); }},
      {"entry trigger assigned",
       [](Show& s) { s.InteractiveGroups().Item(1)->GetTriggeredSequences(0)->Trig(nullptr); }},
      {"entry trigger changed",
       [](Show& s) { s.InteractiveGroups().Item(1)->GetTriggeredSequences(0)->Trig()->UnitId(9); }},
      {"entry copied over",
       [](Show& s) {
         s.InteractiveGroups().Item(1)->GetTriggeredSequences(0)->Copy(*Group()->GetTriggeredSequences(0));
       }},
  };
  for (const auto& [name, change] : changes) {
    const auto show = Sealed("text");
    ASSERT_NE(nullptr, show->SealedContents());
    change(*show);
    EXPECT_EQ(nullptr, show->SealedContents()) << name;
    EXPECT_FALSE(show->AsRead()) << name;
    EXPECT_FALSE(show->HasSameContents(Sealed("text").get()) &&
                 ShowToText(*show) != ShowToText(*Sealed("text")))
        << name;
  }
}

TEST(ShowSeal, ReadingAndMonitoringLeaveItUnbroken) {
  const auto show = Sealed("text");
  show->Monitoring(std::make_shared<MonitoredShowEvent>());
  show->Monitoring()->ShuttingDown(true);
  EXPECT_EQ(0, show->Main()->List().Count());
  EXPECT_EQ(0, show->Main()->Count());
  EXPECT_EQ(1, show->InteractiveGroups().Item(1)->Count());
  EXPECT_TRUE(show->AsRead());
}

TEST(ShowSeal, AnAssignmentThatIsPassedOverLeavesItUnbroken) {
  const auto show = Sealed("text");
  show->Main()->Delay(5);
  show->Musical()->AnimationType(5);
  show->Main()->PlaylistType(1);
  EXPECT_TRUE(show->AsRead());
}

TEST(ShowSeal, ATurnOfTheRoundRobinKeepsTheContentsButLeavesItsTrace) {
  const auto show = Sealed("text");
  (void)show->InteractiveGroups().Item(1)->GetTriggeredSequences(0)->RoundRobinIndex();
  EXPECT_NE(nullptr, show->SealedContents());
  EXPECT_FALSE(show->AsRead());
}

}  // namespace
}  // namespace vex

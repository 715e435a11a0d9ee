#include <gtest/gtest.h>

#include <functional>

#include "tests/authoring/Told.h"
#include "tools/authoring/ChangeSchedule.h"
#include "tools/authoring/Moments.h"
#include "tools/authoring/ShowJson.h"
#include "tools/faults/FaultyHost.h"

namespace vex {
namespace {

const std::string Folder = "C:\\d\\";

/// Strikes the call with that number.
class OneCall : public FaultPlan {
 public:
  explicit OneCall(int32_t lCall) : m_Left(lCall) {}
  bool Strikes(std::string_view, std::string_view) override { return m_Left-- == 0; }
  [[nodiscard]] bool Struck() const { return m_Left < 0; }

 private:
  int32_t m_Left;
};

VirtualFiles& Prepare(VirtualFiles& files) {
  files.Put(Folder + "weeksched.qsc", MondayShow);
  files.Put(Folder + "yearsched.qsc", ChristmasEve);
  files.Put(Folder + "eve.json", R"({"format":"vexshow"})");
  files.Put(Folder + "eve.shw", "old");
  return files;
}

/// Every call of the files fails once: the change is refused with a number, and the file is as it was.
void EachCallFails(const std::string& szFile, const std::function<FileOutcome(Files&)>& change) {
  int32_t lCall = 0;
  for (bool boolStruck = true; boolStruck; ++lCall) {
    VirtualFiles real;
    const std::string szBefore = Contents(Prepare(real), Folder + szFile);
    OneCall plan(lCall);
    FaultyFiles files(real, plan);
    const FileOutcome outcome = change(files);
    boolStruck = plan.Struck();
    EXPECT_EQ(outcome.Failure.has_value(), boolStruck) << lCall;
    EXPECT_EQ(Contents(real, Folder + szFile) == szBefore, boolStruck) << lCall;
  }
  EXPECT_GE(lCall, 3) << "reading and writing at least, and one round without a failure";
}

TEST(EachCallFails, OfAChangeOfTheWeek) {
  EachCallFails("weeksched.qsc", [](Files& files) -> FileOutcome {
    return AddToWeek(files, Folder + "weeksched.qsc", ParseWeekTime("Tue 18:00"), ParseWeekTime("Tue 22:00"),
                     "b");
  });
  EachCallFails("weeksched.qsc", [](Files& files) -> FileOutcome {
    return RemoveFromWeek(files, Folder + "weeksched.qsc", ParseWeekTime("Mon 18:00"));
  });
}

TEST(EachCallFails, OfAChangeOfTheYear) {
  EachCallFails("yearsched.qsc", [](Files& files) -> FileOutcome {
    return AddToYear(files, Folder + "yearsched.qsc", ParseDateTime("2026-12-25 18:00"),
                     ParseDateTime("2026-12-25 22:00"), "b");
  });
  EachCallFails("yearsched.qsc", [](Files& files) -> FileOutcome {
    return RemoveFromYear(files, Folder + "yearsched.qsc", ParseDateTime("2026-12-24 18:00"));
  });
}

TEST(EachCallFails, OfAnImport) {
  EachCallFails("eve.shw", [](Files& files) -> FileOutcome {
    return ImportShow(files, Folder + "eve.json", Folder + "eve.shw");
  });
}

TEST(EachCallFails, AFileThatCannotBeLockedIsNotChanged) {
  VirtualFiles real;
  OneCall plan(0);
  FaultyFiles files(Prepare(real), plan);
  const WeekOutcome week =
      AddToWeek(files, Folder + "weeksched.qsc", ParseWeekTime("Tue 18:00"), ParseWeekTime("Tue 22:00"), "b");
  EXPECT_EQ(Told(week), "75//No locks available");
}

}  // namespace
}  // namespace vex

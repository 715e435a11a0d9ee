#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <string>

#include "host/linux/LinuxFiles.h"
#include "tray/log/LogReader.h"
#include "tray/log/LogWriter.h"

namespace vex::test {
namespace {

const DateTime Eve = DateTime::FromParts(2026, 12, 24, 18, 0, 0);

constexpr size_t MostLines = 1 << 20;
constexpr int64_t MostAhead = 500;

/// What writer and test both see, whatever happens to the writer.
struct Progress {
  std::atomic<int64_t> Added{0};
  std::atomic<int64_t> Allowed{
      0};  ///< the writer waits here, lest it fills the log while the test gets no turn
  std::array<std::atomic<bool>, MostLines> Saved;  ///< the writer has been told that this line is written
};

/// Every seventh line comes three times, so that counts are being written when the end comes as well.
int64_t TimesOf(int64_t number) {
  return number % 7 == 0 ? 3 : 1;
}

[[noreturn]] void WriteUntilKilled(const std::string& szPath, Progress& progress) {
  LinuxFiles files;
  LogWriter writer(files, szPath, {40000, 1000});
  for (int64_t number = progress.Added + 1; number < static_cast<int64_t>(MostLines); ++number) {
    while (number > progress.Allowed) sched_yield();
    const LogLine line{Eve.PlusSeconds(number), 1, "line " + std::to_string(number), 1,
                       Eve.PlusSeconds(number)};
    for (int64_t time = 0; time < TimesOf(number); ++time) {
      writer.Add(line);
      if (number % 3 == 0) writer.Save();
    }
    progress.Added = number;
    if (writer.Save()) progress.Saved[static_cast<size_t>(number)] = true;
  }
  while (true) pause();
}

/// Two hundred times a writer is killed at a moment of chance, with rotations and counts under way, and
/// another goes on. Every line that was written is there with its count, in its order; what is not may only
/// be one that was being written.
TEST(KilledWriter, LosesNothingThatWasWritten) {
  constexpr int kills = 200;
  std::string szFolder = (std::filesystem::temp_directory_path() / "vexlogXXXXXX").string();
  ASSERT_NE(mkdtemp(szFolder.data()), nullptr);
  LinuxFiles files;
  const std::string szPath = files.SystemPath(szFolder + "/log");
  auto* const progress =
      new (mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
          Progress;
  std::mt19937 random(20261224);
  for (int kill = 0; kill < kills; ++kill) {
    const int64_t end = progress->Added + static_cast<int64_t>(random() % 300);
    progress->Allowed = end + MostAhead;
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) WriteUntilKilled(szPath, *progress);
    while (progress->Added < end) sched_yield();
    for (auto turns = random() % 300; turns > 0; --turns) sched_yield();
    ASSERT_EQ(::kill(writer, SIGKILL), 0);
    waitpid(writer, nullptr, 0);
  }
  std::map<int64_t, int64_t> counts;
  int64_t last = 0;
  LogReader reader(files, szPath);
  ASSERT_TRUE(reader.Read([&](const LogLine& line) {
    const int64_t number = std::stoll(line.Text.substr(5));
    ASSERT_GE(number, last);  // the same again where nobody could tell any more that it had been written
    last = number;
    counts[number] = std::max(counts[number], line.Count);
  }));
  int64_t saved = 0;
  for (int64_t number = 1; number <= progress->Added; ++number) {
    if (!progress->Saved[static_cast<size_t>(number)]) continue;
    ++saved;
    ASSERT_EQ(counts[number], TimesOf(number)) << "line " << number;
  }
  EXPECT_GT(saved, kills);
  EXPECT_LE(reader.Damaged(), kills);
  std::filesystem::remove_all(szFolder);
}

}  // namespace
}  // namespace vex::test

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "components/open/media/MediaProbe.h"
#include "host/RegistryText.h"
#include "tests/rehearsals/EveningDrive.h"
#include "tests/rehearsals/EveningFile.h"

namespace vex::test {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> Evenings() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(VEX_REHEARSALS)) {
    if (entry.path().extension() == ".evening") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

class TemporaryFolder {
 public:
  TemporaryFolder() {
    for (int attempt = 0; Path.empty(); ++attempt) {
      const fs::path folder = fs::temp_directory_path() / ("vexevening" + std::to_string(attempt));
      if (fs::create_directory(folder)) Path = folder;
    }
  }
  ~TemporaryFolder() { fs::remove_all(Path); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  fs::path Path;
};

std::vector<std::string> Played(const EveningFile& evening, const fs::path& folder) {
  const auto drive = FilesWithDriveD(folder);
  Files& files = *drive;
  std::string szSettings;
  EXPECT_TRUE(files.Read("D:\\settings.reg", szSettings, nullptr));
  const RegistryText settings(szSettings);
  EXPECT_TRUE(settings.Errors().empty());
  MediaProbe probe(files);
  Rehearsal rehearsal(
      files, settings, evening.Options,
      ReadRehearsalInputs(evening.Inputs, evening.Options.From,
                          [&](const std::string& szPath) { return (folder / szPath).string(); }),
      [&probe](const std::string& szPath) {
        const ProbedMedia media = probe.Look(szPath);
        MediaFacts facts{media.MediaType, media.Length, {}};
        if (!media.Failure.empty()) facts.Errors.push_back(media.Failure);
        return facts;
      });
  const std::set<std::string, std::less<>> only(evening.Only.begin(), evening.Only.end());
  std::vector<std::string> lines;
  rehearsal.Write(
      [&only, lLowest = evening.LowestLevel](const RehearsalEvent& event) {
        if (event.Kind == "log" && event.Level < lLowest) return false;
        if (only.empty()) return event.Call != "send" && event.Call != "flush";
        return only.contains(event.Kind) || only.contains(event.Call);
      },
      [&lines](const JsonLine& line) { lines.push_back(line.Text()); });
  rehearsal.Run();
  return lines;
}

/// The first place at which the two go apart, with what came before it.
std::string FirstDifference(const std::vector<std::string>& expected,
                            const std::vector<std::string>& played) {
  constexpr size_t before = 4;
  size_t at = 0;
  while (at < expected.size() && at < played.size() && expected[at] == played[at]) ++at;
  std::ostringstream text;
  for (size_t i = at > before ? at - before : 0; i < at; ++i) text << "             " << played[i] << "\n";
  text << "  expected:  " << (at < expected.size() ? expected[at] : "nothing more") << "\n";
  text << "  played:    " << (at < played.size() ? played[at] : "nothing more") << "\n";
  for (size_t i = at + 1; i < std::min(played.size(), at + before); ++i)
    text << "             " << played[i] << "\n";
  return text.str();
}

class Rehearsals : public testing::TestWithParam<fs::path> {};

TEST_P(Rehearsals, GoesAsWorkedOut) {
  const TemporaryFolder folder;
  const EveningFile evening = LayOutEvening(GetParam(), folder.Path);
  ASSERT_FALSE(evening.Expected.empty());
  if (!evening.Impossible.empty()) GTEST_SKIP() << "no file can be named " << evening.Impossible << " here";
  const auto played = Played(evening, folder.Path);
  EXPECT_TRUE(played == evening.Expected) << FirstDifference(evening.Expected, played);
}

TEST(RehearsalsReadMe, NamesEveryEvening) {
  std::ifstream stream(fs::path(VEX_REHEARSALS) / "README.md");
  const std::string szText{std::istreambuf_iterator<char>(stream), {}};
  for (const fs::path& evening : Evenings()) {
    const std::string szName = evening.stem().string();
    EXPECT_NE(szText.find("`" + szName + "`"), std::string::npos) << szName;
  }
}

INSTANTIATE_TEST_SUITE_P(Evenings, Rehearsals, testing::ValuesIn(Evenings()), [](const auto& evening) {
  std::string szName = evening.param.stem().string();
  std::replace(szName.begin(), szName.end(), '-', '_');
  return szName;
});

}  // namespace
}  // namespace vex::test

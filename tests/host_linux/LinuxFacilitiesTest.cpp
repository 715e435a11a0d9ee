#include "host/linux/LinuxFacilities.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/linux/Descriptor.h"
#include "host/linux/SoundCards.h"
#include "tests/host_linux/LinuxMachine.h"

namespace vex::test {
namespace {

using testing::HasSubstr;
using Verdict = FacilityAnswer::Verdict;

class LinuxFacilitiesTest : public testing::Test {
 protected:
  void SetUp() override { ForgetSession(); }
  void TearDown() override { ForgetSession(); }
  static void ForgetSession() {
    for (const char* const szName : {"DISPLAY", "PULSE_SERVER", "XDG_RUNTIME_DIR"}) unsetenv(szName);
  }
  [[nodiscard]] std::string Path(const std::string& szName) const { return Folder.Path() + "/" + szName; }
  [[nodiscard]] std::string Make(const std::string& szName, mode_t mode) const {
    std::ofstream(Path(szName)) << "x";
    chmod(Path(szName).c_str(), mode);
    return Path(szName);
  }
  static Descriptor Listen(const std::string& szPath) {
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    szPath.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(socket.Get(), 1), 0);
    return socket;
  }

  TemporaryFolder Folder;
  LinuxFacilities Machine{RuntimeFolder(Folder.Path() + "/meet")};
};

TEST_F(LinuxFacilitiesTest, SpaceIsThatOfTheNearestFolder) {
  const auto here = Machine.Space(Folder.Path());
  const auto below = Machine.Space(Path("not/there/yet"));
  ASSERT_TRUE(here && below);
  EXPECT_GT(here->Free, 0U);
  EXPECT_EQ(here->ReadOnly, below->ReadOnly);
  const auto kernel = Machine.Space("/proc");
  ASSERT_TRUE(kernel);
  EXPECT_EQ(kernel->Free, 0U);
}

TEST_F(LinuxFacilitiesTest, RightsTellWhoMayChangeAFile) {
  EXPECT_FALSE(Machine.Rights(Path("none"))->Exists);
  const auto mine = Machine.Rights(Make("mine", 0644));
  EXPECT_TRUE(mine->Exists && mine->Read && mine->Write);
  EXPECT_FALSE(mine->IsFolder || mine->OthersWrite);
  EXPECT_NE(mine->Owner, "");
  EXPECT_TRUE(Machine.Rights(Make("all", 0666))->OthersWrite);
}

TEST_F(LinuxFacilitiesTest, ASharedFolderThatGuardsItsFilesIsNotOpen) {
  mkdir(Path("open").c_str(), 0700);
  chmod(Path("open").c_str(), 0777);
  EXPECT_TRUE(Machine.Rights(Path("open"))->IsFolder);
  EXPECT_TRUE(Machine.Rights(Path("open"))->OthersWrite);
  chmod(Path("open").c_str(), 01777);
  EXPECT_FALSE(Machine.Rights(Path("open"))->OthersWrite);
}

TEST_F(LinuxFacilitiesTest, TheAccountIsOrdinaryUnlessItMayDoEverything) {
  EXPECT_EQ(Machine.OrdinaryAccount().Is, geteuid() == 0 ? Verdict::No : Verdict::Yes);
  EXPECT_NE(Machine.OrdinaryAccount().Words, "");
}

TEST_F(LinuxFacilitiesTest, TheClocksKeeperIsKnown) {
  EXPECT_NE(Machine.ClockSynchronised().Is, Verdict::Unknown);
}

TEST_F(LinuxFacilitiesTest, ASoundServerOfTheSessionIsFound) {
  setenv("XDG_RUNTIME_DIR", Folder.Path().c_str(), 1);
  const FacilityAnswer without = Machine.SoundDevice();
  EXPECT_THAT(without.Words, testing::Not(HasSubstr("sound server at")));
  mkdir(Path("pulse").c_str(), 0700);
  {
    const Descriptor server = Listen(Path("pulse/native"));
    EXPECT_EQ(Machine.SoundDevice().Is, Verdict::Yes);
    EXPECT_EQ(Machine.SoundDevice().Words, "sound server at " + Path("pulse/native"));
  }
  // What a server that died has left behind is none.
  EXPECT_EQ(Machine.SoundDevice().Words, without.Words);
  const Descriptor server = Listen(Path("pipewire-0"));
  EXPECT_EQ(Machine.SoundDevice().Words, "sound server at " + Path("pipewire-0"));
}

TEST_F(LinuxFacilitiesTest, ANamedSoundServerIsNotTried) {
  setenv("PULSE_SERVER", "tcp:stage.example", 1);
  EXPECT_EQ(Machine.SoundDevice().Is, Verdict::Unknown);
  EXPECT_THAT(Machine.SoundDevice().Words, HasSubstr("tcp:stage.example"));
}

TEST_F(LinuxFacilitiesTest, SoundCardsThatPlayAreNamed) {
  EXPECT_EQ(FindSoundCards(Path("none"), Path("none")).Usable, "");
  mkdir(Path("snd").c_str(), 0700);
  (void)Make("snd/pcmC2D0c", 0600);
  (void)Make("snd/controlC2", 0600);
  EXPECT_EQ(FindSoundCards(Path("snd"), Folder.Path()).Usable, "");
  (void)Make("snd/pcmC2D3p", 0600);
  EXPECT_EQ(FindSoundCards(Path("snd"), Folder.Path()).Usable, "sound card 2");
  mkdir(Path("card2").c_str(), 0700);
  std::ofstream(Path("card2/id")) << "PCH\n";
  EXPECT_EQ(FindSoundCards(Path("snd"), Folder.Path()).Usable, "sound card 2 (PCH)");
  EXPECT_EQ(FindSoundCards(Path("snd"), Folder.Path()).Locked, "");
}

TEST_F(LinuxFacilitiesTest, ADisplayMustAnswer) {
  EXPECT_EQ(Machine.Display().Is, Verdict::No);
  setenv("DISPLAY", "nonsense", 1);
  EXPECT_EQ(Machine.Display().Is, Verdict::No);
  setenv("DISPLAY", ":60789", 1);
  EXPECT_EQ(Machine.Display().Words, "nobody answers at DISPLAY=:60789");
  setenv("DISPLAY", "stage.example:0", 1);
  EXPECT_EQ(Machine.Display().Is, Verdict::Unknown);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string szName = "/tmp/.X11-unix/X60790";
  szName.copy(address.sun_path + 1, sizeof address.sun_path - 1);
  const Descriptor server(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + szName.size());
  ASSERT_EQ(bind(server.Get(), reinterpret_cast<const sockaddr*>(&address), length), 0);
  ASSERT_EQ(listen(server.Get(), 1), 0);
  setenv("DISPLAY", "unix:60790.0", 1);
  EXPECT_EQ(Machine.Display().Is, Verdict::Yes);
}

TEST_F(LinuxFacilitiesTest, TheLoopbackCanBeReachedAndAnUnknownInterfaceCannot) {
  EXPECT_EQ(Machine.RouteTo(0x7F000001, 0).Is, Verdict::Yes);
  EXPECT_EQ(Machine.RouteTo(0x7F000001, 0).Words, "by lo");
  EXPECT_EQ(Machine.RouteTo(0xEFFF0001, 0xC6336409).Is, Verdict::No);
}

TEST_F(LinuxFacilitiesTest, AskingForTheMeetingPlaceDoesNotMakeIt) {
  EXPECT_EQ(Machine.MeetingPlace().Is, Verdict::Yes);
  EXPECT_FALSE(std::filesystem::exists(Path("meet")));
  const LinuxFacilities longOne(RuntimeFolder(Path(std::string(120, 'm'))));
  EXPECT_THAT(LinuxFacilities(longOne).MeetingPlace().Words, HasSubstr("too long"));
  std::ofstream(Path("file")) << "x";
  EXPECT_EQ(LinuxFacilities(RuntimeFolder(Path("file"))).MeetingPlace().Is, Verdict::No);
  EXPECT_THAT(LinuxFacilities(RuntimeFolder("/tmp")).MeetingPlace().Words, HasSubstr("/tmp "));
  EXPECT_EQ(LinuxFacilities(RuntimeFolder("/tmp")).MeetingPlace().Is, Verdict::No);
}

}  // namespace
}  // namespace vex::test

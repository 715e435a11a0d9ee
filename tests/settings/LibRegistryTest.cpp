#include "settings/LibRegistry.h"

#include <gtest/gtest.h>

#include "basic/Error.h"
#include "host/virtual/VirtualRegistry.h"
#include "settings/LibRegistryVex.h"
#include "settings/LibRegistryVexShared.h"

namespace vex::test {
namespace {

constexpr RegistryRoot Root = RegistryRoot::CurrentUser;

class LibRegistryTest : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(Registry.OpenKeys(), 0U) << "a key was left open"; }

  template <class Call>
  Error ErrorOf(Call call) {
    try {
      call();
    } catch (const Error& error) {
      return error;
    }
    ADD_FAILURE() << "nothing was raised";
    return {0, "", ""};
  }

  VirtualRegistry Registry;
};

TEST_F(LibRegistryTest, OpenKeyForReadingOpensWhatIsThere) {
  Registry.SetLong("a\\b", "x", 1);
  const RegistryKey key = OpenKey(Registry, Root, "A\\B", KEY_READ_ACCESS);
  EXPECT_NE(key, 0U);
  Registry.CloseKey(key);
}

TEST_F(LibRegistryTest, OpenKeyForReadingAMissingKeyRaisesTheSystemsCode) {
  const Error error = ErrorOf([&] { (void)OpenKey(Registry, Root, "a", KEY_READ_ACCESS); });
  EXPECT_EQ(error.Number, RegistryFileNotFound);
  EXPECT_EQ(error.Source, "LibRegistry.OpenKey");
  EXPECT_EQ(error.Description, "RegOpenKeyEx failure");
  EXPECT_FALSE(Registry.HasKey("a"));
}

TEST_F(LibRegistryTest, OpenKeyForWritingCreatesTheKey) {
  const RegistryKey key = OpenKey(Registry, Root, "a\\b", KEY_WRITE_ACCESS);
  EXPECT_TRUE(Registry.HasKey("a\\b"));
  EXPECT_EQ(Registry.SetValue(key, "x", RegistryKind::DWord, {1, 0, 0, 0}), RegistrySuccess);
  Registry.CloseKey(key);
}

TEST_F(LibRegistryTest, OpenKeyForOtherAccessCreatesNothing) {
  EXPECT_EQ(ErrorOf([&] { (void)OpenKey(Registry, Root, "a", KEY_READ_ACCESS | KEY_WRITE_ACCESS); }).Number,
            RegistryFileNotFound);
  EXPECT_FALSE(Registry.HasKey("a"));
}

TEST_F(LibRegistryTest, OpenKeyForWritingThatFailsAgainRaisesTheSecondCode) {
  Registry.SetLong("a", "x", 1);
  Registry.FailCall(1, RegistryAccessDenied);  // the first opening fails, creating and opening do not
  Registry.CloseKey(OpenKey(Registry, Root, "a", KEY_WRITE_ACCESS));
  Registry.FailCall(3, RegistryAccessDenied);  // missing, created, and then it fails
  const Error error = ErrorOf([&] { (void)OpenKey(Registry, Root, "b", KEY_WRITE_ACCESS); });
  EXPECT_EQ(error.Number, RegistryAccessDenied);
  EXPECT_EQ(error.Description, "RegOpenKeyEx failure");
}

TEST_F(LibRegistryTest, OpenKeyForWritingThatCannotCreateRaisesThat) {
  Registry.FailCall(2, RegistryAccessDenied);
  const Error error = ErrorOf([&] { (void)OpenKey(Registry, Root, "a", KEY_WRITE_ACCESS); });
  EXPECT_EQ(error.Number, RegistryAccessDenied);
  EXPECT_EQ(error.Source, "LibRegistry.CreateKey");
  EXPECT_EQ(error.Description, "RegCreateKeyEx failure");
}

TEST_F(LibRegistryTest, CreateKeyCreatesAndCloses) {
  CreateKey(Registry, Root, "a\\b");
  EXPECT_TRUE(Registry.HasKey("a\\b"));
  Registry.FailCall(1, 5);
  EXPECT_EQ(ErrorOf([&] { CreateKey(Registry, Root, "c"); }).Number, 5);
}

TEST_F(LibRegistryTest, QueryLongReadsAllThirtyTwoBits) {
  Registry.SetLong("a", "x", 0xFFFFFFFE);
  Registry.SetLong("a", "y", 0x01020304);
  EXPECT_EQ(QueryLong(Registry, Root, "a", "x", 7), -2);
  EXPECT_EQ(QueryLong(Registry, Root, "a", "Y", 7), 0x01020304);
}

TEST_F(LibRegistryTest, QueryLongGivesTheDefaultForWhatIsMissingOrNoDword) {
  EXPECT_EQ(QueryLong(Registry, Root, "a", "x", 7), 7);
  Registry.SetText("a", "text", "abc");  // four bytes with its zero
  Registry.SetBytes("a", "short", RegistryKind::DWord, {1, 2});
  Registry.SetBytes("a", "long", RegistryKind::DWord, {1, 2, 3, 4, 5});
  Registry.SetBytes("a", "empty", RegistryKind::DWord, {});
  Registry.SetBytes("a", "binary", RegistryKind::Binary, {1, 0, 0, 0});
  for (const char* szName : {"x", "text", "short", "long", "empty", "binary"}) {
    EXPECT_EQ(QueryLong(Registry, Root, "a", szName, 7), 7) << szName;
  }
}

TEST_F(LibRegistryTest, QueryBoolIsTrueForAnyNumberButZero) {
  Registry.SetLong("a", "zero", 0);
  Registry.SetLong("a", "one", 1);
  Registry.SetLong("a", "minusOne", 0xFFFFFFFF);
  Registry.SetText("a", "text", "T");
  EXPECT_FALSE(QueryBool(Registry, Root, "a", "zero", true));
  EXPECT_TRUE(QueryBool(Registry, Root, "a", "one", false));
  EXPECT_TRUE(QueryBool(Registry, Root, "a", "minusOne", false));
  EXPECT_TRUE(QueryBool(Registry, Root, "a", "none", true));
  EXPECT_FALSE(QueryBool(Registry, Root, "a", "none", false));
  EXPECT_TRUE(QueryBool(Registry, Root, "a", "text", true));
}

TEST_F(LibRegistryTest, QueryStringDropsTheTerminatingZeroAlone) {
  Registry.SetText("a", "x", "D:\\Seq");
  Registry.SetText("a", "empty", "");
  Registry.SetBytes("a", "bare", RegistryKind::String, {'a', 'b'});
  Registry.SetBytes("a", "nothing", RegistryKind::String, {});
  EXPECT_EQ(QueryString(Registry, Root, "a", "x", "default"), "D:\\Seq");
  EXPECT_EQ(QueryString(Registry, Root, "a", "empty", "default"), "");
  EXPECT_EQ(QueryString(Registry, Root, "a", "bare", "default"), "ab");
  EXPECT_EQ(QueryString(Registry, Root, "a", "nothing", "default"), "");
}

TEST_F(LibRegistryTest, QueryStringGivesTheDefaultForWhatIsMissingOrNoText) {
  EXPECT_EQ(QueryString(Registry, Root, "a", "x", "default"), "default");
  Registry.SetLong("a", "number", 0x41424300);
  Registry.SetBytes("a", "binary", RegistryKind::Binary, {'a', 0});
  EXPECT_EQ(QueryString(Registry, Root, "a", "x", "default"), "default");
  EXPECT_EQ(QueryString(Registry, Root, "a", "number", "default"), "default");
  EXPECT_EQ(QueryString(Registry, Root, "a", "binary", "default"), "default");
}

TEST_F(LibRegistryTest, ReadersGiveTheDefaultWhicheverCallFails) {
  Registry.SetLong("a", "x", 1);
  Registry.SetText("a", "y", "text");
  for (int32_t lCall = 1; lCall <= 3; ++lCall) {
    Registry.FailCall(lCall, RegistryAccessDenied);
    EXPECT_EQ(QueryLong(Registry, Root, "a", "x", 7), 7) << lCall;
    Registry.FailCall(lCall, RegistryMoreData);
    EXPECT_EQ(QueryString(Registry, Root, "a", "y", "default"), "default") << lCall;
    EXPECT_EQ(Registry.OpenKeys(), 0U);
  }
}

TEST_F(LibRegistryTest, ReadersCreateNothing) {
  (void)QueryLong(Registry, Root, "a", "x", 7);
  (void)QueryString(Registry, Root, "a", "x", "");
  EXPECT_FALSE(Registry.HasKey("a"));
}

TEST_F(LibRegistryTest, PathsOfTheProductAndTheSharedKey) {
  EXPECT_EQ(ProductKeyPath(""), "Software\\Brillara");
  EXPECT_EQ(ProductKeyPath("XLK"), "Software\\Brillara\\XLK");
  EXPECT_EQ(SharedKeyPath(""), "Software\\Brillara\\Shared");
  EXPECT_EQ(SharedKeyPath("Network\\AuxA"), "Software\\Brillara\\Shared\\Network\\AuxA");
}

TEST_F(LibRegistryTest, TypedReadersReadBelowTheirKeys) {
  Registry.SetLong("Software\\Brillara\\XLK", "LocalPort", 4000);
  Registry.SetLong("Software\\Brillara", "PostInstall", 1);
  Registry.SetText("Software\\Brillara", "AppPath", "C:\\Suite");
  EXPECT_EQ(GetProductLong(Registry, "LocalPort", "XLK", 3737), 4000);
  EXPECT_EQ(GetProductLong(Registry, "RemotePort", "XLK", 3738), 3738);
  EXPECT_TRUE(GetProductBool(Registry, "PostInstall", "", false));
  EXPECT_EQ(GetProductString(Registry, "AppPath", "", ""), "C:\\Suite");
  EXPECT_EQ(GetProductString(Registry, "RemoteHost", "XLK", "127.0.0.1"), "127.0.0.1");

  Registry.SetLong("Software\\Brillara\\Shared\\Network", "VexSpeed", 3);
  Registry.SetLong("Software\\Brillara\\Shared", "Flag", 0);
  Registry.SetText("Software\\Brillara\\Shared", "AudioPath", "D:\\Music");
  EXPECT_EQ(GetSharedLong(Registry, "VexSpeed", "Network", 2), 3);
  EXPECT_FALSE(GetSharedBool(Registry, "Flag", "", true));
  EXPECT_EQ(GetSharedString(Registry, "AudioPath", "", ""), "D:\\Music");
  EXPECT_EQ(GetSharedString(Registry, "AppPath", "", "none"), "none");
}

}  // namespace
}  // namespace vex::test

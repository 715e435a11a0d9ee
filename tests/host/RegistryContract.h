#pragma once

#include <vector>

#include "tests/host/HostContract.h"

namespace vex::test {

class ContractKey {
 public:
  ContractKey(Registry& registry, const std::string& szSubkey) : m_Registry(registry) {
    EXPECT_EQ(registry.CreateKey(RegistryRoot::CurrentUser, szSubkey, Key), RegistrySuccess);
  }
  ~ContractKey() { m_Registry.CloseKey(Key); }
  ContractKey(const ContractKey&) = delete;
  ContractKey& operator=(const ContractKey&) = delete;

  RegistryKey Key = 0;

 private:
  Registry& m_Registry;
};

TEST_P(HostContract, OpeningAMissingKeyIsFileNotFound) {
  RegistryKey key = 0;
  for (const uint32_t access : {KEY_READ_ACCESS, KEY_WRITE_ACCESS}) {
    EXPECT_EQ(m_Host->Registry().OpenKey(RegistryRoot::CurrentUser, "Software\\Brillara\\XLK", access, key),
              RegistryFileNotFound);
  }
}

TEST_P(HostContract, CreatedKeyOpensWithTheKeysAboveItAndWithoutRegardToCase) {
  Registry& registry = m_Host->Registry();
  const ContractKey created(registry, "Software\\Brillara\\XLK");
  for (const char* szSubkey : {"Software\\Brillara\\XLK", "Software\\Brillara", "SOFTWARE\\brillara\\xlk"}) {
    RegistryKey key = 0;
    EXPECT_EQ(registry.OpenKey(RegistryRoot::CurrentUser, szSubkey, KEY_READ_ACCESS, key), RegistrySuccess);
    EXPECT_NE(key, 0U);
    registry.CloseKey(key);
  }
}

TEST_P(HostContract, CreatingAKeyAgainKeepsItsValues) {
  Registry& registry = m_Host->Registry();
  const ContractKey first(registry, "Software\\Brillara");
  ASSERT_EQ(registry.SetValue(first.Key, "On", RegistryKind::DWord, {1, 0, 0, 0}), RegistrySuccess);
  const ContractKey again(registry, "Software\\Brillara");
  RegistryKind kind{};
  uint32_t size = 0;
  EXPECT_EQ(registry.QueryValue(again.Key, "On", kind, nullptr, size), RegistrySuccess);
}

TEST_P(HostContract, DwordIsFourBytesLowOnesFirst) {
  Registry& registry = m_Host->Registry();
  const ContractKey key(registry, "Software\\Brillara");
  const std::vector<uint8_t> stored{0x0A, 0x0B, 0, 0x80};
  ASSERT_EQ(registry.SetValue(key.Key, "LocalPort", RegistryKind::DWord, stored), RegistrySuccess);
  RegistryKind kind{};
  uint32_t size = 0;
  std::vector<uint8_t> data(4);
  EXPECT_EQ(registry.QueryValue(key.Key, "LOCALPORT", kind, &data, size), RegistrySuccess);
  EXPECT_EQ(kind, RegistryKind::DWord);
  EXPECT_EQ(size, 4U);
  EXPECT_EQ(data, stored);
}

TEST_P(HostContract, TextComesBackWithItsZeroCounted) {
  Registry& registry = m_Host->Registry();
  const ContractKey key(registry, "Software\\Brillara");
  const std::string szText("D:\\F\xFCr \"Elise\"\\\0", 16);
  const std::vector<uint8_t> stored(szText.begin(), szText.end());
  ASSERT_EQ(registry.SetValue(key.Key, "AppPath", RegistryKind::String, stored), RegistrySuccess);
  RegistryKind kind{};
  uint32_t size = 0;
  ASSERT_EQ(registry.QueryValue(key.Key, "AppPath", kind, nullptr, size), RegistrySuccess);
  EXPECT_EQ(kind, RegistryKind::String);
  ASSERT_EQ(size, 16U);
  std::vector<uint8_t> data(size);
  EXPECT_EQ(registry.QueryValue(key.Key, "AppPath", kind, &data, size), RegistrySuccess);
  EXPECT_EQ(data, stored);
}

TEST_P(HostContract, BufferThatIsTooShortIsMoreDataAndTellsTheSize) {
  Registry& registry = m_Host->Registry();
  const ContractKey key(registry, "Software\\Brillara");
  ASSERT_EQ(registry.SetValue(key.Key, "AppPath", RegistryKind::String, {'C', ':', '\\', 0}),
            RegistrySuccess);
  RegistryKind kind{};
  uint32_t size = 0;
  std::vector<uint8_t> data(3);
  EXPECT_EQ(registry.QueryValue(key.Key, "AppPath", kind, &data, size), RegistryMoreData);
  EXPECT_EQ(size, 4U);
}

TEST_P(HostContract, SetValueReplacesAValueOfAnyKind) {
  Registry& registry = m_Host->Registry();
  const ContractKey key(registry, "Software\\Brillara");
  ASSERT_EQ(registry.SetValue(key.Key, "On", RegistryKind::String, {'x', 0}), RegistrySuccess);
  ASSERT_EQ(registry.SetValue(key.Key, "on", RegistryKind::DWord, {7, 0, 0, 0}), RegistrySuccess);
  RegistryKind kind{};
  uint32_t size = 0;
  ASSERT_EQ(registry.QueryValue(key.Key, "On", kind, nullptr, size), RegistrySuccess);
  EXPECT_EQ(kind, RegistryKind::DWord);
}

TEST_P(HostContract, MissingValueIsFileNotFound) {
  Registry& registry = m_Host->Registry();
  const ContractKey key(registry, "Software\\Brillara");
  RegistryKind kind{};
  uint32_t size = 0;
  EXPECT_EQ(registry.QueryValue(key.Key, "AppPath", kind, nullptr, size), RegistryFileNotFound);
}

TEST_P(HostContract, KeyOpenForReadingTakesNoValue) {
  Registry& registry = m_Host->Registry();
  { const ContractKey key(registry, "Software\\Brillara"); }
  RegistryKey key = 0;
  ASSERT_EQ(registry.OpenKey(RegistryRoot::CurrentUser, "Software\\Brillara", KEY_READ_ACCESS, key),
            RegistrySuccess);
  EXPECT_EQ(registry.SetValue(key, "On", RegistryKind::DWord, {1, 0, 0, 0}), RegistryAccessDenied);
  registry.CloseKey(key);
}

TEST_P(HostContract, ClosedKeyIsAnInvalidHandle) {
  Registry& registry = m_Host->Registry();
  RegistryKey key = 0;
  ASSERT_EQ(registry.CreateKey(RegistryRoot::CurrentUser, "Software\\Brillara", key), RegistrySuccess);
  registry.CloseKey(key);
  RegistryKind kind{};
  uint32_t size = 0;
  EXPECT_EQ(registry.QueryValue(key, "On", kind, nullptr, size), RegistryInvalidHandle);
  EXPECT_EQ(registry.SetValue(key, "On", RegistryKind::DWord, {1, 0, 0, 0}), RegistryInvalidHandle);
}

}  // namespace vex::test

#include "components/open/wire/NameUuid.h"

#include <gtest/gtest.h>

#include <string>

namespace vex {
namespace {

constexpr Uuid DomainNames{0x6b, 0xa7, 0xb8, 0x10, 0x9d, 0xad, 0x11, 0xd1,
                           0x80, 0xb4, 0x00, 0xc0, 0x4f, 0xd4, 0x30, 0xc8};

std::string Hex(const Uuid& uuid) {
  constexpr const char* digits = "0123456789abcdef";
  std::string szHex;
  for (const uint8_t byte : uuid) {
    szHex += digits[byte >> 4];
    szHex += digits[byte & 15];
  }
  return szHex;
}

TEST(NameUuid, IsTheUuidThatOtherImplementationsMake) {
  EXPECT_EQ(Hex(NameUuid(DomainNames, "www.example.com")), "2ed6657de927568b95e12665a8aea6a2");
}

TEST(NameUuid, HashesNamesOfSeveralBlocks) {
  EXPECT_EQ(Hex(NameUuid(DomainNames, std::string(200, 'x'))), "ddcc691ab8e253e5b0596a232874b2eb");
}

TEST(LightingSourceUuid, IsTheSameOnEveryRun) {
  EXPECT_EQ(Hex(LightingSourceUuid("machine", "VexMonitor")), "4cbf5db37d685478bca14aadb54825fd");
}

TEST(LightingSourceUuid, DiffersByMachineAndByName) {
  EXPECT_NE(LightingSourceUuid("a", "Vex"), LightingSourceUuid("b", "Vex"));
  EXPECT_NE(LightingSourceUuid("a", "Vex"), LightingSourceUuid("a", "Vex2"));
  EXPECT_NE(LightingSourceUuid("aV", "ex"), LightingSourceUuid("a", "Vex"));
}

}  // namespace
}  // namespace vex

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "components/open/wire/OscMessage.h"

namespace vex {

// The same functions as another machine has them.
std::optional<OscMessage> ReadPlainOscMessage(std::span<const uint8_t> bytes);
std::vector<uint8_t> WritePlainOscMessage(const OscTrigger& trigger);

namespace {

using Bytes = std::vector<uint8_t>;

std::string Hex(const Bytes& bytes) {
  std::string szText;
  for (const uint8_t byte : bytes) {
    szText += "0123456789abcdef"[byte >> 4];
    szText += "0123456789abcdef"[byte & 15];
  }
  return szText.substr(0, 400);
}

testing::AssertionResult ReadAlike(const Bytes& bytes) {
  const auto library = ReadOscMessage(bytes);
  const auto plain = ReadPlainOscMessage(bytes);
  if (library.has_value() != plain.has_value())
    return testing::AssertionFailure()
           << "only " << (library ? "the library" : "the plain reader") << " reads " << Hex(bytes);
  if (library &&
      (library->Path != plain->Path || library->Types != plain->Types || !(library->Values == plain->Values)))
    return testing::AssertionFailure() << "the readers see other things in " << Hex(bytes);
  return testing::AssertionSuccess();
}

class RandomBytes {
 public:
  /// Below the limit, the same from every library.
  size_t Below(size_t limit) { return static_cast<size_t>(m_Random() % limit); }
  [[nodiscard]] uint8_t Byte() { return static_cast<uint8_t>(m_Random()); }
  bool Once(size_t in) { return Below(in) == 0; }

  std::string Text(size_t most) {
    std::string szText(Below(most + 1), ' ');
    for (char& c : szText) c = static_cast<char>(1 + Below(255));
    return szText;
  }

  /// A message as a sender may build it, of any types, a trigger more often than not.
  Bytes Message() {
    constexpr std::string_view known = "ifsbhtdScrmTFNI[]x";
    std::string szTypes = OscTriggerTypes;
    if (Once(3)) {
      szTypes.resize(Below(7));
      for (char& c : szTypes) c = known[Below(known.size())];
    }
    Bytes bytes;
    AddText(bytes, Once(5) ? Text(12) : OscTriggerPath);
    AddText(bytes, (Once(20) ? "" : ",") + szTypes);
    for (const char type : szTypes) AddValue(bytes, type);
    return bytes;
  }

  void Damage(Bytes& bytes) {
    for (size_t times = Below(4); times > 0 && !bytes.empty(); --times) {
      const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(Below(bytes.size()));
      switch (Below(5)) {
        case 0:
          *at = Byte();
          break;
        case 1:
          *at = 0;
          break;
        case 2:
          bytes.erase(at, bytes.end());
          break;
        case 3:
          bytes.insert(at, 1 + Below(8), 0);
          break;
        default:
          bytes.erase(at);
      }
    }
  }

 private:
  void AddText(Bytes& bytes, const std::string& szText) {
    bytes.insert(bytes.end(), szText.begin(), szText.end());
    do bytes.push_back(0);
    while (bytes.size() % 4 != 0);
  }
  void AddRandom(Bytes& bytes, size_t count) {
    for (; count > 0; --count) bytes.push_back(Byte());
  }
  void AddValue(Bytes& bytes, char type) {
    if (type == 's' || type == 'S') {
      AddText(bytes, Text(12));
    } else if (type == 'b') {
      const size_t length = Below(10);
      bytes.insert(bytes.end(), {0, 0, 0, static_cast<uint8_t>(length)});
      AddRandom(bytes, length);
      bytes.resize((bytes.size() + 3) / 4 * 4);
    } else {
      const bool boolLong = type == 'h' || type == 't' || type == 'd';
      const bool boolNone = std::string_view("TFNI[]").find(type) != std::string_view::npos;
      AddRandom(bytes, boolLong ? 8 : boolNone ? 0 : 4);
    }
  }

  std::mt19937 m_Random{20261224};
};

TEST(OscReaders, ReadWhatSendersMayBuildAlike) {
  RandomBytes random;
  int messages = 0;
  for (int i = 0; i < 200'000; ++i) {
    Bytes bytes = random.Message();
    if (random.Once(2)) random.Damage(bytes);
    ASSERT_TRUE(ReadAlike(bytes));
    if (const auto read = ReadOscMessage(bytes)) ++messages;
  }
  EXPECT_GT(messages, 50'000) << "too few of them are messages at all";
}

TEST(OscReaders, ReadTheFuzzersCorpusAlikeWholeCutOffAndDamaged) {
  RandomBytes random;
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VEX_OSC_CORPUS)) {
    std::ifstream stream(entry.path(), std::ios::binary);
    const std::string szContents(std::istreambuf_iterator<char>(stream), {});
    const Bytes whole(szContents.begin(), szContents.end());
    for (size_t size = 0; size <= whole.size(); ++size)
      ASSERT_TRUE(ReadAlike(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))));
    for (int i = 0; i < 5'000; ++i) {
      Bytes bytes = whole;
      random.Damage(bytes);
      ASSERT_TRUE(ReadAlike(bytes));
    }
    ++files;
  }
  EXPECT_GT(files, 0);
}

TEST(OscReaders, ReadLongOnesAlike) {
  for (const size_t length : {32760, 32764, 32768, 32772, 60000}) {
    EXPECT_TRUE(ReadAlike(WriteOscMessage({0, 1, 3, std::string(length, 'x')}))) << length;
    Bytes blob{'/', 'x', 0, 0, ',', 'b', 0, 0};
    for (int shift = 24; shift >= 0; shift -= 8) blob.push_back(static_cast<uint8_t>(length >> shift));
    blob.resize(blob.size() + length, 'x');
    EXPECT_TRUE(ReadAlike(blob)) << length;
  }
}

TEST(OscReaders, ReadBlobsOfAnyPromisedLengthAlike) {
  for (const uint32_t length :
       {0U, 1U, 3U, 4U, 5U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFF8U, 0xFFFFFFFCU, 0xFFFFFFFDU, 0xFFFFFFFFU}) {
    for (size_t follow = 0; follow <= 12; ++follow) {
      Bytes blob{'/', 'x', 0, 0, ',', 'b', 0, 0};
      for (int shift = 24; shift >= 0; shift -= 8) blob.push_back(static_cast<uint8_t>(length >> shift));
      blob.resize(blob.size() + follow);
      EXPECT_TRUE(ReadAlike(blob)) << length << " promised, " << follow << " there";
    }
  }
}

TEST(OscReaders, WriteTriggersAlike) {
  RandomBytes random;
  for (int i = 0; i < 10'000; ++i) {
    const OscTrigger trigger{static_cast<int32_t>(random.Below(8)) - 4,
                             static_cast<int32_t>(random.Below(1U << 31)),
                             -static_cast<int32_t>(random.Below(1U << 31)), random.Text(40)};
    ASSERT_EQ(WriteOscMessage(trigger), WritePlainOscMessage(trigger)) << trigger.Name;
  }
}

}  // namespace
}  // namespace vex

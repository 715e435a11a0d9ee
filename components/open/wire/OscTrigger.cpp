#include "components/open/wire/OscTrigger.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vex {
namespace {

constexpr char TriggerPath[] = "/trigger";
constexpr char TriggerTypes[] = "iiis";
constexpr char BundleMark[] = "#bundle";              // with its zero eight bytes
constexpr size_t BundleHead = sizeof BundleMark + 8;  // and the time tag
constexpr int DeepestBundle = 8;
constexpr size_t Unit = 4;  // everything in a message lies at multiples of it

uint32_t BigEndian(std::span<const uint8_t> bytes) {
  return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
         static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

/// A text off the front, with the zero that ends it and the ones that fill its last unit; false for others.
bool TakeText(std::span<const uint8_t>& rest, std::string& szText) {
  const auto end = std::ranges::find(rest, 0);
  const auto length = static_cast<size_t>(end - rest.begin());
  const size_t size = (length / Unit + 1) * Unit;
  if (size > rest.size() ||
      std::ranges::any_of(rest.subspan(length, size - length), [](auto byte) { return byte != 0; }))
    return false;
  szText.assign(rest.begin(), end);
  rest = rest.subspan(size);
  return true;
}

bool TakeNumber(std::span<const uint8_t>& rest, int32_t& lNumber) {
  if (rest.size() < Unit) return false;
  lNumber = static_cast<int32_t>(BigEndian(rest));
  rest = rest.subspan(Unit);
  return true;
}

void AddText(std::vector<uint8_t>& bytes, const std::string& szText) {
  // A text ends at its first zero.
  bytes.insert(bytes.end(), szText.begin(), std::ranges::find(szText, '\0'));
  do bytes.push_back(0);
  while (bytes.size() % Unit != 0);
}

void AddNumber(std::vector<uint8_t>& bytes, int32_t lNumber) {
  const auto number = static_cast<uint32_t>(lNumber);
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<uint8_t>(number >> shift));
}

class TriggerReader {
 public:
  explicit TriggerReader(std::string& szWrong) : m_Wrong(szWrong) {}

  void Read(std::span<const uint8_t> element, int depth) {
    const bool boolBundle = element.size() >= sizeof BundleMark &&
                            std::memcmp(element.data(), BundleMark, sizeof BundleMark) == 0;
    if (boolBundle)
      ReadBundle(element, depth);
    else
      ReadMessage(element);
  }

  std::vector<OscTrigger> Triggers;

 private:
  void ReadBundle(std::span<const uint8_t> bundle, int depth) {
    if (depth == DeepestBundle) return Wrong("bundles within bundles go too deep");
    if (bundle.size() < BundleHead) return Wrong("a bundle without a time tag");
    for (auto rest = bundle.subspan(BundleHead); !rest.empty();) {
      constexpr size_t length = 4;
      const size_t size = rest.size() < length ? 0 : BigEndian(rest);
      if (rest.size() < length || size > rest.size() - length) return Wrong("a bundle that is cut off");
      Read(rest.subspan(length, size), depth + 1);
      rest = rest.subspan(length + size);
    }
  }

  void ReadMessage(std::span<const uint8_t> rest) {
    std::string szPath;
    std::string szTypes;
    if (!TakeText(rest, szPath) || !TakeText(rest, szTypes) || !szTypes.starts_with(','))
      return Wrong("a message that cannot be read");
    szTypes.erase(0, 1);
    if (szPath != TriggerPath || szTypes != TriggerTypes)
      return Wrong("\"" + szPath.substr(0, 40) + "\" with types \"" + szTypes.substr(0, 20) + "\"");
    OscTrigger trigger;
    if (!TakeNumber(rest, trigger.Network) || !TakeNumber(rest, trigger.Unit) ||
        !TakeNumber(rest, trigger.Input) || !TakeText(rest, trigger.Name) || !rest.empty())
      return Wrong("a message that cannot be read");
    Triggers.push_back(std::move(trigger));
  }

  void Wrong(const std::string& szWhat) {
    if (m_Wrong.empty()) m_Wrong = szWhat;
  }

  std::string& m_Wrong;
};

}  // namespace

std::vector<OscTrigger> ReadOscTriggers(std::span<const uint8_t> packet, std::string& szWrong) {
  TriggerReader reader(szWrong);
  reader.Read(packet, 0);
  return std::move(reader.Triggers);
}

std::vector<uint8_t> WriteOscTrigger(const OscTrigger& trigger) {
  std::vector<uint8_t> bytes;
  AddText(bytes, TriggerPath);
  AddText(bytes, std::string(",") + TriggerTypes);
  for (const int32_t lNumber : {trigger.Network, trigger.Unit, trigger.Input}) AddNumber(bytes, lNumber);
  AddText(bytes, trigger.Name);
  return bytes;
}

}  // namespace vex

#include "components/open/wire/OscTrigger.h"

#include <cstring>
#include <utility>

#include "components/open/wire/OscMessage.h"

namespace vex {
namespace {

constexpr char BundleMark[] = "#bundle";              // with its zero eight bytes
constexpr size_t BundleHead = sizeof BundleMark + 8;  // and the time tag
constexpr int DeepestBundle = 8;

uint32_t BigEndian(std::span<const uint8_t> bytes) {
  return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
         static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
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

  void ReadMessage(std::span<const uint8_t> bytes) {
    auto message = ReadOscMessage(bytes);
    if (!message) return Wrong("a message that cannot be read");
    if (message->Path != OscTriggerPath || message->Types != OscTriggerTypes)
      return Wrong("\"" + message->Path.substr(0, 40) + "\" with types \"" + message->Types.substr(0, 20) +
                   "\"");
    Triggers.push_back(std::move(message->Values));
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
  return WriteOscMessage(trigger);
}

}  // namespace vex

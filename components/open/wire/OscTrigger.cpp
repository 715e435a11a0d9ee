#include "components/open/wire/OscTrigger.h"

#include <lo/lo.h>

#include <cstring>
#include <memory>

namespace vex {
namespace {

constexpr char TriggerPath[] = "/trigger";
constexpr char TriggerTypes[] = "iiis";
constexpr char BundleMark[] = "#bundle";              // with its zero eight bytes
constexpr size_t BundleHead = sizeof BundleMark + 8;  // and the time tag
constexpr int DeepestBundle = 8;

struct FreeMessage {
  void operator()(void* message) const { lo_message_free(message); }
};
using Message = std::unique_ptr<void, FreeMessage>;

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
    // The library turns numbers round where they lie, so it works on a copy.
    std::vector<uint8_t> copy(bytes.begin(), bytes.end());
    int result = 0;
    const Message message(copy.empty() ? nullptr : lo_message_deserialise(copy.data(), copy.size(), &result));
    if (!message) return Wrong("a message that cannot be read");
    const char* const path = reinterpret_cast<const char*>(bytes.data());
    const char* const types = lo_message_get_types(message.get());
    if (std::strcmp(path, TriggerPath) != 0 || std::strcmp(types, TriggerTypes) != 0)
      return Wrong("\"" + std::string(path).substr(0, 40) + "\" with types \"" +
                   std::string(types).substr(0, 20) + "\"");
    lo_arg** const values = lo_message_get_argv(message.get());
    Triggers.push_back(
        {Number(values[0]), Number(values[1]), Number(values[2]), reinterpret_cast<const char*>(values[3])});
  }

  /// The library's values lie at multiples of four bytes, its type for them wants eight.
  static int32_t Number(const void* value) {
    int32_t lNumber = 0;
    std::memcpy(&lNumber, value, sizeof lNumber);
    return lNumber;
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
  const Message message(lo_message_new());
  lo_message_add_int32(message.get(), trigger.Network);
  lo_message_add_int32(message.get(), trigger.Unit);
  lo_message_add_int32(message.get(), trigger.Input);
  lo_message_add_string(message.get(), trigger.Name.c_str());
  size_t size = lo_message_length(message.get(), TriggerPath);
  std::vector<uint8_t> bytes(size);
  lo_message_serialise(message.get(), TriggerPath, bytes.data(), &size);
  return bytes;
}

}  // namespace vex

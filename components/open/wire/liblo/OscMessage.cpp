#include "components/open/wire/OscMessage.h"

#include <lo/lo.h>

#include <cstring>
#include <memory>

namespace vex {
namespace {

struct FreeMessage {
  void operator()(void* message) const { lo_message_free(message); }
};
using Message = std::unique_ptr<void, FreeMessage>;

/// The library's values lie at multiples of four bytes, its type for them wants eight.
int32_t Number(const void* value) {
  int32_t lNumber = 0;
  std::memcpy(&lNumber, value, sizeof lNumber);
  return lNumber;
}

}  // namespace

std::optional<OscMessage> ReadOscMessage(std::span<const uint8_t> bytes) {
  // The library turns numbers round where they lie, so it works on a copy.
  std::vector<uint8_t> copy(bytes.begin(), bytes.end());
  int result = 0;
  const Message message(copy.empty() ? nullptr : lo_message_deserialise(copy.data(), copy.size(), &result));
  if (!message) return std::nullopt;
  OscMessage read{reinterpret_cast<const char*>(bytes.data()), lo_message_get_types(message.get()), {}};
  if (read.Types == OscTriggerTypes) {
    lo_arg** const values = lo_message_get_argv(message.get());
    read.Values = {Number(values[0]), Number(values[1]), Number(values[2]),
                   reinterpret_cast<const char*>(values[3])};
  }
  return read;
}

std::vector<uint8_t> WriteOscMessage(const OscTrigger& trigger) {
  const Message message(lo_message_new());
  lo_message_add_int32(message.get(), trigger.Network);
  lo_message_add_int32(message.get(), trigger.Unit);
  lo_message_add_int32(message.get(), trigger.Input);
  lo_message_add_string(message.get(), trigger.Name.c_str());
  size_t size = lo_message_length(message.get(), OscTriggerPath);
  std::vector<uint8_t> bytes(size);
  lo_message_serialise(message.get(), OscTriggerPath, bytes.data(), &size);
  return bytes;
}

}  // namespace vex

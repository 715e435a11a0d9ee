#include "components/open/wire/OscMessage.h"

#include <algorithm>
#include <utility>

namespace vex {
namespace {

constexpr size_t Unit = 4;  // everything in a message lies at multiples of it

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
  uint32_t number = 0;
  for (const uint8_t byte : rest.first(Unit)) number = number << 8 | byte;
  lNumber = static_cast<int32_t>(number);
  rest = rest.subspan(Unit);
  return true;
}

/// A number of bytes, the bytes, and the zeros that fill their last unit.
bool SkipBlob(std::span<const uint8_t>& rest) {
  int32_t lSize = 0;
  if (!TakeNumber(rest, lSize)) return false;
  const size_t length = static_cast<uint32_t>(lSize);
  const size_t size = length / Unit * Unit + (length % Unit == 0 ? 0 : Unit);
  if (length > rest.size() || size > rest.size() ||
      std::ranges::any_of(rest.subspan(length, size - length), [](auto byte) { return byte != 0; }))
    return false;
  rest = rest.subspan(size);
  return true;
}

/// Steps over one value; false for a type that is not known, or for bytes that are none of it.
bool SkipValue(char type, std::span<const uint8_t>& rest) {
  std::string szText;
  int32_t lNumber = 0;
  switch (type) {
    case 'T':
    case 'F':
    case 'N':
    case 'I':
      return true;
    case 'i':
    case 'f':
    case 'c':
    case 'm':
      return TakeNumber(rest, lNumber);
    case 'h':
    case 't':
    case 'd':
      return TakeNumber(rest, lNumber) && TakeNumber(rest, lNumber);
    case 's':
    case 'S':
      return TakeText(rest, szText);
    case 'b':
      return SkipBlob(rest);
    default:
      return false;
  }
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

}  // namespace

std::optional<OscMessage> ReadOscMessage(std::span<const uint8_t> bytes) {
  OscMessage read;
  std::span<const uint8_t> rest = bytes;
  if (!TakeText(rest, read.Path) || !TakeText(rest, read.Types) || !read.Types.starts_with(','))
    return std::nullopt;
  read.Types.erase(0, 1);
  if (read.Types == OscTriggerTypes) {
    OscTrigger& values = read.Values;
    if (!TakeNumber(rest, values.Network) || !TakeNumber(rest, values.Unit) ||
        !TakeNumber(rest, values.Input) || !TakeText(rest, values.Name))
      return std::nullopt;
  } else if (!std::ranges::all_of(read.Types, [&rest](char type) { return SkipValue(type, rest); })) {
    return std::nullopt;
  }
  return rest.empty() ? std::optional(std::move(read)) : std::nullopt;
}

std::vector<uint8_t> WriteOscMessage(const OscTrigger& trigger) {
  std::vector<uint8_t> bytes;
  AddText(bytes, OscTriggerPath);
  AddText(bytes, std::string(",") + OscTriggerTypes);
  for (const int32_t lNumber : {trigger.Network, trigger.Unit, trigger.Input}) AddNumber(bytes, lNumber);
  AddText(bytes, trigger.Name);
  return bytes;
}

}  // namespace vex

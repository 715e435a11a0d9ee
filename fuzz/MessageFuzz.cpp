#include <algorithm>
#include <cstdlib>
#include <string>

#include "host/linux/CopyDataWire.h"
#include "host/linux/UnsentMessages.h"

// A datagram as any program of the user may send it: what is taken must come out again to the byte, must be
// read only within the datagram, and kept for a receiver it must never exceed the bound.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::span<const uint8_t> datagram(data, size);
  vex::ReceivedCopyData received;
  if (!vex::DecodeCopyData(datagram, received)) return 0;
  const auto again = vex::EncodeCopyData(static_cast<vex::WindowHandle>(received.Sender), received.Copy);
  if (!std::equal(again.begin(), again.end(), datagram.begin(), datagram.end())) std::abort();

  vex::UnsentMessages messages;
  const auto sender = static_cast<vex::WindowHandle>(received.Sender);
  const std::string szLines = "07" + std::string(40000, 'x') + "\r\n" + std::string(10000, 'y');
  for (int i = 0; i < 3; ++i) {
    messages.Add(sender, {3, static_cast<uint32_t>(szLines.size()), szLines.data()});
    messages.Add(sender, received.Copy);
    if (messages.Characters() > vex::UnsentMessages::MostCharacters) std::abort();
  }
  while (!messages.Empty()) {
    const auto kept = messages.FirstDatagram();
    if (!vex::DecodeCopyData(kept, received)) std::abort();
    messages.RemoveFirst();
  }
  if (messages.Characters() != 0) std::abort();
  return 0;
}

#include "host/Datagrams.h"

#include "basic/Error.h"

namespace vex {

std::unique_ptr<DatagramReceiver> Datagrams::NewSharedReceiver(EventLoop&, const DatagramAddress&, uint32_t,
                                                               DatagramHandler) {
  throw PlatformError(ErrorInvalidCall);
}

bool AddressFromText(const std::string& szText, uint32_t& address) {
  uint32_t result = 0;
  size_t at = 0;
  for (int part = 0; part < 4; ++part) {
    if (part > 0 && (at >= szText.size() || szText[at++] != '.')) return false;
    uint32_t number = 0;
    size_t digits = 0;
    for (; at < szText.size() && szText[at] >= '0' && szText[at] <= '9' && digits < 3; ++at, ++digits)
      number = number * 10 + static_cast<uint32_t>(szText[at] - '0');
    if (digits == 0 || number > 255) return false;
    result = result << 8 | number;
  }
  if (at != szText.size()) return false;
  address = result;
  return true;
}

}  // namespace vex

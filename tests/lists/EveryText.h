#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vex::test {

/// Calls visit with every text over the alphabet that is exactly so long.
template <class Visit>
void EveryText(std::string_view szAlphabet, size_t length, Visit visit) {
  std::vector<size_t> digits(length, 0);
  std::string szText(length, szAlphabet.front());
  for (;;) {
    visit(szText);
    size_t place = 0;
    while (place < length && digits[place] + 1 == szAlphabet.size()) {
      digits[place] = 0;
      szText[place++] = szAlphabet.front();
    }
    if (place == length) return;
    szText[place] = szAlphabet[++digits[place]];
  }
}

}  // namespace vex::test

#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vex {

/// Walks over the three characters that give a list its shape, "(", ")" and ",", in order, eight bytes at
/// a step: files are mostly names, and names hold none of the three.
///
/// The three are 0x28, 0x29 and 0x2C; with bits 0x05 masked out all of them, and "-" (0x2D) besides, are
/// 0x28. So one comparison of eight bytes finds the candidates, and only "-" must be sorted out again.
class ListScanner {
 public:
  explicit ListScanner(std::string_view szText) : m_Text(szText) { Fill(); }

  /// The position of the next of the three, or the text's length.
  size_t Next() {
    for (;;) {
      while (m_Candidates == 0) {
        m_Block += BlockSize;
        if (m_Block >= m_Text.size()) return m_Text.size();
        Fill();
      }
      const size_t position = m_Block + static_cast<size_t>(std::countr_zero(m_Candidates)) / 8;
      m_Candidates &= m_Candidates - 1;
      if (m_Text[position] != '-') return position;
    }
  }

 private:
  static constexpr size_t BlockSize = 8;

  void Fill() {
    uint64_t word = 0;
    if (m_Block + BlockSize <= m_Text.size()) {
      std::memcpy(&word, m_Text.data() + m_Block, BlockSize);
    } else if (m_Block < m_Text.size()) {
      std::memcpy(&word, m_Text.data() + m_Block, m_Text.size() - m_Block);
    }
    static_assert(std::endian::native == std::endian::little, "the lowest byte must be the first character");
    constexpr uint64_t low = 0x7F7F7F7F7F7F7F7F;
    const uint64_t differs = (word & 0xFAFAFAFAFAFAFAFA) ^ 0x2828282828282828;
    m_Candidates = ~(((differs & low) + low) | differs | low);
  }

  std::string_view m_Text;
  size_t m_Block = 0;
  uint64_t m_Candidates = 0;  // the high bit of each candidate's byte
};

}  // namespace vex

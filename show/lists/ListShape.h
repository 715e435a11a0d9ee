#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vex {

/// Where the characters that give a list its shape stand in 64 bytes of text: bit i speaks of byte i. Files
/// are mostly names, and names hold none of the three, so a walk from bit to bit passes over nearly
/// everything that is read.
struct ListShape {
  static constexpr size_t BlockSize = 64;

  uint64_t Commas = 0;
  uint64_t Parens = 0;
};

/// The shape of 64 bytes, eight at a step, for machines without wider registers.
inline ListShape PlainShapeOf(const char* block) {
  constexpr uint64_t each = 0x0101010101010101;
  constexpr uint64_t low = 0x7F * each;
  // One bit for each byte that is zero, the first byte lowest.
  const auto zeroBytes = [](uint64_t word) {
    const uint64_t high = ~(((word & low) + low) | word | low);
    constexpr uint64_t gather = 0x0002040810204081;
    return high * gather >> 56;
  };
  static_assert(std::endian::native == std::endian::little, "the lowest byte must be the first character");
  ListShape shape;
  for (size_t from = 0; from < ListShape::BlockSize; from += sizeof(uint64_t)) {
    uint64_t word = 0;
    std::memcpy(&word, block + from, sizeof word);
    shape.Commas |= zeroBytes(word ^ ',' * each) << from;
    shape.Parens |= zeroBytes((word & 0xFE * each) ^ '(' * each) << from;  // "(" and ")" differ in one bit
  }
  return shape;
}

#if defined(__SSE2__)
inline ListShape ShapeOf(const char* block) {
  const __m128i comma = _mm_set1_epi8(',');
  const __m128i paren = _mm_set1_epi8('(');
  const __m128i pair = _mm_set1_epi8('\xFE');  // "(" and ")" differ in one bit
  const auto mask = [](__m128i equal) { return static_cast<uint64_t>(_mm_movemask_epi8(equal)); };
  ListShape shape;
  for (size_t from = 0; from < ListShape::BlockSize; from += sizeof(__m128i)) {
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + from));
    shape.Commas |= mask(_mm_cmpeq_epi8(text, comma)) << from;
    shape.Parens |= mask(_mm_cmpeq_epi8(_mm_and_si128(text, pair), paren)) << from;
  }
  return shape;
}
#else
inline ListShape ShapeOf(const char* block) {
  return PlainShapeOf(block);
}
#endif

}  // namespace vex

#include "components/open/wire/NameUuid.h"

#include <algorithm>
#include <bit>
#include <string>

namespace vex {
namespace {

using Digest = std::array<uint32_t, 5>;
constexpr size_t BlockSize = 64;

/// One 64-byte block of SHA-1 (FIPS 180-4, 6.1.2) worked into the digest.
void HashBlock(Digest& digest, const uint8_t* block) {
  std::array<uint32_t, 80> words{};
  for (size_t i = 0; i < 16; ++i) {
    const uint8_t* word = block + 4 * i;
    words[i] = uint32_t{word[0]} << 24 | uint32_t{word[1]} << 16 | uint32_t{word[2]} << 8 | uint32_t{word[3]};
  }
  for (size_t i = 16; i < 80; ++i)
    words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);

  auto [a, b, c, d, e] = digest;
  for (size_t i = 0; i < 80; ++i) {
    uint32_t mix = 0;
    if (i < 20)
      mix = ((b & c) | (~b & d)) + 0x5A827999;
    else if (i < 40)
      mix = (b ^ c ^ d) + 0x6ED9EBA1;
    else if (i < 60)
      mix = ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC;
    else
      mix = (b ^ c ^ d) + 0xCA62C1D6;
    const uint32_t next = std::rotl(a, 5) + mix + e + words[i];
    e = d;
    d = c;
    c = std::rotl(b, 30);
    b = a;
    a = next;
  }
  const Digest worked{a, b, c, d, e};
  for (size_t i = 0; i < digest.size(); ++i) digest[i] += worked[i];
}

Digest Sha1(std::string_view szText) {
  Digest digest{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
  std::string padded(szText);
  padded.push_back(static_cast<char>(0x80));
  while (padded.size() % BlockSize != BlockSize - 8) padded.push_back('\0');
  const uint64_t bits = uint64_t{szText.size()} * 8;
  for (int shift = 56; shift >= 0; shift -= 8) padded.push_back(static_cast<char>(bits >> shift & 0xFF));

  const auto* bytes = reinterpret_cast<const uint8_t*>(padded.data());
  for (size_t at = 0; at < padded.size(); at += BlockSize) HashBlock(digest, bytes + at);
  return digest;
}

/// The space of this system's lighting sources: a random UUID, drawn once.
constexpr Uuid LightingSources{0x6e, 0x2b, 0x91, 0xd4, 0x0c, 0x57, 0x4f, 0x3a,
                               0xb8, 0x11, 0x5d, 0xe9, 0x7a, 0xc2, 0x46, 0x80};

}  // namespace

Uuid NameUuid(const Uuid& space, std::string_view szName) {
  std::string szText(space.begin(), space.end());
  szText += szName;
  const Digest digest = Sha1(szText);

  Uuid uuid{};
  for (size_t i = 0; i < uuid.size(); ++i)
    uuid[i] = static_cast<uint8_t>(digest[i / 4] >> (24 - 8 * (i % 4)) & 0xFF);
  uuid[6] = static_cast<uint8_t>((uuid[6] & 0x0F) | 0x50);  // version 5
  uuid[8] = static_cast<uint8_t>((uuid[8] & 0x3F) | 0x80);  // the RFC's variant
  return uuid;
}

Uuid LightingSourceUuid(std::string_view szMachineId, std::string_view szSourceName) {
  std::string szName(szMachineId);
  szName += '\n';  // neither part holds one, so no two pairs run together
  szName += szSourceName;
  return NameUuid(LightingSources, szName);
}

}  // namespace vex

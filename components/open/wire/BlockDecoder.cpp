#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <limits>
#include <new>

#include "components/open/wire/FrameFile.h"

namespace vex {
namespace {

class ZstdDecoder final : public BlockDecoder {
 public:
  ZstdDecoder() : m_Context(ZSTD_createDCtx()) {
    if (m_Context == nullptr) throw std::bad_alloc();
  }
  ~ZstdDecoder() override { ZSTD_freeDCtx(m_Context); }
  ZstdDecoder(const ZstdDecoder&) = delete;
  ZstdDecoder& operator=(const ZstdDecoder&) = delete;

  void Begin() override { ZSTD_DCtx_reset(m_Context, ZSTD_reset_session_only); }

  bool Decode(std::span<const uint8_t>& in, std::span<uint8_t>& out) override {
    ZSTD_inBuffer input{in.data(), in.size(), 0};
    ZSTD_outBuffer output{out.data(), out.size(), 0};
    bool boolSound = true;
    bool boolMoved = true;
    while (boolSound && boolMoved && output.pos < output.size) {
      const size_t before = input.pos + output.pos;
      boolSound = ZSTD_isError(ZSTD_decompressStream(m_Context, &output, &input)) == 0;
      boolMoved = input.pos + output.pos != before;
    }
    in = in.subspan(input.pos);
    out = out.subspan(output.pos);
    return boolSound;
  }

 private:
  ZSTD_DCtx* m_Context;
};

class ZlibDecoder final : public BlockDecoder {
 public:
  ZlibDecoder() {
    if (inflateInit(&m_Stream) != Z_OK) throw std::bad_alloc();
  }
  ~ZlibDecoder() override { inflateEnd(&m_Stream); }
  ZlibDecoder(const ZlibDecoder&) = delete;
  ZlibDecoder& operator=(const ZlibDecoder&) = delete;

  void Begin() override { inflateReset(&m_Stream); }

  bool Decode(std::span<const uint8_t>& in, std::span<uint8_t>& out) override {
    bool boolSound = true;
    bool boolMoved = true;
    while (boolSound && boolMoved && !out.empty()) {
      m_Stream.next_in = const_cast<Bytef*>(in.data());  // zlib only reads it
      m_Stream.avail_in = Size(in.size());
      m_Stream.next_out = out.data();
      m_Stream.avail_out = Size(out.size());
      const int result = inflate(&m_Stream, Z_NO_FLUSH);
      const size_t read = static_cast<size_t>(m_Stream.next_in - in.data());
      const size_t written = static_cast<size_t>(m_Stream.next_out - out.data());
      in = in.subspan(read);
      out = out.subspan(written);
      if (result == Z_STREAM_END) inflateReset(&m_Stream);
      boolSound = result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR;
      boolMoved = read + written > 0;
    }
    return boolSound;
  }

 private:
  static uInt Size(size_t size) {
    return static_cast<uInt>(std::min<size_t>(size, std::numeric_limits<uInt>::max()));
  }

  z_stream m_Stream{};
};

}  // namespace

std::unique_ptr<BlockDecoder> BlockDecoder::New(FrameCompression compression) {
  if (compression == FrameCompression::Zstd) return std::make_unique<ZstdDecoder>();
  return std::make_unique<ZlibDecoder>();
}

}  // namespace vex

#include "tools/report/pack.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <zlib.h>

std::string base64(std::string_view bytes) {
  constexpr const char *kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
    unsigned bits = 0;
    for (std::size_t j = 0; j < 3; ++j)
      bits = bits << 8 | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0U);
    for (std::size_t j = 0; j < 4; ++j)
      text += j <= count ? kDigits[bits >> (18 - 6 * j) & 63] : '=';
  }
  return text;
}

namespace {

/// A stream that frees what it holds.
struct Deflate {
  Deflate() {
    constexpr int kGzip = 15 + 16;
    if (deflateInit2(&stream, 6, Z_DEFLATED, kGzip, 8, Z_DEFAULT_STRATEGY) != Z_OK)
      throw std::bad_alloc();
  }
  Deflate(const Deflate &) = delete;
  Deflate &operator=(const Deflate &) = delete;
  ~Deflate() { deflateEnd(&stream); }

  z_stream stream{};
};

} // namespace

std::string packed(std::string_view text) {
  Deflate deflater;
  z_stream &stream = deflater.stream;
  std::string bytes(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data())); // it only reads
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef *>(bytes.data());
  stream.avail_out = static_cast<uInt>(bytes.size());
  if (deflate(&stream, Z_FINISH) != Z_STREAM_END)
    throw std::runtime_error("the details of the records could not be packed");
  bytes.resize(stream.total_out);
  return base64(bytes);
}

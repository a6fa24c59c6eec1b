// fuzz_gif.cpp - any bytes as pixels: the file is the one that the coder's rule, taken literally, gives. First byte: the width.

#include "fuzz/fuzz_input.h"
#include "image/gif.h"
#include "image/gif_linear.h"

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::ScratchFile file("gif");
  if (size == 0) {
    return 0;
  }
  // Each byte is a pixel that has it as its index, and as often as a byte in eight asks, a run of it.
  std::string indices;
  for (std::size_t i = 1; i < size && indices.size() < 10'000; ++i) {
    indices.append(data[i] % 8 == 7 ? data[i - 1] + std::size_t{1} : 1, static_cast<char>(data[i]));
  }
  const std::int32_t width = data[0];
  const std::int32_t height = width == 0 ? 0 : static_cast<std::int32_t>(indices.size()) / width;
  indices.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  std::string pixels;
  for (const char index : indices) {
    const auto value = static_cast<unsigned char>(index);
    pixels += static_cast<char>(value << 6 | (value & 0x3F));
    pixels += static_cast<char>(value << 3);
    pixels += static_cast<char>(value);
  }
  const qxv::CQXVGif::Frame frames[] = {{reinterpret_cast<const unsigned char*>(pixels.data()), pixels.size()}};
  fuzz::Require(qxv::CQXVGif(width, height).Write(file.Name(), frames) == 0);
  const std::string codes = indices.empty() ? std::string() : support::LinearGifCoder().Encode(indices);
  fuzz::Require(file.Read().substr(13 + 768 + 11) == support::InSubBlocks(codes) + ";");
  return 0;
}

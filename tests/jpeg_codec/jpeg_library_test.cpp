// jpeg_library_test.cpp - the JPEG library that each system links: in memory, in the channel order that we use.
// An error inside the library prints its message and ends the program, which fails the test.

#include <gtest/gtest.h>
#include <jpeglib.h>  // needs <cstdio> before it

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr unsigned kSide = 8;

struct Decoded {
  unsigned width = 0;
  unsigned height = 0;
  int channels = 0;
  Bytes samples;
};

Bytes Flat(const Bytes& pixel) {  // kSide x kSide pixels of one colour
  Bytes samples;
  for (unsigned i = 0; i < kSide * kSide; ++i) {
    samples.insert(samples.end(), pixel.begin(), pixel.end());
  }
  return samples;
}

Bytes Compress(const Bytes& samples, J_COLOR_SPACE colours, int channels) {
  jpeg_compress_struct encoder;
  jpeg_error_mgr errors;
  encoder.err = ::jpeg_std_error(&errors);
  jpeg_create_compress(&encoder);
  unsigned char* file = nullptr;
  unsigned long size = 0;
  ::jpeg_mem_dest(&encoder, &file, &size);
  encoder.image_width = kSide;
  encoder.image_height = kSide;
  encoder.input_components = channels;
  encoder.in_color_space = colours;
  ::jpeg_set_defaults(&encoder);
  ::jpeg_set_quality(&encoder, 100, TRUE);  // every step of quantisation is 1
  ::jpeg_start_compress(&encoder, TRUE);
  Bytes row;
  const std::size_t pitch = std::size_t{kSide} * static_cast<unsigned>(channels);
  for (unsigned y = 0; y < kSide; ++y) {
    row.assign(samples.data() + y * pitch, samples.data() + (y + 1) * pitch);
    JSAMPROW rows[] = {row.data()};
    EXPECT_EQ(::jpeg_write_scanlines(&encoder, rows, 1), 1u);
  }
  ::jpeg_finish_compress(&encoder);
  ::jpeg_destroy_compress(&encoder);
  const Bytes result(file, file + size);
  std::free(file);
  return result;
}

Decoded Decompress(const Bytes& file, J_COLOR_SPACE colours) {
  jpeg_decompress_struct decoder;
  jpeg_error_mgr errors;
  decoder.err = ::jpeg_std_error(&errors);
  jpeg_create_decompress(&decoder);
  ::jpeg_mem_src(&decoder, file.data(), static_cast<unsigned long>(file.size()));
  EXPECT_EQ(::jpeg_read_header(&decoder, TRUE), JPEG_HEADER_OK);
  decoder.out_color_space = colours;
  ::jpeg_start_decompress(&decoder);
  Decoded image{decoder.output_width, decoder.output_height, decoder.output_components, {}};
  const std::size_t pitch = std::size_t{image.width} * static_cast<unsigned>(image.channels);
  image.samples.resize(pitch * image.height);
  while (decoder.output_scanline < decoder.output_height) {
    JSAMPROW rows[] = {image.samples.data() + decoder.output_scanline * pitch};
    EXPECT_EQ(::jpeg_read_scanlines(&decoder, rows, 1), 1u);
  }
  ::jpeg_finish_decompress(&decoder);
  ::jpeg_destroy_decompress(&decoder);
  EXPECT_EQ(errors.num_warnings, 0);
  return image;
}

TEST(JpegLibrary, FileStandsBetweenTheStartAndEndMarkers) {
  const Bytes file = Compress(Flat({128}), JCS_GRAYSCALE, 1);
  ASSERT_GT(file.size(), 4u);
  EXPECT_EQ(file[0], 0xFF);
  EXPECT_EQ(file[1], 0xD8);
  EXPECT_EQ(file[file.size() - 2], 0xFF);
  EXPECT_EQ(file[file.size() - 1], 0xD9);
}

TEST(JpegLibrary, FlatGreyImageComesBackWithSizeAndValue) {
  for (const unsigned char grey : Bytes{0, 1, 100, 128, 200, 255}) {
    const Decoded image = Decompress(Compress(Flat({grey}), JCS_GRAYSCALE, 1), JCS_GRAYSCALE);
    EXPECT_EQ(image.width, 8u) << "grey " << int{grey};
    EXPECT_EQ(image.height, 8u) << "grey " << int{grey};
    EXPECT_EQ(image.channels, 1) << "grey " << int{grey};
    EXPECT_EQ(image.samples, Bytes(64, grey)) << "grey " << int{grey};
  }
}

TEST(JpegLibrary, BlueGreenRedOrderIsTakenAndGiven) {
  const Bytes pixel = {10, 60, 200};  // blue, green, red
  const Bytes file = Compress(Flat(pixel), JCS_EXT_BGR, 3);
  const Decoded given = Decompress(file, JCS_EXT_BGR);
  const Decoded swapped = Decompress(file, JCS_EXT_RGB);
  ASSERT_EQ(given.samples.size(), 192u);
  ASSERT_EQ(swapped.samples.size(), 192u);
  for (std::size_t i = 0; i < 192; i += 3) {
    EXPECT_NEAR(given.samples[i], 10, 2) << "blue, byte " << i;
    EXPECT_NEAR(given.samples[i + 1], 60, 2) << "green, byte " << i;
    EXPECT_NEAR(given.samples[i + 2], 200, 2) << "red, byte " << i;
    EXPECT_NEAR(swapped.samples[i], 200, 2) << "red first, byte " << i;
    EXPECT_NEAR(swapped.samples[i + 2], 10, 2) << "blue last, byte " << i;
  }
}

}  // namespace

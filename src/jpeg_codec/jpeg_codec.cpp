// jpeg_codec.cpp - QXVJpegCodec on libjpeg-turbo.
// Its errors leave by longjmp, so whatever a frame of ours holds between there and here is plain data, and memory that is needed
// meanwhile is the library's own.

#include "jpeg_codec/jpeg_codec.h"

#include "jpeg_codec/jpeg_extent.h"
#include "qxv/export.h"

#include <csetjmp>
#include <cstddef>
#include <cstdio>

// needs <cstddef> and <cstdio> before it
#include <jpeglib.h>

namespace qxv {
namespace {

// A scan may have few bytes, or none, and is a walk over the whole picture all the same.
constexpr int kMostScans = 500;
constexpr std::uint64_t kWalkedPixels = std::uint64_t{1} << 28;  // half a second
constexpr std::uint64_t kWalkedPixelsPerByte = 2048;             // ten scans of a picture of hardly any detail
constexpr JDIMENSION kRowsAtOnce = 16;

struct Errors {
  jpeg_error_mgr base;  // first: the library hands out its address
  std::jmp_buf failed;
};

[[noreturn]] void OnError(j_common_ptr codec) { std::longjmp(reinterpret_cast<Errors*>(codec->err)->failed, 1); }
void OnMessage(j_common_ptr) {}  // of damaged data; nobody reads it

jpeg_error_mgr* SetUp(Errors& errors) noexcept {
  jpeg_error_mgr* base = ::jpeg_std_error(&errors.base);
  base->error_exit = &OnError;
  base->output_message = &OnMessage;
  return base;
}

// --- Decoding ---

using Decoder = jpeg_decompress_struct;

struct Progress {
  jpeg_progress_mgr base;  // first: the library hands out its address
  std::uint64_t mostWalkedPixels;
};

// Called between the rows of the scans. Where they are too many for so few bytes, the data ends.
void LimitScans(j_common_ptr codec) {
  const auto decoder = reinterpret_cast<Decoder*>(codec);
  const int scan = decoder->input_scan_number;
  if (scan > kMostScans) {
    OnError(codec);
  }
  const std::uint64_t walked = std::uint64_t{decoder->image_width} * decoder->image_height * static_cast<std::uint64_t>(scan);
  if (walked > reinterpret_cast<const Progress*>(codec->progress)->mostWalkedPixels) {
    decoder->src->bytes_in_buffer = 0;
  }
}

// The first rows from the decoder's next one on.
struct Rows {
  JSAMPROW rows[kRowsAtOnce];
  JDIMENSION count;
};

Rows RowsFrom(unsigned char* first, std::size_t pitch, JDIMENSION left) noexcept {
  Rows result{{}, left < kRowsAtOnce ? left : kRowsAtOnce};
  for (JDIMENSION i = 0; i < result.count; ++i) {
    result.rows[i] = first + i * pitch;
  }
  return result;
}

void ReadColours(Decoder& decoder, unsigned char* pixels) {
  const std::size_t pitch = std::size_t{decoder.output_width} * 3;
  while (decoder.output_scanline < decoder.output_height) {
    Rows next = RowsFrom(pixels + decoder.output_scanline * pitch, pitch, decoder.output_height - decoder.output_scanline);
    (void)::jpeg_read_scanlines(&decoder, next.rows, next.count);
  }
}

// The inks are stored inverted, 255 for none, as every program that writes such files does.
void ReadInks(Decoder& decoder, unsigned char* pixels) {
  const auto product = [](unsigned ink, unsigned black) { return static_cast<unsigned char>((ink * black + 127) / 255); };
  const auto codec = reinterpret_cast<j_common_ptr>(&decoder);
  JSAMPARRAY row = decoder.mem->alloc_sarray(codec, JPOOL_IMAGE, decoder.output_width * 4, 1);
  while (decoder.output_scanline < decoder.output_height) {
    (void)::jpeg_read_scanlines(&decoder, row, 1);
    const unsigned char* inks = row[0];  // cyan, magenta, yellow, black
    for (JDIMENSION x = 0; x < decoder.output_width; ++x, inks += 4, pixels += 3) {
      pixels[0] = product(inks[2], inks[3]);
      pixels[1] = product(inks[1], inks[3]);
      pixels[2] = product(inks[0], inks[3]);
    }
  }
}

void ReadSize(Decoder& decoder, QXVJpegImage& image) {
  image.width = static_cast<std::int32_t>(decoder.image_width);
  image.height = static_cast<std::int32_t>(decoder.image_height);
}

void ReadPixels(Decoder& decoder, QXVJpegImage& image) {
  const bool sameSize = image.width == static_cast<std::int32_t>(decoder.image_width) &&
                        image.height == static_cast<std::int32_t>(decoder.image_height);
  if (!sameSize || image.pixels == nullptr || image.format != kJpegRowsTopDown) {
    OnError(reinterpret_cast<j_common_ptr>(&decoder));
  }
  const bool inks = decoder.num_components == 4;
  decoder.out_color_space = inks ? JCS_CMYK : JCS_EXT_BGR;
  (void)::jpeg_start_decompress(&decoder);
  (inks ? ReadInks : ReadColours)(decoder, image.pixels);
  // What stands behind the last row is of no interest: jpeg_finish_decompress would only find faults there.
}

std::int32_t Decode(const QXVJpegStream& stream, QXVJpegImage& image, void (*read)(Decoder&, QXVJpegImage&)) {
  Errors errors;
  Progress progress{{}, kWalkedPixels + stream.length * kWalkedPixelsPerByte};
  progress.base.progress_monitor = &LimitScans;
  Decoder decoder{};
  decoder.err = SetUp(errors);
  if (setjmp(errors.failed) != 0) {
    ::jpeg_destroy_decompress(&decoder);
    return -1;
  }
  jpeg_create_decompress(&decoder);
  decoder.progress = &progress.base;
  const std::size_t extent = JpegExtent(stream.data, stream.length);
  ::jpeg_mem_src(&decoder, stream.data, static_cast<unsigned long>(extent));
  (void)::jpeg_read_header(&decoder, TRUE);
  if (!IsJpegSize(static_cast<std::int32_t>(decoder.image_width), static_cast<std::int32_t>(decoder.image_height))) {
    OnError(reinterpret_cast<j_common_ptr>(&decoder));
  }
  read(decoder, image);
  ::jpeg_destroy_decompress(&decoder);
  return 0;
}

// --- Encoding ---

void OnStart(j_compress_ptr) {}
boolean OnFull(j_compress_ptr encoder) { OnError(reinterpret_cast<j_common_ptr>(encoder)); }
void OnEnd(j_compress_ptr) {}

int RoundQuality(double quality) noexcept {
  if (!(quality >= 1)) {  // no number either
    return 1;
  }
  return quality >= 100 ? 100 : static_cast<int>(quality + 0.5);
}

void WriteRows(jpeg_compress_struct& encoder, const QXVJpegImage& image) {
  const std::ptrdiff_t pitch = std::ptrdiff_t{image.width} * 3;
  while (encoder.next_scanline < encoder.image_height) {
    JSAMPROW rows[kRowsAtOnce];
    JDIMENSION count = 0;
    for (; count < kRowsAtOnce && encoder.next_scanline + count < encoder.image_height; ++count) {
      rows[count] =
          image.pixels + std::ptrdiff_t{image.height - 1 - static_cast<std::int32_t>(encoder.next_scanline + count)} * pitch;
    }
    (void)::jpeg_write_scanlines(&encoder, rows, count);
  }
}

std::int32_t Encode(const QXVJpegImage& image, const QXVJpegParameters& parameters, QXVJpegStream& stream) {
  Errors errors;
  const std::size_t room = JpegEncodeRoom(image.width, image.height);
  jpeg_destination_mgr target{stream.data, room, &OnStart, &OnFull, &OnEnd};
  jpeg_compress_struct encoder{};
  encoder.err = SetUp(errors);
  if (setjmp(errors.failed) != 0) {
    ::jpeg_destroy_compress(&encoder);
    return -1;
  }
  jpeg_create_compress(&encoder);
  encoder.dest = &target;
  encoder.image_width = static_cast<JDIMENSION>(image.width);
  encoder.image_height = static_cast<JDIMENSION>(image.height);
  encoder.input_components = 3;
  encoder.in_color_space = JCS_EXT_BGR;
  ::jpeg_set_defaults(&encoder);  // a baseline file, colour at half resolution both ways, the exact integer transform
  ::jpeg_set_quality(&encoder, RoundQuality(parameters.quality), TRUE /*baseline*/);
  ::jpeg_start_compress(&encoder, TRUE /*all tables*/);
  WriteRows(encoder, image);
  ::jpeg_finish_compress(&encoder);
  ::jpeg_destroy_compress(&encoder);
  stream.length = static_cast<std::uint32_t>(room - target.free_in_buffer);
  return 0;
}

}  // namespace
}  // namespace qxv

extern "C" {

QXV_API std::int32_t GetJpegInfo(const QXVJpegStream* stream, QXVJpegImage* image) {
  return stream == nullptr || stream->data == nullptr || image == nullptr ? -1 : qxv::Decode(*stream, *image, &qxv::ReadSize);
}

QXV_API std::int32_t DecodeJpeg(const QXVJpegStream* stream, QXVJpegImage* image) {
  return stream == nullptr || stream->data == nullptr || image == nullptr ? -1 : qxv::Decode(*stream, *image, &qxv::ReadPixels);
}

QXV_API std::int32_t EncodeJpeg(const QXVJpegImage* image, const QXVJpegParameters* parameters, QXVJpegStream* stream) {
  if (image == nullptr || image->pixels == nullptr || parameters == nullptr || stream == nullptr || stream->data == nullptr) {
    return -1;
  }
  const bool writable = image->format == qxv::kJpegRowsBottomUp && qxv::IsJpegSize(image->width, image->height);
  return writable ? qxv::Encode(*image, *parameters, *stream) : -1;
}
}

// jpeg_codec_test.cpp - the three functions of the JPEG codec library, beside files of cjpeg and of the bare JPEG library.

#include "jpeg_codec/jpeg_codec.h"

#include "jpeg_codec/jpeg_extent.h"
#include "jpeg_codec/jpeg_pictures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using support::JpegFile;
using support::JpegPicture;
using support::MeanDifference;
using support::TurnedOver;

struct Decoded {
  std::int32_t result = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::string pixels{};
};

QXVJpegStream StreamOf(const std::string& file, std::unique_ptr<unsigned char[]>& exact) {
  exact.reset(new unsigned char[file.size()]);  // ends at an inaccessible page
  std::memcpy(exact.get(), file.data(), file.size());
  QXVJpegStream stream{};
  stream.length = static_cast<std::uint32_t>(file.size());
  stream.data = exact.get();
  return stream;
}

Decoded Info(const std::string& file) {
  std::unique_ptr<unsigned char[]> exact;
  const QXVJpegStream stream = StreamOf(file, exact);
  QXVJpegImage image{};
  const std::int32_t result = ::GetJpegInfo(&stream, &image);
  return {result, image.width, image.height};
}

Decoded Decode(const std::string& file) {
  Decoded decoded = Info(file);
  if (decoded.result != 0) {
    return decoded;
  }
  std::unique_ptr<unsigned char[]> exact;
  const QXVJpegStream stream = StreamOf(file, exact);
  const std::unique_ptr<unsigned char[]> pixels(
      new unsigned char[static_cast<std::size_t>(qxv::JpegDecodeRoom(decoded.width, decoded.height))]);
  QXVJpegImage image{};
  image.pixels = pixels.get();
  image.width = decoded.width;
  image.height = decoded.height;
  decoded.result = ::DecodeJpeg(&stream, &image);
  const auto size = static_cast<std::size_t>(decoded.width) * static_cast<std::size_t>(decoded.height) * 3;
  decoded.pixels.assign(reinterpret_cast<const char*>(pixels.get()), decoded.result == 0 ? size : 0);
  return decoded;
}

// Rows bottom-up. Empty when refused.
std::string Encode(std::int32_t width, std::int32_t height, std::string pixels, double quality, std::uint16_t format = 792) {
  const std::unique_ptr<unsigned char[]> data(
      new unsigned char[static_cast<std::size_t>(qxv::JpegEncodeRoom(width, height))]);  // ends at an inaccessible page
  QXVJpegImage image{};
  image.pixels = reinterpret_cast<unsigned char*>(pixels.data());
  image.format = format;
  image.width = width;
  image.height = height;
  const QXVJpegParameters parameters{quality, 0};
  QXVJpegStream stream{};
  stream.data = data.get();
  const std::int32_t result = ::EncodeJpeg(&image, &parameters, &stream);
  EXPECT_TRUE(result == 0 || result == -1);
  return result == 0 ? std::string(reinterpret_cast<const char*>(data.get()), stream.length) : std::string();
}

TEST(JpegInfo, TellsTheSize) {
  for (const char* name : {"37x21.jpg", "progressive.jpg", "grey.jpg"}) {
    const Decoded info = Info(JpegFile(name));
    EXPECT_EQ(info.result, 0) << name;
    EXPECT_EQ(info.width, 37) << name;
    EXPECT_EQ(info.height, 21) << name;
  }
}

TEST(JpegInfo, RefusesWhatIsNoHeader) {
  for (const std::string& file :
       {std::string("x"), std::string("\xFF\xD8"), std::string("\xFF\xD8\xFF"), std::string("\xFF\xD8\xFF\xD9"),
        std::string("GIF87a"), std::string(1000, '\0'), std::string(1000, '\xFF')}) {
    EXPECT_EQ(Info(file).result, -1) << file;
    EXPECT_EQ(Info(file).width, 0);
  }
}

TEST(JpegInfo, NullPointers) {
  QXVJpegStream stream{};
  QXVJpegImage image{};
  const QXVJpegParameters parameters{70, 0};
  EXPECT_EQ(::GetJpegInfo(nullptr, &image), -1);
  EXPECT_EQ(::GetJpegInfo(&stream, &image), -1);
  EXPECT_EQ(::DecodeJpeg(&stream, nullptr), -1);
  EXPECT_EQ(::EncodeJpeg(nullptr, &parameters, &stream), -1);
  EXPECT_EQ(::EncodeJpeg(&image, &parameters, &stream), -1);
}

// The header's size fields as they stand: height and width behind marker, length and precision.
std::string WithSize(std::string file, unsigned width, unsigned height) {
  const std::size_t at = file.find("\xFF\xC0");
  EXPECT_NE(at, std::string::npos);
  file[at + 5] = static_cast<char>(height >> 8);
  file[at + 6] = static_cast<char>(height);
  file[at + 7] = static_cast<char>(width >> 8);
  file[at + 8] = static_cast<char>(width);
  return file;
}

TEST(JpegInfo, SizesUpTo65500And268MillionPixels) {
  const std::string file = JpegFile("37x21.jpg");
  const unsigned good[][2] = {{1, 1}, {65500, 1}, {1, 65500}, {65500, 4098}, {16384, 16384}};
  const unsigned bad[][2] = {{0, 1}, {1, 0}, {0, 0}, {65501, 1}, {1, 65535}, {65500, 4099}, {16385, 16384}, {65535, 65535}};
  for (const auto& [width, height] : good) {
    const Decoded info = Info(WithSize(file, width, height));
    EXPECT_EQ(info.result, 0) << width << " x " << height;
    EXPECT_EQ(info.width, static_cast<int>(width));
    EXPECT_EQ(info.height, static_cast<int>(height));
  }
  for (const auto& [width, height] : bad) {
    EXPECT_EQ(Info(WithSize(file, width, height)).result, -1) << width << " x " << height;
  }
}

TEST(JpegDecode, RowsComeTopDownInBlueGreenRed) {
  const Decoded decoded = Decode(JpegFile("200x150.jpg"));
  ASSERT_EQ(decoded.result, 0);
  const std::string picture = JpegPicture(200, 150);
  EXPECT_LT(MeanDifference(decoded.pixels, picture), 25) << "its colours wrap, which costs sharpness";
  EXPECT_GT(MeanDifference(decoded.pixels, TurnedOver(picture, 600)), 50);
}

TEST(JpegDecode, ProgressiveFiles) {
  const Decoded decoded = Decode(JpegFile("progressive.jpg"));
  ASSERT_EQ(decoded.result, 0);
  EXPECT_LT(MeanDifference(decoded.pixels, JpegPicture(37, 21)), 8);
}

TEST(JpegDecode, GreyFilesGiveThreeEqualBytes) {
  const Decoded decoded = Decode(JpegFile("grey.jpg"));
  ASSERT_EQ(decoded.result, 0);
  const std::string picture = JpegPicture(37, 21);
  std::string luma;
  for (std::size_t i = 0; i < picture.size(); i += 3) {
    const auto part = [&](std::size_t k, double weight) { return weight * static_cast<unsigned char>(picture[i + k]); };
    luma.append(3, static_cast<char>(static_cast<unsigned char>(part(0, 0.114) + part(1, 0.587) + part(2, 0.299) + 0.5)));
  }
  EXPECT_LT(MeanDifference(decoded.pixels, luma), 4);
  for (std::size_t i = 0; i < decoded.pixels.size(); i += 3) {
    ASSERT_EQ(decoded.pixels.substr(i, 3), std::string(3, decoded.pixels[i]));
  }
}

TEST(JpegDecode, AnotherSizeOrFormatThanTheFilesIsRefused) {
  std::unique_ptr<unsigned char[]> exact;
  const QXVJpegStream stream = StreamOf(JpegFile("37x21.jpg"), exact);
  std::string pixels(qxv::JpegDecodeRoom(37, 21), 'x');
  QXVJpegImage image{};
  image.pixels = reinterpret_cast<unsigned char*>(pixels.data());
  const std::int32_t sizes[][2] = {{0, 0}, {37, 20}, {36, 21}, {21, 37}, {38, 21}, {-37, 21}};
  for (const auto& [width, height] : sizes) {
    image.width = width;
    image.height = height;
    EXPECT_EQ(::DecodeJpeg(&stream, &image), -1) << width << " x " << height;
  }
  image.width = 37;
  image.height = 21;
  image.format = 792;
  EXPECT_EQ(::DecodeJpeg(&stream, &image), -1);
  EXPECT_EQ(pixels, std::string(pixels.size(), 'x'));
  image.format = 0;
  EXPECT_EQ(::DecodeJpeg(&stream, &image), 0);
}

// The place behind the first scan's header: from there on a file has a picture.
std::size_t FirstScan(const std::string& file) {
  const std::size_t at = file.find("\xFF\xDA");
  return at + 2 + static_cast<unsigned char>(file[at + 3]);
}

TEST(JpegMalformed, EveryPrefixDecodesAsFarAsItGoes) {
  for (const char* name : {"37x21.jpg", "progressive.jpg", "grey.jpg"}) {
    const std::string file = JpegFile(name);
    for (std::size_t size = 1; size < file.size(); ++size) {
      const Decoded decoded = Decode(file.substr(0, size));
      ASSERT_EQ(decoded.result, size < FirstScan(file) ? -1 : 0) << name << ' ' << size;
    }
    EXPECT_TRUE(Decode(file.substr(0, file.size() - 2)).pixels == Decode(file).pixels) << name << ": only the end is missing";
  }
}

TEST(JpegMalformed, ACutFileKeepsTheRowsItHas) {
  const std::string file = JpegFile("200x150.jpg");
  const std::string whole = Decode(file).pixels;
  const std::string half = Decode(file.substr(0, FirstScan(file) + (file.size() - FirstScan(file)) / 2)).pixels;
  ASSERT_EQ(half.size(), whole.size());
  EXPECT_TRUE(half.substr(0, 600 * 56) == whole.substr(0, 600 * 56));
  EXPECT_TRUE(half != whole);
}

TEST(JpegMalformed, RandomChangesAreDecodedOrRefused) {
  std::mt19937 random(11);
  for (const char* name : {"37x21.jpg", "progressive.jpg", "grey.jpg"}) {
    const std::string file = JpegFile(name);
    for (int turn = 0; turn < 1500; ++turn) {
      std::string bytes = file;
      for (auto changes = 1 + random() % 3; changes > 0; --changes) {
        bytes[random() % bytes.size()] = static_cast<char>(random());
      }
      const Decoded info = Info(bytes);
      ASSERT_TRUE(info.result == 0 || info.result == -1);
      if (info.result == 0 && info.width * info.height < 1'000'000) {
        const std::int32_t result = Decode(bytes).result;
        ASSERT_TRUE(result == 0 || result == -1);
      }
    }
  }
}

TEST(JpegMalformed, FiveHundredScansAreReadAndNotMore) {
  // its first scan again and again
  const std::string file = JpegFile("progressive.jpg");
  const std::size_t begin = file.find("\xFF\xDA");
  const std::size_t next = file.find("\xFF\xC4", begin);
  const std::string head = file.substr(0, begin), scan = file.substr(begin, next - begin);
  const auto withScans = [&](int count) {
    std::string bytes = head;
    for (int i = 0; i < count; ++i) {
      bytes += scan;
    }
    return bytes + "\xFF\xD9";
  };
  EXPECT_EQ(Decode(withScans(1)).result, 0);
  EXPECT_EQ(Decode(withScans(499)).result, 0);
  EXPECT_EQ(Decode(withScans(502)).result, -1);
}

struct Extent {
  const char* what;
  std::string data;
  std::size_t extent;
};

TEST(JpegExtent, EndsBeforeAMarkerWhoseSegmentIsCut) {
  const std::string table("\xFF\xC4\x00\x04zz", 6);
  const Extent rows[] = {
      {"nothing", "", 0},
      {"no marker", "abc", 3},
      {"complete", "\xFF\xD8" + table + "\xFF\xD9", 10},
      {"coded data", "\xFF\xD8" + table + "abc", 11},
      {"cut in a segment", "\xFF\xD8" + table.substr(0, 5), 2},
      {"cut in a length", "\xFF\xD8" + table.substr(0, 3), 2},
      {"cut in a marker", "\xFF\xD8" + table.substr(0, 1), 2},
      {"a marker alone", "\xFF\xD8" + table.substr(0, 2), 2},
      {"restart marks and stuffing", std::string("\xFF\xD8\xFF\x00z\xFF\xD0z\xFF\xD7z", 11), 11},
      {"several FF", "\xFF\xD8\xFF\xFF" + table, 10},
      {"several FF before a cut one", "\xFF\xD8\xFF\xFF" + table.substr(0, 5), 4},
      {"a length of nothing", std::string("\xFF\xC4\x00\x00zz", 6), 6},
      {"junk behind the end", "\xFF\xD8\xFF\xD9\xFF\xC4", 6},
  };
  for (const Extent& row : rows) {
    std::unique_ptr<unsigned char[]> exact;
    (void)StreamOf(row.data, exact);
    EXPECT_EQ(qxv::JpegExtent(exact.get(), row.data.size()), row.extent) << row.what;
  }
}

TEST(JpegEncode, BytesAreThoseOfCjpegOnEverySystem) {
  EXPECT_TRUE(Encode(37, 21, TurnedOver(JpegPicture(37, 21), 37 * 3), 70) == JpegFile("37x21.jpg"));
  EXPECT_TRUE(Encode(200, 150, TurnedOver(JpegPicture(200, 150), 600), 70) == JpegFile("200x150.jpg"));
}

TEST(JpegEncode, QualityIsTakenAsGiven) {
  const std::string rows = TurnedOver(JpegPicture(200, 150), 600);
  const auto encoded = [&](double quality) { return Encode(200, 150, rows, quality); };
  EXPECT_LT(encoded(1).size(), encoded(30).size());
  EXPECT_LT(encoded(30).size(), encoded(70).size());
  EXPECT_LT(encoded(70).size(), encoded(100).size());
  EXPECT_TRUE(encoded(70.4) == encoded(70));
  EXPECT_TRUE(encoded(69.5) == encoded(70));
  EXPECT_TRUE(encoded(1e300) == encoded(100));
  for (const double quality : {0.0, -5.0, -HUGE_VAL, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_TRUE(encoded(quality) == encoded(1)) << quality;
  }
}

TEST(JpegEncode, RefusesOtherFormatsAndSizes) {
  const std::string pixels(300, 'x');
  EXPECT_FALSE(Encode(10, 10, pixels, 70).empty());
  EXPECT_TRUE(Encode(10, 10, pixels, 70, 0).empty());
  EXPECT_TRUE(Encode(10, 10, pixels, 70, 791).empty());
  QXVJpegImage image{};
  std::string data(5000, 'x');
  image.pixels = reinterpret_cast<unsigned char*>(data.data());
  image.format = 792;
  const QXVJpegParameters parameters{70, 0};
  QXVJpegStream stream{};
  stream.data = image.pixels;
  const std::int32_t sizes[][2] = {{0, 1}, {1, 0}, {-1, -1}, {65501, 1}, {65500, 4099}, {65536, 65536}};
  for (const auto& [width, height] : sizes) {
    image.width = width;
    image.height = height;
    EXPECT_EQ(::EncodeJpeg(&image, &parameters, &stream), -1) << width << " x " << height;
  }
}

// A column of one pixel takes blocks of sixteen, and so more data than pixels.
TEST(JpegEncode, DataThatFindsNoRoomIsRefused) {
  std::mt19937 random(3);
  std::string noise(std::size_t{65500} * 3, '\0');
  for (char& byte : noise) {
    byte = random() % 2 == 0 ? '\0' : '\xFF';
  }
  EXPECT_TRUE(Encode(1, 65500, noise, 100).empty());
  EXPECT_FALSE(Encode(1, 65500, noise, 10).empty());
}

TEST(JpegEncode, SidesFrom1To40ComeBack) {
  for (std::int32_t width = 1; width <= 40; ++width) {
    for (const std::int32_t height : {1, 2, 7, 8, 15, 16, 17, 33}) {
      const auto size = static_cast<std::size_t>(width * height * 3);
      const Decoded decoded = Decode(Encode(width, height, std::string(size, '\x64'), 70));
      ASSERT_EQ(decoded.result, 0);
      ASSERT_EQ(decoded.width, width);
      ASSERT_EQ(decoded.height, height);
      EXPECT_LT(MeanDifference(decoded.pixels, std::string(size, '\x64')), 2) << width << " x " << height;
    }
  }
}

}  // namespace

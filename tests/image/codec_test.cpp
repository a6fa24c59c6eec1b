// codec_test.cpp - what holds for every codec of still pictures.

#include "image/bmp.h"
#include "image/codec_files.h"
#include "image/pcx.h"
#include "image/tga.h"
#include "image/yuv.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <new>
#include <string>

namespace {

using namespace image_test;
using qxv::Status;

template <class CodecType, unsigned kBytes>
struct Subject {
  using Codec = CodecType;
  static constexpr unsigned kBytesPerPixel = kBytes;

  static std::string Pixels(std::int32_t width, std::int32_t height, unsigned seed = 1) {
    return MixedPixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * kBytes, seed);
  }
  static std::string SomeFile() { return Encode<Codec>(3, 2, Pixels(3, 2)); }
};

template <class Subject>
class Codec : public testing::Test {};
template <class Subject>
class CodecMalformed : public testing::Test {};
template <class Subject>
class CodecRoundTrip : public testing::Test {};

using Subjects =
    testing::Types<Subject<qxv::CQXVBmp, 3>, Subject<qxv::CQXVTga, 4>, Subject<qxv::CQXVYUV, 3>, Subject<qxv::CQXVPcx, 3>>;

class SubjectName {
 public:
  template <class Subject>
  static std::string GetName(int index) {
    static const char* const names[] = {"Bmp", "Tga", "Yuv", "Pcx"};
    return names[index];
  }
};

TYPED_TEST_SUITE(Codec, Subjects, SubjectName);
TYPED_TEST_SUITE(CodecMalformed, Subjects, SubjectName);
TYPED_TEST_SUITE(CodecRoundTrip, Subjects, SubjectName);

TYPED_TEST(Codec, FilesThatCannotBeOpened) {
  const support::TempFolder folder;
  for (const auto& name : {folder.File(QXT("none.bin")), folder.Path(), support::Text()}) {
    typename TypeParam::Codec codec;
    const Held before = HeldBy(codec, 0x89601A15);
    EXPECT_EQ(HeldBy(codec, codec.Read(name.c_str(), ReadExtent::Header)), before);
    EXPECT_EQ(HeldBy(codec, codec.Read(name.c_str(), ReadExtent::Pixels)), before);
  }
}

TYPED_TEST(Codec, FilesThatCannotBeCreated) {
  const support::TempFolder folder;
  const unsigned char pixels[4] = {};
  for (const auto& name : {folder.File(QXT("none\\a.bin")), folder.Path(), support::Text()}) {
    EXPECT_EQ(typename TypeParam::Codec().Write(name.c_str(), {1, 1, pixels}), 0x89601A14u);
  }
}

TYPED_TEST(Codec, AHeaderAloneGivesSidesWithoutPixels) {
  EXPECT_EQ(DecodeHeader<typename TypeParam::Codec>(TypeParam::SomeFile()), Sized(3, 2));
}

TYPED_TEST(Codec, ReadsAgainAndAgain) {
  const CodecFile file(TypeParam::SomeFile());
  const std::string other = TypeParam::Pixels(5, 4, 2);
  typename TypeParam::Codec codec;
  ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0u);
  EXPECT_EQ(HeldBy(codec), WithPixels(3, 2, TypeParam::Pixels(3, 2)));
  ASSERT_EQ(codec.Write(file.Name(), {5, 4, support::BytesOf(other)}), 0u);
  EXPECT_EQ(HeldBy(codec), WithPixels(3, 2, TypeParam::Pixels(3, 2))) << "writing changes nothing";
  ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0u);
  EXPECT_EQ(HeldBy(codec), WithPixels(5, 4, other));
  ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Header), 0u);
  EXPECT_EQ(HeldBy(codec), Sized(5, 4));
}

TYPED_TEST(Codec, PixelsGoToTheCallerOnce) {
  const CodecFile file(TypeParam::SomeFile());
  typename TypeParam::Codec codec;
  ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0u);
  const unsigned char* const pixels = codec.Pixels();
  const auto taken = codec.TakePixels();
  EXPECT_EQ(taken.get(), pixels);
  EXPECT_EQ(codec.TakePixels(), nullptr);
}

TYPED_TEST(Codec, WriteRefusesWhatIsNoPicture) {
  const CodecFile file("as it was");
  const std::string pixels(1000, 'x');
  const typename TypeParam::Codec codec;
  for (const auto& [width, height] : {std::pair{-1, 1}, {1, -1}, {INT_MIN, INT_MIN}, {0, -1}}) {
    EXPECT_EQ(codec.Write(file.Name(), {width, height, support::BytesOf(pixels)}), 0x89601A11u);
  }
  const std::string oneTooFew(3 * 2 * TypeParam::kBytesPerPixel - 1, 'x');
  EXPECT_EQ(codec.Write(file.Name(), {3, 2, support::BytesOf(oneTooFew)}), 0x89601B11u);
  EXPECT_EQ(codec.Write(file.Name(), {1, 1, {}}), 0x89601B11u);
  EXPECT_EQ(codec.Write(file.Name(), {INT_MAX, INT_MAX, support::BytesOf(pixels)}), 0x89601B11u);
  EXPECT_EQ(codec.Write(file.Name(), {65536, 65536, support::BytesOf(pixels)}), 0x89601B11u);
  EXPECT_EQ(file.Get(), "as it was");
}

TYPED_TEST(CodecMalformed, AFailureLeavesWhatWasRead) {
  const std::string whole = TypeParam::SomeFile();
  const CodecFile file(whole);
  typename TypeParam::Codec codec;
  ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0u);
  const Held before = HeldBy(codec);
  const std::uint32_t layout = codec.Layout();
  for (std::size_t size = 0; size < whole.size() - 3; ++size) {  // BMP may lack its last padding
    file.Set(whole.substr(0, size));
    ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0x89601A16u) << size;
    ASSERT_EQ(HeldBy(codec), before) << size;
  }
  EXPECT_EQ(codec.Layout(), layout);
}

TYPED_TEST(CodecMalformed, LackOfMemoryLeavesWhatWasRead) {
  const CodecFile file(TypeParam::SomeFile());
  const CodecFile other(Encode<typename TypeParam::Codec>(5, 4, TypeParam::Pixels(5, 4, 2)));
  typename TypeParam::Codec codec;
  ASSERT_EQ(codec.Read(file.Name(), ReadExtent::Pixels), 0u);
  const std::size_t arrays = support::LiveArrays();
  bool refused = true;
  for (std::size_t index = 0; refused; ++index) {
    Status status = 0;
    {
      const support::FailAllocation fail(index);
      try {
        status = codec.Read(other.Name(), ReadExtent::Pixels);
      } catch (const std::bad_alloc&) {
        status = 0x89601A15;  // as where the system's part answers it
      }
      refused = fail.Refused();
    }
    EXPECT_EQ(status, refused ? 0x89601A15u : 0u) << index;
    EXPECT_EQ(codec.Width(), refused ? 3 : 5) << index;
    EXPECT_EQ(support::LiveArrays(), arrays) << index;
  }
}

// Any bytes behind the first ones that a codec wants to see: a status, and pixels only with success.
TYPED_TEST(CodecMalformed, RandomBytes) {
  std::mt19937 random(7);
  const std::string whole = TypeParam::SomeFile();
  const CodecFile file;
  for (int turn = 0; turn < 3000; ++turn) {
    std::string bytes = whole;
    for (auto changes = 1 + random() % 4; changes > 0; --changes) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    bytes.resize(random() % 4 == 0 ? random() % bytes.size() : bytes.size());
    file.Set(bytes);
    typename TypeParam::Codec codec;
    const Status status = codec.Read(file.Name(), ReadExtent::Pixels);
    ASSERT_TRUE(status == 0 || status == 0x89601A16) << std::hex << status;
    if (status != 0) {
      ASSERT_EQ(codec.Pixels(), nullptr);
    } else if (codec.Pixels() != nullptr) {
      const unsigned bytesPerPixel = codec.Layout() == 1 ? 4 : 3;
      ASSERT_EQ(AllocatedPixels(codec), qxv::PixelBytes(codec.Width(), codec.Height(), bytesPerPixel));
    }
  }
}

TYPED_TEST(CodecRoundTrip, SizesFrom1To70By1To20) {
  const CodecFile file;
  for (std::int32_t width = 1; width <= 70; ++width) {
    for (std::int32_t height = 1; height <= 20; ++height) {
      const std::string pixels = TypeParam::Pixels(width, height, static_cast<unsigned>(width * 100 + height));
      typename TypeParam::Codec codec;
      ASSERT_EQ(codec.Write(file.Name(), {width, height, support::BytesOf(pixels)}), 0u);
      const Status status = codec.Read(file.Name(), ReadExtent::Pixels);
      ASSERT_TRUE(HeldBy(codec, status) == WithPixels(width, height, pixels)) << width << " x " << height;
    }
  }
}

TYPED_TEST(CodecRoundTrip, PicturesOfManyPieces) {
  const std::string pixels = TypeParam::Pixels(1021, 701);
  const std::string file = Encode<typename TypeParam::Codec>(1021, 701, pixels);
  EXPECT_TRUE(Decode<typename TypeParam::Codec>(file) == WithPixels(1021, 701, pixels));
}

}  // namespace

// image_writer_test.cpp - the writer: which calls it takes, when it writes the file, what the file then holds.

#include "image/gif.h"
#include "image/image_files.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

namespace {

using namespace image_test;

const unsigned char* Data(const std::string& bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }

constexpr QXVImageInfo Target(unsigned int layout, int width, int height, int padding = 0, int frames = 1) {
  return {0, frames, layout, width, height, padding, 0};
}

WriterPointer WriterOf(const support::Text& name, const QXVImageInfo& target) {
  WriterPointer writer = NewWriter();
  EXPECT_EQ(writer->Create(name.c_str(), &target), 0);
  return writer;
}

// Copies, so that a byte too many read ends the program.
int Write(CQXVImageWriter& writer, const std::string& pixels, const QXVPixelLayout& input, int frame = 0) {
  EXPECT_EQ(writer.SetInputLayout(&input), 0);
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[pixels.size()]);
  std::copy(pixels.begin(), pixels.end(), exact.get());
  return writer.WriteFrame(frame, exact.get());
}
int WriteRaw(CQXVImageWriter& writer, const std::string& pixels, int frame = 0) {
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[pixels.size()]);
  std::copy(pixels.begin(), pixels.end(), exact.get());
  return writer.WriteRawFrame(frame, exact.get());
}

TEST(ImageWriter, CreateWantsOneFrameButForGif) {
  const ImageFolder folder;
  const struct {
    const QXChar* name;
    int frames;
    std::uint32_t status;
  } rows[] = {
      {QXT("a.bmp"), 1, 0},
      {QXT("a.bmp"), 2, 0x89601A11},
      {QXT("a.bmp"), 0, 0x89601A11},
      {QXT("a.gif"), 1, 0},
      {QXT("a.gif"), 2, 0},
      {QXT("a.GIF"), 300, 0},
      {QXT("a.gif"), 0, 0x89601A11},
      {QXT("a.gif"), -1, 0x89601A11},
      {QXT("a.gif"), INT_MIN, 0x89601A11},
      {QXT("a.png"), 1, 0},
      {QXT("a.dat"), 1, 0},
      {QXT("a.dat"), 2, 0x89601A11},
      {QXT("a.gifs"), 2, 0x89601A11},
      {QXT("a.bmp"), INT_MAX, 0x89601A11},
  };
  for (const auto& row : rows) {
    const QXVImageInfo target = Target(4, 1, 1, 0, row.frames);
    EXPECT_EQ(Code(NewWriter()->Create(folder.Name(row.name).c_str(), &target)), row.status)
        << support::Printable(row.name) << ' ' << row.frames;
    EXPECT_FALSE(folder.Has(row.name));
  }
}

TEST(ImageWriter, TheExtensionDecidesNotTheRecord) {
  const ImageFolder folder;
  QXVImageInfo target = Target(4, 1, 1, 0, 2);
  target.nType = QXV_IMAGE_TYPE_GIF;
  EXPECT_EQ(Code(NewWriter()->Create(folder.Name(QXT("a.bmp")).c_str(), &target)), 0x89601A11u);
  target.nFrames = 1;
  const auto writer = WriterOf(folder.Name(QXT("a.bmp")), target);
  EXPECT_EQ(WriteRaw(*writer, Bytes({1, 2, 3})), 0);
  EXPECT_EQ(folder.Get(QXT("a.bmp")).substr(0, 2), "BM");
}

TEST(ImageWriter, FilesOfEveryTypeFromOneRawFrame) {
  const ImageFolder folder;
  const std::string bgr = Bytes({50, 100, 150, 7, 8, 9});
  const std::string bgra = Bytes({50, 100, 150, 200, 7, 8, 9, 10});
  const struct {
    const QXChar* name;
    unsigned int layout;
    std::string pixels;
    std::string file;
  } rows[] = {
      {QXT("a.tga"), 1, bgra, Bytes({0, 0, 2}) + Zeros(9) + U16(2) + U16(1) + Bytes({32, 0}) + bgra},
      {QXT("a.yuv"), 8, bgr, YuvFile(2, bgr)},
      // the size fields count the row's 2 padding bytes as pixels: (2 + 2) x 1 x 3
      {QXT("a.bmp"), 4, bgr,
       "BM" + U32(54 + 12) + U32(0) + U32(54) + U32(40) + U32(2) + U32(1) + U16(1) + U16(24) + U32(0) + U32(12) + Zeros(16) +
           bgr + Zeros(2)},
  };
  for (const auto& row : rows) {
    const auto writer = WriterOf(folder.Name(row.name), Target(row.layout, 2, 1));
    EXPECT_FALSE(folder.Has(row.name));
    EXPECT_EQ(WriteRaw(*writer, row.pixels), 0) << support::Printable(row.name);
    EXPECT_EQ(Hex(folder.Get(row.name)), Hex(row.file)) << support::Printable(row.name);
  }
  const auto pcx = WriterOf(folder.Name(QXT("a.pcx")), Target(0x40000000, 2, 1));
  EXPECT_EQ(WriteRaw(*pcx, bgr), 0);
  EXPECT_EQ(ReadRaw(*ReaderOf(folder.Name(QXT("a.pcx")))), Buffer(bgr));
  const auto jpg = WriterOf(folder.Name(QXT("a.jpg")), Target(4, 2, 1));
  EXPECT_EQ(WriteRaw(*jpg, bgr), 0);
  EXPECT_EQ(folder.Get(QXT("a.jpg")).substr(0, 3), Bytes({0xFF, 0xD8, 0xFF}));
}

TEST(ImageWriter, ConvertsEveryInputLayout) {
  const ImageFolder folder;
  const struct {
    unsigned int layout;
    std::string pixel;
    std::string bgra;
  } rows[] = {
      {1, Bytes({50, 100, 200, 17}), Bytes({50, 100, 200, 17})},
      {4, Bytes({50, 100, 200}), Bytes({50, 100, 200, 255})},
      {0x40000000, Bytes({200, 100, 50}), Bytes({50, 100, 200, 255})},
      // y 184, u 22, v -28: R 169.55, G 228.39, B 258.62
      {8, Bytes({200, 150, 100}), Bytes({255, 228, 170, 255})},
      {0x02000000, Bytes({100, 150, 200}), Bytes({255, 228, 170, 255})},
  };
  for (const auto& row : rows) {
    const auto writer = WriterOf(folder.Name(QXT("a.tga")), Target(1, 1, 1));
    EXPECT_EQ(Write(*writer, row.pixel, {row.layout, 1, 1, 0}), 0) << std::hex << row.layout;
    EXPECT_EQ(Hex(folder.Get(QXT("a.tga")).substr(18)), Hex(row.bgra)) << std::hex << row.layout;
  }
}

TEST(ImageWriter, ConvertsToEveryTargetLayout) {
  const ImageFolder folder;
  const struct {
    unsigned int layout;
    std::string pixel;  // as a TGA file shows it, filled up with zeros
  } rows[] = {
      {1, Bytes({50, 100, 200, 255})},        {4, Bytes({50, 100, 200, 0})},          {8, Bytes({123, 91, 175, 0})},
      {0x02000000, Bytes({175, 91, 123, 0})}, {0x40000000, Bytes({200, 100, 50, 0})}, {32, Bytes({255, 200, 100, 50})},
      {64, Bytes({255, 200, 100, 50})},       {128, Bytes({255, 200, 100, 50})},
  };
  for (const auto& row : rows) {
    const auto writer = WriterOf(folder.Name(QXT("a.tga")), Target(row.layout, 1, 1));
    EXPECT_EQ(Write(*writer, Bytes({50, 100, 200}), {4, 1, 1, 0}), 0) << std::hex << row.layout;
    EXPECT_EQ(Hex(folder.Get(QXT("a.tga")).substr(18)), Hex(row.pixel)) << std::hex << row.layout;
  }
}

TEST(ImageWriter, InputPaddingIsSkippedAndTheSizeChanged) {
  const ImageFolder folder;
  const auto writer = WriterOf(folder.Name(QXT("a.yuv")), Target(4, 2, 2));
  const std::string row = Bytes({10, 20, 30, 10, 20, 30, 10, 20, 30});
  EXPECT_EQ(Write(*writer, row + "xx" + row + "xx" + row + "xx", {4, 3, 3, 2}), 0);
  EXPECT_EQ(folder.Get(QXT("a.yuv")).substr(31), Bytes({10, 20, 30, 10, 20, 30, 10, 20, 30, 10, 20, 30}));
}

TEST(ImageWriter, TheLastMissingFrameWritesAGif) {
  const ImageFolder folder;
  const std::string one = Bytes({0, 0, 255, 255, 0, 0});
  const std::string two = Bytes({0, 255, 0, 0, 0, 0});
  const std::string three = Bytes({255, 255, 255, 9, 9, 9});
  const auto writer = WriterOf(folder.Name(QXT("a.gif")), Target(4, 2, 1, 0, 3));
  EXPECT_EQ(WriteRaw(*writer, three, 2), 0);
  EXPECT_EQ(WriteRaw(*writer, two, 0), 0);
  EXPECT_EQ(WriteRaw(*writer, one, 0), 0) << "a frame again before the last one has come";
  EXPECT_FALSE(folder.Has(QXT("a.gif")));
  EXPECT_EQ(WriteRaw(*writer, two, 1), 0);
  const std::vector<qxv::CQXVGif::Frame> frames = {support::BytesOf(one), support::BytesOf(two), support::BytesOf(three)};
  ASSERT_EQ(qxv::CQXVGif(2, 1).Write(folder.Name(QXT("b.gif")).c_str(), frames), 0u);
  EXPECT_EQ(folder.Get(QXT("a.gif")), folder.Get(QXT("b.gif")));
  EXPECT_EQ(folder.Get(QXT("a.gif")).substr(0, 6), "GIF87a");
}

TEST(ImageWriter, TypesThatAreNotWritten) {
  const ImageFolder folder;
  for (const auto* name : {QXT("a.png"), QXT("a.dat"), QXT("a.jpeg"), QXT("a.tiff"), QXT("a")}) {
    const auto writer = WriterOf(folder.Name(name), Target(4, 1, 1));
    EXPECT_EQ(Code(WriteRaw(*writer, "abc")), 0x89601A13u) << support::Printable(name);
    EXPECT_EQ(Code(Write(*writer, "abc", {4, 1, 1, 0})), 0x89601A13u) << support::Printable(name);
    EXPECT_FALSE(folder.Has(name)) << support::Printable(name);
  }
}

TEST(ImageWriterKept, TifWritesNothing) {
  const ImageFolder folder;
  const auto writer = WriterOf(folder.Name(QXT("a.tif")), Target(4, 1, 1));
  EXPECT_EQ(WriteRaw(*writer, "abc"), 0);
  EXPECT_EQ(Write(*writer, "abc", {4, 1, 1, 0}), 0);
  EXPECT_FALSE(folder.Has(QXT("a.tif")));
}

TEST(ImageWriter, FilesThatCannotBeCreated) {
  const ImageFolder folder;
  for (const auto* name : {QXT("none\\a.tga"), QXT("none\\a.bmp"), QXT("none\\a.pcx"), QXT("none\\a.yuv"), QXT("none\\a.gif")}) {
    const auto writer = WriterOf(folder.Name(name), Target(4, 1, 1));
    EXPECT_EQ(Code(WriteRaw(*writer, "abc")), 0x89601A14u) << support::Printable(name);
  }
  const auto writer = WriterOf(folder.Name(QXT("none\\a.jpg")), Target(4, 1, 1));
  EXPECT_EQ(Code(WriteRaw(*writer, "abc")), 0xFFFFFFFFu);
}

TEST(ImageWriter, FramesOutsideOfTheirNumber) {
  const ImageFolder folder;
  const auto writer = NewWriter();
  const QXVPixelLayout input{4, 1, 1, 0};
  EXPECT_EQ(writer->SetInputLayout(&input), 0);
  const auto refuses = [&](int frame) {
    EXPECT_EQ(Code(writer->WriteFrame(frame, nullptr)), 0x89601A11u) << frame;
    EXPECT_EQ(Code(writer->WriteRawFrame(frame, nullptr)), 0x89601A11u) << frame;
    EXPECT_EQ(Code(WriteRaw(*writer, "abc", frame)), 0x89601A11u) << frame;
  };
  refuses(0);  // before Create
  const QXVImageInfo target = Target(4, 1, 1, 0, 2);
  ASSERT_EQ(writer->Create(folder.Name(QXT("a.gif")).c_str(), &target), 0);
  for (const int frame : {-1, 2, 3, INT_MIN, INT_MAX}) {
    refuses(frame);
  }
  EXPECT_EQ(WriteRaw(*writer, "abc", 1), 0);
  EXPECT_EQ(writer->Close(), 0);
  EXPECT_EQ(writer->Close(), 0);
  refuses(0);
  refuses(1);
  EXPECT_FALSE(folder.Has(QXT("a.gif")));
}

TEST(ImageWriter, NullPointers) {
  const ImageFolder folder;
  const auto writer = NewWriter();
  EXPECT_EQ(Code(writer->Create(folder.Name(QXT("a.bmp")).c_str(), nullptr)), 0x89601A11u);
  EXPECT_EQ(Code(writer->SetInputLayout(nullptr)), 0x89601A11u);
  const QXVImageInfo target = Target(4, 1, 1);
  ASSERT_EQ(writer->Create(folder.Name(QXT("a.bmp")).c_str(), &target), 0);
  EXPECT_EQ(Code(writer->WriteFrame(0, nullptr)), 0x89601B11u);
  EXPECT_EQ(Code(writer->WriteRawFrame(0, nullptr)), 0x89601B11u);
}

TEST(ImageWriter, InputsThatCannotBe) {
  const ImageFolder folder;
  const auto writer = WriterOf(folder.Name(QXT("a.bmp")), Target(4, 1, 1));
  EXPECT_EQ(Code(writer->WriteFrame(0, Data("abc"))), 0x89601A11u) << "before SetInputLayout";
  const QXVPixelLayout shapes[] = {{4, 0, 1, 0},  {4, 1, 0, 0}, {4, -1, 1, 0}, {4, 1, -1, 0}, {4, INT_MIN, INT_MIN, 0},
                                   {4, 1, 1, -1}, {99, 0, 0, 0}};
  for (const QXVPixelLayout& shape : shapes) {
    EXPECT_EQ(Code(Write(*writer, "abc", shape)), 0x89601A11u) << shape.nWidth << ' ' << shape.nHeight << ' ' << shape.nPadding;
  }
  for (const unsigned int layout : {0u, 2u, 32u, 64u, 128u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Code(Write(*writer, "abcd", {layout, 1, 1, 0})), 0x89601A17u) << layout;
  }
  EXPECT_FALSE(folder.Has(QXT("a.bmp")));
}

TEST(ImageWriter, TargetLayoutsWithoutASize) {
  const ImageFolder folder;
  for (const unsigned int layout : {0u, 2u, 16u, 256u, 0x80000000u, 0xFFFFFFFFu}) {
    const auto writer = WriterOf(folder.Name(QXT("a.bmp")), Target(layout, 1, 1));
    EXPECT_EQ(Code(Write(*writer, "abc", {4, 1, 1, 0})), 0x89601A17u) << layout;
    EXPECT_EQ(Code(WriteRaw(*writer, "abcd")), 0x89601A17u) << layout;
    EXPECT_FALSE(folder.Has(QXT("a.bmp")));
  }
}

TEST(ImageWriter, SlotsOfYuvAndRgbHaveThreeBytesAPixel) {
  const ImageFolder folder;
  for (const unsigned int layout : {8u, 0x40000000u}) {
    const auto writer = WriterOf(folder.Name(QXT("a.yuv")), Target(layout, 3, 2, 1));
    const std::string pixels = "abcdefghi.jklmnopqr.";  // exactly (3 x 3 + 1) x 2: one byte more read ends the program
    EXPECT_EQ(WriteRaw(*writer, pixels), 0) << layout;
    EXPECT_EQ(folder.Get(QXT("a.yuv")).substr(31), pixels.substr(0, 18)) << layout;
  }
}

TEST(ImageWriterKept, TheCodecTakesTheBytesAsTheyLie) {
  const ImageFolder folder;
  // padding is written as pixels
  const auto padded = WriterOf(folder.Name(QXT("a.yuv")), Target(8, 1, 3, 2));
  EXPECT_EQ(WriteRaw(*padded, "abc..def..ghi.."), 0);
  EXPECT_EQ(folder.Get(QXT("a.yuv")).substr(31), "abc..def.");
  // four bytes a pixel where the codec has three
  const auto wide = WriterOf(folder.Name(QXT("a.yuv")), Target(1, 2, 1));
  EXPECT_EQ(WriteRaw(*wide, "abcdefgh"), 0);
  EXPECT_EQ(folder.Get(QXT("a.yuv")).substr(31), "abcdef");
  // three where it has four: the rest is zeros, and the file's rows are bottom-up
  const auto narrow = WriterOf(folder.Name(QXT("a.tga")), Target(4, 1, 2));
  EXPECT_EQ(WriteRaw(*narrow, "abcdef"), 0);
  EXPECT_EQ(folder.Get(QXT("a.tga")).substr(18), "ef" + Zeros(2) + "abcd");
}

TEST(ImageWriterKept, AFrameThatComesAgainWritesTheFileAgain) {
  const ImageFolder folder;
  const auto writer = WriterOf(folder.Name(QXT("a.yuv")), Target(8, 1, 1));
  EXPECT_EQ(WriteRaw(*writer, "abc"), 0);
  EXPECT_EQ(WriteRaw(*writer, "def"), 0);
  EXPECT_EQ(folder.Get(QXT("a.yuv")).substr(31), "def");
  EXPECT_TRUE(std::filesystem::remove(support::NativePath(folder.Name(QXT("a.yuv")))));
  EXPECT_EQ(Write(*writer, "ghi", {8, 1, 1, 0}), 0);
  EXPECT_TRUE(folder.Has(QXT("a.yuv")));
}

TEST(ImageWriter, TargetsThatCannotBeAreTooMuchMemory) {
  const ImageFolder folder;
  const QXVImageInfo targets[] = {
      Target(4, -1, 1),
      Target(4, 1, -1),
      Target(4, 1, 1, -1),
      Target(1, 1 << 29, 1),
      Target(4, 715827883, 1),  // 2^31 + 1 bytes
      Target(4, 65536, 65536),
      Target(1, INT_MAX, INT_MAX, 9),  // 2^64 + 2147483643
      Target(4, INT_MAX, INT_MAX, INT_MAX),
  };
  for (const QXVImageInfo& target : targets) {
    const auto writer = WriterOf(folder.Name(QXT("a.bmp")), target);
    EXPECT_THROW((void)Write(*writer, "abc", {4, 1, 1, 0}), std::bad_alloc) << target.nWidth << ' ' << target.nHeight;
    EXPECT_THROW((void)WriteRaw(*writer, "abc"), std::bad_alloc) << target.nWidth << ' ' << target.nHeight;
    EXPECT_FALSE(folder.Has(QXT("a.bmp")));
  }
}

TEST(ImageWriter, TooManyFramesChangeNothing) {
  const ImageFolder folder;
  const auto writer = WriterOf(folder.Name(QXT("a.yuv")), Target(8, 1, 1));
  for (const int frames : {INT_MAX, 1 << 28}) {  // of 8 bytes each
    const QXVImageInfo target = Target(4, 1, 1, 0, frames);
    EXPECT_THROW((void)writer->Create(folder.Name(QXT("a.gif")).c_str(), &target), std::bad_alloc);
  }
  EXPECT_EQ(WriteRaw(*writer, "abc"), 0);
  EXPECT_EQ(folder.Get(QXT("a.yuv")).substr(31), "abc");
}

TEST(ImageWriter, ARefusedCreateChangesNothing) {
  const ImageFolder folder;
  const auto writer = WriterOf(folder.Name(QXT("a.yuv")), Target(8, 1, 1));
  const QXVImageInfo target = Target(4, 1, 1, 0, 2);
  EXPECT_EQ(Code(writer->Create(folder.Name(QXT("b.bmp")).c_str(), &target)), 0x89601A11u);
  EXPECT_EQ(WriteRaw(*writer, "abc"), 0);
  EXPECT_TRUE(folder.Has(QXT("a.yuv")));
}

TEST(ImageWriter, CreateForgetsTheFramesBefore) {
  const ImageFolder folder;
  const auto writer = WriterOf(folder.Name(QXT("a.gif")), Target(4, 1, 1, 0, 2));
  EXPECT_EQ(WriteRaw(*writer, "abc", 0), 0);
  const QXVImageInfo target = Target(4, 1, 1, 0, 2);
  ASSERT_EQ(writer->Create(folder.Name(QXT("b.gif")).c_str(), &target), 0);
  EXPECT_EQ(WriteRaw(*writer, "abc", 1), 0);
  EXPECT_FALSE(folder.Has(QXT("a.gif")));
  EXPECT_FALSE(folder.Has(QXT("b.gif")));
}

TEST(ImageWriter, FramesWithoutPixels) {
  const ImageFolder folder;
  for (const auto* name : {QXT("a.tga"), QXT("a.bmp"), QXT("a.yuv"), QXT("a.gif")}) {
    const auto writer = WriterOf(folder.Name(name), Target(4, 0, 3));
    EXPECT_EQ(Write(*writer, "abc", {4, 1, 1, 0}), 0) << support::Printable(name);
    EXPECT_TRUE(folder.Has(name));
  }
}

TEST(ImageWriter, TheFactoryGivesNullWithoutMemory) {
  const support::FailAllocation fail(0);
  EXPECT_EQ(QXVCOMMONLIB_GetImageWriter(), nullptr);
  EXPECT_TRUE(fail.Refused());
}

TEST(ImageWriter, LackOfMemoryLeavesTheFramesThatCame) {
  const ImageFolder folder;
  const auto writer = WriterOf(folder.Name(QXT("a.gif")), Target(4, 1, 1, 0, 2));
  ASSERT_EQ(WriteRaw(*writer, "abc", 0), 0);
  bool refused = true;
  for (std::size_t index = 0; refused; ++index) {
    const QXVPixelLayout input{8, 1, 1, 0};
    ASSERT_EQ(writer->SetInputLayout(&input), 0);
    const std::size_t arrays = support::LiveArrays();
    bool thrown = false;
    {
      const support::FailAllocation fail(index);
      try {
        EXPECT_EQ(writer->WriteFrame(0, Data("xyz")), 0);
      } catch (const std::bad_alloc&) {
        thrown = true;
      }
      refused = fail.Refused();
    }
    EXPECT_EQ(thrown, refused) << index;
    EXPECT_EQ(support::LiveArrays(), arrays) << index;
    EXPECT_FALSE(folder.Has(QXT("a.gif")));
  }
  EXPECT_EQ(WriteRaw(*writer, "abc", 1), 0);
  EXPECT_TRUE(folder.Has(QXT("a.gif")));
}

}  // namespace

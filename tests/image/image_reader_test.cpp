// image_reader_test.cpp - the reader on files that our own codecs read: information, raw frames, the order of calls.

#include "image/image_files.h"
#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace {

using namespace image_test;

// Two pixels a file, in the layout that the type has.
struct Sample {
  support::Text name;
  std::string file;
  QXVImageInfo info;  // nFrameTime is never told
  std::string pixels;
};

const std::string kBgr = Bytes({50, 100, 150, 7, 8, 9});
const std::string kBgra = Bytes({50, 100, 150, 200, 7, 8, 9, 10});

std::vector<Sample> Samples() {
  return {
      {QXT("a.tga"), TgaFile(2, kBgra), {1, 1, 1, 2, 1, 0, 77}, kBgra},
      {QXT("a.bmp"), BmpFile(2, kBgr), {2, 1, 4, 2, 1, 0, 77}, kBgr},
      {QXT("b.BMP"), BmpFile(2, kBgra, 32), {2, 1, 1, 2, 1, 0, 77}, kBgra},
      {QXT("a.pcx"), PcxFile(2, kBgr), {5, 1, 0x40000000, 2, 1, 0, 77}, kBgr},
      {QXT("a.yuv"), YuvFile(2, kBgr), {6, 1, 8, 2, 1, 0, 77}, kBgr},
  };
}

TEST(ImageReader, TellsTypeFramesLayoutAndSides) {
  const ImageFolder folder;
  for (const Sample& sample : Samples()) {
    const auto reader = ReaderOf(folder.Put(sample.name, sample.file));
    EXPECT_EQ(InfoEx(*reader), (Info{0, sample.info})) << support::Printable(sample.name);
    EXPECT_EQ(InfoOf(*reader), (Info{0, sample.info})) << support::Printable(sample.name);
  }
}

TEST(ImageReader, TellsAJpgInCapitals) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("A.JPG"), SampleFile("jpg/37x21.jpg")));
  EXPECT_EQ(InfoEx(*reader), (Info{0, {7, 1, 4, 37, 21, 0, 77}}));
  void* buffer = nullptr;
  ASSERT_EQ(reader->ReadRawFrame(0, &buffer), 0);
  EXPECT_GE(support::AllocationSize(buffer), 37u * 21 * 3);
  delete[] static_cast<unsigned char*>(buffer);
}

TEST(ImageReader, ExtensionsOfFourLettersAreNoTypes) {
  const ImageFolder folder;
  const std::string jpg = SampleFile("jpg/37x21.jpg");
  for (const auto* name : {QXT("a.jpeg"), QXT("a.tiff"), QXT("a.dat"), QXT("a"), QXT("a.")}) {
    const auto reader = ReaderOf(folder.Put(name, jpg));
    QXVImageInfo onlyTypeIsTold = kUntouched;
    onlyTypeIsTold.nType = 0;
    EXPECT_EQ(InfoEx(*reader), (Info{0x89601A13, onlyTypeIsTold})) << support::Printable(name);
    EXPECT_EQ(InfoOf(*reader), (Info{0x89601A13, {0, 0, 0, 0, 0, 0, 77}})) << support::Printable(name);
    EXPECT_EQ(ReadRaw(*reader), Refusal(0x89601A13)) << support::Printable(name);
    EXPECT_EQ(ReadAs(*reader, {4, 2, 2, 0}), Refusal(0x89601A13)) << support::Printable(name);
  }
}

TEST(ImageReader, TheExtensionDecidesNotTheContent) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.tga"), BmpFile(2, kBgr)));
  EXPECT_EQ(InfoEx(*reader), (Info{0x89601A16, kUntouched}));
  EXPECT_EQ(InfoOf(*reader), (Info{0x89601A16, {0, 0, 0, 0, 0, 0, 77}}));
  EXPECT_EQ(ReadRaw(*reader), Refusal(0x89601A16));
}

TEST(ImageReader, RawFramesAreTheFilesOwnPixels) {
  const ImageFolder folder;
  for (const Sample& sample : Samples()) {
    const auto reader = ReaderOf(folder.Put(sample.name, sample.file));
    EXPECT_EQ(ReadRaw(*reader), Buffer(sample.pixels)) << support::Printable(sample.name);
    EXPECT_EQ(ReadRaw(*reader), Buffer(sample.pixels)) << support::Printable(sample.name) << " again";
  }
}

TEST(ImageReader, StillsHaveFrameZeroOnly) {
  const ImageFolder folder;
  auto samples = Samples();
  samples.push_back({QXT("a.jpg"), SampleFile("jpg/37x21.jpg"), {}, {}});
  samples.push_back({QXT("a.png"), "", {}, {}});
  samples.push_back({QXT("a.tif"), "", {}, {}});
  for (const Sample& sample : samples) {
    const auto reader = ReaderOf(folder.Put(sample.name, sample.file));
    for (const int frame : {-1, 1, 2, INT_MIN, INT_MAX}) {
      EXPECT_EQ(ReadRaw(*reader, frame), Refusal(0x89601A11)) << support::Printable(sample.name) << ' ' << frame;
      EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}, static_cast<unsigned int>(frame)), Refusal(0x89601A11))
          << support::Printable(sample.name) << ' ' << frame;
    }
  }
}

TEST(ImageReader, SetFileTakesOnlyWhatCanBeOpened) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(2, kBgr)));
  for (const auto& name : {folder.Name(QXT("none.bmp")), folder.Name(QXT("")), support::Text()}) {
    EXPECT_EQ(Code(reader->SetFile(name.c_str())), 0x89601A12u) << support::Printable(name);
  }
  EXPECT_EQ(ReadRaw(*reader), Buffer(kBgr)) << "the name before stays";
  EXPECT_EQ(reader->SetFile(folder.Put(QXT("b.tga"), TgaFile(2, kBgra)).c_str()), 0);
  EXPECT_EQ(ReadRaw(*reader), Buffer(kBgra));
}

TEST(ImageReader, CloseKeepsTheNameAndTheOutputLayout) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(2, kBgr)));
  EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}).status, 0u);
  EXPECT_EQ(reader->Close(), 0);
  EXPECT_EQ(reader->Close(), 0);
  EXPECT_EQ(ReadRaw(*reader), Buffer(kBgr));
  unsigned char* buffer = nullptr;
  const int status = reader->ReadFrame(0, &buffer);
  EXPECT_EQ(Take(status, buffer).bytes.size(), 4u) << "one pixel";
}

TEST(ImageReader, WithoutAFileThereIsNoType) {
  const auto reader = NewReader();
  EXPECT_EQ(reader->Close(), 0);
  EXPECT_EQ(InfoOf(*reader), (Info{0x89601A13, {0, 0, 0, 0, 0, 0, 77}}));
  EXPECT_EQ(ReadRaw(*reader), Refusal(0x89601A13));
  EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}), Refusal(0x89601A13));
}

TEST(ImageReader, NullPointersAreBadArguments) {
  const ImageFolder folder;
  for (const auto* name : {QXT("a.bmp"), QXT("a.gif"), QXT("a.png"), QXT("a.xyz")}) {
    const auto reader = ReaderOf(folder.Put(name, ""));
    EXPECT_EQ(Code(reader->GetImageInfoEx(nullptr)), 0x89601A11u);
    EXPECT_EQ(Code(reader->GetImageInfo(nullptr)), 0x89601A11u);
    EXPECT_EQ(Code(reader->ReadRawFrame(0, nullptr)), 0x89601A11u);
    EXPECT_EQ(Code(reader->SetOutputLayout(nullptr)), 0x89601A11u);
    EXPECT_EQ(Code(reader->ReadFrame(0, nullptr)), 0x89601A11u);
  }
}

TEST(ImageReader, AFileThatIsGoneCannotBeRead) {
  const ImageFolder folder;
  for (const auto* name : {QXT("a.tga"), QXT("a.bmp"), QXT("a.pcx"), QXT("a.yuv"), QXT("a.jpg")}) {
    const auto full = folder.Put(name, "x");
    const auto reader = ReaderOf(full);
    ASSERT_TRUE(std::filesystem::remove(support::NativePath(full)));
    const std::uint32_t expected = support::Text(name) == QXT("a.jpg") ? 0xFFFFFFFF : 0x89601A15;
    EXPECT_EQ(InfoEx(*reader), (Info{expected, kUntouched})) << support::Printable(name);
    EXPECT_EQ(ReadRaw(*reader), Refusal(expected)) << support::Printable(name);
    EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}), Refusal(expected)) << support::Printable(name);
  }
}

TEST(ImageReader, DamagedFilesAreToldByTheirCodec) {
  const ImageFolder folder;
  for (const Sample& sample : Samples()) {
    const auto reader = ReaderOf(folder.Put(sample.name, sample.file.substr(0, 10)));
    EXPECT_EQ(InfoEx(*reader), (Info{0x89601A16, kUntouched})) << support::Printable(sample.name);
    EXPECT_EQ(ReadRaw(*reader), Refusal(0x89601A16)) << support::Printable(sample.name);
    EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}), Refusal(0x89601A16)) << support::Printable(sample.name);
  }
  const auto reader = ReaderOf(folder.Put(QXT("a.jpg"), "no picture"));
  EXPECT_EQ(InfoEx(*reader), (Info{0xFFFFFFFF, kUntouched}));
  EXPECT_EQ(ReadRaw(*reader), Refusal(0xFFFFFFFF));
}

TEST(ImageReader, InformationNeedsTheHeaderOnly) {
  const ImageFolder folder;
  const std::string whole = TgaFile(2, kBgra);
  const auto reader = ReaderOf(folder.Put(QXT("a.tga"), whole.substr(0, 18)));
  EXPECT_EQ(InfoEx(*reader), (Info{0, {1, 1, 1, 2, 1, 0, 77}}));
  EXPECT_EQ(ReadRaw(*reader), Refusal(0x89601A16));
}

TEST(ImageReader, APointerThatReceivesNothingStays) {
  const ImageFolder folder;
  const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), "BM"));
  unsigned char mine = 0;
  void* raw = &mine;
  EXPECT_EQ(Code(reader->ReadRawFrame(0, &raw)), 0x89601A16u);
  EXPECT_EQ(raw, &mine);
  unsigned char* frame = &mine;
  EXPECT_EQ(Code(reader->ReadFrame(0, &frame)), 0x89601A16u);
  EXPECT_EQ(Code(reader->ReadFrame(1, &frame)), 0x89601A11u);
  EXPECT_EQ(frame, &mine);
}

TEST(ImageReader, BuffersStayWithTheCaller) {
  const ImageFolder folder;
  const std::size_t arrays = support::LiveArrays();
  void* buffer = nullptr;
  {
    const auto reader = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(2, kBgr)));
    ASSERT_EQ(reader->ReadRawFrame(0, &buffer), 0);
    EXPECT_EQ(reader->Close(), 0);
  }
  EXPECT_EQ(support::LiveArrays(), arrays + 1);
  EXPECT_EQ(Take(0, static_cast<unsigned char*>(buffer)), Buffer(kBgr));
}

TEST(ImageReader, EveryFactoryCallMakesANewObject) {
  const auto one = NewReader();
  const auto two = NewReader();
  EXPECT_NE(one.get(), nullptr);
  EXPECT_NE(one.get(), two.get());
}

TEST(ImageReader, AssigningThroughTheInterfaceCopiesNothing) {
  const ImageFolder folder;
  const auto one = ReaderOf(folder.Put(QXT("a.bmp"), BmpFile(2, kBgr)));
  const auto two = ReaderOf(folder.Put(QXT("a.tga"), TgaFile(2, kBgra)));
  *one = *two;
  EXPECT_EQ(ReadRaw(*one), Buffer(kBgr));
}

TEST(ImageReader, TheFactoryGivesNullWithoutMemory) {
  const support::FailAllocation fail(0);
  EXPECT_EQ(QXVCOMMONLIB_GetImageReader(), nullptr);
  EXPECT_TRUE(fail.Refused());
}

TEST(ImageReaderMalformed, LackOfMemoryHandsNothingOut) {
  const ImageFolder folder;
  for (const Sample& sample : Samples()) {
    const auto reader = ReaderOf(folder.Put(sample.name, sample.file));
    const QXVPixelLayout output{QXV_LAYOUT_VUY, 3, 2, 1};
    EXPECT_EQ(reader->SetOutputLayout(&output), 0);
    const std::size_t arrays = support::LiveArrays();
    bool refused = true;
    for (std::size_t index = 0; refused; ++index) {
      unsigned char* buffer = nullptr;
      int status = 0;
      bool thrown = false;
      {
        const support::FailAllocation fail(index);
        try {
          status = reader->ReadFrame(0, &buffer);
        } catch (const std::bad_alloc&) {
          thrown = true;
        }
        refused = fail.Refused();
      }
      EXPECT_TRUE(refused ? thrown || status != 0 : status == 0) << support::Printable(sample.name) << ' ' << index;
      EXPECT_EQ(buffer == nullptr, refused) << support::Printable(sample.name) << ' ' << index;
      delete[] buffer;
      EXPECT_EQ(support::LiveArrays(), arrays) << support::Printable(sample.name) << ' ' << index;
    }
  }
}

}  // namespace

// free_image_absent_test.cpp - a build without FreeImage.

#include "image/free_image.h"
#include "image/image_files.h"
#include "image/picture_samples.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

TEST(FreeImageAbsent, AnswersMinusOne) {
  const support::TempFolder folder;
  const support::Text name = folder.File(QXT("a.png"));
  ASSERT_TRUE(support::WriteBytes(name, picture_files::Sample("24-bit.png")));
  qxv::CQXVFreeImage image;
  EXPECT_EQ(image.Open(name.c_str()), 0xFFFFFFFFu);
  EXPECT_FALSE(image.IsOpen());
  EXPECT_EQ(image.FrameCount(), 0u);
  qxv::Picture picture;
  EXPECT_EQ(image.Frame(0, 4, picture), 0x89601A11u);
}

TEST(FreeImageAbsent, TheReaderHasNoPicturesOfItsTypes) {
  using namespace image_test;
  const ImageFolder folder;
  for (const auto* name : {QXT("a.png"), QXT("a.tif"), QXT("a.gif")}) {
    for (const char* sample : {"image/24-bit.png", "image/24-bit.tif", "image/still.gif"}) {
      const auto reader = ReaderOf(folder.Put(name, SampleFile(sample)));
      EXPECT_EQ(InfoEx(*reader), (Info{0xFFFFFFFF, kUntouched})) << support::Printable(name) << ' ' << sample;
      EXPECT_EQ(ReadRaw(*reader), Refusal(0xFFFFFFFF)) << support::Printable(name) << ' ' << sample;
      EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}), Refusal(0xFFFFFFFF)) << support::Printable(name) << ' ' << sample;
    }
  }
}

}  // namespace

// free_image_absent_test.cpp - a build without FreeImage.

#include "image/free_image.h"
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

}  // namespace

// image_writer_limits_test.cpp - shapes of what the writer is given that no buffer has.

#include "image/image_files.h"

#include <gtest/gtest.h>

#include <new>

namespace {

using namespace image_test;

TEST(ImageWriter, InputsOfTooManyBytesAreTooMuchMemory) {
  const ImageFolder folder;
  const auto writer = NewWriter();
  const QXVImageInfo target{0, 1, QXV_LAYOUT_BGR, 2, 2, 0, 0};
  ASSERT_EQ(writer->Create(folder.Name(QXT("a.bmp")).c_str(), &target), 0);
  const QXVPixelLayout shapes[] = {
      {4, INT_MAX, 1, 0}, {4, 1, INT_MAX, 0},       {1, 1 << 29, 1, 0},
      {8, 1, 1, INT_MAX}, {4, INT_MAX, INT_MAX, 9}, {0x40000000, INT_MAX, INT_MAX, INT_MAX},
  };
  const unsigned char byte = 0;
  for (const QXVPixelLayout& shape : shapes) {
    ASSERT_EQ(writer->SetInputLayout(&shape), 0);
    EXPECT_THROW((void)writer->WriteFrame(0, &byte), std::bad_alloc) << shape.nWidth << ' ' << shape.nHeight;
  }
  const QXVPixelLayout unknown{32, INT_MAX, INT_MAX, INT_MAX};
  ASSERT_EQ(writer->SetInputLayout(&unknown), 0);
  EXPECT_EQ(Code(writer->WriteFrame(0, &byte)), 0x89601A17u);
  EXPECT_FALSE(folder.Has(QXT("a.bmp")));
}

}  // namespace

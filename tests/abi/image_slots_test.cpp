// image_slots_test.cpp - the order of the virtual functions of the image interfaces, frozen: applications call by slot.

#include "qxv/image.h"

#include "abi/slots.h"

#include <gtest/gtest.h>

namespace {

using abi_test::SlotOf;

TEST(ImageSlots, ReaderFunctionsStandInTheirOrder) {
  EXPECT_EQ(SlotOf(&CQXVImageReader::SetFile), 1);
  EXPECT_EQ(SlotOf(&CQXVImageReader::Close), 2);
  EXPECT_EQ(SlotOf(&CQXVImageReader::GetImageInfoEx), 3);
  EXPECT_EQ(SlotOf(&CQXVImageReader::GetImageInfo), 4);
  EXPECT_EQ(SlotOf(&CQXVImageReader::ReadRawFrame), 5);
  EXPECT_EQ(SlotOf(&CQXVImageReader::SetOutputLayout), 6);
  EXPECT_EQ(SlotOf(&CQXVImageReader::ReadFrame), 7);
}

TEST(ImageSlots, WriterFunctionsStandInTheirOrder) {
  EXPECT_EQ(SlotOf(&CQXVImageWriter::Create), 1);
  EXPECT_EQ(SlotOf(&CQXVImageWriter::Close), 2);
  EXPECT_EQ(SlotOf(&CQXVImageWriter::SetInputLayout), 3);
  EXPECT_EQ(SlotOf(&CQXVImageWriter::WriteFrame), 4);
  EXPECT_EQ(SlotOf(&CQXVImageWriter::WriteRawFrame), 5);
}

static_assert(sizeof(CQXVImageReader) == sizeof(void*) && sizeof(CQXVImageWriter) == sizeof(void*));

}  // namespace

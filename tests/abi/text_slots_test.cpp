// text_slots_test.cpp - the order of the virtual functions of the text file interfaces, frozen: applications call by slot.

#include "qxv/text_file.h"
#include "qxv/unicode_ansi_file.h"

#include "abi/slots.h"

#include <gtest/gtest.h>

namespace {

using abi_test::SlotOf;
using Fields = CQXArray<CQXString, CQXString&>;

TEST(TextSlots, TextFileFunctionsStandInTheirOrder) {
  using File = CQXVtxtRW;
  EXPECT_EQ(SlotOf(&File::Open), 1);
  EXPECT_EQ(SlotOf(&File::FindAndReadLine), 2);
  EXPECT_EQ(SlotOf(&File::ReadFields), 3);
  EXPECT_EQ(SlotOf(&File::ReadLine), 4);
  EXPECT_EQ(SlotOf(&File::GetLineCount), 5);
  EXPECT_EQ(SlotOf(&File::FindLine), 6);
  EXPECT_EQ(SlotOf(static_cast<int (File::*)(const QXChar*, const QXChar*)>(&File::WriteLine)), 7);
  EXPECT_EQ(SlotOf(static_cast<int (File::*)(const Fields&, QXChar)>(&File::WriteLine)), 8);
  EXPECT_EQ(SlotOf(static_cast<int (File::*)(const QXChar*)>(&File::WriteLine)), 9);
  EXPECT_EQ(SlotOf(&File::Clear), 10);
  EXPECT_EQ(SlotOf(&File::Close), 11);
}

TEST(TextSlots, UnicodeAnsiFileFunctionsStandInTheirOrder) {
  using File = CQXVUnicodeAnsiFile;
  EXPECT_EQ(SlotOf(&File::Create), 1);
  EXPECT_EQ(SlotOf(&File::Reset), 2);
  EXPECT_EQ(SlotOf(&File::Open), 3);
  EXPECT_EQ(SlotOf(&File::WriteLine), 4);
  EXPECT_EQ(SlotOf(&File::ReadLine), 5);
  EXPECT_EQ(SlotOf(&File::Convert), 6);
  EXPECT_EQ(SlotOf(&File::Close), 7);
}

static_assert(sizeof(CQXVtxtRW) == sizeof(void*) && sizeof(CQXVUnicodeAnsiFile) == sizeof(void*));

}  // namespace

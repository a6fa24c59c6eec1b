// rows_test.cpp - sizes of pictures, and rows between files and memory.

#include "image/rows.h"

#include "image/picture_codec.h"
#include "support/file_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using qxv::PixelBytes;
using qxv::RowOrder;
using qxv::RowShape;

TEST(PixelBytes, AreExactUpToTheLargestSides) {
  EXPECT_EQ(PixelBytes(0, 0, 4), 0u);
  EXPECT_EQ(PixelBytes(0, INT_MAX, 4), 0u);
  EXPECT_EQ(PixelBytes(3, 2, 3), 18u);
  EXPECT_EQ(PixelBytes(65536, 65536, 3), 12'884'901'888u) << "0 in 32 bits";
  EXPECT_EQ(PixelBytes(0x55555556, 1, 3), 4'294'967'298u) << "2 in 32 bits";
  EXPECT_EQ(PixelBytes(INT_MAX, INT_MAX, 4), 18'446'744'056'529'682'436u);
}

TEST(PixelBytes, OfNegativeSidesAreMoreThanAnythingHolds) {
  EXPECT_EQ(PixelBytes(-1, 1, 3), UINT64_MAX);
  EXPECT_EQ(PixelBytes(1, -1, 3), UINT64_MAX);
  EXPECT_EQ(PixelBytes(INT_MIN, 0, 3), UINT64_MAX);
  EXPECT_EQ(PixelBytes(INT_MIN, INT_MIN, 1), UINT64_MAX);
}

TEST(Rows, BytesOfRowsLeavesOutTheLastPadding) {
  EXPECT_EQ(qxv::BytesOfRows({5, 3, RowOrder::BottomUp, 3}), 21u);
  EXPECT_EQ(qxv::BytesOfRows({5, 1, RowOrder::BottomUp, 3}), 5u);
  EXPECT_EQ(qxv::BytesOfRows({5, 0, RowOrder::BottomUp, 3}), 0u);
  EXPECT_EQ(qxv::BytesOfRows({0, 9, RowOrder::BottomUp, 0}), 0u);
}

struct Row {
  const char* what;
  RowShape shape;
  std::string file;
  std::string memory;
};

const Row kRows[] = {
    {"top-down", {2, 3, RowOrder::TopDown}, "aabbcc", "aabbcc"},
    {"bottom-up", {2, 3, RowOrder::BottomUp}, "aabbcc", "ccbbaa"},
    {"padding", {2, 2, RowOrder::TopDown, 2}, std::string("aa\0\0bb\0\0", 8), "aabb"},
    {"padding, bottom-up", {3, 3, RowOrder::BottomUp, 1}, std::string("aaa\0bbb\0ccc\0", 12), "cccbbbaaa"},
    {"one row", {4, 1, RowOrder::BottomUp}, "abcd", "abcd"},
    {"no rows", {4, 0, RowOrder::BottomUp}, "", ""},
    {"rows of nothing", {0, std::size_t{1} << 40, RowOrder::BottomUp}, "", ""},
};

TEST(Rows, AreReadInTheirOrder) {
  const support::TempFolder folder;
  const auto name = folder.File(QXT("a.bin"));
  for (const Row& row : kRows) {
    ASSERT_TRUE(support::WriteBytes(name, row.file));
    qxv::FileReader in;
    ASSERT_EQ(in.Open(name.c_str()), 0u);
    std::string memory(row.memory.size(), '?');
    EXPECT_TRUE(ReadRows(in, row.shape, reinterpret_cast<unsigned char*>(memory.data()))) << row.what;
    EXPECT_EQ(memory, row.memory) << row.what;
  }
}

TEST(Rows, MissingBytesButTheLastPaddingAreToldOf) {
  const support::TempFolder folder;
  const auto name = folder.File(QXT("a.bin"));
  for (const Row& row : kRows) {
    const std::size_t needed = BytesOfRows(row.shape);
    for (std::size_t size = 0; size < row.file.size(); ++size) {
      ASSERT_TRUE(support::WriteBytes(name, row.file.substr(0, size)));
      qxv::FileReader in;
      ASSERT_EQ(in.Open(name.c_str()), 0u);
      std::string memory(row.memory.size(), '?');
      EXPECT_EQ(ReadRows(in, row.shape, reinterpret_cast<unsigned char*>(memory.data())), size >= needed)
          << row.what << ' ' << size;
    }
  }
}

TEST(Rows, AreWrittenInTheirOrder) {
  const support::TempFolder folder;
  const auto name = folder.File(QXT("a.bin"));
  for (const Row& row : kRows) {
    {
      qxv::FileWriter out;
      ASSERT_EQ(out.Open(name.c_str()), 0u);
      WriteRows(out, row.shape, support::BytesOf(row.memory).data());
    }
    EXPECT_EQ(support::ReadBytes(name), row.file) << row.what;
  }
}

TEST(Rows, AreCopiedInTheirOrder) {
  const std::string source = "aabbcc";
  std::string target(6, '?');
  qxv::CopyRows({2, 3, RowOrder::BottomUp}, support::BytesOf(source).data(), reinterpret_cast<unsigned char*>(target.data()));
  EXPECT_EQ(target, "ccbbaa");
  qxv::CopyRows({3, 2, RowOrder::TopDown}, support::BytesOf(source).data(), reinterpret_cast<unsigned char*>(target.data()));
  EXPECT_EQ(target, "aabbcc");
  qxv::CopyRows({0, std::size_t{1} << 40, RowOrder::BottomUp}, nullptr, nullptr);
}

}  // namespace

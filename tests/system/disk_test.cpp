// disk_test.cpp - sizes of drives and their texts.

#include "qxv/disk.h"

#include "support/temp_folder.h"
#include "support/text.h"
#include "system/disk_size.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using support::Text;

Text SizeText(std::int64_t bytes) { return support::TextOf(qxv::DiskSizeText(bytes)); }

constexpr std::int64_t kKilo = 1024;
constexpr std::int64_t kMega = 1'048'576;
constexpr std::int64_t kGiga = 1'073'741'824;
constexpr std::int64_t kTera = 1'099'511'627'776;

TEST(Disk, SizesAsTexts) {
  const struct {
    std::int64_t bytes;
    const QXChar* text;
  } rows[] = {
      {0, QXT("0")},
      {1, QXT("1")},
      {1023, QXT("1023")},
      {1024, QXT("1024")},
      {1025, QXT("1KB")},
      {2047, QXT("1KB")},
      {2048, QXT("2KB")},
      {kMega - 1, QXT("1023KB")},
      {kMega + 1, QXT("  1.0MB")},
      {1536 * kKilo, QXT("  1.5MB")},
      {10 * kMega, QXT(" 10.0MB")},
      {100 * kMega, QXT("100.0MB")},
      {kGiga - 1, QXT("1024.0MB")},
      {kGiga + 1, QXT("  1.0GB")},
      {3 * kGiga / 2, QXT("  1.5GB")},
      {1023 * kGiga, QXT("1023.0GB")},
      {kTera + 1, QXT("  1.0TB")},
      {3 * kTera / 2, QXT("  1.5TB")},
      {2048 * kTera, QXT("2048.0TB")},
      {INT64_MAX, QXT("8388608.0TB")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SizeText(row.bytes), row.text) << row.bytes;
  }
}

TEST(DiskKept, AFullUnitStandsInTheUnitBelow) {
  EXPECT_EQ(SizeText(kKilo), QXT("1024"));
  EXPECT_EQ(SizeText(kMega), QXT("1024KB"));
  EXPECT_EQ(SizeText(kGiga), QXT("1024.0MB"));
  EXPECT_EQ(SizeText(kTera), QXT("1024.0GB"));
}

TEST(Disk, OnlyTheFirstCharacterOfThePathCounts) {
  const support::TempFolder folder;
  const Text letter = folder.Path().substr(0, 1);
  const QXInt64 total = QXVGetDiskTotalSpace(folder.Path().c_str());
  EXPECT_GT(total, 0);
  EXPECT_EQ(support::TextOf(QXVGetDiskTotalSpaceString(folder.Path().c_str())), SizeText(total));
  for (const Text& path : {letter, letter + QXT(":"), letter + QXT(":\\no such folder\\x.avi"), letter + QXT("xyz")}) {
    EXPECT_EQ(QXVGetDiskTotalSpace(path.c_str()), total) << support::Printable(path);
    EXPECT_GT(QXVGetDiskFreeSpace(path.c_str()), 0) << support::Printable(path);
    EXPECT_LE(QXVGetDiskFreeSpace(path.c_str()), total) << support::Printable(path);
    EXPECT_NE(support::TextOf(QXVGetDiskFreeSpaceString(path.c_str())), QXT("0"));
    EXPECT_EQ(QXVGetDriveType(path.c_str()), QXVGetDriveType(letter.c_str())) << support::Printable(path);
    EXPECT_GE(QXVGetDriveType(path.c_str()), 2u) << support::Printable(path);
  }
}

TEST(Disk, PathsWithoutADriveGiveNothing) {
  for (const QXChar* path :
       {QXT("\\\\server\\share\\a.avi"), QXT("/tmp"), QXT("\\a"), QXT("1"), QXT(" C:\\"), QXT("\u4E2D"), QXT("Q:\\"), QXT("q")}) {
    EXPECT_EQ(QXVGetDiskTotalSpace(path), 0) << support::Printable(path);
    EXPECT_EQ(QXVGetDiskFreeSpace(path), 0) << support::Printable(path);
    EXPECT_EQ(support::TextOf(QXVGetDiskTotalSpaceString(path)), QXT("0"));
    EXPECT_EQ(support::TextOf(QXVGetDiskFreeSpaceString(path)), QXT("0"));
    EXPECT_EQ(QXVGetDriveType(path), 1u) << support::Printable(path);
  }
}

TEST(Disk, NullAndEmptyGiveNothing) {
  for (const QXChar* path : {static_cast<const QXChar*>(nullptr), QXT("")}) {
    EXPECT_EQ(QXVGetDiskTotalSpace(path), 0);
    EXPECT_EQ(QXVGetDiskFreeSpace(path), 0);
    EXPECT_EQ(support::TextOf(QXVGetDiskTotalSpaceString(path)), QXT("0"));
    EXPECT_EQ(support::TextOf(QXVGetDiskFreeSpaceString(path)), QXT("0"));
    EXPECT_EQ(QXVGetDriveType(path), 0u);
  }
}

}  // namespace

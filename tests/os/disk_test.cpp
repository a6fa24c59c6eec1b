// disk_test.cpp - drives by their letter: what holds on both systems.

#include "os/disk.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace qxv::os;

// The drive of the temporary folder is there on every system.
QXChar PresentDrive() {
  static const support::TempFolder folder;
  return folder.Path()[0];
}

TEST(Disk, APresentDriveHasItsSizes) {
  const support::TempFolder folder;
  DiskSpace space{};
  ASSERT_EQ(GetDiskSpace(folder.Path()[0], space), kErrorNone);
  const std::filesystem::path root = folder.Native().root_path();
  const std::filesystem::space_info expected = std::filesystem::space(root);
  EXPECT_EQ(static_cast<std::uintmax_t>(space.total), expected.capacity);
  EXPECT_GT(space.free, 0);
  EXPECT_LE(space.free, space.total);
  EXPECT_GE(static_cast<std::uintmax_t>(space.free) + (std::uintmax_t{1} << 30), expected.available) << "others write meanwhile";
}

TEST(Disk, TheCaseOfTheLetterDoesNotMatter) {
  DiskSpace upper{};
  DiskSpace lower{};
  const QXChar letter = PresentDrive();
  ASSERT_EQ(GetDiskSpace(static_cast<QXChar>(letter & ~0x20), upper), kErrorNone);
  ASSERT_EQ(GetDiskSpace(static_cast<QXChar>(letter | 0x20), lower), kErrorNone);
  EXPECT_EQ(upper.total, lower.total);
  EXPECT_EQ(GetDriveKind(static_cast<QXChar>(letter & ~0x20)), GetDriveKind(static_cast<QXChar>(letter | 0x20)));
}

TEST(Disk, APresentDriveIsOfSomeKind) {
  EXPECT_NE(GetDriveKind(PresentDrive()), DriveKind::None);
  EXPECT_NE(GetDriveKind(PresentDrive()), DriveKind::Unknown);
}

TEST(Disk, ALetterWithoutADriveHasNothing) {
  DiskSpace space{1, 1};
  EXPECT_NE(GetDiskSpace(QXT('Q'), space), kErrorNone);
  EXPECT_EQ(space.total, 0);
  EXPECT_EQ(space.free, 0);
  EXPECT_EQ(GetDriveKind(QXT('Q')), DriveKind::None);
}

TEST(Disk, WhatIsNoLetterIsNoDrive) {
  for (const int unit :
       {0, 1, 0x20, 0x2E, 0x2F, 0x30, 0x39, 0x3A, 0x3F, 0x40, 0x5B, 0x5C, 0x60, 0x7B, 0xE9, 0x4E2D, 0xD800, 0xFFFF}) {
    DiskSpace space{1, 1};
    EXPECT_NE(GetDiskSpace(static_cast<QXChar>(unit), space), kErrorNone) << unit;
    EXPECT_EQ(space.total, 0) << unit;
    EXPECT_EQ(space.free, 0) << unit;
    EXPECT_EQ(GetDriveKind(static_cast<QXChar>(unit)), DriveKind::None) << unit;
  }
}

}  // namespace

// file_pieces_posix_test.cpp - full disks, pipes and devices, as only Linux has them.

#include "streams/file_pieces.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace {

TEST(FileWriterKept, AFullDiskIsNotReported) {
  qxv::FileWriter out;
  ASSERT_EQ(out.Open(u"/dev/full"), 0u);
  const std::vector<unsigned char> bytes(3 * qxv::kFilePiece, 1);
  out.Write(bytes);
  out.Zeros(10);
}

TEST(FileReader, PipesAndDevicesAreRefusedWithoutWaiting) {
  const support::TempFolder folder;
  ASSERT_EQ(std::system(("mkfifo '" + (folder.Native() / "pipe.bmp").string() + "'").c_str()), 0);
  qxv::FileReader pipe, zeros;
  EXPECT_NE(pipe.Open(folder.File(u"pipe.bmp").c_str()), 0u);
  EXPECT_NE(zeros.Open(u"/dev/zero"), 0u);
}

}  // namespace

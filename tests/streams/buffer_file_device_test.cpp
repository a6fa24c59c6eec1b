// buffer_file_device_test.cpp - CQXVBufferFileRW on what only Linux has: a full device, pipes, streams of folders, descriptors.

#include "qxv/buffer_file.h"

#include "support/buffer_file_fixture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

namespace {

using namespace streams_test;
using support::TempFolder;
using support::Text;
using support::WriteBytes;

std::ptrdiff_t OpenDescriptors() {
  const std::filesystem::directory_iterator folder("/proc/self/fd");
  return std::distance(begin(folder), end(folder));
}

TEST(BufferFileDevice, AFullDeviceTakesEverythingAndKeepsNothing) {
  const std::vector<unsigned char> bytes(1024, 'x');
  const std::ptrdiff_t before = OpenDescriptors();
  {
    const BufferFile named = NewBufferFile();
    ASSERT_EQ(named->Open(QXT("Z:\\dev\\full"), 0, 1024), 1);
    const BufferFile stream = NewBufferFile();
    ASSERT_EQ(stream->Open(std::fopen("/dev/full", "wb"), 0, 1024), 1);
    for (int i = 0; i < 100; ++i) {
      EXPECT_EQ(named->Write(bytes.data(), 1024), 1024u);
      EXPECT_EQ(stream->Write(bytes.data(), 1024), 1024u);
    }
    EXPECT_EQ(named->Close(), 1);
    EXPECT_EQ(stream->Close(), 1);
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST(BufferFileDevice, NoDescriptorIsLeftOpen) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  const std::ptrdiff_t before = OpenDescriptors();
  for (const OpenedBy way : kAllWays) {
    SCOPED_TRACE(static_cast<int>(way));
    for (const bool forReading : {true, false}) {
      for (const unsigned int size : {1023u, 1024u}) {
        OpenedFile file = OpenFile(way, path, forReading, size);
        EXPECT_EQ(file.opened, size == 1024 ? 1 : 0);
        if (forReading) {
          EXPECT_EQ(file->Close(), 1);
        }
        file.file.reset();
        file.hostFile.reset();
        EXPECT_EQ(OpenDescriptors(), before);
      }
    }
  }
}

TEST(BufferFileDevice, AStreamOfAFolderIsRefused) {
  const TempFolder folder;
  std::FILE* stream = std::fopen(folder.Native().c_str(), "rb");
  ASSERT_NE(stream, nullptr);
  const BufferFile file = NewBufferFile();
  EXPECT_EQ(file->Open(stream, 1, 1024), 0);
  EXPECT_EQ(std::fclose(stream), 0);
}

TEST(BufferFileDevice, ReadersOfPipesAndDevicesAreRefusedByName) {
  const TempFolder folder;
  ASSERT_EQ(std::system(("mkfifo '" + (folder.Native() / "pipe").string() + "'").c_str()), 0);
  const BufferFile file = NewBufferFile();
  EXPECT_EQ(file->Open(folder.File(QXT("pipe")).c_str(), 1, 1024), 0);
  EXPECT_EQ(file->Open(QXT("Z:\\dev\\zero"), 1, 1024), 0);
}

TEST(BufferFileDevice, AStreamThatCannotSeekHasNoReadableBytes) {
  std::FILE* pipe = ::popen("echo text", "r");
  ASSERT_NE(pipe, nullptr);
  const BufferFile file = NewBufferFile();
  EXPECT_EQ(file->Open(pipe, 1, 1024), 1);
  char byte = 0;
  EXPECT_EQ(file->Read(byte), 0u);
  EXPECT_EQ(file->Close(), 1);
}

}  // namespace

// image_reader_posix_test.cpp - the reader on files whose length is not what the system first said: /proc and /sys have some.

#include "image/image_files.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace image_test;

struct Strange {
  const char* path;
  std::uintmax_t length;  // what the system says; what is read is something else, and not empty
  const char* what;
};

constexpr Strange kShrinks = {"/sys/devices/system/cpu/online", 4096, "a file with fewer bytes than its length says"};
constexpr Strange kGrows = {"/proc/version", 0, "a file with more bytes than its length says"};

bool IsHere(const Strange& file) {
  std::error_code error;
  return std::filesystem::file_size(file.path, error) == file.length && !error;
}

void ExpectCannotRead(const Strange& file) {
  if (!IsHere(file)) {
    GTEST_SKIP() << "this system has no " << file.path << ", " << file.what;
  }
  const ImageFolder folder;
  for (const auto* name : {QXT("a.png"), QXT("a.tif"), QXT("a.gif")}) {
    std::filesystem::create_symlink(file.path, support::NativePath(folder.Name(name)));
    const auto reader = ReaderOf(folder.Name(name));
    EXPECT_EQ(InfoEx(*reader), (Info{0x89601A15, kUntouched})) << support::Printable(name);
    EXPECT_EQ(ReadRaw(*reader), Refusal(0x89601A15)) << support::Printable(name);
    EXPECT_EQ(ReadAs(*reader, {4, 1, 1, 0}), Refusal(0x89601A15)) << support::Printable(name);
  }
}

TEST(ImageReaderPosix, AFileThatShrinksWhileItIsRead) { ExpectCannotRead(kShrinks); }

TEST(ImageReaderPosix, AFileThatGrowsWhileItIsRead) { ExpectCannotRead(kGrows); }

}  // namespace

// text_files_posix_test.cpp - text files on what only Linux can show: full disks, devices, another ANSI code page.

#include "os/code_page.h"
#include "qxv/factories.h"
#include "qxv/text_file.h"
#include "qxv/unicode_ansi_file.h"
#include "streams/text_bytes.h"
#include "support/full_disk.h"
#include "support/temp_folder.h"
#include "support/unprivileged.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

namespace {

using support::MarkedUtf16;
using support::ReadBytes;
using support::Text;
using support::TextOf;

struct Release {
  void operator()(CQXVObject* object) const { QXV_DeleteTxtRW(object); }
};
using TextFilePtr = std::unique_ptr<CQXVtxtRW, Release>;
using UnicodeAnsiFilePtr = std::unique_ptr<CQXVUnicodeAnsiFile, Release>;

TEST(TextFilesPosix, AConversionThatCannotBeWrittenLeavesTheFile) {
  const support::TempFolder folder;
  const Text name = folder.File(QXT("a.txt"));
  const std::string bytes = std::string(60'000, 'x') + "\r\n\xE9";
  ASSERT_TRUE(support::WriteBytes(name, bytes));
  const UnicodeAnsiFilePtr file(QXV_ConstructUnicodeAnsiFile());
  {
    const support::FileSizeLimit limit(65536);
    EXPECT_NE(file->Open(name.c_str(), EQXV_ENCODING_UNICODE, EQXV_TEXTFILE_READ), 0u);
  }
  EXPECT_TRUE(ReadBytes(name) == bytes);
  CQXString line;
  EXPECT_EQ(file->ReadLine(line), 0) << "nothing is open";
  EXPECT_EQ(file->Open(name.c_str(), EQXV_ENCODING_UNICODE, EQXV_TEXTFILE_READ), 0u);
  EXPECT_TRUE(ReadBytes(name) == MarkedUtf16(Text(60'000, QXT('x')) + QXT("\r\n\u00E9")));
}

TEST(TextFilesPosix, AFullDiskLeavesTheFileAndTellsSo) {
  const support::TempFolder folder;
  const support::SmallDisk disk(folder.Native(), 64);
  if (!disk.Mounted()) {
    GTEST_SKIP() << "a 64 KiB disk needs the right to mount one";
  }
  const Text name = folder.File(QXT("a.txt"));
  const std::string bytes(40'000, 'x');
  ASSERT_TRUE(support::WriteBytes(name, bytes));
  const UnicodeAnsiFilePtr file(QXV_ConstructUnicodeAnsiFile());
  EXPECT_EQ(file->Open(name.c_str(), EQXV_ENCODING_UNICODE, EQXV_TEXTFILE_READ), 112u);
  EXPECT_TRUE(ReadBytes(name) == bytes);

  const TextFilePtr lines(QXV_ConstructTxtRW());
  ASSERT_EQ(lines->Open(name.c_str()), 0);
  const Text written(30'000, QXT('y'));
  const int count = lines->WriteLine(written.c_str());
  EXPECT_GT(count, 0);
  EXPECT_LT(count, 30'000);
  EXPECT_EQ(lines->WriteLine(QXT("z")), 0) << "no room is left";
  EXPECT_TRUE(ReadBytes(name) == bytes + std::string(static_cast<std::size_t>(count), 'y'));
  lines->Close();
}

TEST(TextFilesPosix, AFileWithoutTheRightToItIsNotOpened) {
  const support::TempFolder folder;
  const Text name = folder.File(QXT("a.txt"));
  ASSERT_TRUE(support::WriteBytes(name, "a\r\n"));
  std::filesystem::permissions(folder.Native(), std::filesystem::perms(0755));
  const TextFilePtr lines(QXV_ConstructTxtRW());
  const UnicodeAnsiFilePtr file(QXV_ConstructUnicodeAnsiFile());
  for (const unsigned mode : {0444u, 0000u}) {  // read-only, not even that
    std::filesystem::permissions(support::NativePath(name), std::filesystem::perms(mode));
    const support::Unprivileged rights;
    EXPECT_EQ(lines->Open(name.c_str()), -1) << mode;
    EXPECT_EQ(lines->WriteLine(QXT("b")), 0) << mode;
    for (const unsigned flags : {1u, 2u, 17u, 34u}) {  // reading too asks for the right to write
      EXPECT_EQ(file->Open(name.c_str(), EQXV_ENCODING_UNICODE, flags), 5u) << mode << " " << flags;
    }
  }
  std::filesystem::permissions(support::NativePath(name), std::filesystem::perms(0644));
  EXPECT_EQ(ReadBytes(name), "a\r\n");
}

TEST(TextFilesPosix, ADeviceThatIsAlwaysFullTakesNothingAndHasNoLines) {
  const TextFilePtr lines(QXV_ConstructTxtRW());
  ASSERT_EQ(lines->Open(QXT("/dev/full")), 0);
  CQXString line;
  EXPECT_EQ(lines->WriteLine(QXT("abc")), 0);
  EXPECT_EQ(lines->ReadLine(line), 0);
  EXPECT_EQ(lines->FindLine(QXT("a")), -1);
  lines->Close();
  ASSERT_EQ(lines->Open(QXT("/dev/full")), 0);
  EXPECT_EQ(lines->GetLineCount(), 1);

  const UnicodeAnsiFilePtr file(QXV_ConstructUnicodeAnsiFile());
  ASSERT_EQ(file->Open(QXT("/dev/full"), EQXV_ENCODING_ANSI, EQXV_TEXTFILE_WRITE), 0u);
  file->WriteLine(QXT("abc"));
}

TEST(TextFilesPosix, TheAnsiCodePageMayHaveTwoBytesACharacter) {
  ASSERT_EQ(::setenv("QXV_ACP", "936", 1), 0);
  if (qxv::os::AnsiCodePage() != 936) {
    GTEST_SKIP() << "the code page is read once: run this test in a process of its own, as ctest does";
  }
  const support::TempFolder folder;
  const Text name = folder.File(QXT("a.txt"));
  ASSERT_TRUE(support::WriteBytes(name, "\xD6\xD0 a\r\n\xB9\xFA"));
  const TextFilePtr lines(QXV_ConstructTxtRW());
  ASSERT_EQ(lines->Open(name.c_str()), 0);
  CQXString line;
  EXPECT_EQ(lines->ReadLine(line), 4) << "bytes";
  EXPECT_EQ(TextOf(line), QXT("\u4E2D a"));
  EXPECT_EQ(lines->FindLine(QXT("\u56FD")), 0);
  EXPECT_EQ(lines->WriteLine(QXT("\u4E2D\u56FD\u20AC")), 5) << "bytes";
  lines->Close();
  EXPECT_EQ(ReadBytes(name), "\xD6\xD0 a\r\n\xB9\xFA\xD6\xD0\xB9\xFA\x80\r\n");

  const UnicodeAnsiFilePtr file(QXV_ConstructUnicodeAnsiFile());
  ASSERT_EQ(file->Open(name.c_str(), EQXV_ENCODING_UNICODE, EQXV_TEXTFILE_READ), 0u);
  EXPECT_EQ(ReadBytes(name), MarkedUtf16(QXT("\u4E2D a\r\n\u56FD\u4E2D\u56FD\u20AC\r\n")));
}

}  // namespace

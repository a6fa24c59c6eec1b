// file_test.cpp - opened files: the same answers on both systems.

#include "os/file.h"

#include "support/child_process.h"
#include "support/file_bytes.h"
#include "support/guard_new.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

namespace {

using namespace qxv::os;
using support::ReadBytes;
using support::ReadSome;
using support::TempFolder;
using support::Text;
using support::WriteAll;
using support::WriteBytes;

constexpr OpenOptions kReader{FileAccess::Read, FileDisposition::OpenExisting, kShareRead};
constexpr OpenOptions kWriter{FileAccess::ReadWrite, FileDisposition::CreateAlways, kShareRead};

TEST(File, WritesReadsAndReportsTheEnd) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  File file;
  ASSERT_EQ(file.Open(name.c_str(), kWriter), 0u);
  EXPECT_EQ(WriteAll(file.Handle(), "0123456789"), 0u);
  ASSERT_EQ(SeekInFile(file.Handle(), 4, SeekOrigin::Begin), 0u);
  EXPECT_EQ(ReadSome(file.Handle(), 3), "456");
  EXPECT_EQ(ReadSome(file.Handle(), 100), "789") << "a short read is the end, not an error";
  EXPECT_EQ(ReadSome(file.Handle(), 100), "");
  EXPECT_EQ(file.Close(), 0u);
  EXPECT_EQ(ReadBytes(name), "0123456789");
}

TEST(File, EachDispositionFindsOrMakesTheFile) {
  const struct {
    FileDisposition disposition;
    bool existsBefore;
    ErrorCode error;
    const char* bytesAfter;
  } rows[] = {
      {FileDisposition::OpenExisting, true, 0, "old"}, {FileDisposition::OpenExisting, false, 2, "<cannot be read>"},
      {FileDisposition::OpenAlways, true, 0, "old"},   {FileDisposition::OpenAlways, false, 0, ""},
      {FileDisposition::CreateAlways, true, 0, ""},    {FileDisposition::CreateAlways, false, 0, ""},
      {FileDisposition::CreateNew, true, 80, "old"},   {FileDisposition::CreateNew, false, 0, ""},
  };
  for (const auto& row : rows) {
    for (const FileAccess access : {FileAccess::Read, FileAccess::Write, FileAccess::ReadWrite}) {
      SCOPED_TRACE(testing::Message() << "disposition " << static_cast<int>(row.disposition) << " exists " << row.existsBefore
                                      << " access " << static_cast<int>(access));
      const TempFolder folder;
      const Text name = folder.File(QXT("a.bin"));
      if (row.existsBefore) {
        ASSERT_TRUE(WriteBytes(name, "old"));
      }
      File file;
      EXPECT_EQ(file.Open(name.c_str(), {access, row.disposition, kShareNone}), row.error);
      EXPECT_EQ(file.IsOpen(), row.error == 0);
      (void)file.Close();
      EXPECT_EQ(ReadBytes(name), row.bytesAfter);
    }
  }
}

TEST(File, AccessIsWhatWasAskedFor) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "abc"));
  File file;
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::Write, FileDisposition::OpenExisting, kShareRead}), 0u);
  EXPECT_EQ(ReadSome(file.Handle(), 1), "<error 5>");
  FileView view;
  EXPECT_EQ(view.Map(file.Handle()), 5u);
  ASSERT_EQ(file.Open(name.c_str(), kReader), 0u);
  EXPECT_EQ(WriteAll(file.Handle(), "x"), 5u);
  EXPECT_EQ(CutFile(file.Handle()), 5u);
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::Append, FileDisposition::OpenExisting, kShareRead}), 0u);
  EXPECT_EQ(ReadSome(file.Handle(), 1), "<error 5>");
  (void)file.Close();
  EXPECT_EQ(ReadBytes(name), "abc");
}

TEST(File, SeeksIn64BitsAndNotBeforeTheStart) {
  const TempFolder folder;
  File file;
  ASSERT_EQ(file.Open(folder.File(QXT("a.bin")).c_str(), kWriter), 0u);
  ASSERT_EQ(WriteAll(file.Handle(), "0123456789"), 0u);
  std::int64_t position = -1;
  EXPECT_EQ(SeekInFile(file.Handle(), -3, SeekOrigin::End, &position), 0u);
  EXPECT_EQ(position, 7);
  EXPECT_EQ(SeekInFile(file.Handle(), 2, SeekOrigin::Current, &position), 0u);
  EXPECT_EQ(position, 9);
  EXPECT_EQ(SeekInFile(file.Handle(), -1, SeekOrigin::Begin, &position), 131u);
  EXPECT_EQ(SeekInFile(file.Handle(), -10, SeekOrigin::Current, &position), 131u);
  EXPECT_EQ(position, 9) << "a refused seek tells nothing";
  EXPECT_EQ(SeekInFile(file.Handle(), 0, SeekOrigin::Current, &position), 0u);
  EXPECT_EQ(position, 9) << "and moves nothing";
  EXPECT_EQ(SeekInFile(file.Handle(), 0x140000000, SeekOrigin::Begin, &position), 0u);
  EXPECT_EQ(position, 0x140000000);
  std::int64_t length = 0;
  EXPECT_EQ(GetFileLength(file.Handle(), length), 0u);
  EXPECT_EQ(length, 10);
}

TEST(File, CutsAndExtendsAtThePosition) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  File file;
  ASSERT_EQ(file.Open(name.c_str(), kWriter), 0u);
  ASSERT_EQ(WriteAll(file.Handle(), "0123456789"), 0u);
  ASSERT_EQ(SeekInFile(file.Handle(), 4, SeekOrigin::Begin), 0u);
  EXPECT_EQ(CutFile(file.Handle()), 0u);
  ASSERT_EQ(SeekInFile(file.Handle(), 6, SeekOrigin::Begin), 0u);
  EXPECT_EQ(CutFile(file.Handle()), 0u);
  (void)file.Close();
  EXPECT_EQ(ReadBytes(name), std::string("0123\0\0", 6));
}

TEST(File, LengthAbove4GiBIsExact) {
  const TempFolder folder;
  File file;
  ASSERT_EQ(file.Open(folder.File(QXT("sparse.bin")).c_str(), kWriter), 0u);
  ASSERT_EQ(SeekInFile(file.Handle(), 0x100000005, SeekOrigin::Begin), 0u);
  ASSERT_EQ(CutFile(file.Handle()), 0u);
  std::int64_t length = 0;
  EXPECT_EQ(GetFileLength(file.Handle(), length), 0u);
  EXPECT_EQ(length, 0x100000005);
  FileInformation information;
  EXPECT_EQ(GetFileInformation(file.Handle(), information), 0u);
  EXPECT_EQ(information.size, 0x100000005u);
}

TEST(File, DuplicateSharesThePositionAndOutlivesTheFirst) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "0123456789"));
  File file;
  ASSERT_EQ(file.Open(name.c_str(), kReader), 0u);
  HANDLE handle = nullptr;
  ASSERT_EQ(DuplicateFile(file.Handle(), handle), 0u);
  File copy(handle);
  EXPECT_NE(copy.Handle(), file.Handle());
  EXPECT_EQ(ReadSome(file.Handle(), 3), "012");
  EXPECT_EQ(ReadSome(copy.Handle(), 3), "345");
  (void)file.Close();
  EXPECT_EQ(ReadSome(copy.Handle(), 9), "6789");
  EXPECT_EQ(WriteAll(copy.Handle(), "x"), 5u) << "with the first one's access";
}

TEST(File, InformationTellsFolderSizeAndIdentity) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  const Text other = folder.File(QXT("b.bin"));
  ASSERT_TRUE(WriteBytes(name, "abc"));
  ASSERT_TRUE(WriteBytes(other, "abc"));
  File first, second, third, opened;
  ASSERT_EQ(first.Open(name.c_str(), kReader), 0u);
  ASSERT_EQ(second.Open(name.c_str(), kReader), 0u);
  ASSERT_EQ(third.Open(other.c_str(), kReader), 0u);
  OpenOptions options = kReader;
  EXPECT_EQ(opened.Open(folder.Path().c_str(), options), 5u) << "a folder is no file";
  options.folder = true;
  options.share = kShareRead | kShareWrite;
  ASSERT_EQ(opened.Open(folder.Path().c_str(), options), 0u);
  FileInformation a, b, c, d;
  ASSERT_EQ(GetFileInformation(first.Handle(), a), 0u);
  ASSERT_EQ(GetFileInformation(second.Handle(), b), 0u);
  ASSERT_EQ(GetFileInformation(third.Handle(), c), 0u);
  ASSERT_EQ(GetFileInformation(opened.Handle(), d), 0u);
  EXPECT_EQ(a.size, 3u);
  EXPECT_EQ(a.attributes & kAttributeFolder, 0u);
  EXPECT_EQ(d.attributes & kAttributeFolder, kAttributeFolder);
  EXPECT_EQ(d.size, 0u);
  EXPECT_TRUE(a.volume == b.volume && a.index == b.index);
  EXPECT_FALSE(a.volume == c.volume && a.index == c.index);
  EXPECT_NE(a.times.written.dwHighDateTime, 0u);
}

TEST(FileView, ShowsTheWholeFileAndOutlivesTheHandle) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  const std::string bytes = std::string(4096, 'p') + "end";
  ASSERT_TRUE(WriteBytes(name, bytes));
  FileView view;
  {
    File file;
    ASSERT_EQ(file.Open(name.c_str(), kReader), 0u);
    ASSERT_EQ(view.Map(file.Handle()), 0u);
  }
  FileView moved = std::move(view);
  EXPECT_TRUE(view.Bytes().empty());
  ASSERT_EQ(moved.Bytes().size(), 4099u);
  EXPECT_EQ(std::string(moved.Bytes().begin(), moved.Bytes().end()), bytes);
  moved.Unmap();
  EXPECT_TRUE(moved.Bytes().empty());
}

TEST(FileView, RefusesAnEmptyFileAndAClosedHandle) {
  const TempFolder folder;
  const Text name = folder.File(QXT("empty.bin"));
  ASSERT_TRUE(WriteBytes(name, ""));
  File file;
  ASSERT_EQ(file.Open(name.c_str(), kReader), 0u);
  FileView view;
  EXPECT_EQ(view.Map(file.Handle()), 1006u);
  EXPECT_EQ(view.Map(INVALID_HANDLE_VALUE), 6u);
  EXPECT_EQ(view.Map(nullptr), 6u);
}

TEST(File, AppendsAtTheEndWhereverThePositionIs) {
  const TempFolder folder;
  const Text name = folder.File(QXT("log.txt"));
  const OpenOptions options{FileAccess::Append, FileDisposition::OpenAlways, kShareRead | kShareWrite};
  File first, second;
  ASSERT_EQ(first.Open(name.c_str(), options), 0u);
  ASSERT_EQ(second.Open(name.c_str(), options), 0u);
  std::int64_t length = -1;
  EXPECT_EQ(GetFileLength(first.Handle(), length), 0u);
  EXPECT_EQ(length, 0) << "an appender can see that the file is new";
  EXPECT_EQ(AppendToFile(first.Handle(), support::BytesOf("one ")), 0u);
  EXPECT_EQ(AppendToFile(second.Handle(), support::BytesOf("two ")), 0u);
  (void)SeekInFile(first.Handle(), 0, SeekOrigin::Begin);
  EXPECT_EQ(AppendToFile(first.Handle(), support::BytesOf("three")), 0u);
  EXPECT_EQ(AppendToFile(first.Handle(), {}), 0u);
  (void)first.Close();
  (void)second.Close();
  EXPECT_EQ(ReadBytes(name), "one two three");
}

TEST(File, AppendingNeedsAHandleForIt) {
  const TempFolder folder;
  File file;
  ASSERT_EQ(file.Open(folder.File(QXT("a.txt")).c_str(), {FileAccess::Read, FileDisposition::OpenAlways, kShareRead}), 0u);
  EXPECT_EQ(AppendToFile(file.Handle(), support::BytesOf("x")), 5u);
  EXPECT_EQ(AppendToFile(INVALID_HANDLE_VALUE, support::BytesOf("x")), 6u);
}

TEST(File, BlocksOfSeveralProcessesDoNotInterleave) {
  const OpenOptions options{FileAccess::Append, FileDisposition::OpenAlways, kShareRead | kShareWrite};
  constexpr int kBlocks = 200;
  constexpr std::size_t kBlock = 1000;
  if (const char* argument = support::ChildArgument()) {
    const std::string text(argument);  // the block's letter, then the ASCII name
    const std::string block = std::string(kBlock - 1, text[0]) + "\n";
    const Text name(text.begin() + 1, text.end());
    File file;
    ASSERT_EQ(file.Open(name.c_str(), options), 0u);
    for (int i = 0; i < kBlocks; ++i) {
      ASSERT_EQ(AppendToFile(file.Handle(), support::BytesOf(block)), 0u);
    }
    return;
  }
  const TempFolder folder;
  const Text name = folder.File(QXT("log.txt"));
  const std::string ascii(name.begin(), name.end());
  {
    support::ChildProcess a("a" + ascii), b("b" + ascii), c("c" + ascii);
    EXPECT_EQ(a.Wait(), 0);
    EXPECT_EQ(b.Wait(), 0);
    EXPECT_EQ(c.Wait(), 0);
  }
  const std::string bytes = ReadBytes(name);
  ASSERT_EQ(bytes.size(), 3 * kBlocks * kBlock);
  for (std::size_t at = 0; at < bytes.size(); at += kBlock) {
    ASSERT_EQ(bytes.substr(at, kBlock), std::string(kBlock - 1, bytes[at]) + "\n") << "at " << at;
  }
}

// A closed number is not among them: Windows may give it to the next object at once.
TEST(FileMalformed, HandlesThatWereNeverOpenAreSixEverywhere) {
  for (const HANDLE handle : {INVALID_HANDLE_VALUE, HANDLE(nullptr), HANDLE(reinterpret_cast<void*>(0x7FFFFF02))}) {
    SCOPED_TRACE(handle);
    std::int64_t number = 0;
    HANDLE copy = nullptr;
    FileInformation information;
    EXPECT_EQ(CloseFile(handle), 6u);
    EXPECT_EQ(ReadSome(handle, 1), "<error 6>");
    EXPECT_EQ(WriteAll(handle, "x"), 6u);
    EXPECT_EQ(SeekInFile(handle, 0, SeekOrigin::Begin), 6u);
    EXPECT_EQ(GetFileLength(handle, number), 6u);
    EXPECT_EQ(CutFile(handle), 6u);
    EXPECT_EQ(DuplicateFile(handle, copy), 6u);
    EXPECT_EQ(copy, INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetFileInformation(handle, information), 6u);
  }
}

TEST(FileMalformed, NamesThatCannotBeOpened) {
  const TempFolder folder;
  ASSERT_TRUE(WriteBytes(folder.File(QXT("file.txt")), "x"));
  const struct {
    const char* what;
    Text name;
    ErrorCode error;
    ErrorCode underWine = error;  // where Wine is less precise than Windows
  } rows[] = {
      {"empty", QXT(""), 3},
      {"40,000 units", Text(40000, QXT('a')), 123},
      {"40,000 units on the drive", folder.File(Text(40000, QXT('a'))), 123},
      {"a component of 256 units", folder.File(Text(256, QXT('a'))), 123, 2},
      {"missing folder", folder.File(QXT("none\\a.txt")), 3},
      {"file as folder", folder.File(QXT("file.txt\\a.txt")), 3},
      {"missing file", folder.File(QXT("none.txt")), 2},
      {"drive without a mapping", QXT("Q:\\a.txt"), 3, 2},
      {"the drive alone", QXT("Z:\\"), 5},
      {"the folder above", folder.File(QXT("..")), 5},
      {"server that is not there", QXT("\\\\qxv-no-such-server\\share\\x.txt"), 53, 3},
  };
  HANDLE file = nullptr;
  EXPECT_EQ(OpenFileNamed(nullptr, kReader, file), 3u);
  EXPECT_EQ(file, INVALID_HANDLE_VALUE);
  for (const auto& row : rows) {
    EXPECT_THAT(OpenFileNamed(row.name.c_str(), kReader, file), testing::AnyOf(row.error, row.underWine)) << row.what;
    EXPECT_EQ(file, INVALID_HANDLE_VALUE) << row.what;
  }
}

TEST(FileMalformed, DotsAreResolvedInTheTextWithoutLookingAtTheFolders) {
  const TempFolder folder;
  ASSERT_TRUE(WriteBytes(folder.File(QXT("a.txt")), "x"));
  for (const QXChar* name : {QXT("none\\..\\a.txt"), QXT(".\\a.txt"), QXT("a.txt\\..\\.\\a.txt"), QXT("\\\\a.txt")}) {
    File file;
    EXPECT_EQ(file.Open(folder.File(name).c_str(), kReader), 0u) << support::Printable(name);
  }
}

TEST(FileMalformed, WithoutMemoryNothingIsOpened) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  for (std::size_t index = 0;; ++index) {
    HANDLE file = nullptr;
    const support::FailAllocation refuse(index);
    const ErrorCode error = OpenFileNamed(name.c_str(), kWriter, file);
    if (!refuse.Refused()) {
      EXPECT_EQ(error, 0u);
      EXPECT_EQ(CloseFile(file), 0u);
      break;
    }
    ASSERT_EQ(error, 8u) << "allocation " << index;
    ASSERT_EQ(file, INVALID_HANDLE_VALUE) << "allocation " << index;
  }
}

TEST(FileMalformed, NullSpansAreRefused) {
  const TempFolder folder;
  File file;
  ASSERT_EQ(file.Open(folder.File(QXT("a.bin")).c_str(), kWriter), 0u);
  std::size_t done = 7;
  EXPECT_EQ(ReadFromFile(file.Handle(), {static_cast<unsigned char*>(nullptr), 5}, done), 87u);
  EXPECT_EQ(done, 0u);
  EXPECT_EQ(WriteToFile(file.Handle(), {static_cast<const unsigned char*>(nullptr), 5}, done), 87u);
  EXPECT_EQ(WriteToFile(file.Handle(), {}, done), 0u);
}

TEST(File, NamesOfEveryScript) {
  const TempFolder folder;
  const Text names[] = {QXT("\u00E9t\u00E9.txt"), QXT("\u4E2D\u6587.txt"), QXT("\U0001F3AC.txt")};
  for (const Text& name : names) {
    File file;
    EXPECT_EQ(file.Open(folder.File(name).c_str(), kWriter), 0u) << support::Printable(name);
    (void)file.Close();
    EXPECT_TRUE(support::Exists(folder.File(name))) << support::Printable(name);
  }
}

TEST(File, OpeningClosesWhatWasOpenAndMovingLeavesNothing) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  File file;
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::Write, FileDisposition::CreateAlways, kShareNone}), 0u);
  ASSERT_EQ(file.Open(name.c_str(), {FileAccess::Write, FileDisposition::CreateAlways, kShareNone}), 0u)
      << "the first handle is closed before the second is made";
  const HANDLE handle = file.Handle();
  File other = std::move(file);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(other.Handle(), handle);
  EXPECT_EQ(other.Release(), handle);
  EXPECT_EQ(other.Close(), 0u) << "nothing to close";
  EXPECT_EQ(ReadSome(other.Handle(), 1), "<error 6>");
  EXPECT_EQ(CloseFile(handle), 0u);
}

}  // namespace

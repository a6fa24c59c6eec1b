// buffer_file_kept_test.cpp - what CQXVBufferFileRW does with positions, adopted files and errors, and keeps doing.

#include "qxv/buffer_file.h"

#include "streams/bytes.h"
#include "support/buffer_file_fixture.h"
#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace streams_test;
using support::ReadBytes;
using support::TempFolder;
using support::Text;
using support::WriteBytes;

// A byte that tells its place, for files of many blocks.
std::string Pattern(std::size_t bytes) {
  std::string pattern(bytes, '\0');
  for (std::size_t i = 0; i < bytes; ++i) {
    pattern[i] = static_cast<char>(i % 251);
  }
  return pattern;
}

std::string Take(OpenedFile& reader, unsigned int count) {
  std::string bytes(count, '?');
  bytes.resize(reader->Read(reinterpret_cast<unsigned char*>(bytes.data()), count));
  return bytes;
}

TEST(BufferFile, SeekingInsideTheBlockReadsAnyPlace) {
  for (const OpenedBy way : kAllWays) {
    SCOPED_TRACE(static_cast<int>(way));
    const TempFolder folder;
    const Text path = folder.File(QXT("a.bin"));
    const std::string pattern = Pattern(500);
    ASSERT_TRUE(WriteBytes(path, pattern));
    OpenedFile reader = OpenReader(path, 1024, way);
    EXPECT_EQ(Take(reader, 1), pattern.substr(0, 1));
    EXPECT_EQ(reader->Seek(100, 0), 1);
    EXPECT_EQ(Take(reader, 4), pattern.substr(100, 4));
    EXPECT_EQ(reader->Seek(-10, 1), 1);
    EXPECT_EQ(Take(reader, 4), pattern.substr(94, 4));
    EXPECT_EQ(reader->Seek(5, 2), 1);
    EXPECT_EQ(Take(reader, 5), pattern.substr(495));
    EXPECT_EQ(reader->Seek(0, 0), 1);
    EXPECT_EQ(Take(reader, 500), pattern);
  }
}

TEST(BufferFile, AWriterPatchesInsideTheBlock) {
  for (const OpenedBy way : kAllWays) {
    SCOPED_TRACE(static_cast<int>(way));
    const TempFolder folder;
    const Text path = folder.File(QXT("a.bin"));
    {
      OpenedFile writer = OpenWriter(path, 1024, way);
      EXPECT_EQ(writer->Write(0), 4u);
      EXPECT_EQ(writer->Write('x'), 1u);
      EXPECT_EQ(writer->Seek(0, 0), 1);
      EXPECT_EQ(writer->Write(0x44434241), 4u);
      EXPECT_EQ(writer->Seek(0, 2), 1);
    }
    EXPECT_EQ(ReadBytes(path), "ABCDx");
  }
}

TEST(BufferFile, AWritersLengthGrowsWithEveryWrite) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  {
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Seek(0, 0), 0) << "nothing there yet";
    for (int length = 4; length <= 400; length += 4) {
      EXPECT_EQ(writer->Write(7), 4u);
      EXPECT_EQ(writer->Seek(length, 0), 0);
      EXPECT_EQ(writer->Seek(length - 1, 0), 1);
      EXPECT_EQ(writer->Seek(0, 2), 1);
    }
    EXPECT_EQ(ReadBytes(path), "") << "all of it is in the block";
    EXPECT_EQ(writer->Close(), 1);
  }
  EXPECT_EQ(ReadBytes(path).size(), 400u) << "closing flushed the last, partial block";
}

TEST(BufferFile, AReaderSeesTheFileFromItsStartWhereverItStood) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  qxv::os::OpenOptions options;
  qxv::os::File handle;
  ASSERT_EQ(handle.Open(path.c_str(), options), 0u);
  ASSERT_EQ(qxv::os::SeekInFile(handle.Handle(), 3, qxv::os::SeekOrigin::Begin), 0u);
  const BufferFile file = NewBufferFile();
  ASSERT_EQ(file->Open(handle.Release(), 1, 1024), 1);
  int number = 0;
  EXPECT_EQ(file->Read(number), 4u);
  EXPECT_EQ(number, 0x44434241);
}

TEST(BufferFile, ClosingClosesAnAdoptedHandle) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  for (const bool byRelease : {false, true}) {
    SCOPED_TRACE(byRelease);
    qxv::os::OpenOptions options;
    qxv::os::File handle;
    ASSERT_EQ(handle.Open(path.c_str(), options), 0u);
    BufferFile file = NewBufferFile();
    ASSERT_EQ(file->Open(handle.Handle(), 1, 1024), 1);
    if (byRelease) {
      file.reset();
    } else {
      EXPECT_EQ(file->Close(), 1);
    }
    EXPECT_EQ(qxv::os::CloseFile(handle.Release()), 6u) << "it is closed already";
  }
}

TEST(BufferFile, ClosingClosesAnAdoptedHostFileAndLeavesTheObject) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  CFile hostFile(path.c_str(), CFile::modeCreate | CFile::modeWrite);
  const BufferFile file = NewBufferFile();
  ASSERT_EQ(file->Open(&hostFile, 0, 1024), 1);
  EXPECT_EQ(file->Write('x'), 1u);
  EXPECT_EQ(file->Close(), 1);
  EXPECT_EQ(hostFile.m_hFile, INVALID_HANDLE_VALUE);
  EXPECT_EQ(ReadBytes(path), "x");
  EXPECT_TRUE(hostFile.Open(path.c_str(), CFile::modeRead)) << "the object can be used again";
}

TEST(BufferFile, OneObjectServesManyFilesInTurn) {
  const TempFolder folder;
  const BufferFile file = NewBufferFile();
  for (int i = 0; i < 5; ++i) {
    const Text path = folder.File(QXT("a.bin"));
    ASSERT_EQ(file->Open(path.c_str(), 0, 1024), 1);
    EXPECT_EQ(file->Write(i), 4u);
    EXPECT_EQ(file->Close(), 1);
    ASSERT_EQ(file->Open(path.c_str(), 1, 2048), 1);
    int number = -1;
    EXPECT_EQ(file->Read(number), 4u);
    EXPECT_EQ(number, i);
    EXPECT_EQ(file->Close(), 1);
  }
}

TEST(BufferFileKept, ResetForgetsWhatIsOpen) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  qxv::os::OpenOptions options;
  qxv::os::File handle;
  ASSERT_EQ(handle.Open(path.c_str(), options), 0u);
  const BufferFile file = NewBufferFile();
  ASSERT_EQ(file->Open(handle.Handle(), 1, 1024), 1);
  unsigned char* block = nullptr;  // the first field
  std::memcpy(&block, reinterpret_cast<const unsigned char*>(file.get()) + sizeof(void*), sizeof block);
  const std::size_t live = support::LiveArrays();
  EXPECT_EQ(file->Reset(), 0);
  EXPECT_EQ(support::LiveArrays(), live);
  delete[] block;  // nobody else will
  int number = 0;
  EXPECT_EQ(file->Read(number), 0u);
  EXPECT_EQ(file->Close(), 1);
  EXPECT_EQ(handle.Close(), 0u) << "still open";
}

TEST(BufferFileKept, ASeekBeforeTheFirstReadIsNotFollowed) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  const std::string pattern = Pattern(3000);
  ASSERT_TRUE(WriteBytes(path, pattern));
  OpenedFile reader = OpenReader(path);
  EXPECT_EQ(reader->Seek(100, 0), 1);
  EXPECT_EQ(Take(reader, 4), pattern.substr(0, 4)) << "the file still stood at its start";
  EXPECT_EQ(reader->Seek(2000, 0), 1);
  EXPECT_EQ(Take(reader, 4), pattern.substr(1024, 4)) << "where the first filling ended";

  OpenedFile atTheEnd = OpenReader(path);
  EXPECT_EQ(atTheEnd->Seek(1020, 0), 1);
  EXPECT_EQ(Take(atTheEnd, 8), std::string(4, '\0') + pattern.substr(0, 4)) << "the end of an empty block is carried over";
}

TEST(BufferFileKept, AFileThatShrinksGivesOldBytes) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  const std::string pattern = Pattern(3000);
  ASSERT_TRUE(WriteBytes(path, pattern));
  OpenedFile reader = OpenReader(path, 1024, OpenedBy::Handle);
  EXPECT_EQ(Take(reader, 1000), pattern.substr(0, 1000));
  std::filesystem::resize_file(support::NativePath(path), 10);
  EXPECT_EQ(Take(reader, 1000), pattern.substr(1000, 24) + pattern.substr(24, 976))
      << "the rest of the block, then its old bytes";
  EXPECT_EQ(Take(reader, 1000), pattern.substr(1000, 24) + pattern.substr(24, 976));
  EXPECT_EQ(Take(reader, 1), "") << "3000 bytes, as at open";
}

TEST(BufferFile, AFileThatShrankBeforeTheFirstReadGivesZeros) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, std::string(3000, 'x')));
  OpenedFile reader = OpenReader(path, 1024, OpenedBy::Handle);
  std::filesystem::resize_file(support::NativePath(path), 10);
  EXPECT_EQ(Take(reader, 100), std::string(10, 'x') + std::string(90, '\0'));
}

TEST(BufferFileKept, AWriterThatWentBackKeepsOnlyWhatIsBeforeThePosition) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  const std::string pattern = Pattern(100);
  for (const bool toTheEndFirst : {false, true}) {
    SCOPED_TRACE(toTheEndFirst);
    {
      OpenedFile writer = OpenWriter(path);
      EXPECT_EQ(writer->Write(reinterpret_cast<const unsigned char*>(pattern.data()), 100), 100u);
      EXPECT_EQ(writer->Seek(0, 0), 1);
      EXPECT_EQ(writer->Write(0x44434241), 4u);
      if (toTheEndFirst) {
        EXPECT_EQ(writer->Seek(0, 2), 1);
      }
    }
    EXPECT_EQ(ReadBytes(path), toTheEndFirst ? "ABCD" + pattern.substr(4) : "ABCD");
  }
}

TEST(BufferFileKept, TheEndOfAFullBlockLiesOutsideIt) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  const std::string pattern = Pattern(1024);
  for (const unsigned int size : {1024u, 1025u}) {
    SCOPED_TRACE(size);
    {
      OpenedFile writer = OpenWriter(path, size);
      EXPECT_EQ(writer->Write(reinterpret_cast<const unsigned char*>(pattern.data()), 1024), 1024u);
      EXPECT_EQ(writer->Seek(0, 0), 1);
      EXPECT_EQ(writer->Write(0x44434241), 4u);
      EXPECT_EQ(writer->Seek(0, 2), 1);
    }
    EXPECT_EQ(ReadBytes(path), size == 1024 ? "ABCD" : "ABCD" + pattern.substr(4));
  }
}

TEST(BufferFileKept, WriteErrorsAreNotReported) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  for (const OpenedBy way : {OpenedBy::Handle, OpenedBy::Stream, OpenedBy::HostFile}) {
    SCOPED_TRACE(static_cast<int>(way));
    CFile hostFile;
    const BufferFile file = NewBufferFile();
    switch (way) {  // each opened for reading only
      case OpenedBy::Stream:
        ASSERT_EQ(file->Open(qxv::os::OpenStream(path.c_str(), "rb"), 0, 1024), 1);
        break;
      case OpenedBy::HostFile:
        ASSERT_TRUE(hostFile.Open(path.c_str(), CFile::modeRead));
        ASSERT_EQ(file->Open(&hostFile, 0, 1024), 1);
        break;
      default: {
        qxv::os::OpenOptions options;
        qxv::os::File handle;
        ASSERT_EQ(handle.Open(path.c_str(), options), 0u);
        ASSERT_EQ(file->Open(handle.Release(), 0, 1024), 1);
        break;
      }
    }
    const std::vector<unsigned char> bytes(1000, 'x');
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(file->Write(bytes.data(), 1000), 1000u);
    }
    EXPECT_EQ(file->Seek(4999, 0), 1);
    EXPECT_EQ(file->Close(), 1);
    EXPECT_EQ(ReadBytes(path), "ABCD");
  }
}

TEST(BufferFileKept, OnlySeekingFromTheEndReachesTheLength) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  OpenedFile reader = OpenReader(path);
  EXPECT_EQ(Take(reader, 1), "A");
  EXPECT_EQ(reader->Seek(4, 0), 0);
  EXPECT_EQ(reader->Seek(3, 1), 0);
  EXPECT_EQ(reader->Seek(0, 2), 1);
  EXPECT_EQ(Take(reader, 1), "");
  EXPECT_EQ(reader->Seek(-5, 2), 1) << "5 behind the end";
  EXPECT_EQ(Take(reader, 1), "");
  EXPECT_EQ(reader->Seek(4, 2), 1);
  EXPECT_EQ(Take(reader, 4), "ABCD");
  EXPECT_EQ(reader->Seek(5, 2), 0);
}

TEST(BufferFileKept, AnUnknownOriginIsNotChecked) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  for (const unsigned int origin : {3u, 4u, 0xFFFFFFFFu}) {
    SCOPED_TRACE(origin);
    OpenedFile reader = OpenReader(path);
    EXPECT_EQ(Take(reader, 1), "A");
    EXPECT_EQ(reader->Seek(2, origin), 1);
    EXPECT_EQ(Take(reader, 1), "C");
    EXPECT_EQ(reader->Seek(INT64_MAX, origin), 1);
    EXPECT_EQ(Take(reader, 1), "");
  }
}

TEST(BufferFileKept, AnArrayOfTextsCountsEightBytesEach) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  CQXArray<CQXString, CQXString&> texts;
  CQXString text(QXT("a long text that takes more than eight bytes"));
  texts.Add(text);
  {
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write(texts), 12u);
  }
  EXPECT_EQ(ReadBytes(path).substr(0, 8), Bytes({8, 0, 0, 0, 88, 0, 0, 0}));
  EXPECT_EQ(ReadBytes(path).size(), 96u);
}

TEST(BufferFileKept, AStreamOf2GibibytesHasNoReadableBytes) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  const struct {
    std::uintmax_t bytes;
    unsigned int read;
  } rows[] = {{0x7FFFFFFF, 1}, {0x80000000, 0}, {0x100000001, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bytes);
    ASSERT_TRUE(WriteBytes(path, "x"));
    std::filesystem::resize_file(support::NativePath(path), row.bytes);
    OpenedFile stream = OpenReader(path, 1024, OpenedBy::Stream);
    ASSERT_EQ(stream.opened, 1);
    char byte = 0;
    EXPECT_EQ(stream->Read(byte), row.read);
    stream->Close();
    OpenedFile named = OpenReader(path);
    EXPECT_EQ(named->Read(byte), 1u);
    EXPECT_EQ(byte, 'x');
  }
}

}  // namespace

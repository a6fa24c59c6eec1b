// buffer_file_hostile_test.cpp - CQXVBufferFileRW under wrong use and without memory.

#include "qxv/buffer_file.h"

#include "streams/bytes.h"
#include "support/buffer_file_fixture.h"
#include "support/guard_new.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <new>
#include <string>
#include <vector>

namespace {

using namespace streams_test;
using support::ReadBytes;
using support::TempFolder;
using support::Text;
using support::TextOf;
using support::WriteBytes;

constexpr QXInt64 kHighest = INT64_MAX;
constexpr QXInt64 kLowest = INT64_MIN;

TEST(BufferFileMalformed, RawBytesStayInsideTheBlock) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  std::vector<unsigned char> bytes(2000, 7);
  {
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write(bytes.data(), 1025), 0u);
    EXPECT_EQ(writer->Write(bytes.data(), 0xFFFFFFFF), 0u);
    EXPECT_EQ(writer->Write(bytes.data(), 0), 0u);
    EXPECT_EQ(writer->Write(static_cast<const unsigned char*>(nullptr), 4), 0u);
    EXPECT_EQ(writer->Write('x'), 1u);
    EXPECT_EQ(writer->Write(bytes.data(), 1025), 0u);
  }
  EXPECT_EQ(ReadBytes(path), "x");
  ASSERT_TRUE(WriteBytes(path, std::string(2000, 'y')));
  OpenedFile reader = OpenReader(path);
  EXPECT_EQ(reader->Read(bytes.data(), 1025), 0u);
  EXPECT_EQ(reader->Read(bytes.data(), 0xFFFFFFFF), 0u);
  EXPECT_EQ(reader->Read(bytes.data(), 0), 0u);
  EXPECT_EQ(reader->Read(static_cast<unsigned char*>(nullptr), 4), 0u);
  EXPECT_EQ(bytes, std::vector<unsigned char>(2000, 7));
  EXPECT_EQ(reader->Read(bytes.data(), 1024), 1024u);
}

// Every reading operation, on targets that must stay as they are.
void ExpectNothingRead(CQXVBufferFileRW& file) {
  int number = 5;
  QX_GUID id{1, 2, 3, {}};
  SYSTEMTIME time{1, 2, 3, 4, 5, 6, 7, 8};
  CQXString text(QXT("old"));
  unsigned char raw[4] = {1, 2, 3, 4};
  Array<int> numbers;
  numbers.SetSize(2);
  Array<CQXString> texts;
  texts.SetSize(2);
  CArray<SYSTEMTIME> times;
  times.SetSize(2);
  EXPECT_EQ(file.Read(number), 0u);
  EXPECT_EQ(file.Read(id), 0u);
  EXPECT_EQ(file.Read(time), 0u);
  EXPECT_EQ(file.Read(text), 0u);
  EXPECT_EQ(file.Read(raw, 4), 0u);
  EXPECT_EQ(file.Read(numbers), 0u);
  EXPECT_EQ(file.Read(texts), 0u);
  EXPECT_EQ(file.Read(times), 0u);
  EXPECT_EQ(number, 5);
  EXPECT_EQ(id.Data1, 1u);
  EXPECT_EQ(time.wMilliseconds, 8);
  EXPECT_EQ(TextOf(text), QXT("old"));
  EXPECT_EQ(raw[3], 4);
  EXPECT_EQ(numbers.GetSize(), 2);
  EXPECT_EQ(texts.GetSize(), 2);
  EXPECT_EQ(times.GetSize(), 2);
}

void ExpectNothingWritten(CQXVBufferFileRW& file) {
  Array<int> numbers;
  numbers.SetSize(2);
  Array<CQXString> texts;
  texts.SetSize(2);
  CArray<SYSTEMTIME> times;
  times.SetSize(2);
  const unsigned char raw[4] = {};
  EXPECT_EQ(file.Write(1), 0u);
  EXPECT_EQ(file.Write(QX_GUID{}), 0u);
  EXPECT_EQ(file.Write(SYSTEMTIME{}), 0u);
  EXPECT_EQ(file.Write(CQXString(QXT("abc"))), 0u);
  EXPECT_EQ(file.Write(raw, 4), 0u);
  EXPECT_EQ(file.Write(numbers), 0u);
  EXPECT_EQ(file.Write(texts), 0u);
  EXPECT_EQ(file.Write(times), 0u);
}

TEST(BufferFileMalformed, AWriterReadsNothingAndLosesNothing) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  {
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write(0x44434241), 4u);
    ExpectNothingRead(*writer.file);
    EXPECT_EQ(writer->Seek(0, 0), 1);
    ExpectNothingRead(*writer.file);
    EXPECT_EQ(writer->Seek(0, 2), 1);
  }
  EXPECT_EQ(ReadBytes(path), "ABCD");
}

TEST(BufferFileMalformed, AReaderWritesNothing) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  {
    OpenedFile reader = OpenReader(path);
    ExpectNothingWritten(*reader.file);
    int number = 0;
    EXPECT_EQ(reader->Read(number), 4u);
    EXPECT_EQ(number, 0x44434241);
    ExpectNothingWritten(*reader.file);
  }
  EXPECT_EQ(ReadBytes(path), "ABCD");
}

TEST(BufferFileMalformed, AClosedObjectRefusesEverythingButClose) {
  const BufferFile file = NewBufferFile();
  for (int round = 0; round < 2; ++round) {
    ExpectNothingRead(*file);
    ExpectNothingWritten(*file);
    for (unsigned int origin = 0; origin < 5; ++origin) {
      EXPECT_EQ(file->Seek(0, origin), 0) << origin;
    }
    EXPECT_EQ(file->Close(), 1);
    const TempFolder folder;
    EXPECT_EQ(file->Open(folder.File(QXT("a.bin")).c_str(), 0, 1024), 1);
    EXPECT_EQ(file->Close(), 1);
    EXPECT_EQ(file->Close(), 1);
  }
}

TEST(BufferFileMalformed, AnObjectThatWasNeverResetCanBeReleased) {
  const BufferFile file(QXV_ConstructBufferFileRW());
  EXPECT_EQ(file->Close(), 1);
}

TEST(BufferFileMalformed, SourcesThatAreNoneAreRefused) {
  const TempFolder folder;
  const BufferFile file = NewBufferFile();
  for (const int reading : {0, 1}) {
    SCOPED_TRACE(reading);
    EXPECT_EQ(file->Open(static_cast<const QXChar*>(nullptr), reading, 1024), 0);
    EXPECT_EQ(file->Open(QXT(""), reading, 1024), 0);
    EXPECT_EQ(file->Open(folder.File(QXT("no\\a.bin")).c_str(), reading, 1024), 0);
    EXPECT_EQ(file->Open(folder.Path().c_str(), reading, 1024), 0) << "a folder";
    EXPECT_EQ(file->Open(static_cast<std::FILE*>(nullptr), reading, 1024), 0);
    EXPECT_EQ(file->Open(static_cast<HANDLE>(nullptr), reading, 1024), 0);
    EXPECT_EQ(file->Open(INVALID_HANDLE_VALUE, reading, 1024), 0);
    EXPECT_EQ(file->Open(static_cast<CFile*>(nullptr), reading, 1024), 0);
    CFile closed;
    EXPECT_EQ(file->Open(&closed, reading, 1024), 0);
  }
  EXPECT_EQ(file->Open(folder.File(QXT("missing.bin")).c_str(), 1, 1024), 0);
  EXPECT_FALSE(support::Exists(folder.File(QXT("missing.bin"))));
}

TEST(BufferFileMalformed, AFolderBehindAHandleIsRefusedAndStaysOpen) {
  const TempFolder folder;
  qxv::os::OpenOptions options;
  options.folder = true;
  qxv::os::File handle;
  ASSERT_EQ(handle.Open(folder.Path().c_str(), options), 0u);
  const BufferFile file = NewBufferFile();
  EXPECT_EQ(file->Open(handle.Handle(), 1, 1024), 0);
  CFile hostFile(handle.Handle());
  EXPECT_EQ(file->Open(&hostFile, 1, 1024), 0);
  hostFile.m_hFile = INVALID_HANDLE_VALUE;
  EXPECT_EQ(handle.Close(), 0u) << "nobody else closed it";
}

TEST(BufferFileMalformed, ARefusedSourceStaysTheCallers) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  std::FILE* stream = qxv::os::OpenStream(path.c_str(), "rb");
  ASSERT_NE(stream, nullptr);
  const BufferFile file = NewBufferFile();
  EXPECT_EQ(file->Open(stream, 1, 1023), 0);
  char bytes[4] = {};
  EXPECT_EQ(std::fread(bytes, 1, 4, stream), 4u);
  EXPECT_EQ(std::fclose(stream), 0);
}

TEST(BufferFileMalformed, AnOpenObjectRefusesASecondFile) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  const Text other = folder.File(QXT("b.bin"));
  {
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write('x'), 1u);
    EXPECT_EQ(writer->Open(other.c_str(), 0, 1024), 0);
    EXPECT_EQ(writer->Write('y'), 1u);
  }
  EXPECT_EQ(ReadBytes(path), "xy");
  EXPECT_FALSE(support::Exists(other));
}

TEST(BufferFileMalformed, SeeksThatOverflowAreRefused) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, std::string(100, 'x')));
  OpenedFile reader = OpenReader(path);
  char byte = 0;
  ASSERT_EQ(reader->Read(byte), 1u);
  const struct {
    QXInt64 offset;
    unsigned int origin;
  } rows[] = {{kHighest, 0}, {kLowest, 0}, {-1, 0},       {100, 0}, {kHighest, 1},  {kLowest, 1},     {-2, 1},
              {99, 1},       {kLowest, 2}, {kHighest, 2}, {101, 2}, {-kHighest, 2}, {kLowest + 1, 2}, {kLowest + 99, 2}};
  for (const auto& row : rows) {
    EXPECT_EQ(reader->Seek(row.offset, row.origin), 0) << row.offset << " from " << row.origin;
  }
  EXPECT_EQ(reader->Read(byte), 1u) << "the position is where it was";
  EXPECT_EQ(reader->Seek(97, 1), 1);
  EXPECT_EQ(reader->Read(byte), 1u);
  EXPECT_EQ(reader->Read(byte), 0u);
}

TEST(BufferFileMalformed, PlacesFarOutsideReadNothingAndHoldNothingUp) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, std::string(100, 'x')));
  for (const QXInt64 place : {kHighest, kHighest - 1, kHighest - 1500, kLowest, kLowest + 1, QXInt64{-1}, QXInt64{101}}) {
    SCOPED_TRACE(place);
    OpenedFile reader = OpenReader(path);
    EXPECT_EQ(reader->Seek(place, 7), 1);
    (void)reader->Seek(1, 1);
    (void)reader->Seek(-1, 1);
    CQXString text;
    Array<int> numbers;
    int number = 0;
    for (int i = 0; i < 3; ++i) {
      (void)reader->Read(number);
      (void)reader->Read(text);
      (void)reader->Read(numbers);
    }
    EXPECT_EQ(reader->Close(), 1);

    OpenedFile writer = OpenWriter(folder.File(QXT("b.bin")));
    EXPECT_EQ(writer->Write(1), 4u);
    EXPECT_EQ(writer->Seek(place, 7), 1);
    for (int i = 0; i < 600; ++i) {
      EXPECT_EQ(writer->Write(2), 4u);
    }
    (void)writer->Seek(0, 2);
    (void)writer->Seek(-1, 2);
    EXPECT_EQ(writer->Close(), 1);
  }
}

TEST(BufferFileMalformed, BeforeTheStartTextsAndArraysHaveNoBytes) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, Bytes({40, 0, 0, 0}) + std::string(2000, 'x')));
  OpenedFile reader = OpenReader(path);
  EXPECT_EQ(reader->Seek(-1000000, 7), 1);
  CQXString text(QXT("old"));
  EXPECT_EQ(reader->Read(text), 44u) << "single values are read where the file stands";
  EXPECT_EQ(TextOf(text), QXT(""));
  char next = 0;
  EXPECT_EQ(reader->Read(next), 1u);
  EXPECT_EQ(next, 'x');
}

TEST(BufferFileMalformed, AGapLeftByAWriterIsZero) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  {
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write('a'), 1u);
    EXPECT_EQ(writer->Seek(-9, 2), 1);  // 9 behind the end
    EXPECT_EQ(writer->Write('b'), 1u);
  }
  EXPECT_EQ(ReadBytes(path), "a" + std::string(9, '\0') + "b");
}

TEST(BufferFileMalformed, LackOfMemoryAtOpenLeavesTheFileAndTheSource) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, "ABCD"));
  const std::size_t live = support::LiveArrays();
  const BufferFile file = NewBufferFile();
  for (const int reading : {0, 1}) {
    support::FailAllocation fail(0);
    EXPECT_THROW(file->Open(path.c_str(), reading, 1024), std::bad_alloc);
  }
  EXPECT_EQ(ReadBytes(path), "ABCD") << "not emptied";
  qxv::os::OpenOptions options;
  qxv::os::File handle;
  ASSERT_EQ(handle.Open(path.c_str(), options), 0u);
  {
    support::FailAllocation fail(0);
    EXPECT_THROW(file->Open(handle.Handle(), 1, 1024), std::bad_alloc);
  }
  EXPECT_EQ(handle.Close(), 0u) << "not taken over";
  EXPECT_EQ(support::LiveArrays(), live);
  EXPECT_EQ(file->Open(path.c_str(), 1, 1024), 1) << "no handle was left open";
}

TEST(BufferFileMalformed, LackOfMemoryLeavesTheTargets) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, Bytes({200, 0, 0, 0}) + std::string(200, 'a')));
  std::size_t refused = 0;
  for (std::size_t index = 0; index < 4; ++index) {
    SCOPED_TRACE(index);
    OpenedFile reader = OpenReader(path);
    Array<int> numbers;
    numbers.SetSize(1);
    numbers[0] = 5;
    try {
      const support::FailAllocation fail(index);
      EXPECT_EQ(reader->Read(numbers), 204u);
    } catch (const std::bad_alloc&) {
      ++refused;
      EXPECT_EQ(numbers.GetSize(), 1);
      EXPECT_EQ(numbers[0], 5);
    }
    OpenedFile second = OpenReader(path);
    CQXString text(QXT("old"));
    try {
      const support::FailAllocation fail(index);
      EXPECT_EQ(second->Read(text), 204u);
    } catch (const std::bad_alloc&) {
      ++refused;
      EXPECT_EQ(TextOf(text), QXT("old"));
    }
  }
  EXPECT_GE(refused, 2u);
}

TEST(BufferFileMalformed, TheFactoryGivesNullWithoutMemory) {
  const support::FailAllocation fail(0);
  EXPECT_EQ(QXV_ConstructBufferFileRW(), nullptr);
  EXPECT_TRUE(fail.Refused());
}

}  // namespace

// buffer_file_malformed_test.cpp - CQXVBufferFileRW on files whose counts promise more than they hold, and on cut files.

#include "qxv/buffer_file.h"

#include "streams/bytes.h"
#include "support/buffer_file_fixture.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using namespace streams_test;
using support::ReadBytes;
using support::TempFolder;
using support::Text;
using support::TextOf;
using support::WriteBytes;

TEST(BufferFileMalformed, ATextOf4GibibytesIn12BytesEndsWhereTheFileEnds) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  const struct {
    std::string count;
    unsigned int result;
  } rows[] = {
      {Bytes({0xFE, 0xFF, 0xFF, 0xFF}), 2},  // plus 4, modulo 2^32
      {Bytes({0xFF, 0xFF, 0xFF, 0xFF}), 3},
      {Bytes({0xFC, 0xFF, 0xFF, 0xFF}), 0},
      {Bytes({10, 0, 0, 0}), 14},
      {Bytes({9, 0, 0, 0}), 13},
      {Bytes({8, 0, 0, 0}), 12},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.result);
    ASSERT_TRUE(WriteBytes(path, row.count + Bytes({'a', 0, 'b', 0, 'c', 0, 'd', 0})));
    OpenedFile reader = OpenReader(path);
    CQXString text(QXT("old"));
    EXPECT_EQ(reader->Read(text), row.result);
    EXPECT_EQ(TextOf(text), QXT("abcd"));
    EXPECT_EQ(reader->Read(text), 0u);
    EXPECT_EQ(TextOf(text), QXT("abcd"));
  }
}

TEST(BufferFileMalformed, AnOddCountLeavesItsLastByte) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, Bytes({5, 0, 0, 0, 'a', 0, 'b', 0, 'c', 1, 0, 0, 0, 'd'})));
  OpenedFile reader = OpenReader(path);
  CQXString text;
  EXPECT_EQ(reader->Read(text), 9u);
  EXPECT_EQ(TextOf(text), QXT("ab"));
  char rest = 0;
  EXPECT_EQ(reader->Read(rest), 1u);
  EXPECT_EQ(rest, 'c');
  EXPECT_EQ(reader->Read(text), 5u) << "a count of 1 is no character";
  EXPECT_EQ(TextOf(text), QXT(""));
  EXPECT_EQ(reader->Read(rest), 1u);
  EXPECT_EQ(rest, 'd');
}

TEST(BufferFileMalformed, AnArrayLargerThanTheFileCanHoldIsEmptied) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, Bytes({0xF8, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 2, 0, 0, 0})));
  const auto expectEmptied = [&](auto& values) {
    values.SetSize(2);
    OpenedFile reader = OpenReader(path);
    EXPECT_EQ(reader->Read(values), 0u);
    EXPECT_EQ(values.GetSize(), 0);
    int next = 0;
    EXPECT_EQ(reader->Read(next), 4u) << "only the count was taken";
    EXPECT_EQ(next, 1);
  };
  Array<CQXString> texts;
  Array<int> numbers;
  Array<char> bytes;
  Array<GUID> ids;
  CArray<SYSTEMTIME> times;
  expectEmptied(texts);
  expectEmptied(numbers);
  expectEmptied(bytes);
  expectEmptied(ids);
  expectEmptied(times);
}

TEST(BufferFileMalformed, ElementsBehindTheEndOfTheFileAreZero) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  // 65,536 numbers announced, one and a half there
  ASSERT_TRUE(WriteBytes(path, Bytes({0, 0, 4, 0, 1, 0, 0, 0, 2, 0})));
  OpenedFile reader = OpenReader(path);
  Array<int> numbers;
  numbers.SetSize(70000);
  numbers[1] = 99;
  numbers[65535] = 99;
  EXPECT_EQ(reader->Read(numbers), 0x40004u);
  ASSERT_EQ(numbers.GetSize(), 65536);
  EXPECT_EQ(numbers[0], 1);
  EXPECT_EQ(numbers[1], 0);
  EXPECT_EQ(numbers[65535], 0);
  reader->Close();
  // 65,537 of them are too many
  ASSERT_TRUE(WriteBytes(path, Bytes({4, 0, 4, 0, 1, 0, 0, 0, 2, 0})));
  ASSERT_EQ(reader->Open(path.c_str(), 1, 1024), 1);
  EXPECT_EQ(reader->Read(numbers), 0u);
  EXPECT_EQ(numbers.GetSize(), 0);
}

TEST(BufferFileMalformed, TextsBehindTheEndOfTheFileAreEmpty) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, Bytes({32, 0, 0, 0, 2, 0, 0, 0, 'a', 0, 100, 0, 0, 0, 'b', 0})));
  OpenedFile reader = OpenReader(path);
  Array<CQXString> texts;
  texts.SetSize(4);
  for (int i = 0; i < 4; ++i) {
    texts[i] = QXT("old");
  }
  EXPECT_EQ(reader->Read(texts), 36u);
  ASSERT_EQ(texts.GetSize(), 4);
  EXPECT_EQ(TextOf(texts[0]), QXT("a"));
  EXPECT_EQ(TextOf(texts[1]), QXT("b"));
  EXPECT_EQ(TextOf(texts[2]), QXT(""));
  EXPECT_EQ(TextOf(texts[3]), QXT(""));
}

TEST(BufferFileMalformed, ACountBelowOneElementIsAnArrayOfNone) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, Bytes({7, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7})));
  OpenedFile reader = OpenReader(path);
  Array<double> numbers;
  numbers.SetSize(2);
  EXPECT_EQ(reader->Read(numbers), 11u);
  EXPECT_EQ(numbers.GetSize(), 0);
  char next = 0;
  EXPECT_EQ(reader->Read(next), 1u);
  EXPECT_EQ(next, 1);
}

TEST(BufferFileMalformed, EveryPrefixOfAFileIsReadWithoutHarm) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  const std::string whole = Bytes({6,  0, 0, 0, 'a', 0, 'b', 0, 'c', 0, 8, 0, 0, 0, 1,   0, 0, 0, 2, 0, 0, 0,  //
                                   16, 0, 0, 0, 2,   0, 0,   0, 'x', 0, 2, 0, 0, 0, 'y', 0, 9});
  for (std::size_t n = 0; n <= whole.size(); ++n) {
    SCOPED_TRACE(n);
    ASSERT_TRUE(WriteBytes(path, whole.substr(0, n)));
    OpenedFile reader = OpenReader(path, 1024, kAllWays[n % 4]);
    ASSERT_EQ(reader.opened, 1);
    CQXString text;
    Array<int> numbers;
    Array<CQXString> texts;
    char last = 0;
    EXPECT_EQ(reader->Read(text), n >= 4 ? 10u : 0u);
    EXPECT_EQ(TextOf(text), n >= 10 ? Text(QXT("abc")) : Text(QXT("abc")).substr(0, n >= 4 ? (n - 4) / 2 : 0));
    if (n >= 10) {
      EXPECT_EQ(reader->Read(numbers), n >= 14 ? 12u : 0u);
      EXPECT_EQ(numbers.GetSize(), n >= 14 ? 2 : 0);
    }
    if (n >= 22) {
      EXPECT_EQ(reader->Read(texts), n >= 26 ? 20u : 0u);
      EXPECT_EQ(texts.GetSize(), n >= 26 ? 2 : 0);
    }
    if (n >= 38) {
      EXPECT_EQ(reader->Read(last), n >= 39 ? 1u : 0u);
    }
  }
}

}  // namespace

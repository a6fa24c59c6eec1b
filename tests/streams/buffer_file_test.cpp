// buffer_file_test.cpp - CQXVBufferFileRW: opening, the bytes of every type, texts, arrays, the ends of block and file.

#include "qxv/buffer_file.h"

#include "streams/bytes.h"
#include "support/buffer_file_fixture.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using namespace streams_test;
using support::ReadBytes;
using support::TempFolder;
using support::Text;
using support::TextOf;
using support::WriteBytes;

// Writes the value, compares the file, reads it back.
template <class Value, class Same>
void ExpectImage(const char* name, const Value& value, const std::string& expected, Same same) {
  SCOPED_TRACE(name);
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  OpenedFile writer = OpenWriter(path);
  ASSERT_EQ(writer.opened, 1);
  EXPECT_EQ(writer->Write(value), expected.size());
  EXPECT_EQ(writer->Close(), 1);
  EXPECT_EQ(ReadBytes(path), expected);
  OpenedFile reader = OpenReader(path);
  Value read{};
  EXPECT_EQ(reader->Read(read), expected.size());
  EXPECT_TRUE(same(read, value));
  EXPECT_EQ(reader->Read(read), 0u);
  EXPECT_TRUE(same(read, value)) << "a refused read touches nothing";
}

template <class Value>
void ExpectImage(const char* name, Value value, const std::string& expected) {
  ExpectImage(name, value, expected, [](const Value& a, const Value& b) { return std::memcmp(&a, &b, sizeof a) == 0; });
}

const std::string kId = Bytes({0x78, 0x56, 0x34, 0x12, 0xBC, 0x9A, 0xF0, 0xDE, 1, 2, 3, 4, 5, 6, 7, 8});

TEST(BufferFile, EveryTypeHasItsBytes) {
  ExpectImage<CRect>("CRect", CRect(1, -2, 3, 0x01020304), Bytes({1, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 3, 0, 0, 0, 4, 3, 2, 1}));
  ExpectImage<FILETIME>("FILETIME", {0x04030201, 0x08070605}, Bytes({1, 2, 3, 4, 5, 6, 7, 8}));
  ExpectImage<CPoint>("CPoint", CPoint(1, -2), Bytes({1, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF}));
  ExpectImage<GUID>("GUID", {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}}, kId);
  ExpectImage<QX_GUID>("QX_GUID", {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}}, kId);
  ExpectImage<SYSTEMTIME>("SYSTEMTIME", {2024, 2, 4, 29, 23, 59, 58, 999},
                          Bytes({0xE8, 0x07, 2, 0, 4, 0, 29, 0, 23, 0, 59, 0, 58, 0, 0xE7, 0x03}));
  ExpectImage<QXChar>("QXChar", QXT('\u4E2D'), Bytes({0x2D, 0x4E}));
  ExpectImage<double>("double", -1.5, Bytes({0, 0, 0, 0, 0, 0, 0xF8, 0xBF}));
  ExpectImage<float>("float", -1.5f, Bytes({0, 0, 0xC0, 0xBF}));
  ExpectImage<QXInt64>("QXInt64", -2, Bytes({0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
  ExpectImage<QXUInt64>("QXUInt64", 0x8102030405060708, Bytes({8, 7, 6, 5, 4, 3, 2, 0x81}));
  ExpectImage<long>("long", -2, Bytes({0xFE, 0xFF, 0xFF, 0xFF}));
  ExpectImage<unsigned long>("unsigned long", 0x81020304, Bytes({4, 3, 2, 0x81}));
  ExpectImage<int>("int", -2, Bytes({0xFE, 0xFF, 0xFF, 0xFF}));
  ExpectImage<unsigned int>("unsigned int", 0x81020304, Bytes({4, 3, 2, 0x81}));
  ExpectImage<short>("short", -2, Bytes({0xFE, 0xFF}));
  ExpectImage<unsigned short>("unsigned short", 0x8001, Bytes({1, 0x80}));
  ExpectImage<char>("char", -2, Bytes({0xFE}));
  ExpectImage<unsigned char>("unsigned char", 0x81, Bytes({0x81}));
  ExpectImage("CQXString", CQXString(QXT("A\u4E2D")), Bytes({4, 0, 0, 0, 0x41, 0, 0x2D, 0x4E}),
              [](const CQXString& a, const CQXString& b) { return a == b; });
}

// Two elements there and back; prefix: the count of bytes, then the elements.
template <class T>
void ExpectArray(const char* name, const T& first, const T& second, const std::string& expected) {
  SCOPED_TRACE(name);
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  {
    Array<T> values;
    values.SetSize(2);
    values[0] = first;
    values[1] = second;
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write(values), expected.size());
  }
  EXPECT_EQ(ReadBytes(path), expected);
  OpenedFile reader = OpenReader(path);
  Array<T> read;
  EXPECT_EQ(reader->Read(read), expected.size());
  ASSERT_EQ(read.GetSize(), 2);
  EXPECT_EQ(std::memcmp(&read[0], &first, sizeof first), 0);
  EXPECT_EQ(std::memcmp(&read[1], &second, sizeof second), 0);
}

TEST(BufferFile, EveryArrayIsItsBytesBehindTheirCount) {
  ExpectArray<CRect>("CRect", CRect(1, 2, 3, 4), CRect(5, 6, 7, 8),
                     Bytes({32, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0,  //
                            5,  0, 0, 0, 6, 0, 0, 0, 7, 0, 0, 0, 8, 0, 0, 0}));
  ExpectArray<FILETIME>("FILETIME", {1, 2}, {3, 4}, Bytes({16, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0}));
  ExpectArray<CPoint>("CPoint", CPoint(1, 2), CPoint(3, 4), Bytes({16, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 4, 0, 0, 0}));
  const GUID id = {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};
  ExpectArray<GUID>("GUID", id, id, Bytes({32, 0, 0, 0}) + kId + kId);
  ExpectArray<QXChar>("QXChar", QXT('A'), QXT('\u4E2D'), Bytes({4, 0, 0, 0, 0x41, 0, 0x2D, 0x4E}));
  ExpectArray<double>("double", -1.5, 1.5, Bytes({16, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xF8, 0xBF, 0, 0, 0, 0, 0, 0, 0xF8, 0x3F}));
  ExpectArray<float>("float", -1.5f, 1.5f, Bytes({8, 0, 0, 0, 0, 0, 0xC0, 0xBF, 0, 0, 0xC0, 0x3F}));
  ExpectArray<QXInt64>("QXInt64", -2, 1,
                       Bytes({16, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 0, 0, 0, 0}));
  ExpectArray<QXUInt64>("QXUInt64", 0x8102030405060708, 1,
                        Bytes({16, 0, 0, 0, 8, 7, 6, 5, 4, 3, 2, 0x81, 1, 0, 0, 0, 0, 0, 0, 0}));
  ExpectArray<int>("int", -2, 1, Bytes({8, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0}));
  ExpectArray<unsigned int>("unsigned int", 0x81020304, 1, Bytes({8, 0, 0, 0, 4, 3, 2, 0x81, 1, 0, 0, 0}));
  ExpectArray<short>("short", -2, 1, Bytes({4, 0, 0, 0, 0xFE, 0xFF, 1, 0}));
  ExpectArray<unsigned short>("unsigned short", 0x8001, 1, Bytes({4, 0, 0, 0, 1, 0x80, 1, 0}));
  ExpectArray<char>("char", -2, 1, Bytes({2, 0, 0, 0, 0xFE, 1}));
  ExpectArray<unsigned char>("unsigned char", 0x81, 1, Bytes({2, 0, 0, 0, 0x81, 1}));
}

TEST(BufferFile, TheHostArrayIsItsBytesBehindTheirCount) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  {
    CArray<SYSTEMTIME> times;
    times.Add({2024, 2, 4, 29, 23, 59, 58, 999});
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write(times), 20u);
    times.RemoveAll();
    EXPECT_EQ(writer->Write(times), 4u);
  }
  EXPECT_EQ(ReadBytes(path), Bytes({16, 0, 0, 0, 0xE8, 0x07, 2, 0, 4, 0, 29, 0, 23, 0, 59, 0, 58, 0, 0xE7, 0x03, 0, 0, 0, 0}));
  OpenedFile reader = OpenReader(path);
  CArray<SYSTEMTIME> read;
  EXPECT_EQ(reader->Read(read), 20u);
  ASSERT_EQ(read.GetSize(), 1);
  EXPECT_EQ(read[0].wYear, 2024);
  EXPECT_EQ(read[0].wMilliseconds, 999);
  EXPECT_EQ(reader->Read(read), 4u);
  EXPECT_EQ(read.GetSize(), 0);
}

TEST(BufferFile, AnArrayOfThreeTextsCountsThemAs24Bytes) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  Array<CQXString> texts;
  for (const QXChar* text : {QXT("a"), QXT(""), QXT("bc")}) {
    CQXString copy(text);
    texts.Add(copy);
  }
  {
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write(texts), 28u);
  }
  EXPECT_EQ(ReadBytes(path), Bytes({24, 0, 0, 0, 2, 0, 0, 0, 'a', 0, 0, 0, 0, 0, 4, 0, 0, 0, 'b', 0, 'c', 0}));
  OpenedFile reader = OpenReader(path);
  Array<CQXString> read;
  EXPECT_EQ(reader->Read(read), 28u);
  ASSERT_EQ(read.GetSize(), 3);
  EXPECT_EQ(TextOf(read[0]), QXT("a"));
  EXPECT_EQ(TextOf(read[1]), QXT(""));
  EXPECT_EQ(TextOf(read[2]), QXT("bc"));
}

TEST(BufferFile, AnEmptyTextIsFourZeroBytes) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  {
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write(CQXString()), 4u);
  }
  EXPECT_EQ(ReadBytes(path), Bytes({0, 0, 0, 0}));
  OpenedFile reader = OpenReader(path);
  CQXString text(QXT("old"));
  EXPECT_EQ(reader->Read(text), 4u);
  EXPECT_EQ(TextOf(text), QXT(""));
}

TEST(BufferFile, EmptyArraysFreeWhatTheTargetHeld) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(path, Bytes({0, 0, 0, 0, 0, 0, 0, 0})));
  OpenedFile reader = OpenReader(path);
  Array<int> numbers;
  numbers.SetSize(3);
  EXPECT_EQ(reader->Read(numbers), 4u);
  EXPECT_EQ(numbers.GetSize(), 0);
  EXPECT_EQ(numbers.GetData(), nullptr);
  Array<CQXString> texts;
  texts.SetSize(3);
  EXPECT_EQ(reader->Read(texts), 4u);
  EXPECT_EQ(texts.GetSize(), 0);
}

TEST(BufferFile, ABlockHasAtLeast1024Bytes) {
  for (const OpenedBy way : kAllWays) {
    SCOPED_TRACE(static_cast<int>(way));
    const TempFolder folder;
    const Text path = folder.File(QXT("a.bin"));
    ASSERT_TRUE(WriteBytes(path, "abc"));
    EXPECT_EQ(OpenReader(path, 1023, way).opened, 0);
    EXPECT_EQ(OpenReader(path, 0, way).opened, 0);
    EXPECT_EQ(OpenReader(path, 1024, way).opened, 1);
    EXPECT_EQ(OpenWriter(path, 1024, way).opened, 1);
  }
}

TEST(BufferFile, AReaderGivesWhatIsLeftOf10Bytes) {
  for (const OpenedBy way : kAllWays) {
    SCOPED_TRACE(static_cast<int>(way));
    const TempFolder folder;
    const Text path = folder.File(QXT("a.bin"));
    ASSERT_TRUE(WriteBytes(path, Bytes({1, 0, 0, 0, 2, 0, 0, 0, 3, 0})));
    OpenedFile reader = OpenReader(path, 1024, way);
    ASSERT_EQ(reader.opened, 1);
    int number = 0;
    EXPECT_EQ(reader->Read(number), 4u);
    EXPECT_EQ(number, 1);
    EXPECT_EQ(reader->Read(number), 4u);
    EXPECT_EQ(number, 2);
    EXPECT_EQ(reader->Read(number), 0u);
    short rest = 0;
    EXPECT_EQ(reader->Read(rest), 2u);
    EXPECT_EQ(rest, 3);
    EXPECT_EQ(reader->Read(rest), 0u);
  }
}

// The values of a run in which something straddles the end of every block between 1024 and 1100 bytes.
template <class Operation>
void ForEachValue(Operation operation) {
  for (int i = 0; i < 300; ++i) {
    operation(i);
  }
}

TEST(BufferFileRoundTrip, ValuesStraddleTheEndOfTheBlock) {
  std::string expected;
  ForEachValue([&](int i) {
    expected += static_cast<char>(i);
    for (const std::size_t bytes : {2u, 4u, 8u, 16u}) {
      expected += std::string(bytes, static_cast<char>(i + static_cast<int>(bytes)));
    }
    expected += Bytes({6, 0, 0, 0, 'a', 0, 'b', 0, 'c', 0});
  });
  for (unsigned int size = 1024; size <= 1100; ++size) {
    SCOPED_TRACE(size);
    const OpenedBy way = kAllWays[size % 4];
    const TempFolder folder;
    const Text path = folder.File(QXT("a.bin"));
    {
      OpenedFile writer = OpenWriter(path, size, way);
      ASSERT_EQ(writer.opened, 1);
      ForEachValue([&](int i) {
        unsigned short two;
        unsigned int four;
        QXUInt64 eight;
        GUID sixteen;
        std::memset(&two, i + 2, sizeof two);
        std::memset(&four, i + 4, sizeof four);
        std::memset(&eight, i + 8, sizeof eight);
        std::memset(&sixteen, i + 16, sizeof sixteen);
        ASSERT_EQ(writer->Write(static_cast<unsigned char>(i)), 1u);
        ASSERT_EQ(writer->Write(two), 2u);
        ASSERT_EQ(writer->Write(four), 4u);
        ASSERT_EQ(writer->Write(eight), 8u);
        ASSERT_EQ(writer->Write(sixteen), 16u);
        ASSERT_EQ(writer->Write(CQXString(QXT("abc"))), 10u);
      });
      EXPECT_EQ(writer->Close(), 1);
    }
    ASSERT_EQ(ReadBytes(path), expected);
    OpenedFile reader = OpenReader(path, size, way);
    ASSERT_EQ(reader.opened, 1);
    std::string read;
    ForEachValue([&](int) {
      unsigned char image[31];
      unsigned short two = 0;
      unsigned int four = 0;
      QXUInt64 eight = 0;
      GUID sixteen{};
      CQXString text;
      ASSERT_EQ(reader->Read(image[0]), 1u);
      ASSERT_EQ(reader->Read(two), 2u);
      ASSERT_EQ(reader->Read(four), 4u);
      ASSERT_EQ(reader->Read(eight), 8u);
      ASSERT_EQ(reader->Read(sixteen), 16u);
      ASSERT_EQ(reader->Read(text), 10u);
      ASSERT_EQ(TextOf(text), QXT("abc"));
      std::memcpy(image + 1, &two, 2);
      std::memcpy(image + 3, &four, 4);
      std::memcpy(image + 7, &eight, 8);
      std::memcpy(image + 15, &sixteen, 16);
      read += std::string(reinterpret_cast<char*>(image), sizeof image) + Bytes({6, 0, 0, 0, 'a', 0, 'b', 0, 'c', 0});
    });
    EXPECT_EQ(read, expected);
    unsigned char behind = 0;
    EXPECT_EQ(reader->Read(behind), 0u);
  }
}

TEST(BufferFileRoundTrip, LongTextsAndArraysCrossManyBlocks) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  Text units;
  for (int i = 0; i < 5000; ++i) {
    units += static_cast<QXChar>(1 + i);
  }
  const CQXString text(units.c_str());
  Array<double> numbers;
  numbers.SetSize(3000);
  for (int i = 0; i < 3000; ++i) {
    numbers[i] = i * 0.5;
  }
  for (const unsigned int size : {1024u, 1025u, 1031u, 4096u, 100000u}) {
    SCOPED_TRACE(size);
    {
      OpenedFile writer = OpenWriter(path, size);
      EXPECT_EQ(writer->Write('x'), 1u);
      EXPECT_EQ(writer->Write(text), 10004u);
      EXPECT_EQ(writer->Write(numbers), 24004u);
    }
    EXPECT_EQ(ReadBytes(path).size(), 1u + 10004 + 24004);
    OpenedFile reader = OpenReader(path, size);
    char first = 0;
    CQXString readText;
    Array<double> readNumbers;
    EXPECT_EQ(reader->Read(first), 1u);
    EXPECT_EQ(reader->Read(readText), 10004u);
    EXPECT_EQ(TextOf(readText), units);
    EXPECT_EQ(reader->Read(readNumbers), 24004u);
    ASSERT_EQ(readNumbers.GetSize(), 3000);
    EXPECT_EQ(std::memcmp(readNumbers.GetData(), numbers.GetData(), 24000), 0);
  }
}

TEST(BufferFileRoundTrip, RawBytesHaveNoCount) {
  const TempFolder folder;
  const Text path = folder.File(QXT("a.bin"));
  const std::vector<unsigned char> whole(1024, 7);
  {
    OpenedFile writer = OpenWriter(path);
    EXPECT_EQ(writer->Write(whole.data(), 3), 3u);
    EXPECT_EQ(writer->Write(whole.data(), 1024), 1024u);
  }
  EXPECT_EQ(ReadBytes(path), std::string(1027, 7));
  OpenedFile reader = OpenReader(path);
  std::vector<unsigned char> read(1024);
  EXPECT_EQ(reader->Read(read.data(), 1024), 1024u);
  EXPECT_EQ(read, whole);
  EXPECT_EQ(reader->Read(read.data(), 4), 0u) << "3 bytes are left";
  EXPECT_EQ(reader->Read(read.data(), 3), 3u);
}

}  // namespace

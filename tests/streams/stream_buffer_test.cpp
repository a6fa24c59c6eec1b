// stream_buffer_test.cpp - CQXVStreamBufIn and CQXVStreamBufOut: the bytes of every type, growth, counted texts and blocks.

#include "qxv/stream_buffer.h"

#include "streams/bytes.h"
#include "streams/stream_buffer_fields.h"
#include "support/guard_new.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using streams_test::Bytes;
using streams_test::Data;
using streams_test::FieldsOf;
using streams_test::Growing;
using streams_test::Written;
using support::TextOf;

// Writes the value, compares the bytes, reads it back by look and by >>.
template <class Value, class Same>
void ExpectImage(const char* name, const Value& value, const std::string& expected, Same same) {
  SCOPED_TRACE(name);
  CQXVStreamBufIn in;
  in << value;
  EXPECT_EQ(Written(in), expected);
  EXPECT_EQ(in.GetPos(), expected.size());

  const std::string shifted = "x" + expected;  // an odd address
  std::string exact(shifted);
  CQXVStreamBufOut out(Data(exact), static_cast<int>(exact.size()));
  char first = 0;
  out >> first;
  Value looked{};
  EXPECT_EQ(&out.look(looked), &out);
  EXPECT_TRUE(same(looked, value));
  EXPECT_EQ(out.GetPos(), 1u);
  Value taken{};
  EXPECT_EQ(&(out >> taken), &out);
  EXPECT_TRUE(same(taken, value));
  EXPECT_EQ(out.GetPos(), 1 + expected.size());
}

template <class Value>
void ExpectImage(const char* name, Value value, const std::string& expected) {
  ExpectImage(name, value, expected, [](const Value& a, const Value& b) { return std::memcmp(&a, &b, sizeof a) == 0; });
}

TEST(StreamBuffer, EveryTypeHasItsBytes) {
  ExpectImage<char>("char", -2, Bytes({0xFE}));
  ExpectImage<unsigned char>("unsigned char", 0x81, Bytes({0x81}));
  ExpectImage<short>("short", -2, Bytes({0xFE, 0xFF}));
  ExpectImage<unsigned short>("unsigned short", 0x8001, Bytes({0x01, 0x80}));
  ExpectImage<QXChar>("QXChar", QXT('\u4E2D'), Bytes({0x2D, 0x4E}));
  ExpectImage<int>("int", -2, Bytes({0xFE, 0xFF, 0xFF, 0xFF}));
  ExpectImage<unsigned int>("unsigned int", 0x81020304, Bytes({0x04, 0x03, 0x02, 0x81}));
  ExpectImage<long>("long", -2, Bytes({0xFE, 0xFF, 0xFF, 0xFF}));
  ExpectImage<unsigned long>("unsigned long", 0x81020304, Bytes({0x04, 0x03, 0x02, 0x81}));
  ExpectImage<QXInt64>("QXInt64", -2, Bytes({0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
  ExpectImage<QXUInt64>("QXUInt64", 0x8102030405060708, Bytes({8, 7, 6, 5, 4, 3, 2, 0x81}));
  ExpectImage<float>("float", -1.5f, Bytes({0, 0, 0xC0, 0xBF}));
  ExpectImage<double>("double", -1.5, Bytes({0, 0, 0, 0, 0, 0, 0xF8, 0xBF}));
  ExpectImage<FILETIME>("FILETIME", {0x04030201, 0x08070605}, Bytes({1, 2, 3, 4, 5, 6, 7, 8}));
  const std::string id = Bytes({0x78, 0x56, 0x34, 0x12, 0xBC, 0x9A, 0xF0, 0xDE, 1, 2, 3, 4, 5, 6, 7, 8});
  ExpectImage<GUID>("GUID", {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}}, id);
  ExpectImage<QX_GUID>("QX_GUID", {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}}, id);
  // Thursday, 29 February 2024, 23:59:58.999
  ExpectImage<SYSTEMTIME>("SYSTEMTIME", {2024, 2, 4, 29, 23, 59, 58, 999},
                          Bytes({0xE8, 0x07, 2, 0, 4, 0, 29, 0, 23, 0, 59, 0, 58, 0, 0xE7, 0x03}));
  const auto sameDate = [](const COleDateTime& a, const COleDateTime& b) { return a == b; };
  ExpectImage("COleDateTime", COleDateTime(2024, 2, 29, 23, 59, 58),
              Bytes({0xE8, 0x07, 2, 0, 4, 0, 29, 0, 23, 0, 59, 0, 58, 0, 0, 0}), sameDate);
  const auto sameText = [](const auto& a, const auto& b) { return a == b; };
  const std::string text = Bytes({2, 0, 0, 0, 0x41, 0, 0x2D, 0x4E});
  ExpectImage("CQXString", CQXString(QXT("A\u4E2D")), text, sameText);
  ExpectImage("CString", CString(QXT("A\u4E2D")), text, sameText);
}

TEST(StreamBuffer, LongKeepsTheLow32BitsAndItsSign) {
  CQXVStreamBufIn in;
  in << static_cast<long>(0x7FFFFFFF) << static_cast<long>(-2147483647 - 1) << 0xFFFFFFFFul;
  EXPECT_EQ(Written(in), Bytes({0xFF, 0xFF, 0xFF, 0x7F, 0, 0, 0, 0x80, 0xFF, 0xFF, 0xFF, 0xFF}));
  int size = 0;
  CQXVStreamBufOut out(in.GetBuffer(size), size);
  long most = 0;
  long least = 0;
  unsigned long all = 0;
  out >> most >> least >> all;
  EXPECT_EQ(most, 2147483647);
  EXPECT_EQ(least, -2147483647 - 1);
  EXPECT_EQ(all, 4294967295u);
}

TEST(StreamBuffer, IntTextAndShortStandOneBehindTheOther) {
  CQXVStreamBufIn in;
  in << 1 << CQXString(QXT("AB")) << static_cast<short>(-2);
  EXPECT_EQ(Written(in), Bytes({1, 0, 0, 0, 2, 0, 0, 0, 0x41, 0, 0x42, 0, 0xFE, 0xFF}));
  EXPECT_EQ(in.GetPos(), 14u);
  in.Set(0, 10);
  EXPECT_EQ(Written(in), Bytes({10, 0, 0, 0, 2, 0, 0, 0, 0x41, 0, 0x42, 0, 0xFE, 0xFF}));
  EXPECT_EQ(in.GetPos(), 14u);
}

TEST(StreamBuffer, AnEmptyTextIsItsCountAlone) {
  CQXVStreamBufIn in;
  in << CQXString() << CString();
  EXPECT_EQ(Written(in), Bytes({0, 0, 0, 0, 0, 0, 0, 0}));
  int size = 0;
  CQXVStreamBufOut out(in.GetBuffer(size), size);
  CQXString text(QXT("old"));
  CString hostText(QXT("old"));
  out >> text >> hostText;
  EXPECT_EQ(TextOf(text), QXT(""));
  EXPECT_EQ(TextOf(hostText), QXT(""));
  EXPECT_EQ(out.GetPos(), 8u);
}

TEST(StreamBuffer, ATextEndsAtItsFirstZero) {
  const QXChar units[] = {QXT('a'), 0, QXT('b')};
  CQXVStreamBufIn in;
  in << CString(units, 3);
  EXPECT_EQ(Written(in), Bytes({1, 0, 0, 0, 0x61, 0}));
}

TEST(StreamBuffer, ANewWriterHas3000BytesAndNothingIn) {
  const CQXVStreamBufIn in;
  const auto fields = FieldsOf(in);
  EXPECT_EQ(fields.capacity, 3000u);
  EXPECT_EQ(fields.position, 0u);
  EXPECT_EQ(fields.growStep, 3000u);
  EXPECT_EQ(support::AllocationSize(fields.data), 3000u);
}

TEST(StreamBuffer, Writing3001BytesGrowsOnceTo6000) {
  CQXVStreamBufIn in;
  const std::size_t before = support::AllocationsOfThisThread();
  for (int i = 0; i < 3000; ++i) {
    in << static_cast<unsigned char>(i);
  }
  EXPECT_EQ(FieldsOf(in).capacity, 3000u);
  EXPECT_EQ(support::AllocationsOfThisThread(), before);
  in << static_cast<unsigned char>(0xAB);
  EXPECT_EQ(FieldsOf(in).capacity, 6000u);
  EXPECT_EQ(support::AllocationsOfThisThread(), before + 1);
  EXPECT_EQ(support::AllocationSize(FieldsOf(in).data), 6000u);
  const std::string bytes = Written(in);
  ASSERT_EQ(bytes.size(), 3001u);
  for (std::size_t i = 0; i < 3000; ++i) {
    ASSERT_EQ(static_cast<unsigned char>(bytes[i]), i % 256) << i;
  }
  EXPECT_EQ(bytes.back(), '\xAB');
}

TEST(StreamBuffer, TheCapacityGrowsWhenAValueDoesNotFit) {
  const struct {
    int before;
    unsigned int bytes;
    unsigned int capacity;
  } rows[] = {{2999, 1, 3000}, {3000, 1, 6000}, {2998, 2, 3000},  {2999, 2, 6000},  {2996, 4, 3000}, {2997, 4, 6000},
              {2992, 8, 3000}, {2993, 8, 6000}, {2984, 16, 3000}, {2985, 16, 6000}, {5999, 2, 9000}, {5998, 2, 6000}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.bytes << " bytes at " << row.before);
    CQXVStreamBufIn in;
    for (int i = 0; i < row.before; ++i) {
      in << 'x';
    }
    switch (row.bytes) {
      case 1:
        in << 'y';
        break;
      case 2:
        in << short{0};
        break;
      case 4:
        in << 0;
        break;
      case 8:
        in << 0.0;
        break;
      default:
        in << GUID{};
        break;
    }
    EXPECT_EQ(FieldsOf(in).capacity, row.capacity);
    EXPECT_EQ(FieldsOf(in).position, static_cast<unsigned int>(row.before) + row.bytes);
  }
}

TEST(StreamBuffer, TextsAndBlocksGrowAsTheirSingleCharactersWould) {
  const struct {
    int bytes;  // of a block behind its count
    unsigned int capacity;
  } rows[] = {{2996, 3000}, {2997, 6000}, {5996, 6000}, {5997, 9000}, {20000, 21000}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bytes);
    CQXVStreamBufIn in;
    const std::vector<unsigned char> block(static_cast<std::size_t>(row.bytes), 7);
    in.in(block.data(), row.bytes);
    EXPECT_EQ(FieldsOf(in).capacity, row.capacity);
    EXPECT_EQ(in.GetPos(), static_cast<unsigned int>(row.bytes) + 4);
  }
  CQXVStreamBufIn text;
  text << 'x' << CQXString(support::Repeat(QXT('a'), 1497).c_str());  // 1 + 4 + 2994 = 2999
  EXPECT_EQ(FieldsOf(text).capacity, 3000u);
  CQXVStreamBufIn longer;
  longer << 'x' << CQXString(support::Repeat(QXT('a'), 1498).c_str());  // its last character would straddle 3000
  EXPECT_EQ(FieldsOf(longer).capacity, 6000u);
}

TEST(StreamBuffer, AppendingAllocatesAFewTimesOnly) {
  CQXVStreamBufIn in;
  const std::size_t before = support::AllocationsOfThisThread();
  for (int i = 0; i < 1000000; ++i) {
    in << i;
  }
  EXPECT_LE(support::AllocationsOfThisThread() - before, 8u);  // 3000, 6000, 24000 ... 6144000
  EXPECT_EQ(FieldsOf(in).capacity, 4002000u);
  int size = 0;
  const unsigned char* data = in.GetBuffer(size);
  ASSERT_EQ(size, 4000000);
  for (int i = 0; i < 1000000; ++i) {
    int value = -1;
    std::memcpy(&value, data + 4 * i, sizeof value);
    ASSERT_EQ(value, i);
  }
}

TEST(StreamBuffer, ABlockIsItsCountAndItsBytes) {
  CQXVStreamBufIn in;
  const unsigned char block[] = {9, 8, 7};
  in.in(block, 3);
  in.in(block, 0);
  EXPECT_EQ(Written(in), Bytes({3, 0, 0, 0, 9, 8, 7, 0, 0, 0, 0}));
}

TEST(StreamBuffer, OutWithoutADestinationTellsTheCountOnly) {
  const std::string bytes = Bytes({3, 0, 0, 0, 9, 8, 7, 5});
  CQXVStreamBufOut out(Data(bytes), 8);
  int n = -1;
  out.out(nullptr, n);
  EXPECT_EQ(n, 3);
  EXPECT_EQ(out.GetPos(), 0u);
  std::vector<unsigned char> block(static_cast<std::size_t>(n));
  n = 0;
  out.out(block.data(), n);
  EXPECT_EQ(n, 3);
  EXPECT_EQ(block, (std::vector<unsigned char>{9, 8, 7}));
  EXPECT_EQ(out.GetPos(), 7u);
}

TEST(StreamBuffer, LookingAtATextThenTakingItGivesItTwice) {
  CQXVStreamBufIn in;
  in << CQXString(QXT("twice")) << 7;
  int size = 0;
  CQXVStreamBufOut out(in.GetBuffer(size), size);
  CQXString looked;
  CQXString taken;
  int behind = 0;
  out.look(looked) >> taken >> behind;
  EXPECT_EQ(TextOf(looked), QXT("twice"));
  EXPECT_EQ(TextOf(taken), QXT("twice"));
  EXPECT_EQ(behind, 7);
  EXPECT_EQ(out.GetPos(), 18u);
}

TEST(StreamBuffer, ADateThatDoesNotExistIsInvalid) {
  const struct {
    const char* what;
    SYSTEMTIME time;
    COleDateTime::DateTimeStatus status;
  } rows[] = {
      {"31 February", {2024, 2, 0, 31, 0, 0, 0, 0}, COleDateTime::invalid},
      {"29 February of a leap year", {2024, 2, 0, 29, 0, 0, 0, 0}, COleDateTime::valid},
      {"29 February of another year", {2023, 2, 0, 29, 0, 0, 0, 0}, COleDateTime::invalid},
      {"month 13", {2024, 13, 0, 1, 0, 0, 0, 0}, COleDateTime::invalid},
      {"hour 24", {2024, 1, 0, 1, 24, 0, 0, 0}, COleDateTime::invalid},
      {"all zero", {0, 0, 0, 0, 0, 0, 0, 0}, COleDateTime::invalid},
      {"day of week and milliseconds do not count", {2024, 2, 99, 29, 1, 2, 3, 65535}, COleDateTime::valid},
      {"all bits", {65535, 65535, 65535, 65535, 65535, 65535, 65535, 65535}, COleDateTime::invalid},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    CQXVStreamBufIn in;
    in << row.time;
    int size = 0;
    CQXVStreamBufOut out(in.GetBuffer(size), size);
    COleDateTime date;
    out >> date;
    EXPECT_EQ(date.GetStatus(), row.status);
    EXPECT_EQ(out.GetPos(), 16u);
  }
}

TEST(StreamBuffer, AnInvalidDateIsWrittenAsZeros) {
  COleDateTime date(2024, 2, 29, 1, 2, 3);
  date.SetStatus(COleDateTime::invalid);
  CQXVStreamBufIn in;
  in << date;
  EXPECT_EQ(Written(in), std::string(16, '\0'));
}

TEST(StreamBuffer, CopiesOfTheReaderAdvanceAlone) {
  const std::string bytes = Bytes({1, 2, 3});
  CQXVStreamBufOut out(Data(bytes), 3);
  unsigned char value = 0;
  out >> value;
  CQXVStreamBufOut copy(out);
  EXPECT_EQ(FieldsOf(copy).size, 3u);
  copy >> value >> value;
  EXPECT_EQ(value, 3);
  EXPECT_EQ(out.GetPos(), 1u);
  EXPECT_EQ(copy.GetPos(), 3u);
  out = copy;
  EXPECT_EQ(out.GetPos(), 3u);
}

TEST(StreamBuffer, GrowAddsAStepOrAsMuchAsAsked) {
  Growing in;
  in << 1;
  in.Grow();
  EXPECT_EQ(FieldsOf(in).capacity, 6000u);
  in.Grow(1);
  EXPECT_EQ(FieldsOf(in).capacity, 6001u);
  in.Grow(0);
  in.Grow(-5000);
  EXPECT_EQ(FieldsOf(in).capacity, 6001u);
  in.Grow(100000);
  EXPECT_EQ(FieldsOf(in).capacity, 106001u);
  EXPECT_EQ(FieldsOf(in).growStep, 3000u);
  EXPECT_EQ(Written(in), Bytes({1, 0, 0, 0}));
}

}  // namespace

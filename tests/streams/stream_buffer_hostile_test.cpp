// stream_buffer_hostile_test.cpp - CQXVStreamBufIn and CQXVStreamBufOut under wrong use and without memory, and what they keep.

#include "qxv/stream_buffer.h"

#include "streams/bytes.h"
#include "streams/stream_buffer_fields.h"
#include "support/guard_new.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <numeric>
#include <string>

namespace {

using streams_test::Bytes;
using streams_test::Data;
using streams_test::FieldsOf;
using streams_test::Growing;
using streams_test::InFields;
using streams_test::Written;
using support::TextOf;

TEST(StreamBufferMalformed, SetTouchesNothingOutsideTheCapacity) {
  Growing in;
  in << 1;
  for (const int offset : {-1, -4, -2147483647 - 1, 2997, 2998, 3000, 3001, 2147483647}) {
    in.Set(offset, -1);
  }
  EXPECT_EQ(Written(in), Bytes({1, 0, 0, 0}));
  const unsigned char* data = FieldsOf(in).data;
  EXPECT_EQ(std::accumulate(data + 4, data + 3000, 0), 0);
  in.Set(2996, 0x01020304);  // the last place, behind the position
  in.Set(4, 0x05060708);
  in.Grow();  // what was set there survives growing
  EXPECT_EQ(std::memcmp(FieldsOf(in).data + 2996, "\x04\x03\x02\x01\0", 5), 0);
  EXPECT_EQ(std::memcmp(FieldsOf(in).data + 4, "\x08\x07\x06\x05\0", 5), 0);
}

TEST(StreamBufferMalformed, NullDataIsAnEmptyBlock) {
  CQXVStreamBufIn in;
  in.in(nullptr, 5);
  in.in(nullptr, 0);
  EXPECT_EQ(Written(in), Bytes({0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(StreamBufferMalformed, ABlockMayComeFromTheWriterItself) {
  CQXVStreamBufIn in;
  for (int i = 0; i < 2990; ++i) {
    in << static_cast<unsigned char>(i);
  }
  int size = 0;
  const unsigned char* own = in.GetBuffer(size);
  in.in(own + 100, 50);  // grows, which moves the block
  const std::string bytes = Written(in);
  ASSERT_EQ(bytes.size(), 3044u);
  EXPECT_EQ(bytes.substr(2990, 4), Bytes({50, 0, 0, 0}));
  EXPECT_EQ(bytes.substr(2994), bytes.substr(100, 50));
}

TEST(StreamBufferMalformed, CountsOutsideGiveEmptyTexts) {
  const struct {
    const char* what;
    std::string bytes;
  } rows[] = {
      {"-1", Bytes({0xFF, 0xFF, 0xFF, 0xFF})},
      {"the lowest", Bytes({0, 0, 0, 0x80})},
      {"the highest", Bytes({0xFF, 0xFF, 0xFF, 0x7F})},
      {"one above the limit", Bytes({0, 0, 0, 0x40})},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    CQXVStreamBufOut out(Data(row.bytes), 4);
    CQXString text(QXT("old"));
    CString hostText(QXT("old"));
    out.look(text).look(hostText);
    EXPECT_EQ(TextOf(text), QXT(""));
    EXPECT_EQ(TextOf(hostText), QXT(""));
    out >> text;
    EXPECT_EQ(out.GetPos(), 4u);
  }
}

TEST(StreamBufferMalformed, MoreThan32BitsOfBytesAreRefused) {
  Growing in;
  in << 1;
  unsigned char* raw = reinterpret_cast<unsigned char*>(&in);
  const InFields before = FieldsOf(in);
  const auto setFields = [&](unsigned int capacity, unsigned int position) {
    std::memcpy(raw + offsetof(InFields, capacity), &capacity, sizeof capacity);
    std::memcpy(raw + offsetof(InFields, position), &position, sizeof position);
  };
  setFields(0xFFFFFFFFu - 2999, 0xFFFFFFFFu - 2999);  // a step more does not fit
  EXPECT_THROW(in << 'x', std::bad_alloc);
  EXPECT_THROW(in.Grow(3000), std::bad_alloc);
  EXPECT_THROW(in.in(before.data, 10), std::bad_alloc);
  EXPECT_THROW(in << CQXString(QXT("abc")), std::bad_alloc);
  EXPECT_EQ(FieldsOf(in).capacity, 0xFFFFFFFFu - 2999);
  EXPECT_EQ(FieldsOf(in).position, 0xFFFFFFFFu - 2999);
  setFields(before.capacity, before.position);
  EXPECT_EQ(Written(in), Bytes({1, 0, 0, 0}));
}

TEST(StreamBufferMalformed, LackOfMemoryLeavesTheBlockAsItWas) {
  const std::size_t live = support::LiveArrays();
  {
    CQXVStreamBufIn in;
    for (int i = 0; i < 749; ++i) {
      in << i;
    }
    const std::string before = Written(in);
    const CQXString text(support::Repeat(QXT('a'), 50).c_str());
    const auto refuses = [&](auto put) {
      support::FailAllocation fail(0);
      EXPECT_THROW(put(), std::bad_alloc);
      EXPECT_TRUE(fail.Refused());
      EXPECT_EQ(Written(in), before);
      EXPECT_EQ(FieldsOf(in).capacity, 3000u);
    };
    refuses([&] { in << 1.0; });
    refuses([&] { in << GUID{}; });
    refuses([&] { in << text; });
    refuses([&] { in.in(Data(before), 100); });
    in << 1.0;
    EXPECT_EQ(in.GetPos(), 3004u);
  }
  EXPECT_EQ(support::LiveArrays(), live);
  support::FailAllocation fail(0);
  EXPECT_THROW(CQXVStreamBufIn{}, std::bad_alloc);
}

TEST(StreamBufferMalformed, LackOfMemoryLeavesTheTextAndThePosition) {
  CQXVStreamBufIn in;
  in << CQXString(support::Repeat(QXT('b'), 300).c_str());
  int size = 0;
  CQXVStreamBufOut out(in.GetBuffer(size), size);
  CQXString text(QXT("old"));
  CString hostText(QXT("old"));
  const std::size_t live = support::LiveArrays();
  for (std::size_t index = 0; index < 2; ++index) {
    SCOPED_TRACE(index);
    {
      support::FailAllocation fail(index);
      EXPECT_THROW(out >> text, std::bad_alloc);
    }
    {
      support::FailAllocation fail(index);
      EXPECT_THROW(out >> hostText, std::bad_alloc);
    }
    EXPECT_EQ(TextOf(text), QXT("old"));
    EXPECT_EQ(TextOf(hostText), QXT("old"));
    EXPECT_EQ(out.GetPos(), 0u);
  }
  EXPECT_EQ(support::LiveArrays(), live);
}

TEST(StreamBufferKept, CopyOfTheWriterSharesTheBlock) {
  const std::size_t live = support::LiveArrays();
  {
    CQXVStreamBufIn in;
    in << 5;
    alignas(CQXVStreamBufIn) unsigned char place[sizeof(CQXVStreamBufIn)];
    auto* copy = new (place) CQXVStreamBufIn(in);  // never destroyed: it has the other's block
    EXPECT_EQ(FieldsOf(*copy).data, FieldsOf(in).data);
    EXPECT_EQ(FieldsOf(*copy).capacity, 3000u);
    EXPECT_EQ(FieldsOf(*copy).position, 4u);
    EXPECT_EQ(FieldsOf(*copy).growStep, 3000u);
    copy->Set(0, 6);
    EXPECT_EQ(Written(in), Bytes({6, 0, 0, 0}));
  }
  EXPECT_EQ(support::LiveArrays(), live);
}

TEST(StreamBufferKept, ANegativeBlockIsItsCountAlone) {
  const unsigned char block[] = {9, 8, 7};
  CQXVStreamBufIn in;
  in.in(block, -3);
  EXPECT_EQ(Written(in), Bytes({0xFD, 0xFF, 0xFF, 0xFF}));
  int size = 0;
  CQXVStreamBufOut out(in.GetBuffer(size), size);
  unsigned char destination = 1;
  int n = 0;
  out.out(&destination, n);
  EXPECT_EQ(n, -3);
  EXPECT_EQ(destination, 1);
  EXPECT_EQ(out.GetPos(), 4u);
}

TEST(StreamBufferKept, TheReaderNeverConsultsTheSize) {
  const std::string bytes = Bytes({1, 0, 0, 0, 2, 0, 0, 0});
  for (const int size : {8, 4, 0, -1}) {
    SCOPED_TRACE(size);
    CQXVStreamBufOut out(Data(bytes), size);
    int first = 0;
    int second = 0;
    out >> first >> second;
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(FieldsOf(out).size, static_cast<unsigned int>(size));
    EXPECT_EQ(FieldsOf(out).position, 8u);
  }
}

}  // namespace

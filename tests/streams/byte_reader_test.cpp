// byte_reader_test.cpp - ByteReader, ByteWriter and the bounded reading of counted texts and blocks.

#include "streams/byte_reader.h"

#include "streams/byte_writer.h"
#include "streams/bytes.h"
#include "streams/stream_block.h"
#include "support/file_bytes.h"
#include "support/text.h"

#include "qxv/stream_buffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace {

using qxv::ByteReader;
using qxv::ByteWriter;
using streams_test::Bytes;
using support::BytesOf;
using support::TextOf;

// A copy that ends where an allocation ends, so that a byte read behind it ends the program.
struct Exact {
  explicit Exact(const std::string& bytes) : data(new unsigned char[bytes.size()]), size(bytes.size()) {
    std::copy(bytes.begin(), bytes.end(), data.get());
  }
  std::span<const unsigned char> Span() const { return {data.get(), size}; }
  std::unique_ptr<unsigned char[]> data;
  std::size_t size;
};

TEST(ByteReader, NumbersAreLittleEndian) {
  const Exact bytes(Bytes({0x81, 0x02, 0x81, 4, 3, 2, 0x81, 8, 7, 6, 5, 4, 3, 2, 0x81}));
  ByteReader in(bytes.Span());
  EXPECT_EQ(in.U8(), 0x81);
  EXPECT_EQ(in.U16(), 0x8102);
  EXPECT_EQ(in.U32(), 0x81020304u);
  EXPECT_EQ(in.U64(), 0x8102030405060708u);
  EXPECT_EQ(in.Left(), 0u);
  EXPECT_FALSE(in.Failed());
}

TEST(ByteReader, SignedAndFloatingNumbersAreTheirBits) {
  const Exact bytes(Bytes({0xFE, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,  //
                           0,    0,    0xC0, 0xBF, 0,    0,    0,    0,    0,    0,    0xF8, 0xBF}));
  ByteReader in(bytes.Span());
  EXPECT_EQ(in.I16(), -2);
  EXPECT_EQ(in.I32(), -2);
  EXPECT_EQ(in.I64(), -2);
  EXPECT_EQ(in.F32(), -1.5f);
  EXPECT_EQ(in.F64(), -1.5);
  EXPECT_FALSE(in.Failed());
}

TEST(ByteReader, TheFirstFailureSticks) {
  const Exact bytes(Bytes({1, 2, 3}));
  ByteReader in(bytes.Span());
  EXPECT_EQ(in.U16(), 0x0201);
  EXPECT_EQ(in.U32(), 0u);
  EXPECT_TRUE(in.Failed());
  EXPECT_EQ(in.U8(), 0) << "a byte is left, but the failure sticks";
  EXPECT_EQ(in.Left(), 0u);
  EXPECT_EQ(in.Position(), 2u);
  EXPECT_TRUE(in.Bytes(1).empty());
  in.GoTo(0);
  EXPECT_TRUE(in.Failed());
}

TEST(ByteReader, BytesSkipAndGoToStayInside) {
  const Exact bytes(Bytes({1, 2, 3, 4}));
  ByteReader in(bytes.Span());
  in.Skip(1);
  const auto two = in.Bytes(2);
  ASSERT_EQ(two.size(), 2u);
  EXPECT_EQ(two[0], 2);
  EXPECT_EQ(in.Left(), 1u);
  in.GoTo(4);
  EXPECT_EQ(in.Left(), 0u);
  EXPECT_TRUE(in.Bytes(0).empty());
  in.GoTo(0);
  EXPECT_EQ(in.U8(), 1);
  EXPECT_FALSE(in.Failed());
  in.GoTo(5);
  EXPECT_TRUE(in.Failed());
}

TEST(ByteReader, HugeSizesDoNotWrap) {
  const Exact bytes(Bytes({1, 2, 3, 4}));
  for (const std::size_t n : {std::size_t{4}, SIZE_MAX, SIZE_MAX - 1, SIZE_MAX / 2 + 1}) {
    SCOPED_TRACE(n);
    ByteReader skipping(bytes.Span());
    skipping.Skip(1);
    skipping.Skip(n);
    EXPECT_TRUE(skipping.Failed());
    ByteReader taking(bytes.Span());
    taking.Skip(1);
    EXPECT_TRUE(taking.Bytes(n).empty());
    EXPECT_TRUE(taking.Failed());
  }
}

TEST(ByteReader, NothingCanBeReadFromNothing) {
  ByteReader in({});
  EXPECT_EQ(in.Left(), 0u);
  EXPECT_FALSE(in.Failed());
  EXPECT_EQ(in.U8(), 0);
  EXPECT_TRUE(in.Failed());
}

TEST(ByteReader, FailMakesEverythingBehindItFail) {
  const Exact bytes(Bytes({1, 2}));
  ByteReader in(bytes.Span());
  in.Fail();
  EXPECT_EQ(in.U8(), 0);
  EXPECT_TRUE(in.Failed());
}

TEST(ByteReader, EveryPrefixOfAHeaderFailsOnce) {
  const std::string header = Bytes({1, 2, 0, 3, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0, 'a', 'b'});
  for (std::size_t n = 0; n <= header.size(); ++n) {
    SCOPED_TRACE(n);
    const Exact bytes(header.substr(0, n));
    ByteReader in(bytes.Span());
    const int a = in.U8();
    const int b = in.U16();
    const auto c = in.U32();
    const auto d = in.U64();
    const auto tail = in.Bytes(2);
    EXPECT_EQ(in.Failed(), n < header.size());
    EXPECT_EQ(a, n >= 1 ? 1 : 0);
    EXPECT_EQ(b, n >= 3 ? 2 : 0);
    EXPECT_EQ(c, n >= 7 ? 3u : 0u);
    EXPECT_EQ(d, n >= 15 ? 4u : 0u);
    EXPECT_EQ(tail.size(), n >= 17 ? 2u : 0u);
  }
}

TEST(ByteWriter, NumbersAreLittleEndian) {
  std::vector<unsigned char> bytes = {0xAA};
  ByteWriter out(bytes);
  out.U8(0x81);
  out.U16(0x8102);
  out.U32(0x81020304);
  out.U64(0x8102030405060708);
  out.I16(-2);
  out.I32(-2);
  out.I64(-2);
  out.F32(-1.5f);
  out.F64(-1.5);
  out.Zeros(2);
  out.Bytes(BytesOf("xy"));
  const std::string expected = Bytes({0xAA, 0x81, 0x02, 0x81, 4,    3,    2,    0x81, 8,    7,    6,    5,    4,    3,    2, 0x81,
                                      0xFE, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0,
                                      0xC0, 0xBF, 0,    0,    0,    0,    0,    0,    0xF8, 0xBF, 0,    0,    'x',  'y'});
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), expected);
  EXPECT_EQ(out.Size(), expected.size());
}

TEST(ByteWriter, APlaceholderIsReplacedInsideOnly) {
  std::vector<unsigned char> bytes;
  ByteWriter out(bytes);
  out.U32(0);
  out.U8(9);
  EXPECT_TRUE(out.SetU32(0, 0x01020304));
  EXPECT_TRUE(out.SetU32(1, 0x05060708));
  EXPECT_FALSE(out.SetU32(2, 0));
  EXPECT_FALSE(out.SetU32(5, 0));
  EXPECT_FALSE(out.SetU32(SIZE_MAX, 0));
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), Bytes({4, 8, 7, 6, 5}));
}

TEST(StreamBlock, ReadsWhatTheStreamBufferWrites) {
  CQXVStreamBufIn written;
  const unsigned char block[] = {9, 8, 7};
  written << CQXString(QXT("A\u4E2D")) << CString(QXT("b")) << CQXString();
  written.in(block, 3);
  written.in(block, -3);
  int size = 0;
  const unsigned char* data = written.GetBuffer(size);
  ByteReader in({data, static_cast<std::size_t>(size)});
  CQXString text;
  CString hostText;
  CQXString empty(QXT("old"));
  std::span<const unsigned char> bytes;
  EXPECT_TRUE(ReadCountedText(in, text));
  EXPECT_TRUE(ReadCountedText(in, hostText));
  EXPECT_TRUE(ReadCountedText(in, empty));
  EXPECT_TRUE(ReadCountedBytes(in, bytes));
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), Bytes({9, 8, 7}));
  EXPECT_TRUE(ReadCountedBytes(in, bytes));
  EXPECT_TRUE(bytes.empty());
  EXPECT_EQ(in.Left(), 0u);
  EXPECT_EQ(TextOf(text), QXT("A\u4E2D"));
  EXPECT_EQ(TextOf(hostText), QXT("b"));
  EXPECT_EQ(TextOf(empty), QXT(""));
}

TEST(StreamBlockMalformed, ACountBeyondTheBytesIsRefused) {
  const struct {
    const char* what;
    std::string bytes;
  } rows[] = {
      {"no bytes", ""},
      {"half a count", Bytes({1, 0, 0})},
      {"one unit short", Bytes({2, 0, 0, 0, 0x41, 0})},
      {"half a unit short", Bytes({2, 0, 0, 0, 0x41, 0, 0x42})},
      {"two gibibytes", Bytes({0xFF, 0xFF, 0xFF, 0x7F, 0x41, 0, 0x42, 0})},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const Exact bytes(row.bytes);
    ByteReader in(bytes.Span());
    CQXString text(QXT("old"));
    EXPECT_FALSE(ReadCountedText(in, text));
    EXPECT_EQ(TextOf(text), QXT("old"));
    EXPECT_TRUE(in.Failed());
    EXPECT_FALSE(ReadCountedText(in, text)) << "the failure sticks";
  }
  const Exact block(Bytes({3, 0, 0, 0, 1, 2}));
  ByteReader in(block.Span());
  std::span<const unsigned char> found;
  EXPECT_FALSE(ReadCountedBytes(in, found));
}

TEST(StreamBlockMalformed, ANegativeCountIsAnEmptyTextWithoutUnits) {
  const Exact bytes(Bytes({0xFF, 0xFF, 0xFF, 0xFF, 7}));
  ByteReader in(bytes.Span());
  CQXString text(QXT("old"));
  EXPECT_TRUE(ReadCountedText(in, text));
  EXPECT_EQ(TextOf(text), QXT(""));
  EXPECT_EQ(in.U8(), 7);
}

}  // namespace

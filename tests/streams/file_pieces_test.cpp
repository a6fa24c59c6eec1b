// file_pieces_test.cpp - files read and written in pieces.

#include "streams/file_pieces.h"

#include "support/file_bytes.h"
#include "support/guard_new.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace {

using qxv::FileReader;
using qxv::FileWriter;
using qxv::kFilePiece;
using support::TempFolder;

// Bytes whose value tells their place, with no period that a piece could hide.
std::string Numbered(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<char>(i * 31 + i / 251);
  }
  return bytes;
}

std::string TextOf(std::span<const unsigned char> bytes) { return std::string(bytes.begin(), bytes.end()); }

struct NumberedFile {
  explicit NumberedFile(std::size_t size) : bytes(Numbered(size)) { EXPECT_TRUE(support::WriteBytes(name, bytes)); }
  TempFolder folder;
  support::Text name = folder.File(QXT("a.bin"));
  std::string bytes;
};

TEST(FileReader, WhatCannotBeOpened) {
  const TempFolder folder;
  const support::Text names[] = {folder.File(QXT("none.bin")), folder.Path(), QXT(""), folder.File(QXT("none\\a.bin"))};
  for (const auto& name : names) {
    FileReader in;
    EXPECT_NE(in.Open(name.c_str()), 0u) << support::Printable(name);
  }
}

TEST(FileReader, TheLengthIsKnownAtOnce) {
  const NumberedFile file(5000);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  EXPECT_EQ(in.Length(), 5000u);
  EXPECT_EQ(in.Left(), 5000u);
}

TEST(FileReader, AnEmptyFileHasNothing) {
  const NumberedFile file(0);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  EXPECT_EQ(in.Left(), 0u);
  EXPECT_TRUE(in.Take(1).empty());
  EXPECT_TRUE(in.Peek(kFilePiece).empty());
  unsigned char byte = 7;
  EXPECT_FALSE(in.Read({&byte, 1}));
  EXPECT_TRUE(in.Read({}));
}

TEST(FileReader, TakesHeadersPieceByPiece) {
  const NumberedFile file(3 * kFilePiece);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  std::size_t at = 0;
  for (const std::size_t count :
       {std::size_t{54}, std::size_t{1024}, std::size_t{4096}, kFilePiece, kFilePiece - 1, std::size_t{3}}) {
    EXPECT_EQ(TextOf(in.Take(count)), file.bytes.substr(at, count)) << count;
    at += count;
    EXPECT_EQ(in.Left(), file.bytes.size() - at);
  }
}

TEST(FileReader, TakesLessWhereTheFileEnds) {
  const NumberedFile file(100);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  EXPECT_EQ(in.Take(60).size(), 60u);
  EXPECT_EQ(TextOf(in.Take(60)), file.bytes.substr(60));
  EXPECT_EQ(in.Left(), 0u);
  EXPECT_TRUE(in.Take(1).empty());
}

TEST(FileReader, PeekShowsWithoutMoving) {
  const NumberedFile file(2 * kFilePiece + 77);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  std::string all;
  while (in.Left() > 0) {
    const auto shown = in.Peek(500);
    ASSERT_GE(shown.size(), std::min<std::uint64_t>(500, in.Left()));
    EXPECT_EQ(in.Peek(1).data(), shown.data()) << "nothing was read again";
    const std::size_t count = std::min<std::size_t>(shown.size(), 131);
    all += TextOf(shown.first(count));
    in.Skip(count);
  }
  EXPECT_TRUE(all == file.bytes);
}

TEST(FileReader, ReadsBlocksOfEverySize) {
  const NumberedFile file(5 * kFilePiece + 5);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  std::size_t at = 0;
  for (const std::size_t count :
       {std::size_t{10}, kFilePiece, std::size_t{1}, 2 * kFilePiece + 3, kFilePiece - 1, std::size_t{5000}}) {
    std::string block(count, '?');
    ASSERT_TRUE(in.Read({reinterpret_cast<unsigned char*>(block.data()), count}));
    EXPECT_TRUE(block == file.bytes.substr(at, count)) << count;
    at += count;
  }
  EXPECT_EQ(in.Left(), file.bytes.size() - at);
  std::string more(in.Left() + 1, '?');
  EXPECT_FALSE(in.Read({reinterpret_cast<unsigned char*>(more.data()), more.size()}));
}

TEST(FileReader, GoesToAnyPlace) {
  const NumberedFile file(3 * kFilePiece);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  for (const std::size_t place : {std::size_t{0}, std::size_t{4095}, std::size_t{4096}, std::size_t{4097}, 2 * kFilePiece,
                                  std::size_t{3}, 3 * kFilePiece - 2, std::size_t{128}}) {
    in.GoTo(place);
    EXPECT_EQ(in.Left(), file.bytes.size() - place);
    EXPECT_EQ(TextOf(in.Take(100)), file.bytes.substr(place, 100)) << place;
  }
}

TEST(FileReader, BehindTheEndNothingIsLeft) {
  const NumberedFile file(100);
  for (const std::uint64_t place : {std::uint64_t{100}, std::uint64_t{101}, std::uint64_t{0x7FFFFFFF}, ~std::uint64_t{0}}) {
    FileReader in;
    ASSERT_EQ(in.Open(file.name.c_str()), 0u);
    in.GoTo(place);
    EXPECT_EQ(in.Left(), 0u) << place;
    EXPECT_TRUE(in.Take(1).empty()) << place;
  }
}

TEST(FileReader, NoBlockIsReadFromAPlaceThatCannotBe) {
  const NumberedFile file(3 * kFilePiece);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  in.GoTo(~std::uint64_t{0});
  std::string block(kFilePiece, '?');
  EXPECT_FALSE(in.Read({reinterpret_cast<unsigned char*>(block.data()), block.size()}));
  EXPECT_EQ(block, std::string(kFilePiece, '?'));
}

TEST(FileReader, AFileThatIsCutMeanwhileEndsThere) {
  const NumberedFile file(2 * kFilePiece);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  EXPECT_EQ(in.Take(10).size(), 10u);
  ASSERT_TRUE(support::WriteBytes(file.name, file.bytes.substr(0, 5000)));
  std::string rest(kFilePiece, '?');
  EXPECT_FALSE(in.Read({reinterpret_cast<unsigned char*>(rest.data()), rest.size()}));
  EXPECT_TRUE(in.Take(1).empty());
}

TEST(FileReader, TellsWhetherAFileHasGrownMeanwhile) {
  const NumberedFile file(5000);
  FileReader in;
  ASSERT_EQ(in.Open(file.name.c_str()), 0u);
  EXPECT_FALSE(in.HasGrown());
  EXPECT_EQ(in.Left(), 0u);
  in.GoTo(4990);
  EXPECT_EQ(TextOf(in.Take(20)), file.bytes.substr(4990));
  ASSERT_TRUE(support::WriteBytes(file.name, file.bytes + "x"));
  EXPECT_TRUE(in.HasGrown());
  EXPECT_EQ(in.Length(), 5000u);
  in.GoTo(5400);
  EXPECT_EQ(in.Left(), 0u);
  EXPECT_TRUE(in.Take(1).empty());
}

// The system's part answers lack of memory by its own error.
TEST(FileReader, LackOfMemoryIsThrownOrRefused) {
  const NumberedFile file(10);
  for (std::size_t index = 0;; ++index) {
    FileReader in;
    const support::FailAllocation fail(index);
    qxv::os::ErrorCode status = 0;
    bool thrown = false;
    try {
      status = in.Open(file.name.c_str());
    } catch (const std::bad_alloc&) {
      thrown = true;
    }
    if (!fail.Refused()) {
      EXPECT_GT(index, 0u);
      break;
    }
    EXPECT_TRUE(thrown || status != 0) << index;
  }
}

TEST(FileWriter, WhatCannotBeCreated) {
  const TempFolder folder;
  const support::Text names[] = {folder.Path(), QXT(""), folder.File(QXT("none\\a.bin"))};
  for (const auto& name : names) {
    FileWriter out;
    EXPECT_NE(out.Open(name.c_str()), 0u) << support::Printable(name);
  }
}

TEST(FileWriter, EmptiesWhatWasThere) {
  const NumberedFile file(100);
  {
    FileWriter out;
    ASSERT_EQ(out.Open(file.name.c_str()), 0u);
  }
  EXPECT_EQ(support::ReadBytes(file.name), "");
}

TEST(FileWriter, WritesBlocksZerosAndRoomInOrder) {
  const TempFolder folder;
  const auto name = folder.File(QXT("a.bin"));
  const std::string bytes = Numbered(4 * kFilePiece);
  std::string expected;
  {
    FileWriter out;
    ASSERT_EQ(out.Open(name.c_str()), 0u);
    std::size_t at = 0;
    for (const std::size_t count :
         {std::size_t{1}, std::size_t{4096}, kFilePiece - 1, kFilePiece, kFilePiece + 1, std::size_t{7}}) {
      const std::string block = bytes.substr(at, count);
      out.Write(support::BytesOf(block));
      out.Zeros(3);
      const auto room = out.Room(5);
      ASSERT_GE(room.size(), 5u);
      std::copy_n("abcde", 5, room.begin());
      out.Commit(4);
      expected += block + std::string(3, '\0') + "abcd";
      at += count;
    }
    out.Zeros(2 * kFilePiece + 1);
    expected.append(2 * kFilePiece + 1, '\0');
    ASSERT_EQ(out.Room(kFilePiece).size(), kFilePiece);
  }
  EXPECT_TRUE(support::ReadBytes(name) == expected);
}

TEST(FileWriter, LackOfMemoryLeavesTheFile) {
  const NumberedFile file(10);
  {
    FileWriter out;
    const support::FailAllocation fail(0);
    EXPECT_THROW((void)out.Open(file.name.c_str()), std::bad_alloc);
  }
  EXPECT_EQ(support::ReadBytes(file.name), file.bytes);
}

}  // namespace

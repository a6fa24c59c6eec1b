// append_test.cpp - one block added to a file by name.

#include "os/append.h"

#include "support/file_bytes.h"
#include "support/guard_new.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace qxv::os;
using support::BytesOf;
using support::ReadBytes;
using support::TempFolder;
using support::Text;

ErrorCode AppendBlockTo(const QXChar* name, std::span<const unsigned char> block, std::size_t openingBytes) {
  AppendFile file;
  const ErrorCode error = file.SetName(name);
  return error != 0 ? error : file.Append(block, openingBytes);
}

TEST(Append, AnEmptyOrMissingFileGetsTheOpening) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.log"));
  EXPECT_EQ(AppendBlockTo(name.c_str(), BytesOf("head:one;"), 5), 0u);
  EXPECT_EQ(AppendBlockTo(name.c_str(), BytesOf("head:two;"), 5), 0u);
  EXPECT_EQ(AppendBlockTo(name.c_str(), BytesOf("three;"), 0), 0u);
  EXPECT_EQ(ReadBytes(name), "head:one;two;three;");
  ASSERT_TRUE(support::WriteBytes(name, ""));
  EXPECT_EQ(AppendBlockTo(name.c_str(), BytesOf("head:"), 5), 0u);
  EXPECT_EQ(AppendBlockTo(name.c_str(), BytesOf("head:"), 5), 0u) << "nothing to add";
  EXPECT_EQ(ReadBytes(name), "head:");
}

TEST(Append, TheNameIsFoundWhateverItsCase) {
  const TempFolder folder;
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("Day.TXT")), "1"));
  EXPECT_EQ(AppendBlockTo(folder.File(QXT("dAY.txt")).c_str(), BytesOf("2"), 0), 0u);
  EXPECT_EQ(ReadBytes(folder.File(QXT("Day.TXT"))), "12");
}

TEST(Append, FailuresSayWhy) {
  const TempFolder folder;
  EXPECT_EQ(AppendBlockTo(nullptr, BytesOf("x"), 0), 3u);
  EXPECT_EQ(AppendBlockTo(QXT(""), BytesOf("x"), 0), 3u);
  EXPECT_NE(AppendBlockTo(QXT("Q:\\a"), BytesOf("x"), 0), 0u) << "no such drive";
  EXPECT_EQ(AppendBlockTo(folder.File(QXT("none\\a")).c_str(), BytesOf("x"), 0), 3u);
  EXPECT_EQ(AppendBlockTo(folder.Path().substr(0, folder.Path().size() - 1).c_str(), BytesOf("x"), 0), 5u) << "a folder";
  EXPECT_EQ(AppendBlockTo(Text(40000, QXT('n')).c_str(), BytesOf("x"), 0), 123u);
}

TEST(Append, OneNameTakesManyBlocks) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.log"));
  AppendFile file;
  EXPECT_EQ(file.Append(BytesOf("x"), 0), 3u) << "no name yet";
  ASSERT_EQ(file.SetName(name.c_str()), 0u);
  EXPECT_FALSE(support::Exists(name)) << "a name alone creates nothing";
  EXPECT_EQ(file.Append(BytesOf("head:one;"), 5), 0u);
  EXPECT_EQ(file.Append(BytesOf("head:two;"), 5), 0u);
  EXPECT_EQ(ReadBytes(name), "head:one;two;");
  std::filesystem::remove(support::NativePath(name));
  EXPECT_EQ(file.Append(BytesOf("head:three;"), 5), 0u) << "removed meanwhile";
  EXPECT_EQ(ReadBytes(name), "head:three;");
  ASSERT_TRUE(support::WriteBytes(name, ""));
  EXPECT_EQ(file.Append(BytesOf("head:four;"), 5), 0u) << "emptied meanwhile";
  EXPECT_EQ(ReadBytes(name), "head:four;");
  ASSERT_EQ(file.SetName(folder.File(QXT("b.log")).c_str()), 0u);
  EXPECT_EQ(file.Append(BytesOf("b"), 0), 0u);
  EXPECT_EQ(ReadBytes(folder.File(QXT("b.log"))), "b");
  EXPECT_EQ(file.SetName(QXT("")), 3u);
  EXPECT_EQ(file.Append(BytesOf("x"), 0), 3u) << "the name before is gone";
}

TEST(Append, WithoutMemoryABlockIsRefused) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a file whose name is longer than a string holds in itself.log"));
  AppendFile file;
  ASSERT_EQ(file.SetName(name.c_str()), 0u);
  for (std::size_t index = 0;; ++index) {
    const support::FailAllocation refuse(index);
    const ErrorCode error = file.Append(BytesOf("x"), 0);
    if (!refuse.Refused()) {
      EXPECT_EQ(error, 0u);
      break;
    }
    EXPECT_EQ(error, 8u) << "refusal " << index;
  }
  EXPECT_EQ(ReadBytes(name), "x");
}

}  // namespace

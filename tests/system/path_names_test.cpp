// path_names_test.cpp - the form of names, and whether they stand for something.

#include "qxv/path.h"

#include "os/file_system.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace {

using support::TempFolder;
using support::Text;

struct Row {
  Text text;
  int file;
  int folder;
};

void ExpectForms(const Row& row) {
  EXPECT_EQ(QXVIsNormalizedFile(row.text.c_str()), row.file) << support::Printable(row.text);
  EXPECT_EQ(QXVIsNormalizedPath(row.text.c_str()), row.folder) << support::Printable(row.text);
}

TEST(PathNames, FilesAndFoldersDifferInTheLastCharacter) {
  const Row rows[] = {
      {QXT("C:\\a.txt"), 1, 0},       {QXT("C:\\dir\\"), 0, 1},
      {QXT("C:\\dir"), 1, 0},         {QXT("C:\\"), 0, 1},
      {QXT("z:\\a"), 1, 0},           {QXT("C:\\dir/"), 1, 0},  // a slash is an ordinary character here
      {QXT("C:\\a\\b\\c.d.e"), 1, 0}, {QXT("C:\\\u4E2D\u6587.txt"), 1, 0},
      {QXT("C:\\\u4E2D\\"), 0, 1},
  };
  for (const Row& row : rows) {
    ExpectForms(row);
  }
}

TEST(PathNames, TheFirstCharacterIsALetterOfAscii) {
  for (const QXChar letter : Text(QXT("azAZ"))) {
    ExpectForms({Text(1, letter) + QXT(":\\x"), 1, 0});
    ExpectForms({Text(1, letter) + QXT(":\\x\\"), 0, 1});
  }
  for (const QXChar other : Text(QXT("1@[`{/\\:.\u00C4\u0410\uFF21"))) {
    ExpectForms({Text(1, other) + QXT(":\\x"), 0, 0});
    ExpectForms({Text(1, other) + QXT(":\\x\\"), 0, 0});
  }
}

TEST(PathNames, ForbiddenCharactersCountFromTheFourthOn) {
  for (const QXChar forbidden : Text(QXT(":*?\"<>|"))) {
    for (const Text& start : {Text(QXT("C:\\")), Text(QXT("C:\\abc"))}) {
      ExpectForms({start + forbidden, 0, 0});
      ExpectForms({start + forbidden + QXT("b"), 0, 0});
      ExpectForms({start + forbidden + QXT("\\"), 0, 0});
    }
    ExpectForms({Text(QXT("C")) + forbidden + forbidden + QXT("a"), 1, 0});
  }
  ExpectForms({QXT("C:\\a:b"), 0, 0});
  ExpectForms({Text(QXT("C:\\a\t\x01;,=+[]%#")), 1, 0});
}

TEST(PathNames, ShortTextsAreNeither) {
  for (const Text& text : {Text(), Text(QXT("C")), Text(QXT("C:")), Text(QXT("C\\")), Text(QXT("\\\\"))}) {
    ExpectForms({text, 0, 0});
  }
  EXPECT_EQ(QXVIsNormalizedFile(nullptr), 0);
  EXPECT_EQ(QXVIsNormalizedPath(nullptr), 0);
  EXPECT_EQ(QXVIsFileExist(nullptr), 0);
  EXPECT_EQ(QXVIsPathExist(nullptr), 0);
  EXPECT_EQ(QXVIsFileExist(QXT("")), 0);
  EXPECT_EQ(QXVIsPathExist(QXT("")), 0);
}

TEST(PathNames, NothingBehindTheTerminatorIsRead) {
  for (const Text& text : {Text(QXT("")), Text(QXT("C")), Text(QXT("C:")), Text(QXT("C:\\")), Text(QXT("C:\\a\\"))}) {
    const std::unique_ptr<QXChar[]> block(new QXChar[text.size() + 1]);  // ends at a page that may not be touched
    std::copy_n(text.c_str(), text.size() + 1, block.get());
    (void)QXVIsNormalizedFile(block.get());
    EXPECT_EQ(QXVIsNormalizedPath(block.get()), text.size() >= 3 ? 1 : 0);
    EXPECT_EQ(QXVIsFileExist(block.get()), 0);
    (void)QXVIsPathExist(block.get());
  }
}

TEST(PathNamesKept, SecondAndThirdCharacterAreNotLookedAt) {
  ExpectForms({QXT("Cxya"), 1, 0});
  ExpectForms({QXT("Cxy"), 1, 0});
  ExpectForms({QXT("C::"), 1, 0});
  ExpectForms({QXT("C*?"), 1, 0});
  ExpectForms({QXT("Cx\\"), 0, 1});
  ExpectForms({QXT("a.txt"), 1, 0});
  ExpectForms({QXT("C\\\\a"), 1, 0});
}

TEST(PathNames, AFileExistsUnderItsFullNameOnly) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.txt"));
  ASSERT_TRUE(support::WriteBytes(name, "x"));
  EXPECT_EQ(QXVIsFileExist(name.c_str()), 1);
  EXPECT_EQ(QXVIsFileExist(folder.File(QXT("b.txt")).c_str()), 0);
  EXPECT_EQ(QXVIsFileExist(folder.File(QXT("none\\a.txt")).c_str()), 0);
  EXPECT_EQ(QXVIsFileExist(folder.File(QXT("*.txt")).c_str()), 0) << "no pattern";
  EXPECT_EQ(QXVIsPathExist((name + QXT("\\")).c_str()), 0) << "a file is no folder";

  Text before;
  ASSERT_EQ(qxv::os::GetCurrentFolder(before), 0u);
  ASSERT_EQ(qxv::os::SetCurrentFolder(folder.Path().c_str()), 0u);
  EXPECT_EQ(QXVIsFileExist(QXT("a.txt")), 0) << "a relative name";
  ASSERT_EQ(qxv::os::CreateFolder(QXT("abc")), 0u);
  EXPECT_EQ(QXVIsFileExist(QXT("abc")), 0);
  EXPECT_EQ(QXVIsPathExist(QXT("abc\\")), 0) << "a relative name";
  ASSERT_EQ(qxv::os::SetCurrentFolder(before.c_str()), 0u);
}

TEST(PathNames, AFolderExistsUnderBothForms) {
  const TempFolder folder;
  const Text path = folder.Path();
  EXPECT_EQ(QXVIsPathExist(path.c_str()), 1);
  EXPECT_EQ(QXVIsPathExist(path.substr(0, path.size() - 1).c_str()), 0) << "without its backslash it has a file's form";
  EXPECT_EQ(QXVIsFileExist(path.substr(0, path.size() - 1).c_str()), 1) << "anything of that name counts";
  EXPECT_EQ(QXVIsFileExist(path.c_str()), 0);
  EXPECT_EQ(QXVIsPathExist(folder.File(QXT("none\\")).c_str()), 0);
  EXPECT_EQ(QXVIsPathExist(QXT("Z:\\")), 1);
}

}  // namespace

// path_parts_test.cpp - parts of names, by their text alone.

#include "qxv/path.h"

#include "support/guard_new.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>

namespace {

using support::Repeat;
using support::Text;
using support::TextOf;

struct Row {
  Text path;
  Text folder;
  Text name;
  Text extension;
};

void ExpectParts(const Row& row) {
  SCOPED_TRACE(support::Printable(row.path.substr(0, 80)));
  EXPECT_EQ(TextOf(QXVParsePath(row.path.c_str())), row.folder);
  EXPECT_EQ(TextOf(QXVParseMainFileName(row.path.c_str())), row.name);
  EXPECT_EQ(TextOf(QXVParseExtFileName(row.path.c_str())), row.extension);
}

TEST(PathParts, DriveFolderNameAndExtension) {
  const Row rows[] = {
      {QXT("C:\\x\\name.INI"), QXT("C:\\x\\"), QXT("name"), QXT("INI")},
      {QXT("C:\\x\\name"), QXT("C:\\x\\"), QXT("name"), QXT("")},
      {QXT("C:/x/name.txt"), QXT("C:/x/"), QXT("name"), QXT("txt")},
      {QXT("C:\\x/y\\z/name.txt"), QXT("C:\\x/y\\z/"), QXT("name"), QXT("txt")},
      {QXT("name.txt"), QXT(""), QXT("name"), QXT("txt")},
      {QXT("C:name.txt"), QXT("C:"), QXT("name"), QXT("txt")},
      {QXT("C:\\ver1.2\\readme"), QXT("C:\\ver1.2\\"), QXT("readme"), QXT("")},
      {QXT("C:\\x\\a.b.c"), QXT("C:\\x\\"), QXT("a.b"), QXT("c")},
      {QXT("C:\\x\\.ini"), QXT("C:\\x\\"), QXT(""), QXT("ini")},
      {QXT("C:\\x\\name."), QXT("C:\\x\\"), QXT("name"), QXT("")},
      {QXT("C:\\x\\"), QXT("C:\\x\\"), QXT(""), QXT("")},
      {QXT("C:"), QXT("C:"), QXT(""), QXT("")},
      {QXT("."), QXT(""), QXT(""), QXT("")},
      {QXT(".."), QXT(""), QXT("."), QXT("")},
      {QXT("\\\\server\\share\\a.b"), QXT("\\\\server\\share\\"), QXT("a"), QXT("b")},
      {QXT("1:\\a.b"), QXT("1:\\"), QXT("a"), QXT("b")},
      {QXT("C:\\\u4E2D\\\u6587.\u00FC"), QXT("C:\\\u4E2D\\"), QXT("\u6587"), QXT("\u00FC")},
      {QXT(""), QXT(""), QXT(""), QXT("")},
  };
  for (const Row& row : rows) {
    ExpectParts(row);
  }
}

TEST(PathParts, ATextOf511CharactersIsSplitAnd512GiveNothing) {
  const Text folders = QXT("C:\\") + Repeat(QXT('d'), 503) + QXT("\\");
  ExpectParts({folders + QXT("n.ex"), folders, QXT("n"), QXT("ex")});
  ExpectParts({folders + QXT("n.ext"), QXT(""), QXT(""), QXT("")});
  ExpectParts({QXT("C:\\") + Repeat(QXT('n'), 508), QXT("C:\\"), Repeat(QXT('n'), 508), QXT("")});
  ExpectParts({QXT("C:\\") + Repeat(QXT('n'), 509), QXT(""), QXT(""), QXT("")});
  ExpectParts({QXT(".") + Repeat(QXT('e'), 510), QXT(""), QXT(""), Repeat(QXT('e'), 510)});
  ExpectParts({QXT(".") + Repeat(QXT('e'), 511), QXT(""), QXT(""), QXT("")});
  ExpectParts({QXT("a.b\\") + Repeat(QXT('c'), 1000000), QXT(""), QXT(""), QXT("")});
}

TEST(PathParts, ShortFileNameStandsBehindTheLastBackslash) {
  EXPECT_EQ(TextOf(QXVParseShortFileName(QXT("C:\\x\\name.txt"))), QXT("name.txt"));
  EXPECT_EQ(TextOf(QXVParseShortFileName(QXT("\\x\\name"))), QXT("name"));
  EXPECT_EQ(TextOf(QXVParseShortFileName(QXT("\\\\name"))), QXT("name")) << "the last of two";
  EXPECT_EQ(TextOf(QXVParseShortFileName(QXT("x\\y/name.txt"))), QXT("y/name.txt"));
  EXPECT_EQ(TextOf(QXVParseShortFileName(QXT("C:\\x\\"))), QXT(""));
  EXPECT_EQ(TextOf(QXVParseShortFileName((QXT("C:\\") + Repeat(QXT('n'), 5000)).c_str())), Repeat(QXT('n'), 5000));
}

TEST(PathPartsKept, ShortNameNeedsABackslashBehindTheFirstCharacter) {
  EXPECT_EQ(TextOf(QXVParseShortFileName(QXT("name.txt"))), QXT(""));
  EXPECT_EQ(TextOf(QXVParseShortFileName(QXT("\\name.txt"))), QXT(""));
  EXPECT_EQ(TextOf(QXVParseShortFileName(QXT("C:/x/name.txt"))), QXT(""));
}

TEST(PathParts, NormalizingAppendsOneBackslash) {
  for (CQXString (*normalize)(CQXString) : {&QXVNormalizeFilePath, &QXVXHNormalizeFilePath}) {
    EXPECT_EQ(TextOf(normalize(QXT("C:\\x"))), QXT("C:\\x\\"));
    EXPECT_EQ(TextOf(normalize(QXT("C:\\x\\"))), QXT("C:\\x\\"));
    EXPECT_EQ(TextOf(normalize(QXT("C:\\x\\\\"))), QXT("C:\\x\\\\")) << "what is there stays";
    EXPECT_EQ(TextOf(normalize(QXT("C:/x/"))), QXT("C:/x/\\")) << "a slash is none";
    EXPECT_EQ(TextOf(normalize(QXT("\\"))), QXT("\\"));
    EXPECT_EQ(TextOf(normalize(QXT("a"))), QXT("a\\"));
    EXPECT_EQ(TextOf(normalize(CQXString())), QXT(""));
    EXPECT_EQ(TextOf(normalize(Repeat(QXT('a'), 3000).c_str())), Repeat(QXT('a'), 3000) + QXT("\\"));
  }
}

TEST(PathParts, WhatStandsBehindTheFirstZeroIsNotPartOfAPath) {
  CQXString path(QXT("C:\\x|C:\\y"));
  const_cast<QXChar*>(static_cast<const QXChar*>(path))[4] = 0;
  EXPECT_EQ(TextOf(QXVNormalizeFilePath(path)), QXT("C:\\x\\"));
  EXPECT_EQ(TextOf(QXVXHNormalizeFilePath(path)), QXT("C:\\x\\"));
  EXPECT_EQ(TextOf(QXVGetFilePath(path)), QXT("C:\\"));
  EXPECT_EQ(TextOf(QXVGetFileName(path)), QXT("x"));
}

TEST(PathParts, FilePathAndFileNameMeetAtTheLastOfBothSeparators) {
  struct Names {
    Text text, path, name;
  };
  const Names rows[] = {
      {QXT("C:/x/name.txt"), QXT("C:/x/"), QXT("name.txt")},
      {QXT("C:\\x\\name.txt"), QXT("C:\\x\\"), QXT("name.txt")},
      {QXT("C:\\x/name.txt"), QXT("C:\\x/"), QXT("name.txt")},
      {QXT("C:/x\\name.txt"), QXT("C:/x\\"), QXT("name.txt")},
      {QXT("name.txt"), QXT(""), QXT("name.txt")},
      {QXT("C:name.txt"), QXT(""), QXT("C:name.txt")},
      {QXT("\\name"), QXT("\\"), QXT("name")},
      {QXT("/"), QXT("/"), QXT("")},
      {QXT("C:\\x\\"), QXT("C:\\x\\"), QXT("")},
      {QXT(""), QXT(""), QXT("")},
      {Repeat(QXT('d'), 2000) + QXT("/") + Repeat(QXT('n'), 2000), Repeat(QXT('d'), 2000) + QXT("/"), Repeat(QXT('n'), 2000)},
  };
  for (const Names& row : rows) {
    SCOPED_TRACE(support::Printable(row.text.substr(0, 80)));
    EXPECT_EQ(TextOf(QXVGetFilePath(row.text.c_str())), row.path);
    EXPECT_EQ(TextOf(QXVGetFileName(row.text.c_str())), row.name);
  }
  EXPECT_EQ(TextOf(QXVGetFilePath(static_cast<const QXChar*>(nullptr))), QXT(""));
  EXPECT_EQ(TextOf(QXVGetFileName(static_cast<const QXChar*>(nullptr))), QXT(""));
}

TEST(PathParts, FileTypeIsTheRestBehindTheLastPoint) {
  EXPECT_EQ(TextOf(QXVGetFileType(QXT("C:\\x\\name.INI"))), QXT("INI"));
  EXPECT_EQ(TextOf(QXVGetFileType(QXT("a.b.c"))), QXT("c"));
  EXPECT_EQ(TextOf(QXVGetFileType(QXT("name."))), QXT(""));
  EXPECT_EQ(TextOf(QXVGetFileType(QXT("name"))), QXT(""));
  EXPECT_EQ(TextOf(QXVGetFileType(QXT(".x"))), QXT("x"));
  EXPECT_EQ(TextOf(QXVGetFileType(QXT(""))), QXT(""));
  EXPECT_EQ(TextOf(QXVGetFileType(nullptr)), QXT(""));
  EXPECT_EQ(TextOf(QXVGetFileType((QXT(".") + Repeat(QXT('e'), 5000)).c_str())), Repeat(QXT('e'), 5000));
}

TEST(PathPartsKept, TypeBeginsAtTheLastPointEvenOfAFolder) {
  EXPECT_EQ(TextOf(QXVGetFileType(QXT("C:\\ver1.2\\readme"))), QXT("2\\readme"));
  EXPECT_EQ(TextOf(QXVGetFileType(QXT("C:/ver1.2/readme"))), QXT("2/readme"));
}

TEST(PathParts, NullGivesNothing) {
  EXPECT_EQ(TextOf(QXVParsePath(nullptr)), QXT(""));
  EXPECT_EQ(TextOf(QXVParseMainFileName(nullptr)), QXT(""));
  EXPECT_EQ(TextOf(QXVParseExtFileName(nullptr)), QXT(""));
  EXPECT_EQ(TextOf(QXVParseShortFileName(nullptr)), QXT(""));
}

TEST(PathParts, TheCurrentPathIsTheFolderOfTheProgram) {
  const Text path = TextOf(QXVGetCurrentPath());
  ASSERT_GE(path.size(), 3u);
  EXPECT_EQ(path[1], QXT(':'));
  EXPECT_EQ(path.back(), QXT('\\'));
  EXPECT_EQ(QXVIsPathExist(path.c_str()), 1);
  EXPECT_TRUE(QXVIsFileExist((path + QXT("qxv_system_tests")).c_str()) == 1 ||
              QXVIsFileExist((path + QXT("qxv_system_tests.exe")).c_str()) == 1)
      << "the test program stands there";
}

TEST(PathParts, WithoutMemoryNothingLeaks) {
  for (std::size_t index = 0; index < 20; ++index) {
    const std::size_t before = support::LiveArrays();
    bool refused = false;
    try {
      const support::FailAllocation fail(index);
      (void)QXVParsePath(QXT("C:\\x\\name.txt"));
      (void)QXVNormalizeFilePath(QXT("C:\\x"));
      (void)QXVGetFileName(QXT("C:\\x"));
      refused = fail.Refused();
    } catch (const std::bad_alloc&) {
      refused = true;
    }
    EXPECT_EQ(support::LiveArrays(), before);
    if (!refused) {
      EXPECT_GT(index, 3u);
      return;
    }
  }
  ADD_FAILURE() << "still refused";
}

}  // namespace

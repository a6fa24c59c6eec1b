// c_runtime_test.cpp - lengths, comparisons, path parts, the clock's text.

#include "os/c_runtime.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace qxv::os;
using support::Text;

TEST(TextLength, CountsUnitsBeforeTheFirstZero) {
  EXPECT_EQ(TextLength(nullptr), 0u);
  EXPECT_EQ(TextLength(nullptr, 5), 0u);
  EXPECT_EQ(TextLength(QXT("")), 0u);
  EXPECT_EQ(TextLength(QXT("abc")), 3u);
  EXPECT_EQ(TextLength(QXT("abc"), 2), 2u);
  EXPECT_EQ(TextLength(QXT("abc"), 0), 0u);
  EXPECT_EQ(TextLength(QXT("abc"), 100), 3u);
}

TEST(TextLength, LooksAtNoUnitBehindTheLimit) {
  for (std::size_t count = 1; count < 70; ++count) {
    std::unique_ptr<QXChar[]> text(new QXChar[count]);  // ends at an inaccessible page
    std::fill_n(text.get(), count, QXT('x'));
    EXPECT_EQ(TextLength(text.get(), count), count);
  }
}

TEST(CompareText, GivesTheDifferenceOfTheFirstUnequalUnits) {
  EXPECT_EQ(CompareText(QXT("a"), QXT("b"), 5), -1);
  EXPECT_EQ(CompareText(QXT("\uFFFF"), QXT("\u0001"), 5), 65534);  // unsigned
  EXPECT_EQ(CompareText(QXT("ab"), QXT("a"), 2), 98);
  EXPECT_EQ(CompareText(QXT("ab"), QXT("ax"), 1), 0);
  EXPECT_EQ(CompareText(QXT("ab"), QXT("ab"), 100), 0);
  EXPECT_EQ(CompareText(QXT("a"), QXT("b"), 0), 0);
  EXPECT_EQ(CompareText(QXT("A"), QXT("a"), 1), -32);
  EXPECT_EQ(CompareText(nullptr, nullptr, 3), 0);
  EXPECT_EQ(CompareText(nullptr, QXT("a"), 3), -97);
}

TEST(CompareText, FoldsAsciiOnly) {
  EXPECT_EQ(CompareTextNoCase(QXT("A"), QXT("b"), 5), -1);
  EXPECT_EQ(CompareTextNoCase(QXT("AB"), QXT("ab"), 2), 0);
  EXPECT_EQ(CompareTextNoCase(QXT("\u00C9"), QXT("\u00E9"), 5), -32);
  EXPECT_EQ(CompareTextNoCase(QXT("_"), QXT("A"), 5), -2);  // folded to lower case
  EXPECT_EQ(CompareTextNoCase(QXT("\uFF21"), QXT("a"), 2), 65216);
  EXPECT_EQ(CompareTextNoCase(QXT("@["), QXT("`{"), 2), -32);
}

struct Parts {
  int result;
  Text drive, folder, name, extension;
};

Parts Split(const QXChar* path, std::size_t drive, std::size_t folder, std::size_t name, std::size_t extension) {
  // Each part's room ends at an inaccessible page.
  std::unique_ptr<QXChar[]> texts[4] = {
      std::unique_ptr<QXChar[]>(new QXChar[drive]), std::unique_ptr<QXChar[]>(new QXChar[folder]),
      std::unique_ptr<QXChar[]>(new QXChar[name]), std::unique_ptr<QXChar[]>(new QXChar[extension])};
  Parts parts{};
  parts.result =
      SplitPath(path, {texts[0].get(), drive}, {texts[1].get(), folder}, {texts[2].get(), name}, {texts[3].get(), extension});
  parts.drive = texts[0].get();
  parts.folder = texts[1].get();
  parts.name = texts[2].get();
  parts.extension = texts[3].get();
  return parts;
}

struct SplitCase {
  const QXChar* path;
  Text drive, folder, name, extension;
};

TEST(SplitPath, SplitsAsTheMicrosoftRunTimeDoes) {
  const SplitCase cases[] = {
      {QXT("c:\\a\\b.txt"), QXT("c:"), QXT("\\a\\"), QXT("b"), QXT(".txt")},
      {QXT("c:b.txt"), QXT("c:"), QXT(""), QXT("b"), QXT(".txt")},
      {QXT("b.txt"), QXT(""), QXT(""), QXT("b"), QXT(".txt")},
      {QXT("\\\\srv\\share\\x.y.z"), QXT(""), QXT("\\\\srv\\share\\"), QXT("x.y"), QXT(".z")},
      {QXT("c:\\"), QXT("c:"), QXT("\\"), QXT(""), QXT("")},
      {QXT("c:"), QXT("c:"), QXT(""), QXT(""), QXT("")},
      {QXT("c"), QXT(""), QXT(""), QXT("c"), QXT("")},
      {QXT(""), QXT(""), QXT(""), QXT(""), QXT("")},
      {QXT("\\"), QXT(""), QXT("\\"), QXT(""), QXT("")},
      {QXT("a/b\\c.d"), QXT(""), QXT("a/b\\"), QXT("c"), QXT(".d")},
      {QXT("a.b\\c"), QXT(""), QXT("a.b\\"), QXT("c"), QXT("")},
      {QXT(".bashrc"), QXT(""), QXT(""), QXT(""), QXT(".bashrc")},
      {QXT(".."), QXT(""), QXT(""), QXT("."), QXT(".")},
      {QXT("a."), QXT(""), QXT(""), QXT("a"), QXT(".")},
      {QXT("c:\\a.b\\"), QXT("c:"), QXT("\\a.b\\"), QXT(""), QXT("")},
      {QXT("\\\\?\\C:\\x\\y.z"), QXT(""), QXT("\\\\?\\C:\\x\\"), QXT("y"), QXT(".z")},
      {QXT("cc:\\x"), QXT(""), QXT("cc:\\"), QXT("x"), QXT("")},
      {QXT(":x"), QXT(""), QXT(""), QXT(":x"), QXT("")},
      {QXT("c:d:e.f"), QXT("c:"), QXT(""), QXT("d:e"), QXT(".f")},
      {QXT("1:\\x"), QXT("1:"), QXT("\\"), QXT("x"), QXT("")},
      {QXT("x\\.y"), QXT(""), QXT("x\\"), QXT(""), QXT(".y")},
      {QXT("/z:\\h.t"), QXT(""), QXT("/z:\\"), QXT("h"), QXT(".t")},
      {QXT("Z:\\\u4E2D\\\u6587.\u672C"), QXT("Z:"), QXT("\\\u4E2D\\"), QXT("\u6587"), QXT(".\u672C")},
  };
  for (const SplitCase& row : cases) {
    const Parts parts = Split(row.path, kDriveRoom, kPathPartRoom, kPathPartRoom, kPathPartRoom);
    const std::string name = testing::PrintToString(Text(row.path));
    EXPECT_EQ(parts.result, 0) << name;
    EXPECT_EQ(parts.drive, row.drive) << name;
    EXPECT_EQ(parts.folder, row.folder) << name;
    EXPECT_EQ(parts.name, row.name) << name;
    EXPECT_EQ(parts.extension, row.extension) << name;
  }
}

TEST(SplitPath, EmptiesAllPartsWhenOneDoesNotFit) {
  EXPECT_EQ(Split(QXT("c:\\a\\b.txt"), 3, 4, 2, 5).result, 0);  // exactly
  const std::size_t rooms[][4] = {{2, 4, 2, 5}, {3, 3, 2, 5}, {3, 4, 1, 5}, {3, 4, 2, 4}, {1, 1, 1, 1}};
  for (const auto& room : rooms) {
    const Parts parts = Split(QXT("c:\\a\\b.txt"), room[0], room[1], room[2], room[3]);
    EXPECT_EQ(parts.result, 34);
    EXPECT_EQ(parts.drive + parts.folder + parts.name + parts.extension, Text());
  }
  const Text longName = support::Repeat(QXT('n'), 256);
  EXPECT_EQ(Split(longName.c_str(), 3, 256, 256, 256).result, 34);
  EXPECT_EQ(Split(longName.c_str() + 1, 3, 256, 256, 256).result, 0);
}

TEST(SplitPath, LeavesOutPartsThatAreNotWantedAndRefusesHalfGivenOnes) {
  QXChar drive[3] = {QXT('!'), 0};
  EXPECT_EQ(SplitPath(QXT("c:\\x"), {drive, 3}, {nullptr, 0}, {nullptr, 0}, {nullptr, 0}), 0);
  EXPECT_EQ(Text(drive), QXT("c:"));
  EXPECT_EQ(SplitPath(QXT("c:\\x"), {drive, 3}, {nullptr, 5}, {nullptr, 0}, {nullptr, 0}), 22);
  EXPECT_EQ(Text(drive), QXT(""));
  drive[0] = QXT('!');
  EXPECT_EQ(SplitPath(QXT("c:\\x"), {drive, 0}, {nullptr, 0}, {nullptr, 0}, {nullptr, 0}), 22);
  EXPECT_EQ(drive[0], QXT('!'));
  EXPECT_EQ(SplitPath(nullptr, {drive, 3}, {nullptr, 0}, {nullptr, 0}, {nullptr, 0}), 22);
  EXPECT_EQ(Text(drive), QXT(""));
}

SYSTEMTIME Time(WORD year, WORD month, WORD weekday, WORD day, WORD hour, WORD minute, WORD second) {
  return {year, month, weekday, day, hour, minute, second, 0};
}

TEST(ClockText, HasTheStandardForm) {
  QXChar out[64];
  EXPECT_EQ(ClockText(Time(1970, 1, 4, 1, 0, 0, 0), out, 64), 24);
  EXPECT_EQ(Text(out), QXT("Thu Jan  1 00:00:00 1970"));  // the day is padded with a blank
  EXPECT_EQ(ClockText(Time(2026, 12, 6, 31, 23, 59, 9), out, 64), 24);
  EXPECT_EQ(Text(out), QXT("Sat Dec 31 23:59:09 2026"));
  ClockText(Time(2024, 2, 0, 29, 7, 5, 60), out, 64);
  EXPECT_EQ(Text(out), QXT("Sun Feb 29 07:05:60 2024"));
}

TEST(ClockText, SurvivesFieldsOutOfRangeAndLittleRoom) {
  QXChar out[64];
  ClockText(Time(65535, 0, 7, 65535, 65535, 65535, 65535), out, 64);
  EXPECT_EQ(Text(out), QXT("??? ???65535 65535:65535:65535 65535"));
  ClockText(Time(1, 13, 65535, 1, 1, 1, 1), out, 64);
  EXPECT_EQ(Text(out), QXT("??? ???  1 01:01:01 1"));
  EXPECT_EQ(ClockText(Time(1970, 1, 4, 1, 0, 0, 0), out, 8), -1);
  EXPECT_EQ(Text(out), QXT("Thu Jan"));
}

}  // namespace

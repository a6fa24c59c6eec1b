// log_place_test.cpp - where a program's log begins.

#include "diagnostics/log_text.h"

#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using support::Repeat;
using support::Text;

TEST(LogPlace, IsTheProgramsFolderAndName) {
  struct Row {
    Text executable, folder, mainName;
  };
  const Row rows[] = {
      {QXT("C:\\Tools\\Ingest.exe"), QXT("C:\\Tools\\"), QXT("Ingest")},
      {QXT("Z:\\usr\\bin\\ingest"), QXT("Z:\\usr\\bin\\"), QXT("ingest")},
      {QXT("C:\\a.b.exe"), QXT("C:\\"), QXT("a.b")},
      {QXT("\\\\server\\tools\\x.exe"), QXT("\\\\server\\tools\\"), QXT("x")},
      {QXT("C:\\\u5DE5\u5177\\\u65E5\u5FD7.exe"), QXT("C:\\\u5DE5\u5177\\"), QXT("\u65E5\u5FD7")},
      {QXT("C:\\") + Repeat(QXT('d'), 509) + QXT("\\x.exe"), QXT("C:\\") + Repeat(QXT('d'), 509) + QXT("\\"), QXT("x")},
      {QXT("C:\\") + Repeat(QXT('n'), 63) + QXT(".exe"), QXT("C:\\"), Repeat(QXT('n'), 63)},
      {QXT("C:\\x.") + Repeat(QXT('e'), 14), QXT("C:\\"), QXT("x")},
  };
  for (const Row& row : rows) {
    const qxv::LogPlace place = qxv::LogPlaceOf(row.executable);
    EXPECT_EQ(place.folder, row.folder) << support::Printable(row.executable);
    EXPECT_EQ(place.mainName, row.mainName) << support::Printable(row.executable);
  }
}

TEST(LogPlace, AnUnknownProgramHasTheFixedPlace) {
  const qxv::LogPlace place = qxv::LogPlaceOf(Text());
  EXPECT_EQ(place.folder, QXT("e:\\"));
  EXPECT_EQ(place.mainName, QXT("quelta"));
}

TEST(LogPlaceKept, APartTooLongGivesTheFixedPlace) {
  const Text rows[] = {
      QXT("C:\\") + Repeat(QXT('d'), 510) + QXT("\\x.exe"),  // a folder of 512 characters
      QXT("C:\\") + Repeat(QXT('n'), 64) + QXT(".exe"),
      QXT("C:\\x.") + Repeat(QXT('e'), 15),
  };
  for (const Text& executable : rows) {
    const qxv::LogPlace place = qxv::LogPlaceOf(executable);
    EXPECT_EQ(place.folder, QXT("e:\\")) << support::Printable(executable);
    EXPECT_EQ(place.mainName, QXT("quelta")) << support::Printable(executable);
  }
}

}  // namespace

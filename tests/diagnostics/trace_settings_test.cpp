// trace_settings_test.cpp - the number behind LEVEL.

#include "diagnostics/trace_settings.h"

#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using support::Text;

struct Row {
  Text settings;
  int level;
};

void ExpectLevels(std::initializer_list<Row> rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(qxv::TraceLevelOf(row.settings), row.level) << support::Printable(row.settings.substr(0, 80));
  }
}

TEST(TraceSettings, TheNumberFollowsTheKeyAndAnyRunOfSeparators) {
  ExpectLevels({
      {QXT("LEVEL=3"), 3},
      {QXT("LEVEL 3"), 3},
      {QXT("LEVEL/3"), 3},
      {QXT("LEVEL\\3"), 3},
      {QXT("LEVEL3"), 3},
      {QXT("LEVEL = 5"), 5},
      {QXT("LEVEL\\/= =\\ 12"), 12},
      {QXT("[Trace]\r\nLEVEL=7"), 7},
      {QXT("LEVEL=-2"), -2},
      {QXT("LEVEL=2147483647"), 2147483647},
      {QXT("LEVEL=007"), 7},
      {QXT("QXVLEVEL=4"), 4},  // anywhere in the text
  });
}

TEST(TraceSettings, TheTokenEndsAtTheNextSeparator) {
  ExpectLevels({
      {QXT("LEVEL=3 4"), 3},
      {QXT("LEVEL=3=4"), 3},
      {QXT("LEVEL=-3/4"), -3},
      {QXT("LEVEL=-3\\"), -3},
      {QXT("LEVEL=1 LEVEL=2"), 1},
  });
}

TEST(TraceSettings, WithoutKeyOrNumberTheLevelIs0) {
  ExpectLevels({
      {QXT(""), 0},
      {QXT("LEVE"), 0},
      {QXT("LEVEL"), 0},
      {QXT("LEVEL="), 0},
      {QXT("LEVEL = \\/"), 0},
      {QXT("level=3"), 0},
      {QXT("Level=3"), 0},
      {QXT("L EVEL=3"), 0},
      {QXT("LEVEL=high"), 0},
      {QXT("LEVELS=3"), 0},  // the token is S
      {QXT("LEVEL=+3"), 0},
      {QXT("LEVEL=\r\n3"), 0},
      {QXT("LEVEL\t3"), 0},
      {Text(QXT("a\0LEVEL=3"), 9), 0},  // a text ends at its first zero
  });
}

TEST(TraceSettingsKept, ALineEndStaysInTheToken) {
  ExpectLevels({
      {QXT("LEVEL=3\r\n"), 3},
      {QXT("LEVEL=3\n"), 3},
      {QXT("LEVEL=3\r\nOTHER=9\r\n"), 3},
      {QXT("LEVEL=-2\r\n"), 2},
      {QXT("LEVEL=-2\n"), 2},
      {QXT("LEVEL=12;comment"), 12},
      {QXT("LEVEL=3.9"), 3},
      {QXT("LEVEL=2147483648"), 214748364},  // the digit that leaves the range ends it
  });
}

TEST(TraceSettings, ALongTextIsSearchedThrough) {
  EXPECT_EQ(qxv::TraceLevelOf(support::Repeat(QXT('L'), 500000) + QXT("LEVEL=6")), 6);
  EXPECT_EQ(qxv::TraceLevelOf(QXT("LEVEL=") + support::Repeat(QXT('='), 500000) + QXT("6")), 6);
  EXPECT_EQ(qxv::TraceLevelOf(QXT("LEVEL=6") + support::Repeat(QXT('x'), 500000)), 6);
}

}  // namespace

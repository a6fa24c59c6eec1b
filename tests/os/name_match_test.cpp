// name_match_test.cpp - file names without regard to case, and wildcards. Linux only: Windows has its own.

#include "os/name_match.h"

#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using namespace qxv::os;

TEST(NameMatch, WildcardsMatchAsTheWindowsFinderDoes) {
  const struct {
    Text pattern;
    Text name;
    bool matches;
  } rows[] = {
      {QXT("*"), QXT("a"), true},
      {QXT("*.*"), QXT("noext"), true},
      {QXT("*."), QXT("noext"), true},
      {QXT("*."), QXT("a.b"), false},
      {QXT("*.txt"), QXT("A.TXT"), true},
      {QXT("*.txt"), QXT(".txt"), true},
      {QXT("*.txt"), QXT("a.b.txt"), true},
      {QXT("*.txt"), QXT("a.txt.b"), false},
      {QXT("*.txt"), QXT("atxt"), false},
      {QXT("*.tx"), QXT("a.txt"), false},
      {QXT("a*"), QXT("A"), true},
      {QXT("a*b"), QXT("ab"), true},
      {QXT("a*b"), QXT("axxb"), true},
      {QXT("a*b"), QXT("axxbc"), false},
      {QXT("?"), QXT("a"), true},
      {QXT("?"), QXT("ab"), false},
      {QXT("??"), QXT("a"), true},
      {QXT("a?.txt"), QXT("a.txt"), true},
      {QXT("a?.txt"), QXT("ab.txt"), true},
      {QXT("a?.txt"), QXT("abc.txt"), false},
      {QXT("?a"), QXT("a"), false},
      {QXT("t*.???"), QXT("t1.abc"), true},
      {QXT("t*.???"), QXT("t1.ab"), true},
      {QXT("t*.???"), QXT("t1"), true},
      {QXT("t*.???"), QXT("t1.abcd"), false},
      {QXT("a.*"), QXT("a"), true},
      {QXT("a.*"), QXT("a.b.c"), true},
      {QXT("a.*"), QXT("ab"), false},
      {QXT("*.*.c"), QXT("a.b.c"), true},
      {QXT("\u00C9*"), QXT("\u00E9t\u00E9"), true},
      {QXT("a.txt"), QXT("a.txt"), true},
      {QXT("a.txt"), QXT("b.txt"), false},
      {QXT(""), QXT("a"), false},
      {QXT("[a]"), QXT("a"), false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(MatchesPattern(row.name, row.pattern), row.matches)
        << support::Printable(row.name) << " against " << support::Printable(row.pattern);
  }
}

TEST(NameMatch, AHostilePatternCostsNoMoreThanNameTimesPattern) {
  Text pattern;
  for (int i = 0; i < 200; ++i) {
    pattern += QXT("*a");
  }
  EXPECT_FALSE(MatchesPattern(Text(255, QXT('a')) + QXT('b'), pattern + QXT('c')));
  EXPECT_TRUE(MatchesPattern(Text(255, QXT('a')), pattern));
}

TEST(NameMatch, CasePairsOfTheAlphabets) {
  const struct {
    QXChar capital, letter;
  } pairs[] = {{QXT('A'), QXT('a')}, {QXT('Z'), QXT('z')}, {0xC0, 0xE0},   {0xDE, 0xFE},   {0x178, 0xFF},  {0x100, 0x101},
               {0x136, 0x137},       {0x139, 0x13A},       {0x147, 0x148}, {0x14A, 0x14B}, {0x176, 0x177}, {0x179, 0x17A},
               {0x17D, 0x17E},       {0x391, 0x3B1},       {0x3A9, 0x3C9}, {0x400, 0x450}, {0x410, 0x430}, {0x42F, 0x44F}};
  for (const auto& pair : pairs) {
    EXPECT_EQ(FoldCase(pair.capital), pair.letter) << static_cast<int>(pair.capital);
    EXPECT_EQ(FoldCase(pair.letter), pair.letter) << static_cast<int>(pair.letter);
  }
  for (const QXChar alone : {QXChar('@'), QXChar('['), QXChar(0xD7), QXChar(0xDF), QXChar(0xF7), QXChar(0x130), QXChar(0x131),
                             QXChar(0x138), QXChar(0x149), QXChar(0x17F), QXChar(0x3A2), QXChar(0x4E00), QXChar(0xD83C)}) {
    EXPECT_EQ(FoldCase(alone), alone) << static_cast<int>(alone);
  }
}

}  // namespace

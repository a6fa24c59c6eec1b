// interop_test.cpp - comfort for C++ callers.

#include "qxv/interop.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <sstream>
#include <unordered_set>

namespace {

using support::Text;
using support::TextOf;

TEST(Interop, ViewsGoBothWays) {
  const CQXString text(QXT("abc"));
  EXPECT_EQ(qxv::ToView(text), qxv::TextView(QXT("abc")));
  EXPECT_EQ(TextOf(qxv::ToString(qxv::TextView(QXT("abcdef"), 3))), QXT("abc"));
  EXPECT_EQ(TextOf(qxv::ToString(qxv::TextView())), QXT(""));
  const Text embedded = {'a', 0, 'b'};
  EXPECT_EQ(TextOf(qxv::ToString(embedded)), QXT("a"));
}

TEST(Interop, PrintsUtf8) {
  const struct {
    Text text;
    const char* utf8;
  } rows[] = {
      {{}, ""},
      {{'a', 0x7F}, "a\x7F"},
      {{0x80, 0x7FF}, "\xC2\x80\xDF\xBF"},
      {{0x800, 0xFFFF}, "\xE0\xA0\x80\xEF\xBF\xBF"},
      {{0xD800, 0xDC00, 0xDBFF, 0xDFFF}, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
      {{0xD800}, "\xEF\xBF\xBD"},
      {{0xD800, 'x'}, "\xEF\xBF\xBDx"},
      {{0xDC00, 0xD800}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
  };
  for (const auto& row : rows) {
    std::ostringstream out;
    out << CQXString(row.text.c_str());
    EXPECT_EQ(out.str(), row.utf8);
  }
}

TEST(Interop, HashFollowsEquality) {
  std::unordered_set<CQXString> set;
  set.insert(CQXString(QXT("a")));
  set.insert(CQXString(QXT("a")));
  set.insert(CQXString(QXT("b")));
  EXPECT_EQ(set.size(), 2u);
  EXPECT_EQ(set.count(CQXString(QXT("b"))), 1u);
  const QX_GUID id = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
  QX_GUID other = id;
  EXPECT_TRUE(id == other);
  EXPECT_EQ(std::hash<QX_GUID>()(id), std::hash<QX_GUID>()(other));
  other.Data4[7] = 12;
  EXPECT_TRUE(id != other);
}

TEST(Interop, ArraysIterateAndCompare) {
  CQXArray<int, int> numbers;
  EXPECT_EQ(begin(numbers), end(numbers));
  for (int i = 1; i <= 4; ++i) {
    numbers.Add(i);
  }
  int sum = 0;
  for (const int n : numbers) {
    sum += n;
  }
  EXPECT_EQ(sum, 10);
  CQXArray<int, int> same(numbers);
  EXPECT_TRUE(numbers == same);
  same[3] = 5;
  EXPECT_TRUE(numbers != same);
  same.SetSize(3);
  EXPECT_TRUE(numbers != same);
}

TEST(Interop, OwnedReleasesAnObject) {
  struct Object : CQXVObject {
    explicit Object(bool& gone) : m_gone(gone) {}
    ~Object() override { m_gone = true; }
    bool& m_gone;
  };
  bool gone = false;
  {
    const qxv::Owned<Object> owned(new Object(gone));
    EXPECT_FALSE(gone);
  }
  EXPECT_TRUE(gone);
}

}  // namespace

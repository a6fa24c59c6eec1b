// string_hostile_test.cpp - CQXString under wrong use: aliases, texts cut through the pointer, refused allocations.

#include "qxv/string.h"

#include "support/string_words.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <vector>

namespace {

using support::Repeat;
using support::Text;
using support::TextOf;

Text Alphabet(std::size_t length) {
  Text text;
  for (std::size_t i = 0; i < length; ++i) {
    text += static_cast<QXChar>('a' + i % 26);
  }
  return text;
}

TEST(StringHostile, AppendingATextToItselfDoublesIt) {
  for (const std::size_t length : {1u, 64u, 127u, 128u, 129u, 1000u, 20000u}) {
    const Text text = Alphabet(length);
    CQXString s(text.c_str());
    s += s;
    EXPECT_EQ(TextOf(s), text + text) << length;
    const QXChar* own = s;
    s += own;
    EXPECT_EQ(TextOf(s), text + text + text + text) << length;
  }
}

TEST(StringHostile, AssigningAndAppendingFromWithinTheOwnBuffer) {
  for (const std::size_t length : {5u, 128u, 129u, 1500u, 40000u}) {
    const Text text = Alphabet(length);
    CQXString s(text.c_str());
    s = static_cast<const QXChar*>(s) + 3;
    EXPECT_EQ(TextOf(s), text.substr(3)) << length;
    s += static_cast<const QXChar*>(s) + 1;
    EXPECT_EQ(TextOf(s), text.substr(3) + text.substr(4)) << length;
    s = static_cast<const QXChar*>(s) + s.GetLength();
    EXPECT_EQ(TextOf(s), Text()) << length;
  }
}

TEST(StringHostile, FormattingATextIntoItself) {
  CQXString s(QXT("ab"));
  s.Format(QXT("%s-%s"), static_cast<const QXChar*>(s), static_cast<const QXChar*>(s));
  EXPECT_EQ(TextOf(s), QXT("ab-ab"));
  s = QXT("100%%");
  s.Format(s);
  EXPECT_EQ(TextOf(s), QXT("100%"));
}

// A zero at a multiple of 128 makes the scan take text for the two words; nothing may be read or written by them.
TEST(StringHostile, TextCutAtAMultipleOf128KeepsItsVisiblePart) {
  for (const std::size_t cut : {128u, 256u, 384u}) {
    for (const std::size_t length : {500u, 1000u, 2000u}) {
      const Text visible = Repeat('x', cut);
      {
        CQXString s(Repeat('x', length).c_str());
        support::BufferOf(s)[cut] = 0;
        EXPECT_EQ(s.GetLength(), static_cast<int>(cut));
        const CQXString copy(s);
        EXPECT_EQ(TextOf(copy), visible);
        EXPECT_EQ(support::LengthWord(copy), cut);
        s += QXT("yz");
        EXPECT_EQ(TextOf(s), visible + QXT("yz"));
        EXPECT_EQ(support::LengthWord(s), cut + 2);
      }
      {
        CQXString s(Repeat('x', length).c_str());
        support::BufferOf(s)[cut] = 0;
        s = QXT("new");
        EXPECT_EQ(support::BytesOf(s), support::BytesOf(CQXString(QXT("new"))));
      }
      {
        CQXString s(Repeat('x', length).c_str());
        support::BufferOf(s)[cut] = 0;
        s.Empty();
        EXPECT_EQ(support::BytesOf(s), support::BytesOf(CQXString()));
      }
      {
        CQXString s(Repeat('x', length).c_str());
        support::BufferOf(s)[cut] = 0;
        s += s;
        EXPECT_EQ(TextOf(s), visible + visible);
      }
    }
  }
}

TEST(StringHostile, ARefusedAllocationLeavesTheTextAsItWas) {
  const Text longText = Alphabet(3000);
  const std::vector<std::pair<const char*, std::function<void(CQXString&)>>> operations = {
      {"assign", [&](CQXString& s) { s = longText.c_str(); }},
      {"assign from inside", [](CQXString& s) { s = static_cast<const QXChar*>(s) + 100; }},
      {"append", [&](CQXString& s) { s += longText.c_str(); }},
      {"append itself", [](CQXString& s) { s += s; }},
      {"empty", [](CQXString& s) { s.Empty(); }},
      {"format", [&](CQXString& s) { s.Format(QXT("%s|%d"), longText.c_str(), 5); }},
      {"copy", [](CQXString& s) { CQXString copy(s); }},
      {"concatenate", [](CQXString& s) { (void)(s + QXT("x")); }},
      {"mid", [](CQXString& s) { (void)s.Mid(3, 2000); }},
      {"construct", [&](CQXString&) { CQXString fresh(longText.c_str()); }},
      {"construct counted", [&](CQXString&) { CQXString fresh(longText.c_str(), 200); }},
      {"construct empty", [&](CQXString&) { CQXString fresh; }},
  };
  for (const auto& [name, operation] : operations) {
    for (std::size_t index = 0;; ++index) {
      CQXString s(Alphabet(1200).c_str());
      const auto before = support::BytesOf(s);
      const std::size_t arrays = support::LiveArrays();
      bool refused = false;
      bool thrown = false;
      {
        support::FailAllocation failure(index);
        try {
          operation(s);
        } catch (const std::bad_alloc&) {
          thrown = true;
        }
        refused = failure.Refused();
      }
      ASSERT_EQ(thrown, refused) << name << ", allocation " << index;
      if (!refused) {
        ASSERT_GT(index, 0u) << name << " allocates at least once";
        break;
      }
      ASSERT_EQ(support::BytesOf(s), before) << name << ", allocation " << index;
      ASSERT_EQ(support::LiveArrays(), arrays) << name << ", allocation " << index;
    }
  }
}

}  // namespace

// dictionary_entries_test.cpp - the entries of a dictionary beside the standard library's map.

#include "text/dictionary_entries.h"

#include "support/guard_new.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <set>

namespace {

using qxv::DictionaryEntries;
using qxv::TextHash;
using support::Text;

TEST(DictionaryEntries, AreFoundByTheWholeText) {
  const TextHash hash;
  DictionaryEntries entries;
  EXPECT_FALSE(entries.Find(QXT("a"), hash.Of(QXT("a"))).has_value()) << "there are none";
  for (const auto& [key, value] : std::map<Text, Text>{{QXT("a"), QXT("1")}, {QXT("ab"), QXT("")}, {QXT("A"), QXT("3")}}) {
    entries.Set(key, hash.Of(key), value);
  }
  EXPECT_EQ(entries.Find(QXT("a"), hash.Of(QXT("a"))), QXT("1"));
  EXPECT_EQ(entries.Find(QXT("ab"), hash.Of(QXT("ab"))), QXT(""));
  EXPECT_EQ(entries.Find(QXT("A"), hash.Of(QXT("A"))), QXT("3"));
  EXPECT_FALSE(entries.Find(QXT("abc"), hash.Of(QXT("abc"))).has_value());
  EXPECT_FALSE(entries.Find(QXT(""), hash.Of(QXT(""))).has_value());
  EXPECT_EQ(entries.Count(), 3u);
}

TEST(DictionaryEntries, ALaterValueReplacesTheEarlierOne) {
  const TextHash hash;
  DictionaryEntries entries;
  for (const Text& value : {Text(QXT("first")), Text(QXT("the second is longer")), Text(QXT(""))}) {
    entries.Set(QXT("key"), hash.Of(QXT("key")), value);
    EXPECT_EQ(entries.Find(QXT("key"), hash.Of(QXT("key"))), value);
    EXPECT_EQ(entries.Count(), 1u);
  }
}

TEST(DictionaryEntries, OfOneHashAreToldApart) {
  DictionaryEntries entries;
  std::map<Text, Text> expected;
  for (QXChar unit = 1; unit < 500; ++unit) {
    expected[Text(3, unit)] = Text(2, unit);
    entries.Set(Text(3, unit), 0xFFFFFFFF, Text(2, unit));
  }
  for (const auto& [key, value] : expected) {
    EXPECT_EQ(entries.Find(key, 0xFFFFFFFF), value);
  }
  EXPECT_FALSE(entries.Find(QXT("none"), 0xFFFFFFFF).has_value());
}

TEST(DictionaryEntries, AgreeWithAMap) {
  const TextHash hash;
  std::mt19937 random(11);
  DictionaryEntries entries;
  std::map<Text, Text> expected;
  const auto text = [&](std::size_t longest) {
    Text made(random() % (longest + 1), 0);
    std::generate(made.begin(), made.end(), [&] { return static_cast<QXChar>(1 + random() % 5); });
    return made;
  };
  for (int i = 0; i < 50'000; ++i) {
    const Text key = text(9);
    const Text value = text(20);
    entries.Set(key, hash.Of(key), value);
    expected[key] = value;
  }
  EXPECT_EQ(entries.Count(), expected.size());
  for (int i = 0; i < 50'000; ++i) {
    const Text key = text(10);
    const auto found = entries.Find(key, hash.Of(key));
    const auto known = expected.find(key);
    ASSERT_EQ(found.has_value(), known != expected.end());
    if (found) {
      ASSERT_EQ(*found, known->second);
    }
  }
}

TEST(DictionaryEntries, HoldTextsOfMoreThan65535Units) {
  const TextHash hash;
  DictionaryEntries entries;
  const Text key(70'000, 'k');
  const Text value(200'000, 'v');
  entries.Set(key, hash.Of(key), value);
  EXPECT_TRUE(entries.Find(key, hash.Of(key)) == value);
}

TEST(DictionaryEntries, ARefusedAllocationLeavesThemAsTheyWere) {
  const TextHash hash;
  DictionaryEntries entries;
  std::map<Text, Text> expected;
  int refusals = 0;
  for (QXChar unit = 1; unit < 300; ++unit) {
    const Text key(20, unit);
    const Text value(30, unit);
    bool stored = false;
    for (std::size_t index = 0; !stored; ++index) {
      const support::FailAllocation fail(index);
      try {
        entries.Set(key, hash.Of(key), value);
        stored = true;
      } catch (const std::bad_alloc&) {
        ++refusals;
        ASSERT_FALSE(entries.Find(key, hash.Of(key)).has_value());
        ASSERT_EQ(entries.Count(), expected.size());
      }
    }
    expected[key] = value;
    ASSERT_EQ(entries.Count(), expected.size());
  }
  EXPECT_GT(refusals, 10) << "slots and units grow several times";
  for (const auto& [key, value] : expected) {
    EXPECT_EQ(entries.Find(key, hash.Of(key)), value);
  }
}

TEST(TextHash, DependsOnEveryUnitAndOnTheLength) {
  const TextHash hash;
  std::set<std::uint32_t> seen;
  std::size_t texts = 0;
  for (std::size_t length = 0; length < 20; ++length, ++texts) {
    seen.insert(hash.Of(Text(length, 0)));
    for (std::size_t at = 0; at < length; ++at) {
      for (int bit = 0; bit < 16; ++bit, ++texts) {
        Text text(length, 0);
        text[at] = static_cast<QXChar>(1u << bit);
        seen.insert(hash.Of(text));
      }
    }
  }
  EXPECT_GE(seen.size() + 3, texts) << "of " << texts << " texts hardly two share one of 2^32 hashes";
}

TEST(TextHash, IsThatOfTheUnitsAlone) {
  const TextHash hash;
  const Text text = QXT("where it stands makes no difference");
  for (std::size_t length = 0; length <= text.size(); ++length) {
    const std::unique_ptr<QXChar[]> exact(new QXChar[length]);  // ends at an inaccessible page
    std::copy_n(text.data(), length, exact.get());
    EXPECT_EQ(hash.Of({exact.get(), length}), hash.Of(Text(text, 0, length)));
  }
}

TEST(TextHash, HasAKeyOfItsOwn) {
  std::set<std::uint32_t> seen;
  for (int i = 0; i < 8; ++i) {
    seen.insert(TextHash().Of(QXT("text")));
  }
  EXPECT_GT(seen.size(), 1u);
}

}  // namespace

// utf8_test.cpp - UTF-8 and UTF-16 into buffers: ASCII goes in steps, so every length, place and alignment around a step is
// tried.

#include "os/utf8.h"

#include "support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using support::Text;

struct Pair {
  const char* name;
  std::string utf8;
  Text text;
};

const Pair kPairs[] = {
    {"none", "", QXT("")},
    {"U+007F", "\x7F", QXT("\x7F")},
    {"U+0080", "\xC2\x80", QXT("\u0080")},
    {"U+00FF", "\xC3\xBF", QXT("\u00FF")},
    {"U+0100", "\xC4\x80", QXT("\u0100")},
    {"U+4E2D", "\xE4\xB8\xAD", QXT("\u4E2D")},
    {"U+8000", "\xE8\x80\x80", QXT("\u8000")},
    {"U+FF41", "\xEF\xBD\x81", QXT("\uFF41")},
    {"U+1F3B5", "\xF0\x9F\x8E\xB5", QXT("\U0001F3B5")},
};

constexpr std::size_t kLongest = 26;  // characters on either side: more than three steps

// a b c ... of so many letters.
Text Letters(std::size_t count) {
  Text letters;
  for (std::size_t i = 0; i < count; ++i) {
    letters += static_cast<QXChar>(QXT('a') + static_cast<QXChar>(i));
  }
  return letters;
}

std::string Bytes(std::size_t count) {
  std::string letters;
  for (std::size_t i = 0; i < count; ++i) {
    letters += static_cast<char>('a' + static_cast<char>(i));
  }
  return letters;
}

template <class Body>
void ForEachPlace(Body body) {
  for (const Pair& pair : kPairs) {
    for (std::size_t before = 0; before <= kLongest; ++before) {
      for (std::size_t behind = 0; behind <= kLongest; ++behind) {
        body(Bytes(before) + pair.utf8 + Bytes(behind), Letters(before) + pair.text + Letters(behind),
             std::string(pair.name) + " between " + std::to_string(before) + " and " + std::to_string(behind) + " letters");
      }
    }
  }
}

TEST(Utf8, BytesBecomeUnitsWhereverTheyStand) {
  ForEachPlace([](const std::string& bytes, const Text& text, const std::string& where) {
    bool lost = false;
    EXPECT_EQ(qxv::os::DecodeUtf8(bytes.data(), bytes.size(), nullptr, 0, &lost), static_cast<std::ptrdiff_t>(text.size()))
        << where;
    for (const std::size_t capacity : {text.size(), text.size() + 20}) {
      if (capacity == 0) {
        continue;  // asks for the count
      }
      Text out(capacity + 1, QXT('?'));
      EXPECT_EQ(qxv::os::DecodeUtf8(bytes.data(), bytes.size(), out.data(), capacity, &lost),
                static_cast<std::ptrdiff_t>(text.size()))
          << where;
      EXPECT_TRUE(out.substr(0, text.size()) == text) << where;
      EXPECT_EQ(out.find_first_not_of(QXT('?'), text.size()), Text::npos) << where << ": written behind the end";
    }
    EXPECT_FALSE(lost) << where;
  });
}

TEST(Utf8, UnitsBecomeBytesWhereverTheyStand) {
  ForEachPlace([](const std::string& bytes, const Text& text, const std::string& where) {
    bool lost = false;
    EXPECT_EQ(qxv::os::EncodeUtf8(text.data(), text.size(), nullptr, 0, &lost), static_cast<std::ptrdiff_t>(bytes.size()))
        << where;
    for (const std::size_t capacity : {bytes.size(), bytes.size() + 20}) {
      if (capacity == 0) {
        continue;  // asks for the count
      }
      std::string out(capacity + 1, '?');
      EXPECT_EQ(qxv::os::EncodeUtf8(text.data(), text.size(), out.data(), capacity, &lost),
                static_cast<std::ptrdiff_t>(bytes.size()))
          << where;
      EXPECT_EQ(out.substr(0, bytes.size()), bytes) << where;
      EXPECT_EQ(out.find_first_not_of('?', bytes.size()), std::string::npos) << where << ": written behind the end";
    }
    EXPECT_FALSE(lost) << where;
  });
}

TEST(Utf8, ARoomThatIsTooSmallIsFilledAndRefused) {
  ForEachPlace([](const std::string& bytes, const Text& text, const std::string& where) {
    bool lost = false;
    for (std::size_t capacity = 1; capacity < text.size(); ++capacity) {
      Text out(text.size(), QXT('?'));
      EXPECT_EQ(qxv::os::DecodeUtf8(bytes.data(), bytes.size(), out.data(), capacity, &lost), -1) << where << " in " << capacity;
      EXPECT_TRUE(out.substr(0, capacity) == text.substr(0, capacity)) << where << " in " << capacity;
      EXPECT_EQ(out.find_first_not_of(QXT('?'), capacity), Text::npos) << where << " in " << capacity;
    }
    for (std::size_t capacity = 1; capacity < bytes.size(); ++capacity) {
      std::string out(bytes.size(), '?');
      EXPECT_EQ(qxv::os::EncodeUtf8(text.data(), text.size(), out.data(), capacity, &lost), -1) << where << " in " << capacity;
      EXPECT_EQ(out.substr(0, capacity), bytes.substr(0, capacity)) << where << " in " << capacity;
      EXPECT_EQ(out.find_first_not_of('?', capacity), std::string::npos) << where << " in " << capacity;
    }
  });
}

TEST(Utf8, WhatIsBrokenBetweenLettersIsReplaced) {
  for (std::size_t before = 0; before <= kLongest; ++before) {
    bool lost = false;
    const std::string bytes = Bytes(before) + "\xFF" + Bytes(9);
    const Text text = Letters(before) + QXT("\uFFFD") + Letters(9);
    Text out(text.size(), QXT('?'));
    EXPECT_EQ(qxv::os::DecodeUtf8(bytes.data(), bytes.size(), out.data(), out.size(), &lost),
              static_cast<std::ptrdiff_t>(text.size()));
    EXPECT_TRUE(out == text) << before;
    EXPECT_TRUE(lost) << before;

    lost = false;
    const Text alone = Letters(before) + static_cast<QXChar>(0xD800) + Letters(9);
    const std::string replaced = Bytes(before) + "\xEF\xBF\xBD" + Bytes(9);
    std::string encoded(replaced.size(), '?');
    EXPECT_EQ(qxv::os::EncodeUtf8(alone.data(), alone.size(), encoded.data(), encoded.size(), &lost),
              static_cast<std::ptrdiff_t>(replaced.size()));
    EXPECT_EQ(encoded, replaced) << before;
    EXPECT_TRUE(lost) << before;
  }
}

}  // namespace

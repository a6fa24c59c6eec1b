// encoded_text_test.cpp - whole texts whose first bytes choose the encoding.

#include "streams/encoded_text.h"

#include "os/code_page.h"
#include "streams/text_bytes.h"
#include "support/file_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using support::Printable;
using support::Text;

std::string Decode(const std::string& bytes, unsigned codePage = 1252) {
  Text text = QXT("old");
  const auto error = qxv::DecodeText(support::BytesOf(bytes), codePage, text);
  return error == 0 ? Printable(text) : "error " + std::to_string(error) + " " + Printable(text);
}

struct Row {
  const char* what;
  std::string bytes;
  const char* text;
};

TEST(EncodedText, TheFirstBytesChooseTheEncoding) {
  using namespace std::string_literals;
  const Row rows[] = {
      {"nothing", "", ""},
      {"UTF-16 little-endian",
       "\xFF\xFE"
       "a\0\x2D\x4E"s,
       "a\\u4E2D"},
      {"UTF-16 big-endian", "\xFE\xFF\0a\x4E\x2D"s, "a\\u4E2D"},
      {"UTF-8",
       "\xEF\xBB\xBF"
       "a\xE4\xB8\xAD",
       "a\\u4E2D"},
      {"code page", "a\xE9\x80", "a\\u00E9\\u20AC"},
      {"UTF-8 without a mark is the code page", "\xC3\xA9", "\\u00C3\\u00A9"},
      {"mark alone, little-endian", "\xFF\xFE", ""},
      {"mark alone, big-endian", "\xFE\xFF", ""},
      {"mark alone, UTF-8", "\xEF\xBB\xBF", ""},
      {"half a mark", "\xFF", "\\u00FF"},
      {"two thirds of a mark", "\xEF\xBB", "\\u00EF\\u00BB"},
      {"a second mark is text", "\xFF\xFE\xFF\xFE", "\\uFEFF"},
      {"a surrogate pair", "\xFF\xFE\x3C\xD8\xB5\xDF"s, "\\uD83C\\uDFB5"},
      {"the same in UTF-8", "\xEF\xBB\xBF\xF0\x9F\x8E\xB5", "\\uD83C\\uDFB5"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Decode(row.bytes), row.text) << row.what;
  }
}

TEST(EncodedText, ZerosAreKept) {
  Text text;
  ASSERT_EQ(qxv::DecodeText(support::BytesOf(std::string_view("a\0b", 3)), 1252, text), 0u);
  EXPECT_EQ(text, Text(QXT("a\0b"), 3));
  ASSERT_EQ(qxv::DecodeText(support::BytesOf(support::MarkedUtf16(Text(QXT("a\0b"), 3))), 1252, text), 0u);
  EXPECT_EQ(text, Text(QXT("a\0b"), 3));
}

TEST(EncodedText, TheCodePageIsTheCallers) {
  EXPECT_EQ(Decode("\xD6\xD0", 936), "\\u4E2D");
  EXPECT_EQ(Decode("\xA4\xA4", 950), "\\u4E2D");
  EXPECT_EQ(Decode("\xC3\xA9", qxv::os::kCodePageUtf8), "\\u00E9");
  EXPECT_EQ(Decode("a", 12345), "error 87 old");
  EXPECT_EQ(Decode("\xFF\xFE"
                   "a",
                   12345),
            "\\uFFFD")
      << "not asked for, not missed";
}

TEST(EncodedTextMalformed, WhatIsIllFormedIsReplaced) {
  using namespace std::string_literals;
  const Row rows[] = {
      {"half a unit",
       "\xFF\xFE"
       "a\0b"s,
       "a\\uFFFD"},
      {"half a unit, big-endian", "\xFE\xFF\0ab"s, "a\\uFFFD"},
      {"half a unit alone",
       "\xFF\xFE"
       "a",
       "\\uFFFD"},
      {"high surrogate at the end", "\xFF\xFE\x3C\xD8"s, "\\uFFFD"},
      {"high surrogate before a letter",
       "\xFF\xFE\x3C\xD8"
       "a\0"s,
       "\\uFFFDa"},
      {"low surrogate alone",
       "\xFF\xFE\xB5\xDF"
       "a\0"s,
       "\\uFFFDa"},
      {"two high, one low", "\xFE\xFF\xD8\x3C\xD8\x3C\xDF\xB5"s, "\\uFFFD\\uD83C\\uDFB5"},
      {"UTF-8 cut in a sequence",
       "\xEF\xBB\xBF"
       "a\xE4\xB8",
       "a\\uFFFD"},
      {"a byte that UTF-8 does not have",
       "\xEF\xBB\xBF\xFF"
       "a",
       "\\uFFFDa"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Decode(row.bytes), row.text) << row.what;
  }
}

TEST(EncodedTextMalformed, EveryPrefixIsDecoded) {
  for (const std::string& whole :
       {std::string("\xFF\xFE\x3C\xD8\xB5\xDF"
                    "ab",
                    8),
        std::string("\xFE\xFF\xD8\x3C\xDF\xB5\x4E\x2D", 8), std::string("\xEF\xBB\xBF\xE4\xB8\xAD\xF0\x9F\x8E\xB5"),
        std::string("\xD6\xD0"
                    "a\xD6")}) {
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      Text text;
      EXPECT_EQ(qxv::DecodeText(support::BytesOf(std::string_view(whole).substr(0, size)), 936, text), 0u);
      EXPECT_LE(text.size(), size);
    }
  }
}

class EncodedTextFile : public testing::Test {
 protected:
  support::TempFolder m_folder;
  Text m_name = m_folder.File(QXT("text.ini"));
};

TEST_F(EncodedTextFile, IsReadUpToTheLimitAndNotBeyond) {
  ASSERT_TRUE(support::WriteBytes(m_name,
                                  "\xEF\xBB\xBF"
                                  "caf\xC3\xA9"));
  Text text;
  EXPECT_EQ(qxv::ReadEncodedText(m_name.c_str(), 8, 1252, text), 0u);
  EXPECT_EQ(text, QXT("caf\u00E9"));
  text = QXT("old");
  EXPECT_EQ(qxv::ReadEncodedText(m_name.c_str(), 7, 1252, text), 223u);
  EXPECT_EQ(text, QXT("old"));
}

TEST_F(EncodedTextFile, AnEmptyFileIsAnEmptyText) {
  ASSERT_TRUE(support::WriteBytes(m_name, ""));
  Text text = QXT("old");
  EXPECT_EQ(qxv::ReadEncodedText(m_name.c_str(), 0, 1252, text), 0u);
  EXPECT_EQ(text, QXT(""));
}

TEST_F(EncodedTextFile, WhatCannotBeReadSaysWhy) {
  std::filesystem::create_directory(support::NativePath(m_folder.File(QXT("folder"))));
  Text text = QXT("old");
  EXPECT_EQ(qxv::ReadEncodedText(m_name.c_str(), 100, 1252, text), 2u);
  EXPECT_EQ(qxv::ReadEncodedText(m_folder.File(QXT("none\\a.ini")).c_str(), 100, 1252, text), 3u);
  EXPECT_EQ(qxv::ReadEncodedText(m_folder.File(QXT("folder")).c_str(), 100, 1252, text), 5u);
  EXPECT_NE(qxv::ReadEncodedText(nullptr, 100, 1252, text), 0u);
  EXPECT_EQ(text, QXT("old"));
  EXPECT_FALSE(support::Exists(m_name));
}

TEST_F(EncodedTextFile, OfAMillionCharactersIsReadWhole) {
  const Text whole(1'000'000, QXT('\u4E2D'));
  ASSERT_TRUE(support::WriteBytes(m_name, support::MarkedUtf16(whole)));
  Text text;
  EXPECT_EQ(qxv::ReadEncodedText(m_name.c_str(), std::uint64_t{1} << 40, 1252, text), 0u);
  EXPECT_TRUE(text == whole);
}

}  // namespace

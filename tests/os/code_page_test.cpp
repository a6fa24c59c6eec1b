// code_page_test.cpp - code pages: the same units and bytes on both systems.

#include "os/code_page.h"

#include "os/code_page_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace qxv::os;
using code_page_text::Decode;
using code_page_text::Decoded;
using code_page_text::Encode;
using code_page_text::Encoded;
using support::Text;

TEST(CodePage, AllBytesOf1252GoThereAndBack) {
  // 81 8D 8F 90 9D are unassigned and pair with the control characters of the same number.
  const Text high = QXT("\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F")
      QXT("\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178");
  for (unsigned byte = 0; byte < 256; ++byte) {
    const std::string bytes(1, static_cast<char>(byte));
    const Text expected(1, byte >= 0x80 && byte < 0xA0 ? high[byte - 0x80] : static_cast<QXChar>(byte));
    const Decoded decoded = Decode(1252, bytes);
    EXPECT_EQ(decoded.text, expected) << byte;
    EXPECT_FALSE(decoded.lost) << byte;
    const Encoded encoded = Encode(1252, expected);
    EXPECT_EQ(encoded.bytes, bytes) << byte;
    EXPECT_FALSE(encoded.lost) << byte;
  }
}

struct Sample {
  unsigned page;
  std::string bytes;
  Text text;
};

TEST(CodePage, SamplesGoThereAndBack) {
  const Sample samples[] = {
      {936, "\xD6\xD0\xCE\xC4 abc", QXT("\u4E2D\u6587 abc")},
      {936, "\x80", QXT("\u20AC")},
      {936, "\xA2\xA1\xA1\xA2", QXT("\u2170\u3001")},
      {950, "\xA4\xA4\xA4\xE5", QXT("\u4E2D\u6587")},
      {950, "\xA5\x5C", QXT("\u529F")},  // the trail byte is a backslash
      {932, "\x93\xFA\x96\x7B\xB1\\~", QXT("\u65E5\u672C\uFF71\\~")},
      {949, "\xC7\xD1\xB1\xB9", QXT("\uD55C\uAD6D")},
      {874, "\xE4\xB7\xC2", QXT("\u0E44\u0E17\u0E22")},
      {1250, "\xA3\xF3\x64\x9F", QXT("\u0141\u00F3d\u017A")},
      {1251, "\xCC\xEE\xF1\xEA\xE2\xE0", QXT("\u041C\u043E\u0441\u043A\u0432\u0430")},
      {1253, "\xC1\xE8\xDE\xED\xE1", QXT("\u0391\u03B8\u03AE\u03BD\u03B1")},
      {1254, "\xDD\xFE", QXT("\u0130\u015F")},
      {1255, "\xF9\xEC\xE5\xED", QXT("\u05E9\u05DC\u05D5\u05DD")},
      {1256, "\xE3\xD1\xCD\xC8\xC7", QXT("\u0645\u0631\u062D\u0628\u0627")},
      {1257, "\xC0\xF0", QXT("\u0104\u0161")},
      {1258, "\xC2\xEC\xFE", QXT("\u00C2\u0301\u20AB")},  // marks stand alone, nothing is joined
      {437, "\x80\xE1", QXT("\u00C7\u00DF")},
      {850, "\xB5", QXT("\u00C1")},
      {866, "\x8C\xAE", QXT("\u041C\u043E")},
      {65001, "\xE4\xB8\xAD\xC3\xA9\xF0\x9F\x98\x80z", QXT("\u4E2D\u00E9\U0001F600z")},
  };
  for (const Sample& sample : samples) {
    const Decoded decoded = Decode(sample.page, sample.bytes);
    EXPECT_EQ(decoded.text, sample.text) << sample.page;
    EXPECT_FALSE(decoded.lost) << sample.page;
    const Encoded encoded = Encode(sample.page, sample.text);
    EXPECT_EQ(encoded.bytes, sample.bytes) << sample.page;
    EXPECT_FALSE(encoded.lost) << sample.page;
  }
}

TEST(CodePage, CharactersThatThePageLacksBecomeQuestionMarks) {
  const Sample samples[] = {
      {1252, "a?b", QXT("a\u4E2Db")},
      {1252, "?", QXT("\u0100")},                // no best fit: not A
      {1252, "???", QXT("\u2212\uFF21\u221E")},  // not -, A, 8
      {1252, "??x", QXT("\U0001F600x")},         // one for each unit
      {1252, "?a?",
       QXT("\xD83D"
           "a"
           "\xDE00")},
      {936, "??z", QXT("\U0001F600z")},
      {936, "?\xD6\xD0", QXT("\u00E5\u4E2D")},
      {932, "?", QXT("\u00A5")},  // the yen sign is not the backslash
      {65001,
       "\xEF\xBF\xBD"
       "a"
       "\xEF\xBF\xBD",
       QXT("\xD83D"
           "a"
           "\xDE00")},
      {65001, "\xEF\xBF\xBD", QXT("\xD83D")},
  };
  for (const Sample& sample : samples) {
    const Encoded encoded = Encode(sample.page, sample.text);
    EXPECT_EQ(encoded.bytes, sample.bytes) << sample.page << " " << sample.bytes;
    EXPECT_TRUE(encoded.lost) << sample.page << " " << sample.bytes;
  }
}

TEST(CodePage, BrokenBytesBecomeTheDefaultCharacter) {
  const Sample samples[] = {
      {936, "a\xB0", QXT("a?")},  // cut behind the lead byte
      {936,
       "\xB0\xFF"
       "A",
       QXT("?A")},  // the byte behind is taken along
      {936,
       "\xB0"
       "0z",
       QXT("?z")},
      {936, std::string("\xB0\0z", 3), Text(QXT("?\0z"), 3)},  // but for a zero
      {950, "a\xA4", QXT("a?")},
      {950, "\xA4\xFFz", QXT("?z")},
      {949, "\xB0\x20z", QXT("?z")},
      {932, "\x81", QXT("\u30FB")},
      {932, "\x81\x20z", QXT("\u30FBz")},
      {65001, "\xC3", QXT("\uFFFD")},
      {65001, "\xE4\xB8z", QXT("\uFFFDz")},
      {65001, "\xE4\xB8\xE4\xB8\xAD", QXT("\uFFFD\u4E2D")},
      {65001, "\xF0\x9F\x98", QXT("\uFFFD")},
      {65001, "\xED\xA0\x80z", QXT("\uFFFD\uFFFDz")},  // a surrogate
      {65001, "\xC0\x80z", QXT("\uFFFD\uFFFDz")},      // overlong
      {65001, "\xE0\x80\x80z", QXT("\uFFFD\uFFFDz")},
      {65001, "\xF4\x90\x80\x80z", QXT("\uFFFD\uFFFD\uFFFDz")},
      {65001, "\xFF\xFE\x80", QXT("\uFFFD\uFFFD\uFFFD")},
      {65001,
       "\xF1\x80"
       "A",
       QXT("\uFFFD"
           "A")},
  };
  for (const Sample& sample : samples) {
    const Decoded decoded = Decode(sample.page, sample.bytes);
    EXPECT_EQ(decoded.text, sample.text) << sample.page << " " << testing::PrintToString(sample.bytes);
    EXPECT_TRUE(decoded.lost) << sample.page << " " << testing::PrintToString(sample.bytes);
  }
}

TEST(CodePage, ZerosInsideAreCharacters) {
  for (const unsigned page : {1252u, 936u, kCodePageUtf8}) {
    const std::string bytes("a\0b\0", 4);
    EXPECT_EQ(Decode(page, bytes).text, Text(QXT("a\0b\0"), 4)) << page;
    EXPECT_EQ(Encode(page, Text(QXT("a\0b\0"), 4)).bytes, bytes) << page;
  }
}

TEST(CodePage, LengthsAreExactAndTooLittleRoomFails) {
  const Text text = QXT("ab\u4E2D\u6587z");
  const std::string bytes = "ab\xD6\xD0\xCE\xC4z";
  EXPECT_EQ(WideToMultiByte(936, text.data(), text.size(), nullptr, 0), 7);
  EXPECT_EQ(MultiByteToWide(936, bytes.data(), bytes.size(), nullptr, 0), 5);
  for (std::size_t room = 1; room <= 9; ++room) {
    std::unique_ptr<char[]> out(new char[room]);  // ends at an inaccessible page
    const std::ptrdiff_t written = WideToMultiByte(936, text.data(), text.size(), out.get(), room);
    EXPECT_EQ(written, room < 7 ? -1 : 7) << room;
    if (written > 0) {
      EXPECT_EQ(std::string(out.get(), 7), bytes);
    }
    std::unique_ptr<QXChar[]> units(new QXChar[room]);
    const std::ptrdiff_t read = MultiByteToWide(936, bytes.data(), bytes.size(), units.get(), room);
    EXPECT_EQ(read, room < 5 ? -1 : 5) << room;
    if (read > 0) {
      EXPECT_EQ(Text(units.get(), 5), text);
    }
  }
  EXPECT_EQ(WideToMultiByte(kCodePageUtf8, text.data(), text.size(), nullptr, 0), 9);
  char small[3];
  EXPECT_EQ(WideToMultiByte(kCodePageUtf8, text.data(), text.size(), small, 3), -1);
  EXPECT_EQ(WideToMultiByte(1252, text.data(), 2, small, 2), 2);
  EXPECT_EQ(WideToMultiByte(1252, text.data(), 3, small, 2), -1);
  EXPECT_EQ(MultiByteToWide(936, nullptr, 0, nullptr, 0), 0);
  EXPECT_EQ(MultiByteToWide(936, nullptr, 1, nullptr, 0), -1);
}

TEST(CodePage, UnknownPagesFailAndLeaveTheStringAlone) {
  for (const unsigned page : {9999u, 1u, 4294967295u}) {
    EXPECT_FALSE(CodePageExists(page));
    EXPECT_EQ(MultiByteToWide(page, "a", 1, nullptr, 0), -1);
    EXPECT_EQ(WideToMultiByte(page, QXT("a"), 1, nullptr, 0), -1);
    Text text = QXT("kept");
    EXPECT_FALSE(MultiByteToWide(page, "a", text));
    EXPECT_EQ(text, QXT("kept"));
    std::string bytes = "kept";
    EXPECT_FALSE(WideToMultiByte(page, QXT("a"), bytes));
    EXPECT_EQ(bytes, "kept");
  }
  for (const unsigned page : {0u, 3u, 437u, 850u, 866u, 874u, 932u, 936u, 949u, 950u, 1250u, 1258u, 65001u}) {
    EXPECT_TRUE(CodePageExists(page)) << page;
  }
}

TEST(CodePage, TheAnsiPageOfTheTestsIs1252) {
  EXPECT_EQ(AnsiCodePage(), 1252u);
  EXPECT_EQ(ThreadAnsiCodePage(), 1252u);
  EXPECT_EQ(Decode(kCodePageAnsi, "\x80").text, QXT("\u20AC"));
  EXPECT_EQ(Decode(kCodePageThreadAnsi, "\x80").text, QXT("\u20AC"));
  EXPECT_EQ(Encode(kCodePageAnsi, QXT("\u20AC\u4E2D")).bytes, "\x80?");
}

TEST(CodePage, EveryLanguageHasItsPage) {
  struct Case {
    const char* name;
    unsigned page;
  };
  const Case cases[] = {
      {nullptr, 1252},
      {"", 1252},
      {"C", 1252},
      {"POSIX", 1252},
      {"C.UTF-8", 1252},
      {"en_US.UTF-8", 1252},
      {"de_DE@euro", 1252},
      {"zh_CN.UTF-8", 936},
      {"zh_SG", 936},
      {"zh", 936},
      {"zh_TW.Big5", 950},
      {"zh_HK.UTF-8", 950},
      {"zh_MO", 950},
      {"ja_JP.eucJP", 932},
      {"ko_KR.UTF-8", 949},
      {"ru_RU.KOI8-R", 1251},
      {"uk_UA", 1251},
      {"bg_BG", 1251},
      {"be_BY@latin", 1251},
      {"sr_RS", 1251},
      {"sr_RS.UTF-8@latin", 1250},
      {"sr_RS@latin", 1250},
      {"pl_PL", 1250},
      {"cs_CZ", 1250},
      {"hu_HU", 1250},
      {"sk_SK", 1250},
      {"hr_HR", 1250},
      {"ro_RO", 1250},
      {"sl_SI", 1250},
      {"el_GR", 1253},
      {"tr_TR", 1254},
      {"az_AZ", 1254},
      {"he_IL", 1255},
      {"ar_EG", 1256},
      {"fa_IR", 1256},
      {"et_EE", 1257},
      {"lv_LV", 1257},
      {"lt_LT", 1257},
      {"vi_VN", 1258},
      {"th_TH", 874},
      {"rubbish", 1252},
      {"zh_", 936},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(CodePageOfLocale(row.name), row.page) << (row.name == nullptr ? "null" : row.name);
  }
}

TEST(CodePage, ManyThreadsConvertAtOnce) {
  std::vector<std::thread> threads;
  std::vector<int> wrong(8);
  for (std::size_t i = 0; i < wrong.size(); ++i) {
    threads.emplace_back([&wrong, i] {
      for (int round = 0; round < 500; ++round) {
        const std::string bytes = round % 2 == 0 ? "\xD6\xD0" : "\xCE\xC4";
        Text text;
        const bool ok = MultiByteToWide(936, bytes, text) && text == (round % 2 == 0 ? QXT("\u4E2D") : QXT("\u6587"));
        Text other;
        const bool otherOk = MultiByteToWide(1250 + static_cast<unsigned>(i), "\x80", other) && other.size() == 1;
        wrong[i] += ok && otherOk ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(std::count(wrong.begin(), wrong.end(), 0), 8);
}

}  // namespace

// code_page_judge_test.cpp - code pages against the system's converter: UTF-8, which is ours, and the thread's ANSI page.

#include "os/code_page.h"

#include "os/msvcrt.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using namespace qxv::os;
using support::Text;

TEST(CodePageJudge, Utf8IsReadAsTheSystemReadsIt) {
  QXV_NEEDS_WINE();
  std::mt19937_64 random(20260113);
  for (int round = 0; round < 200000 && !HasFatalFailure(); ++round) {
    std::string bytes;
    for (std::size_t length = 1 + random() % 10; length > 0; --length) {
      static constexpr unsigned char kOften[] = {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2,
                                                 0xDF, 0xE0, 0xE4, 0xED, 0xEF, 0xF0, 0xF1, 0xF4, 0xF5, 0xFF, 0xB8, 0xAD};
      bytes += static_cast<char>(random() % 4 == 0 ? random() % 256 : kOften[random() % sizeof kOften]);
    }
    bytes += "zzzz";  // Wine 8 takes all bytes of a sequence that the end cuts, right or wrong
    wchar_t expected[64];
    const int length = ::MultiByteToWideChar(CP_UTF8, 0 /*flags*/, bytes.data(), static_cast<int>(bytes.size()), expected, 64);
    Text text;
    bool lost = false;
    ASSERT_TRUE(MultiByteToWide(kCodePageUtf8, bytes, text, &lost));
    ASSERT_EQ(text, Text(expected, static_cast<std::size_t>(length))) << testing::PrintToString(bytes);
    const bool broken =
        ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0) == 0;
    ASSERT_EQ(lost, broken) << testing::PrintToString(bytes);
  }
}

TEST(CodePageJudge, Utf8IsWrittenAsTheSystemWritesIt) {
  QXV_NEEDS_WINE();
  std::mt19937_64 random(20260114);
  for (int round = 0; round < 200000 && !HasFatalFailure(); ++round) {
    Text text;
    for (std::size_t length = 1 + random() % 8; length > 0; --length) {
      static constexpr wchar_t kOften[] = {0,      0x41,   0x7F,   0x80,   0x7FF,  0x800, 0xD7FF,
                                           0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFFFF};
      text += random() % 2 == 0 ? static_cast<wchar_t>(random()) : kOften[random() % std::size(kOften)];
    }
    char expected[64];
    const int length =
        ::WideCharToMultiByte(CP_UTF8, 0 /*flags*/, text.data(), static_cast<int>(text.size()), expected, 64, nullptr, nullptr);
    std::string bytes;
    ASSERT_TRUE(WideToMultiByte(kCodePageUtf8, text, bytes));
    ASSERT_EQ(bytes, std::string(expected, static_cast<std::size_t>(length))) << testing::PrintToString(text);
  }
}

TEST(CodePageJudge, TheThreadsLanguageChoosesTheThreadsPage) {
  const LCID before = ::GetThreadLocale();
  ASSERT_TRUE(::SetThreadLocale(MAKELCID(MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED), SORT_DEFAULT)));
  EXPECT_EQ(ThreadAnsiCodePage(), 936u);
  Text text;
  EXPECT_TRUE(MultiByteToWide(kCodePageThreadAnsi, "\xD6\xD0", text));
  EXPECT_EQ(text, L"\u4E2D");
  EXPECT_EQ(AnsiCodePage(), ::GetACP());
  ::SetThreadLocale(before);
}

}  // namespace

// code_page_posix_test.cpp - where Linux takes the ANSI code page from. It is read once a process, so each question is a process
// of its own; and what becomes of a page whose table found no memory or no descriptor.

#include "os/code_page.h"
#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>

namespace {

struct Case {
  const char* acp;
  const char* all;
  const char* ctype;
  const char* lang;
  int page;
};

void Set(const char* name, const char* value) {
  if (value == nullptr) {
    ::unsetenv(name);
  } else {
    ::setenv(name, value, 1 /*overwrite*/);
  }
}

[[noreturn]] void Answer(const Case& row) {
  Set("QXV_ACP", row.acp);
  Set("LC_ALL", row.all);
  Set("LC_CTYPE", row.ctype);
  Set("LANG", row.lang);
  // Exit codes have eight bits.
  std::fprintf(stderr, "page %u %u\n", qxv::os::AnsiCodePage(), qxv::os::ThreadAnsiCodePage());
  std::exit(0);
}

TEST(CodePageOfTheEnvironmentDeathTest, ComesFromTheFirstVariableThatIsSet) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a fresh process: nothing was read in it
  const Case cases[] = {
      {nullptr, nullptr, nullptr, nullptr, 1252},
      {nullptr, nullptr, nullptr, "zh_CN.UTF-8", 936},
      {nullptr, nullptr, "ja_JP.UTF-8", "zh_CN.UTF-8", 932},
      {nullptr, "ru_RU.UTF-8", "ja_JP.UTF-8", "zh_CN.UTF-8", 1251},
      {nullptr, "", "", "zh_TW.UTF-8", 950},
      {nullptr, "C", "ja_JP.UTF-8", "zh_CN.UTF-8", 1252},
      {"936", "ru_RU.UTF-8", nullptr, nullptr, 936},
      {"65001", "ru_RU.UTF-8", nullptr, nullptr, 65001},
      {"9999", "ru_RU.UTF-8", nullptr, nullptr, 1251},  // a page that is none: as if not set
      {"rubbish", nullptr, nullptr, "ko_KR", 949},
      {"0", nullptr, nullptr, "ko_KR", 949},
      {"4294968232", nullptr, nullptr, "ko_KR", 949},  // 2^32 + 936
  };
  for (const Case& row : cases) {
    const std::string expected = "page " + std::to_string(row.page) + " " + std::to_string(row.page);
    EXPECT_EXIT(Answer(row), testing::ExitedWithCode(0), expected);
  }
}

[[noreturn]] void AskTwice() {
  bool refused = false;
  bool existed = false;
  {
    const support::FailAllocation refuse(0);
    existed = qxv::os::CodePageExists(866);
    refused = refuse.Refused();
  }
  std::fprintf(stderr, "refused %d, without memory %d, with memory %d\n", refused, existed, qxv::os::CodePageExists(866));
  std::exit(0);
}

TEST(CodePageWithoutMemoryDeathTest, APageThatFoundNoMemoryIsThereWhenThereIsSome) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a fresh process: the page was never used in it
  EXPECT_EXIT(AskTwice(), testing::ExitedWithCode(0), "refused 1, without memory 0, with memory 1");
}

template <class Convert>
bool ThrowsWithoutMemory(Convert convert) {
  const support::FailAllocation refuse(0);
  try {
    (void)convert();
  } catch (const std::bad_alloc&) {
    return refuse.Refused();
  }
  return false;
}

[[noreturn]] void ConvertTwice() {
  std::basic_string<QXChar> units;
  std::string bytes;
  const auto decode = [&] { return qxv::os::MultiByteToWide(1251, std::string_view("\xC0"), units); };
  const auto encode = [&] { return qxv::os::WideToMultiByte(866, std::basic_string_view<QXChar>(QXT("\u0410")), bytes); };
  const bool threw[] = {ThrowsWithoutMemory(decode), ThrowsWithoutMemory(encode)};
  const bool unchanged = units.empty() && bytes.empty();
  const bool works = decode() && units == QXT("\u0410") && encode() && bytes == "\x80";
  std::fprintf(stderr, "threw %d %d, unchanged %d, works %d\n", threw[0], threw[1], unchanged, works);
  std::exit(0);
}

TEST(CodePageWithoutMemoryDeathTest, ConvertingIntoAStringThrowsAndWorksWhenThereIsSome) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(ConvertTwice(), testing::ExitedWithCode(0), "threw 1 1, unchanged 1, works 1");
}

[[noreturn]] void AskWithoutDescriptors() {
  const bool first = qxv::os::CodePageExists(1251);  // iconv has looked for its modules
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  rlimit none = before;
  none.rlim_cur = 0;
  ::setrlimit(RLIMIT_NOFILE, &none);
  const bool without = qxv::os::CodePageExists(936);
  ::setrlimit(RLIMIT_NOFILE, &before);
  std::fprintf(stderr, "first %d, without descriptors %d, with %d\n", first, without, qxv::os::CodePageExists(936));
  std::exit(0);
}

TEST(CodePageWithoutDescriptorsDeathTest, APageThatFoundNoDescriptorIsThereWhenThereIsOne) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(AskWithoutDescriptors(), testing::ExitedWithCode(0), "first 1, without descriptors 0, with 1");
}

TEST(CodePageWithoutMemory, AnUnknownPageIsToldNotThrown) {
  std::basic_string<QXChar> units;
  std::string bytes;
  EXPECT_FALSE(qxv::os::MultiByteToWide(9999, std::string_view("a"), units));
  EXPECT_FALSE(qxv::os::WideToMultiByte(9999, std::basic_string_view<QXChar>(QXT("a")), bytes));
}

}  // namespace

// language_test.cpp - language identifiers of locales. Linux only.

#include "os/language.h"

#include "support/environment.h"

#include <gtest/gtest.h>

namespace {

using namespace qxv::os;
using support::ScopedVariable;

TEST(Language, LocalesHaveTheIdentifiersOfWindows) {
  const struct {
    const char* locale;
    unsigned language;
  } rows[] = {
      {"zh_CN.UTF-8", 0x0804}, {"zh_TW", 0x0404},        {"zh", 0x0804},    {"en_US.UTF-8", 0x0409},     {"en_GB", 0x0809},
      {"de_DE@euro", 0x0407},  {"de_AT", 0x0C07},        {"de_XX", 0x0407}, {"fr_CA.ISO8859-1", 0x0C0C}, {"ja_JP.UTF-8", 0x0411},
      {"ko_KR", 0x0412},       {"ru_RU.KOI8-R", 0x0419}, {"pt_PT", 0x0816}, {"pt_BR", 0x0416},           {"C", 0x0409},
      {"C.UTF-8", 0x0409},     {"POSIX", 0x0409},        {"", 0x0409},      {"xx_YY", 0x0409},           {"_", 0x0409},
      {"zh_", 0x0804},         {".UTF-8", 0x0409},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(LanguageOfLocale(row.locale), row.language) << row.locale;
  }
  EXPECT_EQ(LanguageOfLocale(nullptr), 0x0409);
}

TEST(Language, TheFirstVariableThatIsSetNamesTheLocale) {
  const ScopedVariable lang("LANG", "ja_JP.UTF-8");
  const ScopedVariable type("LC_CTYPE", "");
  const ScopedVariable all("LC_ALL", "");
  EXPECT_STREQ(EnvironmentLocale(), "ja_JP.UTF-8");
  const ScopedVariable typeSet("LC_CTYPE", "ko_KR.UTF-8");
  EXPECT_STREQ(EnvironmentLocale(), "ko_KR.UTF-8");
  const ScopedVariable allSet("LC_ALL", "zh_CN.UTF-8");
  EXPECT_STREQ(EnvironmentLocale(), "zh_CN.UTF-8");
  const ScopedVariable none("LANG", "");
  const ScopedVariable noType("LC_CTYPE", "");
  const ScopedVariable nothing("LC_ALL", "");
  EXPECT_EQ(EnvironmentLocale(), nullptr);
}

}  // namespace

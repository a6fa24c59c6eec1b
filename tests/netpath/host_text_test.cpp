// host_text_test.cpp - addresses, hosts, forms and prefixes as texts.

#include "netpath/host_text.h"

#include "support/text.h"

#include <gtest/gtest.h>

namespace {

using namespace qxv;
using support::Printable;
using support::Repeat;
using support::Text;

TEST(NetPathText, DottedAddresses) {
  const struct {
    const QXChar* host;
    bool isAddress;
  } rows[] = {
      {QXT("1.2.3.4"), true},
      {QXT("1.2.3"), false},
      {QXT("256.1.1.1"), false},
      {QXT("255.255.255.255"), true},
      {QXT("1.1.1.256"), false},
      {QXT("1.256.1.1"), false},
      {QXT("1.2.3.4."), false},
      {QXT("1.2.3.4.5"), false},
      {QXT("1.2.3.x"), false},
      {QXT("x.2.3.4"), false},
      {QXT("1,2,3.4"), false},
      {QXT("-1.2.3.4"), false},
      {QXT("+1.2.3.4"), false},
      {QXT(" 1.2.3.4"), false},
      {QXT("1.2.3.4 "), false},
      {QXT("1.2.34"), false},
      {QXT("...4"), false},
      {QXT("12345678"), false},
      {QXT("\uFF11.2.3.4"), false},  // a full-width digit
      {QXT(""), false},
      {QXT("server1"), false},
      {QXT("4294967297.1.1.1"), false},
      {QXT("18446744073709551617.1.1.1"), false},
      {QXT("1.1.1.4294967297"), false},
      {QXT("2560.1.1.1"), false},
      {QXT("1000000000.1.1.1"), false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(IsDottedAddress(row.host), row.isAddress) << Printable(row.host);
  }
}

TEST(NetPathText, ManyDigitsAreTooLargeUnlessTheyAreLeadingZeros) {
  EXPECT_FALSE(IsDottedAddress(Repeat(QXT('1'), 100'000) + QXT(".1.1.1")));
  EXPECT_FALSE(IsDottedAddress(QXT("1") + Repeat(QXT('0'), 100'000) + QXT(".1.1.1")));
  EXPECT_TRUE(IsDottedAddress(Repeat(QXT('0'), 100'000) + QXT("1.1.1.1")));
  EXPECT_FALSE(IsDottedAddress(Repeat(QXT('.'), 100'000) + QXT("1")));
}

TEST(NetPathTextKept, LeadingZerosAndEmptyComponentsPass) {
  EXPECT_TRUE(IsDottedAddress(QXT("01.2.3.4")));
  EXPECT_TRUE(IsDottedAddress(QXT("1.2.3.00000255")));
  EXPECT_TRUE(IsDottedAddress(QXT("1..22.3")));
  EXPECT_TRUE(IsDottedAddress(QXT(".22.3.4")));
  EXPECT_TRUE(IsDottedAddress(QXT("...0004")));
  EXPECT_FALSE(IsDottedAddress(QXT("1..2.3"))) << "six characters";
}

TEST(NetPathText, LoopbackAddressesBeginWith127) {
  EXPECT_TRUE(IsLoopbackAddress(QXT("127.0.0.1")));
  EXPECT_TRUE(IsLoopbackAddress(QXT("127.255.1.1")));
  EXPECT_TRUE(IsLoopbackAddress(QXT("0127.0.0.1")));
  EXPECT_FALSE(IsLoopbackAddress(QXT("128.0.0.1")));
  EXPECT_FALSE(IsLoopbackAddress(QXT("12.7.0.0.1")));
  EXPECT_FALSE(IsLoopbackAddress(QXT("000.0.0.127")));
  EXPECT_FALSE(IsLoopbackAddress(QXT("127.server")));
}

TEST(NetPathText, NetworkFormsHaveTwoBackslashesOrBeginWithLocal) {
  const struct {
    const QXChar* path;
    bool isNetwork;
  } rows[] = {
      {QXT("\\\\srv\\share"), true}, {QXT("\\\\"), true},      {QXT("LOCAL\\"), true}, {QXT("local\\D:\\x"), true},
      {QXT("LoCaL\\x"), true},       {QXT("LOCAL"), false},    {QXT("LOCA\\"), false}, {QXT("LOCALX\\y"), false},
      {QXT(" LOCAL\\y"), false},     {QXT("D:\\a\\b"), false}, {QXT(""), false},       {QXT("\\"), false},
      {QXT("//srv/share"), false},   {QXT("\\/\\srv"), false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(IsNetworkForm(row.path), row.isNetwork) << Printable(row.path);
  }
}

TEST(NetPathTextKept, TwoBackslashesAnywhereMakeANetworkPath) {
  EXPECT_TRUE(IsNetworkForm(QXT("D:\\a\\\\b")));
  EXPECT_TRUE(IsNetworkForm(QXT("D:\\a\\\\")));
  EXPECT_TRUE(IsNetworkForm(QXT("x\\\\srv\\s")));
}

TEST(NetPathText, TheHostStandsBetweenIndexTwoAndTheNextBackslash) {
  const struct {
    const QXChar* path;
    const QXChar* host;
    const QXChar* rest;
  } rows[] = {
      {QXT("\\\\srv\\share\\a"), QXT("srv"), QXT("\\share\\a")},
      {QXT("\\\\srv"), QXT("srv"), QXT("")},
      {QXT("\\\\srv\\"), QXT("srv"), QXT("\\")},
      {QXT("\\\\\\share"), QXT(""), QXT("\\share")},
      {QXT("\\a\\\\b"), QXT(""), QXT("\\\\b")},
      {QXT("\\ab\\c"), QXT("b"), QXT("\\c")},
      {QXT("\\\\"), QXT(""), QXT("")},
      {QXT("\\"), QXT(""), QXT("")},
      {QXT(""), QXT(""), QXT("")},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Text(HostOf(row.path)), row.host) << Printable(row.path);
    EXPECT_EQ(Text(BehindHost(row.path)), row.rest) << Printable(row.path);
  }
}

TEST(NetPathText, APathMatchesAFieldThatItIsOrLiesBelow) {
  const struct {
    const QXChar* path;
    const QXChar* field;
    const QXChar* rest;  // null: no match
  } rows[] = {
      {QXT("\\\\srv\\share\\a"), QXT("\\\\srv\\share"), QXT("\\a")},
      {QXT("\\\\srv\\share"), QXT("\\\\srv\\share"), QXT("")},
      {QXT("\\\\srv\\share2\\a"), QXT("\\\\srv\\share"), nullptr},
      {QXT("\\\\srv\\shar"), QXT("\\\\srv\\share"), nullptr},
      {QXT("\\\\SRV\\SHARE\\Abc\\D"), QXT("\\\\srv\\share"), QXT("\\Abc\\D")},
      {QXT("x:\\A"), QXT("X:"), QXT("\\A")},
      {QXT("X:"), QXT("X:"), QXT("")},
      {QXT("X:a"), QXT("X:"), nullptr},
      {QXT("D:\\"), QXT("D:\\"), QXT("")},
      {QXT("D:\\a"), QXT("D:\\"), nullptr},
      {QXT("D:\\\\a"), QXT("D:\\"), QXT("\\a")},
      {QXT("\\\\srv\\share"), QXT(""), nullptr},
      {QXT(""), QXT(""), nullptr},
      {QXT(""), QXT("X:"), nullptr},
      {QXT("\\\\\u00C9\\\u00DE\\a"), QXT("\\\\\u00E9\\\u00FE"), QXT("\\a")},
      {QXT("\\\\\u00D7\\a"), QXT("\\\\\u00F7"), nullptr},  // no letters
      {QXT("\\\\\u0100\\a"), QXT("\\\\\u0101"), nullptr},  // above 255
      {QXT("\\\\\u0178\\a"), QXT("\\\\\u00FF"), nullptr},
  };
  for (const auto& row : rows) {
    qxv::os::TextView rest = QXT("before");
    EXPECT_EQ(MatchPrefix(row.path, row.field, rest), row.rest != nullptr) << Printable(row.path);
    EXPECT_EQ(Text(rest), row.rest != nullptr ? row.rest : QXT("before")) << Printable(row.path);
  }
}

TEST(NetPathText, CaseIsFoldedBelow256Only) {
  Text all(65536, 0);
  for (std::size_t i = 0; i < all.size(); ++i) {
    all[i] = static_cast<QXChar>(i);
  }
  const Text lower = LowerCase(all);
  const Text upper = UpperCase(all);
  for (unsigned i = 0; i < 65536; ++i) {
    const bool isUpper = (i >= 'A' && i <= 'Z') || (i >= 0xC0 && i <= 0xDE && i != 0xD7);
    const bool isLower = (i >= 'a' && i <= 'z') || (i >= 0xE0 && i <= 0xFE && i != 0xF7);
    EXPECT_EQ(static_cast<unsigned>(lower[i]), isUpper ? i + 32 : i);
    EXPECT_EQ(static_cast<unsigned>(upper[i]), isLower ? i - 32 : i);
  }
}

TEST(NetPathText, TextsOfDifferentLengthAreNeverEqual) {
  EXPECT_TRUE(EqualsFolded(QXT("aBc"), QXT("AbC")));
  EXPECT_FALSE(EqualsFolded(QXT("abc"), QXT("abcd")));
  EXPECT_FALSE(EqualsFolded(QXT("abc"), QXT("")));
  EXPECT_TRUE(EqualsFolded(QXT(""), QXT("")));
}

TEST(NetPathText, BlanksGoAtBothEnds) {
  EXPECT_EQ(Text(WithoutBlanks(QXT(" \t VM 1\t "))), QXT("VM 1"));
  EXPECT_EQ(Text(WithoutBlanks(QXT(" \t "))), QXT(""));
  EXPECT_EQ(Text(WithoutBlanks(QXT(""))), QXT(""));
}

}  // namespace

// host_string_format_test.cpp - CString: formatted text and text of the ANSI code page.

#include "host_test.h"
#include "os/code_page.h"
#include "support/guard_new.h"

#include <climits>
#include <new>

namespace {

using host_test::Units;
using support::Repeat;
using support::Text;

void FormatThroughList(CString& text, const QXChar* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  text.FormatV(format, arguments);
  text.AppendFormatV(format, arguments);
  va_end(arguments);
}

TEST(HostStringFormat, ReplacesTheText) {
  CString text(QXT("old"));
  text.Format(QXT("%s is %d, %05.1f%% of %c"), QXT("ten"), 10, 2.5, QXT('x'));
  EXPECT_EQ(text, QXT("ten is 10, 002.5% of x"));
  text.Format(QXT("%08X"), 0xBEEFu);
  EXPECT_EQ(text, QXT("0000BEEF"));
  text.Format(QXT("%I64d"), static_cast<QXInt64>(-5000000000));
  EXPECT_EQ(text, QXT("-5000000000"));
  text.Format(QXT(""));
  EXPECT_EQ(text, QXT(""));
}

TEST(HostStringFormat, AppendsToTheText) {
  CString text(QXT("a"));
  text.AppendFormat(QXT("-%d"), 1);
  text.AppendFormat(QXT("-%d"), 2);
  text.AppendFormat(QXT(""));
  EXPECT_EQ(text, QXT("a-1-2"));
}

TEST(HostStringFormat, TakesAnArgumentListTwice) {
  CString text;
  FormatThroughList(text, QXT("%d%s;"), 7, QXT("x"));
  EXPECT_EQ(text, QXT("7x;7x;"));
}

TEST(HostStringFormat, TakesItselfAsArgument) {
  CString text(QXT("ab"));
  text.Format(QXT("%s%s"), text.GetString(), text.GetString());
  EXPECT_EQ(text, QXT("abab"));
  text.AppendFormat(QXT("%s"), text.GetString() + 2);
  EXPECT_EQ(text, QXT("ababab"));
  text = QXT("x%d");
  text.Format(text, 5);
  EXPECT_EQ(text, QXT("x5"));
}

TEST(HostStringFormat, KeepsAFormattedZero) {
  CString text;
  text.Format(QXT("a%cb"), 0);
  EXPECT_EQ(Units(text), Text(QXT("a\0b"), 3));
}

TEST(HostStringFormat, NullAndMalformedGiveNoText) {
  CString text(QXT("old"));
  text.AppendFormat(nullptr);
  text.AppendFormat(QXT("x%n"), nullptr);
  EXPECT_EQ(text, QXT("old"));
  text.Format(QXT("x%99999999999d"), 1);
  EXPECT_EQ(text, QXT(""));
  text = QXT("old");
  text.Format(nullptr);
  EXPECT_EQ(text, QXT(""));
}

TEST(HostStringFormat, HasNoLimitOfItsOwn) {
  const Text long1 = Repeat(QXT('y'), 100000);
  CString text;
  text.Format(QXT("<%s>"), long1.c_str());
  EXPECT_EQ(Units(text), QXT("<") + long1 + QXT(">"));
}

TEST(HostStringFormat, FailedAllocationLeavesTheTextAsItWas) {
  CString text(QXT("old"));
  {
    support::FailAllocation next(0);
    EXPECT_THROW(text.Format(QXT("%d"), 12345), std::bad_alloc);
  }
  EXPECT_EQ(text, QXT("old"));
  EXPECT_THROW(text.Format(QXT("%2000000000d"), 1), std::bad_alloc);
  EXPECT_EQ(text, QXT("old"));
}

TEST(HostStringFormat, ReadsTheAnsiCodePage) {
  EXPECT_EQ(CString("abc"), QXT("abc"));
  EXPECT_EQ(CString(""), QXT(""));
  EXPECT_EQ(CString(static_cast<const char*>(nullptr)), QXT(""));
  if (qxv::os::AnsiCodePage() != 1252) {
    GTEST_SKIP() << "the rest needs the ANSI code page 1252, here it is " << qxv::os::AnsiCodePage();
  }
  EXPECT_EQ(CString("\xE4\x80"), QXT("\x00E4\x20AC"));
}

}  // namespace

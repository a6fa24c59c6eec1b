// wide_format_test.cpp - the formatter on both systems: the recorded table, cutting, refusal, limits, independence of the locale.

#include "os/wide_format.h"

#include "os/wide_format_table.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>

namespace {

using namespace qxv::os;
using support::Text;

int LengthWith(const QXChar* format, ...) {
  va_list args;
  va_start(args, format);
  const int length = FormatLength(format, args);
  va_end(args);
  return length;
}

struct Outcome {
  int written;
  int length;
  Text text;
};

template <typename... Args>
Outcome Formatted(std::size_t capacity, const QXChar* format, Args... args) {
  std::unique_ptr<QXChar[]> out(new QXChar[capacity]);  // ends at an inaccessible page
  const int written = FormatTextWith(out.get(), capacity, format, args...);
  const int length = LengthWith(format, args...);
  return {written, length, written >= 0 ? Text(out.get(), static_cast<std::size_t>(written)) : Text(out.get())};
}

template <typename... Args>
Text Print(const QXChar* format, Args... args) {
  const Outcome outcome = Formatted(2000, format, args...);
  EXPECT_EQ(outcome.written, outcome.length);
  return outcome.text;
}

struct PrintRow {
  const QXChar* format;
  Text operator()(format_table::Int a) const { return Print(format, a.value); }
  Text operator()(format_table::Long a) const { return Print(format, a.value); }
  Text operator()(format_table::Int64 a) const { return Print(format, a.value); }
  Text operator()(format_table::Number a) const { return Print(format, a.value); }
  Text operator()(format_table::Wide a) const { return Print(format, a.value); }
  Text operator()(format_table::Narrow a) const { return Print(format, a.value); }
  Text operator()(format_table::Pointer a) const { return Print(format, reinterpret_cast<void*>(a.address)); }
};

TEST(WideFormat, PrintsWhatTheMicrosoftRunTimePrints) {
  static_assert(std::size(format_table::kRows) >= 300);
  for (std::size_t i = 0; i < std::size(format_table::kRows); ++i) {
    const format_table::Row& row = format_table::kRows[i];
    EXPECT_EQ(std::visit(PrintRow{row.format}, row.argument), Text(row.expected))
        << "row " << i << ", format " << testing::PrintToString(Text(row.format));
  }
}

TEST(WideFormat, TakesWidthAndPrecisionFromArguments) {
  EXPECT_EQ(Print(QXT("%*d|"), 5, 7), QXT("    7|"));
  EXPECT_EQ(Print(QXT("%*d|"), -5, 7), QXT("7    |"));
  EXPECT_EQ(Print(QXT("%.*d|"), 3, 7), QXT("007|"));
  EXPECT_EQ(Print(QXT("%.*f"), -3, 0.5), QXT("0.500000"));
  EXPECT_EQ(Print(QXT("%*.*f|"), 10, 2, 3.14159), QXT("      3.14|"));
  EXPECT_EQ(Print(QXT("%*5d|"), 1, 7), QXT("              7|"));  // the digits continue the number: 15
  EXPECT_EQ(Print(QXT("%.*s|"), 2, QXT("abc")), QXT("ab|"));
}

TEST(WideFormat, TakesArgumentsInOrder) {
  EXPECT_EQ(Print(QXT("%ld %hd %I64d %c %s %S %p %.1f%%"), 5L, 6, 7LL, 'x', QXT("y"), "z", reinterpret_cast<void*>(255), 2.25),
            QXT("5 6 7 x y z 00000000000000FF 2.3%"));
}

TEST(WideFormat, PrintsTheLow32BitsForLong) {
  EXPECT_EQ(Print(QXT("%ld"), -1L), QXT("-1"));
  if (sizeof(long) == 8) {
    EXPECT_EQ(Print(QXT("%ld %lu %d"), static_cast<long>(0x7FFFFFFF80000001), static_cast<long>(0x7FFFFFFFFFFFFFFF),
                    static_cast<long>(0x100000002)),
              QXT("-2147483647 4294967295 2"));
  }
}

TEST(WideFormat, ConvertsNarrowTextFromTheAnsiCodePage) {
  // 1252 in the tests of both systems: 0x80 is the euro sign.
  EXPECT_EQ(Print(QXT("%hs|%.2S|%6hs|%hc"), "\x80\xE9z", "a\x80z", "\x80", 0x80),
            QXT("\u20AC\u00E9z|a\u20AC|     \u20AC|\u20AC"));
}

TEST(WideFormat, PrecisionAllowsTextWithoutTerminator) {
  std::unique_ptr<QXChar[]> wide(new QXChar[3]{QXT('a'), QXT('b'), QXT('c')});
  std::unique_ptr<char[]> narrow(new char[3]{'d', 'e', 'f'});
  EXPECT_EQ(Print(QXT("%.3s%.3hs"), wide.get(), narrow.get()), QXT("abcdef"));
}

TEST(WideFormat, KeepsWhatFittedAndTerminatesIt) {
  const Text whole = QXT("value -1234567 of \u4E2D 3.14159");
  for (std::size_t capacity = 1; capacity <= whole.size(); ++capacity) {
    const Outcome cut = Formatted(capacity, QXT("value %d of %c %.5f"), -1234567, 0x4E2D, 3.14159);
    EXPECT_EQ(cut.written, -1) << capacity;
    EXPECT_EQ(cut.length, static_cast<int>(whole.size())) << capacity;
    EXPECT_EQ(cut.text, whole.substr(0, capacity - 1)) << capacity;
  }
  EXPECT_EQ(Formatted(whole.size() + 1, QXT("value %d of %c %.5f"), -1234567, 0x4E2D, 3.14159).text, whole);
}

TEST(WideFormat, RefusesNullAndNoRoom) {
  QXChar out[2] = {QXT('x'), QXT('y')};
  EXPECT_EQ(FormatTextWith(nullptr, 5, QXT("a")), -1);
  EXPECT_EQ(FormatTextWith(out, 0, QXT("a")), -1);
  EXPECT_EQ(out[0], QXT('x'));
  EXPECT_EQ(FormatTextWith(out, 2, nullptr), -1);
  EXPECT_EQ(out[0], 0);
  EXPECT_EQ(LengthWith(nullptr), -1);
}

TEST(WideFormat, NeverWritesThroughAnArgument) {
  int count = 99;
  for (const QXChar* format : {QXT("abc%n|"), QXT("abc%hn"), QXT("abc%I64n"), QXT("abc%5.3lln")}) {
    const Outcome outcome = Formatted(20, format, &count);
    EXPECT_EQ(outcome.written, -1);
    EXPECT_EQ(outcome.length, -1);
    EXPECT_EQ(outcome.text, QXT("abc"));
    EXPECT_EQ(count, 99);
  }
}

TEST(WideFormat, HugeWidthAndPrecisionEndWithoutWork) {
  struct Case {
    const QXChar* format;
    int length;
  };
  for (const Case& request :
       {Case{QXT("%2147483647d"), INT_MAX}, Case{QXT("%2147483647d|"), -1}, Case{QXT("%2147483648d"), -1},
        Case{QXT("%.2147483647d"), INT_MAX}, Case{QXT("%.2147483648d"), -1}, Case{QXT("%99999999999999999999d"), -1},
        Case{QXT("%-2147483646x"), INT_MAX - 1}, Case{QXT("%2147483647c%c"), -1}, Case{QXT("%.2147483647x|"), -1}}) {
    const Outcome outcome = Formatted(8, request.format, 5, 5);
    EXPECT_EQ(outcome.written, -1) << testing::PrintToString(Text(request.format));
    EXPECT_EQ(outcome.length, request.length) << testing::PrintToString(Text(request.format));
  }
  EXPECT_EQ(Formatted(8, QXT("%*d"), INT_MIN, 5).length, -1);
  EXPECT_EQ(Formatted(8, QXT("%*1d"), INT_MAX, 5).length, -1);
  for (const QXChar* format : {QXT("%.2147483647f"), QXT("%.2147483647e"), QXT("%.2147483647a"), QXT("%#.2147483647g")}) {
    for (const double value : {0.0, 1.5, 5e-324, -1e308}) {
      EXPECT_EQ(Formatted(8, format, value).written, -1) << testing::PrintToString(Text(format)) << value;
    }
  }
  EXPECT_EQ(Formatted(8, QXT("%.2147483647f"), 1.5).length, -1);
  EXPECT_EQ(Formatted(8, QXT("%.2147483645f"), 1.5).length, INT_MAX);
  EXPECT_EQ(Formatted(20, QXT("%.2147483647g"), 1.5).text, QXT("1.5"));
}

TEST(WideFormat, PrintsEveryExactDigit) {  // literals from exact rational arithmetic
  EXPECT_EQ(Print(QXT("%.0f"), 1.7976931348623157e308),
            QXT("1797693134862315708145274237317043567980705675258449965989174768031572607800285387605895586327668781")
                QXT("7154045895351438246423432132688946418276846754670353751698604991057655128207624549009038932894407586")
                    QXT("8508455133942304583236903222948165808559332123348274797826204144723168738177180919299881250404026184")
                        QXT("124858368"));
  const Text largestSubnormal =
      QXT("2225073858507200889024586876085859887650423112240959465493524802562440009228235695178775888803759155")
          QXT("2642309780950434312085877387158357291821993020294379224223559819827501242041788969571311791082261043")
              QXT("9719796040004548973919380791989360815256131133761498420432717510336273915497827315941438281362751138") QXT(
                  "3860409424946494228631669542910508020181592664213499660651780309507591305871984642390606863710200510")
                  QXT("8723282784678843631944515866135041223479014792369585208321597621066375401613736583044193603714778355") QXT(
                      "3066828345356340050740730401356029680463759185831631242245215992625464943008368518617194224176464551")
                      QXT("3713542013221703137049658321015465406803539741790602258950302350193751977303094576317321085250729930")
                          QXT("5089761582519159720757232455434770912461317493580281734466552734375");
  EXPECT_EQ(Print(QXT("%.1074f"), 2.2250738585072009e-308), QXT("0.") + Text(307, QXT('0')) + largestSubnormal);
  EXPECT_EQ(Print(QXT("%.1100f"), 2.2250738585072009e-308),
            QXT("0.") + Text(307, QXT('0')) + largestSubnormal + Text(26, QXT('0')));
}

TEST(WideFormat, FollowsNoLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* name : {"de_DE.UTF-8", "German_Germany.1252", ""}) {
    (void)std::setlocale(LC_ALL, name);  // whether the machine has it or not, the text is the same
    EXPECT_EQ(Print(QXT("%f %g %d"), 1.5, 0.25, 1234567), QXT("1.500000 0.25 1234567")) << name;
  }
  std::setlocale(LC_ALL, before.c_str());
}

}  // namespace

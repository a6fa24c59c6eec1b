// conversion_parse.cpp - strict parsing: a text that is a number as a whole, or a failure.
// The arithmetic is defined digit by digit, each step rounded; applications compare stored numbers by their bits, so nothing
// here may round better than that. What is taken in one step below is exact either way.

#include "qxv/conversion.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace {

constexpr int kParsed = 0;
constexpr int kFailed = -1;

// 0 to 9, or something larger for what is no digit.
constexpr std::uint32_t DigitOf(QXChar character) noexcept { return static_cast<std::uint32_t>(character) - '0'; }

// The contribution of digit d at the p-th place behind the point, d divided by 10 p times, each quotient rounded to T: row p - 1,
// entry d. In single precision every quotient is a float, as everything else in that function. The last row is all zeros and
// stands for every later place.
template <class T, std::size_t Places>
constexpr auto MakeFractions() {
  std::array<std::array<T, 10>, Places> fractions{};
  for (std::size_t d = 1; d < 10; ++d) {
    T quotient = static_cast<T>(d);
    for (std::size_t place = 0; place < Places; ++place) {
      quotient = quotient / T{10};
      fractions[place][d] = quotient;
    }
  }
  return fractions;
}

template <class T>
struct Fractions;
template <>
struct Fractions<float> {
  static constexpr std::size_t kPlaces = 47;
  static constexpr auto kTable = MakeFractions<float, kPlaces>();
};
template <>
struct Fractions<double> {
  static constexpr std::size_t kPlaces = 325;
  static constexpr auto kTable = MakeFractions<double, kPlaces>();
};
template <class T>
constexpr bool kEndsInZeros = Fractions<T>::kTable.back()[9] == 0 && Fractions<T>::kTable[Fractions<T>::kPlaces - 2][9] != 0;
static_assert(kEndsInZeros<float> && kEndsInZeros<double>);

// The first character of the number, behind the blanks.
const QXChar* SkipBlanks(const QXChar* at) noexcept {
  while (*at == ' ') {
    ++at;
  }
  return at;
}

// Digits before the point. False: one more digit changed nothing, the value is infinite.
template <class T>
[[nodiscard]] bool ParseWhole(const QXChar*& at, T& value) noexcept {
  // Up to here v * 10 + d is an integer that T holds exactly, so that integers give the same value.
  constexpr std::uint64_t kExact = ((std::uint64_t{1} << std::numeric_limits<T>::digits) - 9) / 10;
  std::uint64_t whole = 0;
  for (; DigitOf(*at) <= 9 && whole <= kExact; ++at) {
    whole = whole * 10 + DigitOf(*at);
  }
  value = static_cast<T>(whole);
  for (; DigitOf(*at) <= 9; ++at) {
    const T next = value * T{10} + static_cast<T>(DigitOf(*at));
    // KEPT: once infinite, a further "0" is accepted and any other digit is not. The rule looks for growth, not for the range.
    //   Pinned by StrictParseKept.ZerosBehindAnInfiniteValueAreAccepted.
    if (next < value || (next == value && *at != '0')) {
      return false;
    }
    value = next;
  }
  return true;
}

// Digits behind the point.
template <class T>
void ParseFraction(const QXChar*& at, T& value) noexcept {
  const auto* place = Fractions<T>::kTable.data();
  const auto* const last = place + (Fractions<T>::kPlaces - 1);
  // KEPT: each digit is a rounded quotient added with rounding. Stored numbers must read to the same bits.
  //   Pinned by StrictParseKept.FractionsAreSumsOfRepeatedQuotients.
  for (; DigitOf(*at) <= 9; ++at) {
    value += (*place)[DigitOf(*at)];
    place += place != last;
  }
}

template <class T>
int ParseReal(const QXChar* at, T& value) noexcept {
  at = SkipBlanks(at);
  if (*at == 0) {
    return kFailed;
  }
  const bool negative = *at == '-';
  at += negative;
  T v = 0;
  bool good = ParseWhole(at, v);
  if (good && *at == '.') {
    ++at;
    ParseFraction(at, v);
  }
  good = good && *SkipBlanks(at) == 0;
  // KEPT: a failure leaves the value read so far, without its sign, and "-" alone is -0. Readers of settings use both.
  //   Pinned by StrictParseKept.FailureLeavesTheValueReadSoFar and StrictParseKept.MinusAloneIsMinusZero.
  value = good && negative ? -v : v;
  return good ? kParsed : kFailed;
}

int ParseInt(const QXChar* at, int& value) noexcept {
  at = SkipBlanks(at);
  if (*at == 0) {
    return kFailed;
  }
  const bool negative = *at == '-';
  at += negative;
  // KEPT: the magnitude is read before the sign, so -2147483648 fails.
  //   Pinned by StrictParseKept.SmallestIntFails.
  std::int64_t magnitude = 0;
  bool good = true;
  for (; DigitOf(*at) <= 9; ++at) {
    const std::int64_t next = magnitude * 10 + DigitOf(*at);
    if (next > std::numeric_limits<int>::max()) {
      good = false;
      break;
    }
    magnitude = next;
  }
  const int v = static_cast<int>(magnitude);
  good = good && *SkipBlanks(at) == 0;
  value = good && negative ? -v : v;
  return good ? kParsed : kFailed;
}

}  // namespace

int QXVString2Float(const CQXString& text, float& value) { return ParseReal<float>(text, value); }

int QXVString2Double(const CQXString& text, double& value) { return ParseReal<double>(text, value); }

int QXVString2Int(const CQXString& text, int& value) { return ParseInt(text, value); }

// variant_time.cpp - the day count of OLE Automation dates in the proleptic Gregorian calendar.
// Before day 0 the whole part counts down but the fraction still counts the time of day up: -1.25 is 06:00 on 1899-12-29.

#include "foundation/variant_time.h"

#include <cmath>
#include <cstdint>

namespace qxv {

namespace {

constexpr int kFirstDay = -657434;  // 0100-01-01
constexpr int kLastDay = 2958465;   // 9999-12-31
constexpr int kSecondsOfDay = 86400;
constexpr int kTwoDigitYearLimit = 49;  // the last two-digit year of this century, as Windows has it
constexpr int kDaysTo1899 = 693899;     // from 0000-03-01 to 1899-12-30
constexpr int kDaysOf400Years = 146097;

// A value meant as half a second is seldom exact: what lies less than this many days (a microsecond) below it rounds up too.
constexpr double kHalfSecondSlack = 1e-11;

// Years begin in March here, so that the leap day is the last of its year. Valid from year 0 on; day may be 0 to 31.
constexpr int DayNumber(int year, int month, int day) noexcept {
  const int marchYear = month > 2 ? year : year - 1;
  const int marchMonth = month > 2 ? month - 3 : month + 9;
  const int daysBeforeMonth = (153 * marchMonth + 2) / 5;
  return marchYear * 365 + marchYear / 4 - marchYear / 100 + marchYear / 400 + daysBeforeMonth + day - 1 - kDaysTo1899;
}
static_assert(DayNumber(1899, 12, 30) == 0 && DayNumber(100, 1, 1) == kFirstDay && DayNumber(9999, 12, 31) == kLastDay);
static_assert(DayNumber(2024, 3, 0) == DayNumber(2024, 2, 29));

void SetDate(int dayNumber, SYSTEMTIME& time) noexcept {
  const int days = dayNumber + kDaysTo1899;
  const int era = days / kDaysOf400Years;
  const int dayOfEra = days % kDaysOf400Years;
  const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int marchMonth = (5 * dayOfYear + 2) / 153;
  const int month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
  time.wYear = static_cast<WORD>(era * 400 + yearOfEra + (month <= 2 ? 1 : 0));
  time.wMonth = static_cast<WORD>(month);
  time.wDay = static_cast<WORD>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
  time.wDayOfWeek = static_cast<WORD>((days + 3) % 7);  // 0000-03-01 was a Wednesday
}

}  // namespace

bool SystemTimeToVariantDays(const SYSTEMTIME& time, double& days) noexcept {
  if (time.wMonth < 1 || time.wMonth > 12 || time.wDay > 31 || time.wHour > 23 || time.wMinute > 59 || time.wSecond > 59 ||
      time.wYear > 9999) {
    return false;
  }
  int year = time.wYear;
  if (year < 100) {
    year += year <= kTwoDigitYearLimit ? 2000 : 1900;
  }
  const int dayNumber = DayNumber(year, time.wMonth, time.wDay);
  if (dayNumber < kFirstDay) {
    return false;
  }
  // Added one after the other: the same bits as the system's own conversion.
  const double sign = dayNumber < 0 ? -1.0 : 1.0;
  double result = dayNumber;
  result += sign * (time.wHour / 24.0);
  result += sign * (time.wMinute / 1440.0);
  result += sign * (time.wSecond / 86400.0);
  days = result;
  return true;
}

bool VariantDaysToSystemTime(double days, SYSTEMTIME& time) noexcept {
  if (!(days > kFirstDay - 1.0 && days < kLastDay + 1.0)) {  // a NaN too
    return false;
  }
  const double whole = std::trunc(days);
  int dayNumber = static_cast<int>(whole);
  int seconds = static_cast<int>((std::fabs(days - whole) + kHalfSecondSlack) * kSecondsOfDay + 0.5);
  if (seconds >= kSecondsOfDay) {
    seconds -= kSecondsOfDay;
    ++dayNumber;
  }
  if (dayNumber > kLastDay) {
    return false;
  }
  SetDate(dayNumber, time);
  time.wHour = static_cast<WORD>(seconds / 3600);
  time.wMinute = static_cast<WORD>(seconds / 60 % 60);
  time.wSecond = static_cast<WORD>(seconds % 60);
  time.wMilliseconds = 0;
  return true;
}

}  // namespace qxv

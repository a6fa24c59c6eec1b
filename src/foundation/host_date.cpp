// host_date.cpp - COleDateTime over the day count of variant_time.h.

#include "qxv/host.h"

#include "foundation/variant_time.h"

#include <cmath>
#include <limits>

namespace {

bool SameMoment(const SYSTEMTIME& a, const SYSTEMTIME& b) noexcept {
  return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDay == b.wDay && a.wHour == b.wHour && a.wMinute == b.wMinute &&
         a.wSecond == b.wSecond;
}

bool FitsField(int value) noexcept { return value >= 0 && value <= std::numeric_limits<WORD>::max(); }

// Grows with time on both sides of day 0, where the raw numbers do not.
double Linear(double days) noexcept {
  const double whole = std::trunc(days);
  return whole + std::fabs(days - whole);
}

constexpr int kNoField = -1;

int FieldOf(const COleDateTime& date, WORD SYSTEMTIME::*field) noexcept {
  SYSTEMTIME time;
  return date.GetAsSystemTime(time) ? time.*field : kNoField;
}

}  // namespace

COleDateTime::COleDateTime() noexcept : m_dt(0), m_status(valid) {}

COleDateTime::COleDateTime(double days) noexcept : m_dt(0), m_status(valid) { *this = days; }

COleDateTime::COleDateTime(const SYSTEMTIME& time) noexcept : m_dt(0), m_status(valid) { Take(time); }

COleDateTime::COleDateTime(int year, int month, int day, int hour, int minute, int second) noexcept : m_dt(0), m_status(valid) {
  SetDateTime(year, month, day, hour, minute, second);
}

COleDateTime& COleDateTime::operator=(double days) noexcept {
  SYSTEMTIME unused;
  m_dt = days;
  m_status = qxv::VariantDaysToSystemTime(days, unused) ? valid : invalid;
  return *this;
}

COleDateTime& COleDateTime::operator=(const SYSTEMTIME& time) noexcept {
  Take(time);
  return *this;
}

void COleDateTime::Take(const SYSTEMTIME& time) noexcept {
  double days = 0;
  SYSTEMTIME back;
  m_status = invalid;
  if (qxv::SystemTimeToVariantDays(time, days) && qxv::VariantDaysToSystemTime(days, back) && SameMoment(time, back)) {
    m_dt = days;
    m_status = valid;
  }
}

COleDateTime::DateTimeStatus COleDateTime::GetStatus() const noexcept { return m_status; }

void COleDateTime::SetStatus(DateTimeStatus status) noexcept { m_status = status; }

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) noexcept {
  m_status = invalid;
  if (FitsField(year) && FitsField(month) && FitsField(day) && FitsField(hour) && FitsField(minute) && FitsField(second)) {
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(year);
    time.wMonth = static_cast<WORD>(month);
    time.wDay = static_cast<WORD>(day);
    time.wHour = static_cast<WORD>(hour);
    time.wMinute = static_cast<WORD>(minute);
    time.wSecond = static_cast<WORD>(second);
    Take(time);
  }
  return m_status;
}

int COleDateTime::SetDate(int year, int month, int day) noexcept { return SetDateTime(year, month, day, 0, 0, 0); }

int COleDateTime::SetTime(int hour, int minute, int second) noexcept {
  return SetDateTime(1899, 12, 30, hour, minute, second);  // day 0: the time alone
}

bool COleDateTime::GetAsSystemTime(SYSTEMTIME& time) const noexcept {
  return m_status == valid && qxv::VariantDaysToSystemTime(m_dt, time);
}

int COleDateTime::GetYear() const noexcept { return FieldOf(*this, &SYSTEMTIME::wYear); }

int COleDateTime::GetMonth() const noexcept { return FieldOf(*this, &SYSTEMTIME::wMonth); }

int COleDateTime::GetDay() const noexcept { return FieldOf(*this, &SYSTEMTIME::wDay); }

int COleDateTime::GetHour() const noexcept { return FieldOf(*this, &SYSTEMTIME::wHour); }

int COleDateTime::GetMinute() const noexcept { return FieldOf(*this, &SYSTEMTIME::wMinute); }

int COleDateTime::GetSecond() const noexcept { return FieldOf(*this, &SYSTEMTIME::wSecond); }

int COleDateTime::GetDayOfWeek() const noexcept {
  const int fromSunday = FieldOf(*this, &SYSTEMTIME::wDayOfWeek);
  return fromSunday == kNoField ? kNoField : fromSunday + 1;
}

int COleDateTime::GetDayOfYear() const noexcept {
  SYSTEMTIME time;
  if (!GetAsSystemTime(time)) {
    return kNoField;
  }
  constexpr int kDaysBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  const bool leapYear = time.wYear % 4 == 0 && (time.wYear % 100 != 0 || time.wYear % 400 == 0);
  return kDaysBefore[time.wMonth - 1] + time.wDay + (leapYear && time.wMonth > 2 ? 1 : 0);
}

bool COleDateTime::operator==(const COleDateTime& other) const noexcept {
  return m_status == other.m_status && Linear(m_dt) == Linear(other.m_dt);
}

bool COleDateTime::operator!=(const COleDateTime& other) const noexcept { return !(*this == other); }

bool COleDateTime::operator<(const COleDateTime& other) const noexcept {
  return m_status == valid && other.m_status == valid && Linear(m_dt) < Linear(other.m_dt);
}

bool COleDateTime::operator>(const COleDateTime& other) const noexcept { return other < *this; }

bool COleDateTime::operator<=(const COleDateTime& other) const noexcept {
  return m_status == valid && other.m_status == valid && Linear(m_dt) <= Linear(other.m_dt);
}

bool COleDateTime::operator>=(const COleDateTime& other) const noexcept { return other <= *this; }

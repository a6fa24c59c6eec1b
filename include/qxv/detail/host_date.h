// host_date.h - COleDateTime, the host framework's date. Included through host.h.
#pragma once

#include "qxv/export.h"
#include "qxv/types.h"

/// A date as days since 1899-12-30 with the time of day as the fraction (also before that day: -1.25 is 06:00 on 1899-12-29),
/// from year 100 to 9999, to the second.
class QXV_API COleDateTime {
 public:
  enum DateTimeStatus { error = -1, valid = 0, invalid = 1, null = 2 };

  /// 0, valid.
  COleDateTime() noexcept;
  /// Invalid when outside the years.
  COleDateTime(double days) noexcept;  // NOLINT(google-explicit-constructor): as the framework's
  /// Valid only if year, month, day, hour, minute and second come back from the conversion as they were given: 31 February and
  /// two-digit years do not. Milliseconds and day of the week are not looked at.
  COleDateTime(const SYSTEMTIME& time) noexcept;  // NOLINT(google-explicit-constructor)
  COleDateTime(int year, int month, int day, int hour, int minute, int second) noexcept;

  COleDateTime& operator=(double days) noexcept;
  COleDateTime& operator=(const SYSTEMTIME& time) noexcept;

  DateTimeStatus GetStatus() const noexcept;
  void SetStatus(DateTimeStatus status) noexcept;

  /// @return the status: 0, or 1 for a date that does not exist, which leaves the value and makes the object invalid
  int SetDateTime(int year, int month, int day, int hour, int minute, int second) noexcept;
  int SetDate(int year, int month, int day) noexcept;
  int SetTime(int hour, int minute, int second) noexcept;

  /// @return false when the object is not valid; the record then stays as it was
  bool GetAsSystemTime(SYSTEMTIME& time) const noexcept;

  // -1 each when the object is not valid.
  int GetYear() const noexcept;
  int GetMonth() const noexcept;
  int GetDay() const noexcept;
  int GetHour() const noexcept;
  int GetMinute() const noexcept;
  int GetSecond() const noexcept;
  int GetDayOfWeek() const noexcept;  ///< 1 is Sunday
  int GetDayOfYear() const noexcept;  ///< 1 is 1 January

  /// Equal in status and moment.
  bool operator==(const COleDateTime& other) const noexcept;
  bool operator!=(const COleDateTime& other) const noexcept;
  /// By moment; false unless both are valid.
  bool operator<(const COleDateTime& other) const noexcept;
  bool operator>(const COleDateTime& other) const noexcept;
  bool operator<=(const COleDateTime& other) const noexcept;
  bool operator>=(const COleDateTime& other) const noexcept;

  double m_dt;
  DateTimeStatus m_status;

 private:
  void Take(const SYSTEMTIME& time) noexcept;
};

// variant_time.h - a date as one number of days (OLE Automation's DATE) and as a calendar record.
#pragma once

#include "qxv/types.h"

namespace qxv {

/// Days since 1899-12-30, the time of day as the fraction away from zero. Years 0 to 49 mean 2000 to 2049, 50 to 99 mean 1950 to
/// 1999. A day that its month has not goes on into the next month (31 February becomes 2 or 3 March), day 0 is the last of the
/// month before. Day of the week and milliseconds are not looked at.
/// @return false, with days untouched, for a month outside 1 to 12, a day above 31, a time of day that is none, or a result
///         outside the years 100 to 9999
[[nodiscard]] bool SystemTimeToVariantDays(const SYSTEMTIME& time, double& days) noexcept;

/// The calendar record, rounded to the nearest second, its day of the week computed, its milliseconds 0.
/// @return false, with time untouched, for a number outside the years 100 to 9999
[[nodiscard]] bool VariantDaysToSystemTime(double days, SYSTEMTIME& time) noexcept;

}  // namespace qxv

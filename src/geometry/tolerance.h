// tolerance.h - the one absolute tolerance of all geometric comparisons, in its two forms.
#pragma once

namespace qxv {

inline constexpr double kTolerance = 0.0001;

/// For equality and zero vectors.
constexpr bool IsZeroInclusive(double difference) noexcept { return -kTolerance <= difference && difference <= kTolerance; }

/// For collinearity, planes and relations.
constexpr bool IsZeroStrict(double difference) noexcept { return -kTolerance < difference && difference < kTolerance; }

}  // namespace qxv

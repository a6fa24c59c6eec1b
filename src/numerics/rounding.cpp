// rounding.cpp - the floating families, double and float by one body each: a magnitude is scaled by tens until its last wanted
// digit stands before the point, cut to a 32-bit integer k, and scaled back. Arithmetic is that of the family's type.

#include "qxv/rounding.h"

#include "foundation/numeric.h"
#include "numerics/power_of_ten.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

using qxv::TruncateToInt32;
using qxv::WrapAdd;
using qxv::WrapMultiply;

constexpr int kScalings = 10;  // multiplications or divisions by ten before a value counts as out of reach
constexpr double kNoise = 1e-6;
constexpr unsigned char kCeiling = 1;

// The band of magnitudes with so many digits before the point.
// KEPT: the powers are 32-bit integers, so more than 9 digits give bands that mean nothing.
//   Pinned by RoundingKept.PowersBeyondNineDigitsWrap.
struct Band {
  std::int32_t first;
  std::int32_t end;

  explicit Band(int digits) noexcept
      : first(qxv::WrappedPowerOfTen<std::int32_t>(std::max(digits, 1) - 1)), end(WrapMultiply(first, 10)) {}
};

// Division and negation of 32-bit integers that cannot trap; divisor is not 0.
std::int32_t Divide(std::int32_t value, std::int32_t divisor) noexcept {
  return divisor == -1 ? qxv::WrapNegate(value) : value / divisor;
}

// A negative value is its magnitude's result, cut the other way, with the sign put back: core(magnitude, mode).
template <typename Real, typename Core>
Real OnMagnitude(Real value, unsigned char mode, Core core) noexcept {
  return value < 0 ? -core(-value, static_cast<unsigned char>(1 - mode)) : core(value, mode);
}

// KEPT: a ceiling leaves a value alone whose cut-off part is at most a millionth of a unit.
//   Pinned by RoundingKept.ACeilingOverlooksAMillionth.
template <typename Real>
std::int32_t Cut(Real scaled, unsigned char mode) noexcept {
  const std::int32_t kept = TruncateToInt32(scaled);
  const bool up = mode == kCeiling && static_cast<double>(scaled - static_cast<Real>(kept)) > kNoise;
  return up ? WrapAdd(kept, 1) : kept;
}

template <typename Real>
Real SignificantFigures(Real magnitude, int digits, unsigned char mode) noexcept {
  if (magnitude == std::numeric_limits<Real>::infinity()) {
    return magnitude;  // no division brings it into the band
  }
  const Band band(digits);
  const auto first = static_cast<Real>(band.first);
  const auto end = static_cast<Real>(band.end);
  std::int32_t scale = 1;
  if (magnitude < first) {
    for (int i = 0; i < kScalings && magnitude < first; ++i) {
      magnitude *= 10;
      scale = WrapMultiply(scale, 10);
    }
    return magnitude < first ? Real(0) : static_cast<Real>(Cut(magnitude, mode)) / static_cast<Real>(scale);
  }
  if (magnitude >= end) {
    for (int i = 0; i < qxv::kEnoughScalings && magnitude >= end; ++i) {
      magnitude /= 10;
      scale = WrapMultiply(scale, 10);
    }
    return static_cast<Real>(Cut(magnitude, mode)) * static_cast<Real>(scale);
  }
  return static_cast<Real>(Cut(magnitude, mode));
}

template <typename Real>
int PowerCount(Real value) noexcept {
  Real magnitude = std::fabs(value);
  if (magnitude == std::numeric_limits<Real>::infinity()) {
    return 0;
  }
  int count = 0;
  if (magnitude < 1) {
    for (; count < kScalings && magnitude < 1; ++count) {
      magnitude *= 10;
    }
    return magnitude < 1 ? 0 : -count;
  }
  for (; magnitude >= 10; ++count) {
    magnitude /= 10;
  }
  return count;
}

// toUnits(scaled magnitude) is brought back to where the magnitude stood.
template <typename Real, typename ToUnits>
Real AtDecimals(Real magnitude, int decimals, ToUnits toUnits) noexcept {
  const auto kept = static_cast<Real>(toUnits(qxv::ScaledByTens(magnitude, decimals)));
  if (decimals == 0) {
    return kept;
  }
  const auto scale = static_cast<Real>(qxv::WrappedPowerOfTen<std::int32_t>(qxv::Magnitude(decimals)));
  return decimals > 0 ? kept / scale : kept * scale;
}

template <typename Real>
Real Shed(Real value, int decimals, unsigned char mode) noexcept {
  return OnMagnitude(value, mode, [decimals](Real magnitude, unsigned char direction) {
    return AtDecimals(magnitude, decimals, [direction](Real scaled) { return Cut(scaled, direction); });
  });
}

template <typename Real>
Real ShedToNearest(Real value, int decimals) noexcept {
  return OnMagnitude(value, 0, [decimals](Real magnitude, unsigned char) {
    return AtDecimals(magnitude, decimals, [](Real scaled) { return TruncateToInt32(scaled + Real(0.5)); });
  });
}

// KEPT: other than the ceilings of decimals this one compares exactly. Pinned by RoundingKept.AStepsCeilingComparesExactly.
template <typename Real>
std::int32_t CutToMultiple(Real scaled, std::int32_t step, unsigned char mode) noexcept {
  const std::int32_t kept = WrapMultiply(Divide(TruncateToInt32(scaled), step), step);
  return mode == kCeiling && scaled > static_cast<Real>(kept) ? WrapAdd(kept, step) : kept;
}

template <typename Real>
Real ShedToStep(Real magnitude, Real step, int digits, unsigned char mode) noexcept {
  const Band band(digits);
  const auto first = static_cast<Real>(band.first);
  const auto end = static_cast<Real>(band.end);
  std::int32_t scale = 1;
  if (step < first) {
    Real scaledStep = step;
    for (int i = 0; i < kScalings && scaledStep < first; ++i) {
      scaledStep *= 10;
      scale = WrapMultiply(scale, 10);
    }
    const std::int32_t units = TruncateToInt32(scaledStep + Real(0.5));
    if (scaledStep < first || units == 0) {
      return magnitude;
    }
    return static_cast<Real>(CutToMultiple(static_cast<Real>(scale) * magnitude, units, mode)) / static_cast<Real>(scale);
  }
  if (step >= end) {
    Real scaledStep = step;
    for (int i = 0; i < kScalings && scaledStep >= end; ++i) {
      scaledStep /= 10;
      scale = WrapMultiply(scale, 10);
    }
    const std::int32_t units = TruncateToInt32(step / static_cast<Real>(scale) + Real(0.5));
    if (scaledStep >= end || units == 0) {
      return magnitude;
    }
    return static_cast<Real>(CutToMultiple(magnitude / static_cast<Real>(scale), units, mode)) * static_cast<Real>(scale);
  }
  const std::int32_t units = TruncateToInt32(step + Real(0.5));
  return units == 0 ? magnitude : static_cast<Real>(CutToMultiple(magnitude, units, mode));
}

}  // namespace

double QXVDoubleMakeSigFigure(double value, int digits, unsigned char mode) {
  return OnMagnitude(value, mode, [digits](double magnitude, unsigned char direction) {
    return SignificantFigures(magnitude, digits, direction);
  });
}

float QXVFloatMakeSigFigure(float value, int digits, unsigned char mode) {
  return OnMagnitude(value, mode, [digits](float magnitude, unsigned char direction) {
    return SignificantFigures(magnitude, digits, direction);
  });
}

int QXVDoubleGetPowerCount(double value) { return PowerCount(value); }

int QXVFloatGetPowerCount(float value) { return PowerCount(value); }

double QXVDoubleMakeShed(double value, int decimals, unsigned char mode) { return Shed(value, decimals, mode); }

float QXVFloatMakeShed(float value, int decimals, unsigned char mode) { return Shed(value, decimals, mode); }

double QXVDoubleMakeShed(double value, int decimals) { return ShedToNearest(value, decimals); }

float QXVFloatMakeShed(float value, int decimals) { return ShedToNearest(value, decimals); }

double QXVDoubleMakeShed(double value, double step, int digits, unsigned char mode) {
  return OnMagnitude(value, mode, [step, digits](double magnitude, unsigned char direction) {
    return ShedToStep(magnitude, step, digits, direction);
  });
}

float QXVFloatMakeShed(float value, float step, int digits, unsigned char mode) {
  return OnMagnitude(value, mode, [step, digits](float magnitude, unsigned char direction) {
    return ShedToStep(magnitude, step, digits, direction);
  });
}

// rounding_integer.cpp - the 64-bit integer family. A magnitude is cut by integer division; the smallest integer, which has no
// magnitude, stays as it is.

#include "qxv/rounding.h"

#include "numerics/power_of_ten.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr unsigned char kCeiling = 1;
constexpr int kMostDigits = 19;

std::int64_t WrapAdd(std::int64_t a, std::int64_t b) noexcept {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

std::int64_t WrapMultiply(std::int64_t a, std::int64_t b) noexcept {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

template <typename Core>
std::int64_t OnMagnitude(std::int64_t value, unsigned char mode, Core core) noexcept {
  if (value == kSmallest) {
    return value;
  }
  return value < 0 ? WrapMultiply(core(-value, static_cast<unsigned char>(1 - mode)), -1) : core(value, mode);
}

// The tens that cut a value to so many digits; 1 when it has no more.
std::int64_t ScaleToDigits(std::int64_t value, int digits) noexcept {
  if (digits >= kMostDigits) {
    return 1;
  }
  const std::int64_t end = 10 * qxv::WrappedPowerOfTen<std::int64_t>(std::max(digits, 1) - 1);
  std::int64_t scale = 1;
  for (; value >= end; value /= 10) {
    scale *= 10;
  }
  return scale;
}

// The multiple of a step (not 0) below the magnitude, and by a ceiling the next one unless it is met.
std::int64_t CutToMultiple(std::int64_t magnitude, std::int64_t step, unsigned char mode) noexcept {
  const std::int64_t kept = WrapMultiply(magnitude / step, step);
  return mode == kCeiling && kept < magnitude ? WrapAdd(kept, step) : kept;
}

}  // namespace

QXInt64 QXVLonglongMakeSigFigure(QXInt64 value, int digits, unsigned char mode) {
  return OnMagnitude(value, mode, [digits](std::int64_t magnitude, unsigned char direction) {
    const std::int64_t scale = ScaleToDigits(magnitude, digits);
    const std::int64_t kept = magnitude / scale * scale;
    // KEPT: the ceiling is one more than the value cut off, not one more of its last digit.
    //   Pinned by RoundingKept.TheIntegerCeilingOfFiguresAddsOne.
    return direction == kCeiling && kept < magnitude ? kept + 1 : kept;
  });
}

int QXVLonglongGetPowerCount(QXInt64 value) {
  int count = 0;
  for (; value >= 10 || value <= -10; value /= 10) {
    ++count;
  }
  return count;
}

QXInt64 QXVLonglongMakeShed(QXInt64 value, int removed, unsigned char mode) {
  const auto unit = qxv::WrappedPowerOfTen<std::int64_t>(removed);
  if (removed < 1 || unit == 0) {
    return value;
  }
  return OnMagnitude(
      value, mode, [unit](std::int64_t magnitude, unsigned char direction) { return CutToMultiple(magnitude, unit, direction); });
}

QXInt64 QXVLonglongMakeShed(QXInt64 value, int removed) {
  const auto unit = qxv::WrappedPowerOfTen<std::int64_t>(removed);
  if (removed < 1 || unit == 0) {
    return value;
  }
  return OnMagnitude(value, 0, [unit](std::int64_t magnitude, unsigned char) {
    const std::int64_t kept = WrapMultiply(magnitude / unit, unit);
    return magnitude % unit >= unit / 2 ? WrapAdd(kept, unit) : kept;
  });
}

QXInt64 QXVLonglongMakeShed(QXInt64 value, QXInt64 step, int digits, unsigned char mode) {
  if (step == 0) {
    return value;
  }
  const std::int64_t scale = ScaleToDigits(step, digits);
  const std::int64_t units = step / scale;  // by division twice, as a scale and a step of so many digits
  return OnMagnitude(value, mode, [scale, units](std::int64_t magnitude, unsigned char direction) {
    const std::int64_t multiple = units * scale;
    const std::int64_t kept = magnitude / scale / units * multiple;
    return direction == kCeiling && kept < magnitude ? WrapAdd(kept, multiple) : kept;
  });
}

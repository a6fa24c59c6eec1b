// fuzz_rounding.cpp - every rounding function with any numbers and digit counts from -50 to 70: each call comes back, and where
// the counts stay inside 32 (64) bits the result lies within one unit of the value, on the side of the mode.

#include "fuzz/fuzz_input.h"
#include "qxv/rounding.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

using fuzz::Require;

template <typename Number>
Number NumberOf(fuzz::Input& input) {
  unsigned char bytes[sizeof(Number)];
  for (unsigned char& byte : bytes) {
    byte = static_cast<unsigned char>(input.Byte());
  }
  Number number;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

// Of what to expect of a real only that it does not leave its side by more than noise.
void CheckSide(double value, double result, unsigned char mode, double unit) {
  if (mode == 0) {
    Require(result <= value + 1e-5 * unit && result > value - 1.001 * unit);
  } else if (mode == 1) {
    Require(result >= value - 1e-5 * unit && result < value + 1.001 * unit);
  } else {
    Require(std::fabs(result) <= std::fabs(value) + 1e-5 * unit && std::fabs(result) > std::fabs(value) - 1.001 * unit);
  }
}

void Reals(double value, double step, int digits, unsigned char mode) {
  const double figures = QXVDoubleMakeSigFigure(value, digits, mode);
  const double shed = QXVDoubleMakeShed(value, digits, mode);
  const double nearest = QXVDoubleMakeShed(value, digits);
  (void)QXVDoubleMakeShed(value, step, digits, mode);
  (void)QXVDoubleGetPowerCount(value);
  const auto single = static_cast<float>(value);
  (void)QXVFloatMakeSigFigure(single, digits, mode);
  (void)QXVFloatMakeShed(single, digits, mode);
  (void)QXVFloatMakeShed(single, digits);
  (void)QXVFloatMakeShed(single, static_cast<float>(step), digits, mode);
  (void)QXVFloatGetPowerCount(single);
  const double magnitude = std::fabs(value);
  if (magnitude >= 1e-3 && magnitude < 1e6) {
    if (digits >= 1 && digits <= 6) {
      CheckSide(value, figures, mode, std::pow(10.0, std::floor(std::log10(magnitude)) - digits + 1));
    }
    if (digits >= -9 && digits <= 3) {
      const double unit = std::pow(10.0, -digits);
      CheckSide(value, shed, mode, unit);
      Require(std::fabs(nearest - value) <= 0.5001 * unit);
    }
  }
}

void Integers(QXInt64 value, QXInt64 step, int digits, unsigned char mode) {
  const QXInt64 shed = QXVLonglongMakeShed(value, digits, mode);
  const QXInt64 nearest = QXVLonglongMakeShed(value, digits);
  const QXInt64 stepped = QXVLonglongMakeShed(value, step, digits, mode);
  (void)QXVLonglongMakeSigFigure(value, digits, mode);
  const int count = QXVLonglongGetPowerCount(value);
  Require(count >= 0 && count <= 18);
  if (value >= -1'000'000'000'000 && value <= 1'000'000'000'000 && digits >= 1 && digits <= 6) {
    QXInt64 unit = 1;
    for (int i = 0; i < digits; ++i) {
      unit *= 10;
    }
    Require(shed % unit == 0 && nearest % unit == 0);
    Require(mode != 0 || (shed <= value && shed > value - unit));
    Require(mode != 1 || (shed >= value && shed < value + unit));
    Require(2 * (nearest > value ? nearest - value : value - nearest) <= unit);
    if (step > 0 && step < 10) {
      Require(stepped % step == 0);
    }
  }
}

void Texts(double value, int decimals) {
  CQXString text;
  QXVDouble2String(value, decimals, text);
  Require(text.GetLength() > 0 && text.GetLength() < 900);
  QXVFloat2String(static_cast<float>(value), decimals, text);
  Require(text.GetLength() > 0 && text.GetLength() < 900);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  while (!input.AtEnd()) {
    const auto mode = static_cast<unsigned char>(input.Byte());
    const int digits = static_cast<int>(input.Byte() % 121) - 50;
    Reals(NumberOf<double>(input), NumberOf<double>(input), digits, mode);
    Integers(NumberOf<QXInt64>(input), NumberOf<QXInt64>(input), digits, mode);
    Texts(NumberOf<double>(input), NumberOf<int>(input) >> (input.Byte() % 32));
  }
  return 0;
}

// fuzz_spline.cpp - the three splines over any knots and steps: sorted or not, equal, infinite, none. Every call comes back,
// writes the samples it was asked for and no more, and samples are whole numbers.

#include "fuzz/fuzz_input.h"
#include "qxv/spline.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

namespace {

using fuzz::Require;

template <typename Number>
std::vector<Number> NumbersOf(fuzz::Input& input, std::size_t count) {
  std::vector<Number> numbers(count);
  for (Number& number : numbers) {
    const std::string bytes = input.Bytes(sizeof number);
    std::memcpy(&number, bytes.data(), bytes.size());
  }
  return numbers;
}

// Small whole numbers, ascending or as they come, next to any bits.
std::vector<double> Tame(const std::vector<double>& wild, bool ascending) {
  std::vector<double> tame;
  for (const double value : wild) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    const double small = static_cast<double>(bits % 4096) / 16;
    tame.push_back(ascending && !tame.empty() ? tame.back() + small : small);
  }
  return tame;
}

void Whole(const double* ys, int count) {
  for (int i = 0; i < count; ++i) {
    Require(ys[i] == std::trunc(ys[i]) && std::fabs(ys[i]) <= 2147483648.0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const unsigned kind = input.Byte();
  const std::size_t knots = input.Byte() % 40;
  const int count = static_cast<int>(input.Byte()) - 3;
  const auto room = static_cast<std::size_t>(count > 0 ? count : 0);
  const auto knotCount = static_cast<int>(knots);
  if (kind % 2 == 0) {
    const std::vector<int> x = NumbersOf<int>(input, knots), y = NumbersOf<int>(input, knots), xs = NumbersOf<int>(input, room);
    const auto ys = std::make_unique<int[]>(room);
    QXVCubicSpline(x.data(), y.data(), knotCount, xs.data(), ys.get(), count);
    return 0;
  }
  std::vector<double> x = NumbersOf<double>(input, knots), y = NumbersOf<double>(input, knots);
  double step = NumbersOf<double>(input, 1)[0];
  if (kind & 2) {
    x = Tame(x, (kind & 4) != 0);
    y = Tame(y, false);
    step = kind & 8 ? step : Tame({step}, false)[0] / 16;
  }
  const auto ys = std::make_unique<double[]>(room);
  QXVCubicSpline(x.data(), y.data(), knotCount, step, count, ys.get());
  if (knots > 1 && x[knots - 1] - x[0] >= 1) {
    Whole(ys.get(), count);
  }
  double *curveX = nullptr, *curveY = nullptr;
  int samples = -1;
  double length = 0;
  for (std::size_t i = 1; i < knots; ++i) {
    length += std::hypot(x[i] - x[i - 1], y[i] - y[i - 1]);
  }
  if (length / step > 1e6 && length / step < 3e9) {
    return 0;  // asked for, but slow
  }
  QXVCubicSpline2(x.data(), y.data(), knotCount, step, curveX, curveY, samples);
  const std::unique_ptr<double[]> ownX(curveX), ownY(curveY);
  Require(samples >= 0 && curveX != nullptr && curveY != nullptr);
  if (samples > 0) {
    curveX[samples - 1] += 0;  // the last one is there
    curveY[samples - 1] += 0;
  }
  return 0;
}

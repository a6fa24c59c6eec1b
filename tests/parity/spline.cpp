// spline.cpp - curves through points.

#include "parity/trial.h"

#include "qxv/spline.h"

#include <memory>
#include <vector>

namespace parity {

namespace {

void Whole(Trial& t) {
  t.Next();
  const int n = t.Between(1, 12);
  std::vector<int> x(static_cast<std::size_t>(n));
  std::vector<int> y(static_cast<std::size_t>(n));
  int at = t.Between(-500, 500);
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = at += t.Between(1, 1000);
    y[i] = t.Between(-100000, 100000);
  }
  std::vector<int> xs(20);
  for (int& sample : xs) {
    sample = t.Between(-1000, 13000);
  }
  std::vector<int> ys(xs.size());
  QXVCubicSpline(x.data(), y.data(), n, xs.data(), ys.data(), static_cast<int>(xs.size()));
  t.Raw(ys.data(), ys.size() * sizeof(int));
}

void Fractions(Trial& t) {
  t.Next();
  const int n = t.Between(1, 12);
  std::vector<double> x(static_cast<std::size_t>(n));
  std::vector<double> y(static_cast<std::size_t>(n));
  double at = t.Coarse();
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = at += t.Between(1, 400) / 16.0;
    y[i] = t.Coarse();
  }
  std::vector<double> ys(30);
  QXVCubicSpline(x.data(), y.data(), n, t.Between(1, 64) / 16.0, static_cast<int>(ys.size()), ys.data());
  for (const double sample : ys) {
    t << sample;
  }
  double* curveX = nullptr;
  double* curveY = nullptr;
  int count = 0;
  QXVCubicSpline2(x.data(), y.data(), n, t.Between(16, 640) / 16.0, curveX, curveY, count);
  const std::unique_ptr<double[]> ownedX(curveX);
  const std::unique_ptr<double[]> ownedY(curveY);
  t << count;
  for (int i = 0; i < count; ++i) {
    t << curveX[i] << curveY[i];
  }
}

}  // namespace

void RunSpline(Trial& t) {
  for (int i = 0; i < 1000; ++i) {
    Whole(t);
    Fractions(t);
  }
}

}  // namespace parity

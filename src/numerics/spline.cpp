// spline.cpp - natural cubic splines: M, the second derivatives at the knots, solve a tridiagonal system with M = 0 at both ends.
// Each interval then is a cubic of its two knots, see spline_piece.h.

#include "qxv/spline.h"

#include "foundation/numeric.h"
#include "numerics/spline_piece.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <vector>

namespace {

using qxv::SplinePiece;

constexpr double kNear = 0.0001;  // abscissas closer than this are one
constexpr std::size_t kFewestKnots = 4;
constexpr std::int64_t kMostSamples = std::int64_t{1} << 28;

// Knots as the solver takes them: the differences are formed by the caller, in the type of its abscissas.
struct Knots {
  explicit Knots(std::size_t count) : y(count), spacing(count - 1), rise(count - 1) {}

  std::vector<double> y;
  std::vector<double> spacing;  // [i]: x[i + 1] - x[i]
  std::vector<double> rise;     // [i]: y[i + 1] - y[i]
};

std::vector<double> SecondDerivatives(const Knots& knots) {
  const std::size_t count = knots.y.size();
  std::vector<double> m(count);       // P on the way down
  std::vector<double> follow(count);  // Q: M[i] = P[i] + Q[i] M[i + 1]
  for (std::size_t i = 1; i + 1 < count; ++i) {
    const double h0 = knots.spacing[i - 1], h1 = knots.spacing[i];
    const double mu = h0 / (h0 + h1);
    const double lambda = h1 / (h0 + h1);
    const double d = 6 / (h0 + h1) * (knots.rise[i] / h1 - knots.rise[i - 1] / h0);
    const double pivot = 2 + mu * follow[i - 1];
    m[i] = (d - mu * m[i - 1]) / pivot;
    follow[i] = -lambda / pivot;
  }
  for (std::size_t i = count - 1; i-- > 1;) {
    m[i] += follow[i] * m[i + 1];
  }
  return m;
}

// At least two knots.
std::vector<SplinePiece> MakePieces(const Knots& knots) {
  const std::vector<double> m = SecondDerivatives(knots);
  std::vector<SplinePiece> pieces(knots.spacing.size());
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const double h = knots.spacing[i];
    pieces[i] = {m[i], m[i + 1], 6 * h, knots.y[i] / h - h * m[i] / 6, knots.y[i + 1] / h - h * m[i + 1] / 6};
  }
  return pieces;
}

// The interval of an abscissa, 0 for the one behind the first knot: the first one, looking upwards, that holds it; the first and
// the last one also take what lies outside.
template <typename Number>
class IntervalFinder {
 public:
  explicit IntervalFinder(std::span<const Number> x)
      : m_x(x), m_ascending(std::adjacent_find(x.begin(), x.end(), [](Number a, Number b) { return !(a < b); }) == x.end()) {}

  [[nodiscard]] bool Ascending() const noexcept { return m_ascending; }

  [[nodiscard]] std::size_t Find(Number s) const noexcept {
    const std::size_t last = m_x.size() - 2;
    if (s < m_x.front()) {
      return 0;
    }
    if (s > m_x.back()) {
      return last;
    }
    if (m_ascending) {
      return static_cast<std::size_t>(std::lower_bound(m_x.begin() + 1, m_x.end() - 1, s) - m_x.begin()) - 1;
    }
    std::size_t i = 0;
    while (i < last && !(m_x[i] <= s && s <= m_x[i + 1])) {
      ++i;
    }
    return i;
  }

 private:
  std::span<const Number> m_x;
  bool m_ascending;
};

std::int32_t CubeWrapped(std::int32_t value) noexcept { return qxv::WrapMultiply(qxv::WrapMultiply(value, value), value); }

// KEPT: differences and cubes of integer abscissas are 32-bit integers, which wrap in an interval longer than 1290.
//   Pinned by SplineKept.CubesOfLongIntegerIntervalsWrap.
std::int32_t ValueAt(const SplinePiece& piece, int left, int right, int s) noexcept {
  const std::int32_t toRight = qxv::WrapSubtract(right, s);
  const std::int32_t fromLeft = qxv::WrapSubtract(s, left);
  return qxv::TruncateToInt32(piece.At(toRight, CubeWrapped(toRight), fromLeft, CubeWrapped(fromLeft)));
}

struct Curve {
  std::vector<double> x;
  std::vector<double> y;
};

// Of knots closer than kNear to the next one only the last stays.
Curve DistinctKnots(const double* x, const double* y, std::size_t count) {
  Curve curve;
  curve.x.reserve(std::max(count, kFewestKnots));
  curve.y.reserve(std::max(count, kFewestKnots));
  for (std::size_t i = 0; i < count; ++i) {
    const bool near = i + 1 < count && x[i + 1] - x[i] > -kNear && x[i + 1] - x[i] < kNear;
    if (!near) {
      curve.x.push_back(x[i]);
      curve.y.push_back(y[i]);
    }
  }
  return curve;
}

void ContinueInALine(std::vector<double>& values) {
  while (values.size() < kFewestKnots) {
    const std::size_t count = values.size();
    values.push_back(2 * values[count - 1] - values[count - 2]);
  }
}

std::vector<SplinePiece> MakePieces(const Curve& curve) {
  Knots knots(curve.x.size());
  knots.y = curve.y;
  for (std::size_t i = 0; i + 1 < curve.x.size(); ++i) {
    knots.spacing[i] = curve.x[i + 1] - curve.x[i];
    knots.rise[i] = curve.y[i + 1] - curve.y[i];
  }
  return MakePieces(knots);
}

// Ascending knots, the first one finite, and a step above 0: no abscissa is NaN, and intervals follow one another.
void SampleForwards(const std::vector<double>& x, const std::vector<SplinePiece>& pieces, double step, double* ys,
                    std::size_t count) noexcept {
  double s = x[0];
  for (std::size_t i = 0; count > 0; ++i) {
    const bool last = i + 1 == pieces.size();
    qxv::SplineRun run{x[i], x[i + 1], last ? std::numeric_limits<double>::infinity() : x[i + 1], step, s};
    const std::size_t done = qxv::SampleSplinePiece(pieces[i], run, ys, count);
    s = run.s;
    ys += done;
    count -= done;
  }
}

}  // namespace

void QXVCubicSpline(const int* x, const int* y, int n, const int* xs, int* ys, int count) {
  if (count <= 0) {
    return;
  }
  if (n < 2) {
    std::fill_n(ys, count, n == 1 ? y[0] : 0);
    return;
  }
  const auto knotCount = static_cast<std::size_t>(n);
  Knots knots(knotCount);
  std::copy(y, y + n, knots.y.begin());
  for (std::size_t i = 0; i + 1 < knotCount; ++i) {
    knots.spacing[i] = qxv::WrapSubtract(x[i + 1], x[i]);
    knots.rise[i] = qxv::WrapSubtract(y[i + 1], y[i]);
  }
  const std::vector<SplinePiece> pieces = MakePieces(knots);
  const IntervalFinder<int> intervals({x, knotCount});
  for (int j = 0; j < count; ++j) {
    const std::size_t i = intervals.Find(xs[j]);
    ys[j] = ValueAt(pieces[i], x[i], x[i + 1], xs[j]);
  }
}

void QXVCubicSpline(const double* x, const double* y, int n, double step, int count, double* ys) {
  if (count <= 0) {
    return;
  }
  Curve curve = DistinctKnots(x, y, n > 0 ? static_cast<std::size_t>(n) : 0);
  if (curve.x.size() < 2) {
    // KEPT: the y of a single knot is not cut to a whole number. Pinned by SplineKept.OneKnotGivesItsYUncut.
    std::fill_n(ys, count, curve.y.empty() ? 0.0 : curve.y[0]);
    return;
  }
  ContinueInALine(curve.x);
  ContinueInALine(curve.y);
  const std::vector<SplinePiece> pieces = MakePieces(curve);
  const IntervalFinder<double> intervals(curve.x);
  if (intervals.Ascending() && step > 0 && std::isfinite(curve.x[0])) {
    SampleForwards(curve.x, pieces, step, ys, static_cast<std::size_t>(count));
    return;
  }
  double s = curve.x[0];
  for (int j = 0; j < count; ++j, s += step) {
    const std::size_t i = intervals.Find(s);
    ys[j] = pieces[i].WholeAt(curve.x[i], curve.x[i + 1], s);
  }
}

void QXVCubicSpline2(const double* x, const double* y, int n, double step, double*& xs, double*& ys, int& count) {
  const auto pointCount = n > 0 ? static_cast<std::size_t>(n) : 0;
  std::vector<double> chord(pointCount);  // along the chords from the first point
  for (std::size_t i = 1; i < pointCount; ++i) {
    const double dx = x[i] - x[i - 1], dy = y[i] - y[i - 1];
    chord[i] = chord[i - 1] + std::sqrt(dx * dx + dy * dy);
  }
  const std::int64_t steps = pointCount == 0 ? -1 : qxv::TruncateToInt64(chord.back() / step);
  const std::int64_t samples = steps < 0 || steps > INT32_MAX - 1 ? 0 : steps + 1;
  if (samples > kMostSamples) {
    throw std::bad_alloc();
  }
  auto newXs = std::make_unique<double[]>(static_cast<std::size_t>(samples));
  auto newYs = std::make_unique<double[]>(static_cast<std::size_t>(samples));
  const auto newCount = static_cast<int>(samples);
  const double interval = newCount >= 2 ? std::max(chord.back() / (newCount - 1), kNear) : step;
  QXVCubicSpline(chord.data(), x, n, interval, newCount, newXs.get());
  QXVCubicSpline(chord.data(), y, n, interval, newCount, newYs.get());
  xs = newXs.release();
  ys = newYs.release();
  count = newCount;
}

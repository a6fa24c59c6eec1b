// spline_test.cpp - natural cubic splines. Expected values were worked out with exact fractions, outside this program.

#include "qxv/spline.h"

#include "numerics/spline_piece.h"
#include "support/cpu_tier.h"
#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <random>
#include <vector>

namespace {

std::vector<int> Whole(const std::vector<int>& x, const std::vector<int>& y, const std::vector<int>& xs) {
  std::vector<int> ys(xs.size(), 77);
  QXVCubicSpline(x.data(), y.data(), static_cast<int>(x.size()), xs.data(), ys.data(), static_cast<int>(xs.size()));
  return ys;
}

std::vector<double> Sampled(const std::vector<double>& x, const std::vector<double>& y, double step, int count) {
  std::vector<double> ys(static_cast<std::size_t>(count), 77);
  QXVCubicSpline(x.data(), y.data(), static_cast<int>(x.size()), step, count, ys.data());
  return ys;
}

struct Samples {
  std::vector<double> x, y;
  int count = -1;
};

Samples Curve(const std::vector<double>& x, const std::vector<double>& y, double step) {
  double* xs = nullptr;
  double* ys = nullptr;
  Samples samples;
  QXVCubicSpline2(x.data(), y.data(), static_cast<int>(x.size()), step, xs, ys, samples.count);
  const std::unique_ptr<double[]> ownXs(xs), ownYs(ys);
  EXPECT_NE(xs, nullptr);
  EXPECT_NE(ys, nullptr);
  samples.x.assign(xs, xs + samples.count);
  samples.y.assign(ys, ys + samples.count);
  return samples;
}

// A value that is whole by the exact rule may come out one lower, as the last bit before the cut has it.
void ExpectCut(int value, double exact) {
  const double whole = std::trunc(exact);
  EXPECT_TRUE(value == whole || (whole == exact && std::fabs(value - whole) == 1)) << value << " for " << exact;
}

TEST(Spline, IntegersAreTheExactValuesTowardsZero) {
  const struct {
    std::vector<int> x, y, xs;
    std::vector<double> exact;
  } rows[] = {
      {{0, 100, 250, 400},
       {0, 500, -300, 1000},
       {-50, 0, 30, 100, 101, 175, 250, 333, 399, 400, 450},
       {-362.162, 0, 231.654, 500, 498.929, 92.399, -300, 171.463, 986.712, 1000, 1638.739}},
      {{0, 10, 30, 35, 60},
       {100, -20, 40, 400, 0},
       {0, 3, 10, 12, 29, 32, 35, 47, 60, 75},
       {100, 72.300, -20, -59.024, -18.516, 181.527, 400, 588.620, 0, -625.243}},
      {{0, 1, 2}, {0, 40, 0}, {0, 1, 2}, {0, 40, 0}},
  };
  for (const auto& row : rows) {
    const std::vector<int> ys = Whole(row.x, row.y, row.xs);
    for (std::size_t i = 0; i < ys.size(); ++i) {
      ExpectCut(ys[i], row.exact[i]);
    }
  }
}

TEST(Spline, QueriesMayComeInAnyOrder) {
  EXPECT_EQ(Whole({0, 100, 250, 400}, {0, 500, -300, 1000}, {399, -50, 175, 30, 450}),
            (std::vector<int>{986, -362, 92, 231, 1638}));
}

TEST(Spline, FewIntegerKnots) {
  EXPECT_EQ(Whole({}, {}, {1, 2}), (std::vector<int>{0, 0}));
  EXPECT_EQ(Whole({5}, {9}, {1, 2}), (std::vector<int>{9, 9}));
  EXPECT_EQ(Whole({0, 10}, {0, 100}, {-5, 0, 3, 10, 20}), (std::vector<int>{-50, 0, 30, 100, 200}));
  const int x[] = {0, 1}, y[] = {3, 4};
  int untouched[] = {55};
  QXVCubicSpline(x, y, 2, x, untouched, 0);
  QXVCubicSpline(x, y, 2, x, untouched, INT_MIN);
  EXPECT_EQ(untouched[0], 55);
  QXVCubicSpline(nullptr, nullptr, -3, x, untouched, 1);
  EXPECT_EQ(untouched[0], 0);
}

TEST(Spline, EqualOrUnsortedIntegerKnotsStayInside) {
  EXPECT_EQ(Whole({5, 5}, {1, 2}, {4, 6})[0], INT_MIN) << "a division by zero gives no number";
  (void)Whole({9, 3, INT_MIN, INT_MAX, 0}, {1, 2, INT_MIN, INT_MAX, 5}, {INT_MIN, -1, 0, 4, INT_MAX});
}

TEST(SplineKept, CubesOfLongIntegerIntervalsWrap) {
  EXPECT_EQ(Whole({0, 2000, 4000}, {0, 1000, 0}, {1500}), (std::vector<int>{1182})) << "without the wrap 914";
  EXPECT_EQ(Whole({0, 1290, 2580}, {0, 1000, 0}, {1, 645, 1289, 1935}), (std::vector<int>{1, 687, 999, 687}))
      << "1290 cubed is still below 2^31";
}

TEST(Spline, DoublesAreTheExactValuesTowardsZero) {
  EXPECT_EQ(Sampled({0.5, 1.25, 4, 7.5}, {1000, -500, 250, 3000}, 0.75, 14),
            (std::vector<double>{1000, -500, -1107, -915, -267, 498, 1178, 1777, 2321, 2832, 3335, 3855, 4414, 5038}));
}

TEST(Spline, ThreeKnotsAreContinuedInALine) {
  // (3, -40) is added. The system 4 M1 + M2 = -480, M1 + 4 M2 = 0 gives M1 = -128 and M2 = 32.
  const std::vector<double> ys = Sampled({0, 1, 2}, {0, 40, 0}, 0.5, 7);
  const double exact[] = {0, 28, 40, 26, 0, -22, -40};
  for (std::size_t i = 0; i < ys.size(); ++i) {
    ExpectCut(static_cast<int>(ys[i]), exact[i]);
  }
}

TEST(Spline, TwoKnotsAreContinuedInALine) {
  EXPECT_EQ(Sampled({0, 10}, {0, 10}, 1, 6), (std::vector<double>{0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(Sampled({0, 10}, {0, 100}, 10, 6), (std::vector<double>{0, 100, 200, 300, 400, 500}));
}

TEST(Spline, OfNearKnotsTheLastStays) {
  // 0.00005 and 1 are left: the line from (0.00005, 500) to (1, 1000).
  EXPECT_EQ(Sampled({0, 0.00005, 1}, {-9000, 500, 1000}, 0.499975, 3), (std::vector<double>{500, 750, 1000}));
  // A run of near knots goes down to its last one, however long it is.
  EXPECT_EQ(Sampled({0, 0.00006, 0.00012, 0.00018, 1}, {1, 2, 3, 400, 1400}, 10, 1), (std::vector<double>{400}));
  // 0.0001 is not near.
  EXPECT_EQ(Sampled({0, 0.0001}, {300, 300}, 0.0001, 2), (std::vector<double>{300, 300}));
  // Near is meant in either direction.
  EXPECT_EQ(Sampled({0.00005, 0}, {5, 600}, 1, 1), (std::vector<double>{600}));
}

TEST(Spline, FarBehindTheLastKnotItsCubicGoesOn) {
  // The system 4 M1 + M2 = -12, M1 + 4 M2 = 12 gives M2 = 4, and at 13 the last cubic is
  // 4 (3 - 13)^3 / 6 + (0 - 4 / 6) (3 - 13) + 1 (13 - 2) = -666.67 + 6.67 + 11 = -649.
  const double value = Sampled({0, 1, 2, 3}, {0, 1, 0, 1}, 13, 2)[1];
  EXPECT_TRUE(value == -649 || value == -648) << value;
}

TEST(Spline, EverySampleIsAWholeNumber) {
  for (const double y : Sampled({0, 1.5, 2.25, 4}, {0.3, 17.7, -4.4, 2.9}, 0.01, 500)) {
    EXPECT_EQ(y, std::trunc(y));
  }
}

TEST(SplineKept, OneKnotGivesItsYUncut) {
  EXPECT_EQ(Sampled({3}, {2.75}, 1, 2), (std::vector<double>{2.75, 2.75}));
  EXPECT_EQ(Sampled({3, 3.00001}, {2, 8.5}, 1, 2), (std::vector<double>{8.5, 8.5}));
}

TEST(Spline, NoKnotsGiveZeros) {
  EXPECT_EQ(Sampled({}, {}, 1, 3), (std::vector<double>{0, 0, 0}));
  double y = 5;
  QXVCubicSpline(nullptr, nullptr, -1, 1.0, 1, &y);
  EXPECT_EQ(y, 0);
}

TEST(Spline, HostileStepsAndKnotsEnd) {
  const double infinity = std::numeric_limits<double>::infinity(), noNumber = std::numeric_limits<double>::quiet_NaN();
  for (const double step : {0.0, -0.25, -1e300, 1e300, infinity, -infinity, noNumber, 5e-324}) {
    const std::vector<double> ys = Sampled({0, 1, 2, 3}, {0, 100, 0, 100}, step, 3000);
    EXPECT_EQ(ys[0], 0) << step;
  }
  EXPECT_EQ(Sampled({0, 1, 2, 3}, {0, 100, 0, 100}, noNumber, 2)[1], -2147483648.0);
  (void)Sampled({noNumber, 1, 2, noNumber}, {0, 100, 0, 100}, 0.5, 100);
  (void)Sampled({3, 1, -2, 7, 0}, {0, 100, 0, 100, 5}, 0.5, 100);
  for (const double step : {1.0, infinity}) {
    EXPECT_EQ(Sampled({-infinity, 0, infinity}, {1, 2, 3}, step, 10)[9], -2147483648.0) << "no spline goes through infinity";
  }
}

TEST(Spline, BackwardsStepsFindTheirInterval) {
  EXPECT_EQ(Sampled({0, 10, 20, 30}, {0, 10, 20, 30}, -1, 3), (std::vector<double>{0, -1, -2}));
}

TEST(SplineCurve, SamplesLieEvenlyAlongAStraightLine) {
  const Samples samples = Curve({0, 4, 10}, {0, 0, 0}, 3);
  EXPECT_EQ(samples.count, 4);
  EXPECT_EQ(samples.x, (std::vector<double>{0, 3, 6, 10})) << "0, 3.33, 6.67 and 10, cut";
  EXPECT_EQ(samples.y, (std::vector<double>{0, 0, 0, 0}));
}

TEST(SplineCurve, CoincidentPointsCountOnce) {
  const Samples samples = Curve({0, 0, 40, 40, 100}, {0, 0, 0, 0, 0}, 10);
  EXPECT_EQ(samples.count, 11);
  EXPECT_EQ(samples.x.back(), 100);
}

TEST(SplineCurve, OnePointIsOneSample) {
  const Samples samples = Curve({7}, {8}, 1);
  EXPECT_EQ(samples.count, 1);
  EXPECT_EQ(samples.x, (std::vector<double>{7}));
  EXPECT_EQ(samples.y, (std::vector<double>{8}));
}

TEST(SplineCurve, StepsThatGiveNoSamplesGiveEmptyArrays) {
  const double infinity = std::numeric_limits<double>::infinity(), noNumber = std::numeric_limits<double>::quiet_NaN();
  for (const double step : {0.0, -1.0, noNumber, 1e-300, -1e-300}) {
    EXPECT_EQ(Curve({0, 10}, {0, 0}, step).count, 0) << step;
  }
  EXPECT_EQ(Curve({0, 10}, {0, 0}, infinity).count, 1);
  EXPECT_EQ(Curve({}, {}, 1).count, 0);
  EXPECT_EQ(Curve({0, infinity}, {0, 0}, 1).count, 0);
  EXPECT_EQ(Curve({0, noNumber}, {0, 0}, 1).count, 0);
}

TEST(SplineCurve, MemoryThatIsRefusedLeavesTheOutputs) {
  const double x[] = {0, 1e9}, y[] = {0, 0};
  double a = 0, b = 0;
  double *xs = &a, *ys = &b;
  int count = -5;
  EXPECT_THROW(QXVCubicSpline2(x, y, 2, 1, xs, ys, count), std::bad_alloc) << "a thousand million samples";
  const std::size_t live = support::LiveArrays();
  for (std::size_t refused = 0;; ++refused) {
    const support::FailAllocation fail(refused);
    try {
      QXVCubicSpline2(x, y, 2, 1e7, xs, ys, count);
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(xs, &a);
      EXPECT_EQ(ys, &b);
      EXPECT_EQ(count, -5);
      EXPECT_EQ(support::LiveArrays(), live);
      continue;
    }
    EXPECT_FALSE(fail.Refused());
    break;
  }
  EXPECT_EQ(count, 101);
  delete[] xs;
  delete[] ys;
}

// The rule once more, plainly: a dense system solved by elimination in long double, the interval found by looking from the first.
long double Reference(const std::vector<double>& x, const std::vector<double>& y, long double s) {
  const std::size_t n = x.size();
  std::vector<std::vector<long double>> a(n, std::vector<long double>(n + 1, 0));
  a[0][0] = a[n - 1][n - 1] = 1;
  for (std::size_t i = 1; i + 1 < n; ++i) {
    const long double h0 = x[i] - x[i - 1], h1 = x[i + 1] - x[i];
    a[i][i - 1] = h0;
    a[i][i] = 2 * (h0 + h1);
    a[i][i + 1] = h1;
    a[i][n] = 6 * ((y[i + 1] - y[i]) / h1 - (y[i] - y[i - 1]) / h0);
  }
  for (std::size_t c = 0; c < n; ++c) {
    for (std::size_t r = c + 1; r < n; ++r) {
      const long double factor = a[r][c] / a[c][c];
      for (std::size_t k = c; k <= n; ++k) {
        a[r][k] -= factor * a[c][k];
      }
    }
  }
  std::vector<long double> m(n);
  for (std::size_t r = n; r-- > 0;) {
    m[r] = a[r][n];
    for (std::size_t k = r + 1; k < n; ++k) {
      m[r] -= a[r][k] * m[k];
    }
    m[r] /= a[r][r];
  }
  std::size_t i = 0;
  while (i + 2 < n && s > x[i + 1]) {
    ++i;
  }
  const long double h = x[i + 1] - x[i], b = x[i + 1] - s, t = s - x[i];
  return m[i] * b * b * b / (6 * h) + m[i + 1] * t * t * t / (6 * h) + (y[i] / h - h * m[i] / 6) * b +
         (y[i + 1] / h - h * m[i + 1] / 6) * t;
}

TEST(SplineProperty, AgreesWithADenseSolutionInEveryTier) {
  support::ForEachCpuTier([] {
    std::mt19937_64 random(14);
    std::uniform_real_distribution<double> gap(0.3, 5), height(-10000, 10000);
    for (int round = 0; round < 60; ++round) {
      std::vector<double> x{height(random)}, y{height(random)};
      for (std::size_t i = random() % 20 + 3; i-- > 0;) {
        x.push_back(x.back() + gap(random));
        y.push_back(height(random));
      }
      const double step = gap(random) / 37;
      const std::vector<double> ys = Sampled(x, y, step, 700);
      double s = x[0];
      for (std::size_t j = 0; j < ys.size(); ++j, s += step) {
        const long double exact = Reference(x, y, s);
        if (std::fabs(exact) < 1e7L) {
          // Cut values differ by one where the exact one is a whole number but for the last bits.
          const long double noise = 1e-9L * (1 + std::fabs(exact));
          ASSERT_TRUE(ys[j] == std::trunc(exact + noise) || ys[j] == std::trunc(exact - noise))
              << ys[j] << " for " << static_cast<double>(exact);
        }
      }
    }
  });
}

TEST(SplinePiece, EveryTierEqualsTheScalarForm) {
  std::mt19937_64 random(15);
  std::uniform_real_distribution<double> any(-1e4, 1e4), part(0, 1);
  for (int round = 0; round < 300; ++round) {
    const double big = random() % 8 == 0 ? 1e300 : 1;
    const qxv::SplinePiece piece{any(random) * big, any(random), any(random), any(random), any(random)};
    const std::size_t count = random() % 19;
    const double left = any(random), right = left + part(random) * 100;
    const qxv::SplineRun start{left, right, right, (right - left) * part(random) / 10, left};
    const auto out = std::make_unique<double[]>(count);
    support::ForEachCpuTier([&] {
      qxv::SplineRun run = start;
      const std::size_t done = qxv::SampleSplinePiece(piece, run, out.get(), count);
      double s = left;
      for (std::size_t i = 0; i < done; ++i, s += start.step) {
        ASSERT_EQ(out[i], piece.WholeAt(left, right, s)) << i << " of " << count;
        ASSERT_LE(s, right);
      }
      ASSERT_EQ(run.s, s);
      ASSERT_TRUE(done == count || s > right);
    });
  }
}

}  // namespace

// spline_bench.cpp - a natural cubic spline beside GSL's, with its own accelerator, sample for sample.

#include "bench/support/ratio.h"
#include "qxv/spline.h"

#include <gsl/gsl_spline.h>

#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int kKnots = 1000, kSamples = 1'000'000;

struct Curve {
  std::vector<double> x, y;
};

std::shared_ptr<const Curve> MakeCurve() {
  auto curve = std::make_shared<Curve>();
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> height(-1000, 1000), gap(0.5, 1.5);
  double x = 0;
  for (int i = 0; i < kKnots; ++i, x += gap(random)) {
    curve->x.push_back(x);
    curve->y.push_back(height(random));
  }
  return curve;
}

bench::Job SplineJob(qxv::os::CpuTier tier) {
  const auto curve = MakeCurve();
  const double step = curve->x.back() / kSamples;
  const auto ours = [curve, step, ys = std::vector<double>(kSamples)]() mutable {
    QXVCubicSpline(curve->x.data(), curve->y.data(), kKnots, step, kSamples, ys.data());
    benchmark::DoNotOptimize(ys.data());
  };
  const auto gsl = [curve, step, ys = std::vector<double>(kSamples)]() mutable {
    gsl_interp_accel* const accelerator = gsl_interp_accel_alloc();
    gsl_spline* const spline = gsl_spline_alloc(gsl_interp_cspline, kKnots);
    gsl_spline_init(spline, curve->x.data(), curve->y.data(), kKnots);
    double s = 0;
    for (double& y : ys) {
      y = static_cast<int>(gsl_spline_eval(spline, s, accelerator));
      s += step;
    }
    gsl_spline_free(spline);
    gsl_interp_accel_free(accelerator);
    benchmark::DoNotOptimize(ys.data());
  };
  return {"spline/sample", "1 M of 1000 knots", ours, {{"GSL", gsl, tier == qxv::os::CpuTier::Baseline ? 0 : 5.0}}, tier};
}

const bench::Register kRegistered([] {
  return std::vector<bench::Job>{SplineJob(qxv::os::CpuTier::Baseline), SplineJob(qxv::os::CpuTier::Avx2)};
});

}  // namespace

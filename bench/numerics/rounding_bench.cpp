// rounding_bench.cpp - a number with a count of decimals beside snprintf, and cutting to figures. A turn takes a whole list, so
// that no branch predictor learns one value by heart.

#include "bench/support/ratio.h"
#include "qxv/rounding.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <random>
#include <vector>

namespace {

std::shared_ptr<const std::vector<double>> MakeValues() {
  auto values = std::make_shared<std::vector<double>>();
  std::mt19937_64 random(2);
  std::uniform_real_distribution<double> any(-20000, 20000);
  for (int i = 0; i < 1000; ++i) {
    values->push_back(any(random));
  }
  return values;
}

bench::Job PrintJob() {
  const auto values = MakeValues();
  const auto ours = [values, text = CQXString()]() mutable {
    for (const double value : *values) {
      QXVDouble2String(value, 3, text);
      benchmark::DoNotOptimize(static_cast<const QXChar*>(text));
    }
  };
  const auto print = [values] {
    char text[400];
    for (const double value : *values) {
      benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%.3f", value));
    }
  };
  return {"rounding/print", "3 decimals", ours, {{"snprintf %.3f", print, 3.0}}};
}

bench::Job FiguresJob() {
  const auto values = MakeValues();
  const auto ours = [values] {
    for (const double value : *values) {
      benchmark::DoNotOptimize(QXVDoubleMakeSigFigure(value, 3, 0));
    }
  };
  const auto power = [values] {
    for (const double value : *values) {
      const double scale = std::pow(10.0, std::floor(std::log10(std::fabs(value))) - 2);
      benchmark::DoNotOptimize(std::floor(value / scale) * scale);
    }
  };
  return {"rounding/figures", "3 digits", ours, {{"log10 and pow", power}}};
}

const bench::Register kRegistered([] { return std::vector<bench::Job>{PrintJob(), FiguresJob()}; });

}  // namespace

// spline_subject.cpp - samples splines by the library, as a program that scripts may ask. Numbers stand on standard input.
//   integers N COUNT    N abscissas, N values, COUNT queries: the values at them
//   step N COUNT STEP   N abscissas, N values: COUNT samples
//   curve N STEP        N abscissas, N ordinates: the number of samples, then all their abscissas, then all their ordinates

#include "qxv/spline.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

std::vector<double> FromInput(int count) {
  std::vector<double> numbers(static_cast<std::size_t>(count));
  std::string word;
  for (double& number : numbers) {
    std::cin >> word;
    number = std::strtod(word.c_str(), nullptr);  // any form, hexadecimal ones too
  }
  return numbers;
}

std::vector<int> IntegersFromInput(int count) {
  std::vector<int> numbers;
  for (const double number : FromInput(count)) {
    numbers.push_back(static_cast<int>(number));
  }
  return numbers;
}

void Print(const double* samples, int count) {
  for (int i = 0; i < count; ++i) {
    std::printf("%.17g\n", samples[i]);
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::string mode = count > 1 ? arguments[1] : "";
  const auto number = [&](int i) { return std::atoi(arguments[i]); };
  if (mode == "integers" && count == 4) {
    const std::vector<int> x = IntegersFromInput(number(2)), y = IntegersFromInput(number(2));
    const std::vector<int> queries = IntegersFromInput(number(3));
    std::vector<int> ys(queries.size());
    QXVCubicSpline(x.data(), y.data(), number(2), queries.data(), ys.data(), number(3));
    const std::vector<double> samples(ys.begin(), ys.end());
    Print(samples.data(), number(3));
    return 0;
  }
  if (mode == "step" && count == 5) {
    const std::vector<double> x = FromInput(number(2)), y = FromInput(number(2));
    std::vector<double> ys(static_cast<std::size_t>(number(3)));
    QXVCubicSpline(x.data(), y.data(), number(2), std::strtod(arguments[4], nullptr), number(3), ys.data());
    Print(ys.data(), number(3));
    return 0;
  }
  if (mode == "curve" && count == 4) {
    const std::vector<double> x = FromInput(number(2)), y = FromInput(number(2));
    double *xs = nullptr, *ys = nullptr;
    int samples = 0;
    QXVCubicSpline2(x.data(), y.data(), number(2), std::strtod(arguments[3], nullptr), xs, ys, samples);
    const std::unique_ptr<double[]> ownXs(xs), ownYs(ys);
    std::printf("%d\n", samples);
    Print(xs, samples);
    Print(ys, samples);
    return 0;
  }
  return 64;
}

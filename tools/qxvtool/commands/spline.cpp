// spline.cpp - qxvtool spline: a smooth curve through points, drawn into an image.

#include "qxv/spline.h"

#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/picture.h"
#include "qxvtool/support/points.h"

#include <algorithm>
#include <cmath>

namespace {

using tool::Value;

struct Request {
  std::string target;
  std::vector<std::string> points;
  std::string size = "640x480";
  double step = 0;  // 0: five hundred samples
};

struct Curve {
  std::vector<double> x, y;
};

double ChordLength(const Curve& knots) {
  double length = 0;
  for (std::size_t i = 1; i < knots.x.size(); ++i) {
    length += std::hypot(knots.x[i] - knots.x[i - 1], knots.y[i] - knots.y[i - 1]);
  }
  return length;
}

// The library's samples are whole numbers, as pixels are. It gets the points a power of two larger, so that curves through small
// ones are smooth, too.
double Magnification(const Curve& knots) {
  double largest = 0;
  for (std::size_t i = 0; i < knots.x.size(); ++i) {
    largest = std::max({largest, std::abs(knots.x[i]), std::abs(knots.y[i])});
  }
  return std::exp2(std::clamp(std::floor(std::log2(0x100000 / largest)), -30.0, 30.0));
}

Curve Samples(const Curve& knots, double step) {
  constexpr double kMostSamples = 10000000;
  const double length = ChordLength(knots);
  if (!(length > 0) || length / step > kMostSamples) {
    throw tool::WrongUse(length > 0 ? "--step is so small that there would be more than ten million samples"
                                    : "the points lie all at one place");
  }
  const double scale = Magnification(knots);
  const auto times = [](std::vector<double> values, double factor) {
    std::for_each(values.begin(), values.end(), [factor](double& value) { value *= factor; });
    return values;
  };
  double* x = nullptr;
  double* y = nullptr;
  int count = 0;
  QXVCubicSpline2(times(knots.x, scale).data(), times(knots.y, scale).data(), static_cast<int>(knots.x.size()), step * scale, x,
                  y, count);
  const std::unique_ptr<double[]> ownedX(x), ownedY(y);
  return {times(std::vector<double>(x, x + count), 1 / scale), times(std::vector<double>(y, y + count), 1 / scale)};
}

// From the plane of the curve to the picture: one scale for both directions, the curve in the middle, y upwards.
class View {
 public:
  View(const Curve& curve, tool::Size size) {
    constexpr double kMargin = 24;
    const auto [left, right] = std::minmax_element(curve.x.begin(), curve.x.end());
    const auto [low, high] = std::minmax_element(curve.y.begin(), curve.y.end());
    const double width = std::max(*right - *left, 1e-9), height = std::max(*high - *low, 1e-9);
    m_scale = std::min(std::max(size.width - 2 * kMargin, 1.0) / width, std::max(size.height - 2 * kMargin, 1.0) / height);
    m_x = size.width / 2.0 - (*left + *right) / 2 * m_scale;
    m_y = size.height / 2.0 + (*low + *high) / 2 * m_scale;
  }

  double X(double x) const { return m_x + x * m_scale; }
  double Y(double y) const { return m_y - y * m_scale; }

 private:
  double m_scale, m_x, m_y;
};

void Draw(tool::Canvas& canvas, const Curve& knots, const Curve& curve) {
  constexpr tool::Colour kAxis{205, 210, 218}, kChord{175, 182, 195}, kCurve{30, 105, 190}, kKnot{215, 85, 45};
  const View view(curve, canvas.GetSize());
  canvas.Line(0, view.Y(0), canvas.GetSize().width, view.Y(0), 1, kAxis);
  canvas.Line(view.X(0), 0, view.X(0), canvas.GetSize().height, 1, kAxis);
  const auto draw = [&](const Curve& line, double width, tool::Colour colour) {
    for (std::size_t i = 1; i < line.x.size(); ++i) {
      canvas.Line(view.X(line.x[i - 1]), view.Y(line.y[i - 1]), view.X(line.x[i]), view.Y(line.y[i]), width, colour);
    }
  };
  draw(knots, 1, kChord);
  draw(curve, 2.5, kCurve);
  for (std::size_t i = 0; i < knots.x.size(); ++i) {
    canvas.Disc(view.X(knots.x[i]), view.Y(knots.y[i]), 4, kKnot);
  }
}

void Run(const Request& request, tool::Context& context) {
  (void)tool::LayoutOfWrittenFile(request.target);
  tool::Canvas canvas(tool::ParseSize(request.size), {252, 252, 250});
  Curve knots;
  for (const std::vector<double>& point : tool::ParsePoints(request.points)) {
    if (point.size() != 2) {
      throw tool::WrongUse("the points of a curve have two coordinates");
    }
    knots.x.push_back(point[0]);
    knots.y.push_back(point[1]);
  }
  const Curve curve = Samples(knots, request.step > 0 ? request.step : std::max(ChordLength(knots) / 500, 1e-300));
  Draw(canvas, knots, curve);
  canvas.Save(request.target);

  Value::List samples;
  for (std::size_t i = 0; context.json && i < curve.x.size(); ++i) {
    samples.emplace_back(Value::List{curve.x[i], curve.y[i]});
  }
  const Value::Record answer = {
      {"file", request.target}, {"length", ChordLength(knots)}, {"count", curve.x.size()}, {"samples", samples}};
  context.Answer(answer, request.target + ": " + std::to_string(curve.x.size()) + " samples through " +
                             std::to_string(knots.x.size()) + " points\n");
}

}  // namespace

void tool::AddSpline(CLI::App& app, Context& context) {
  const auto request = std::make_shared<Request>();
  CLI::App* command = NewCommand(app, "spline", "A smooth curve through points, drawn into an image",
                                 "  qxvtool spline curve.bmp 0,0 40,90 120,20 200,60\n"
                                 "  qxvtool spline curve.jpg 0,0 1,2 3,1 --size 1024x768\n"
                                 "  qxvtool spline curve.bmp 0,0 10,5 20,0 --step 2 --json      the samples, too");
  command->add_option("OUT", request->target, "The image: tga, bmp, gif, pcx, yuv or jpg")->required();
  command->add_option("POINT", request->points, "Two or more points as X,Y, in the order of the curve")
      ->required()
      ->expected(2, 100000);
  command->add_option("--size", request->size, "Width and height of the image")->capture_default_str();
  command->add_option("--step", request->step, "The way between two samples; a 500th of the curve without it")
      ->check(CLI::PositiveNumber);
  AddJson(command, context);
  OnCall(command, request, context, Run);
}

// round.cpp - qxvtool round: numbers cut to figures, to decimals or to steps, in a direction.

#include "qxv/rounding.h"

#include "qxv/conversion.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/text.h"

#include <cmath>
#include <map>
#include <optional>

namespace {

using tool::Value;

struct Request {
  std::vector<std::string> numbers;
  std::optional<int> figures, decimals;
  std::optional<double> step;
  std::string direction;
};

const std::map<std::string, unsigned char> kModes = {
    {"down", static_cast<unsigned char>(0)}, {"up", static_cast<unsigned char>(1)}, {"zero", static_cast<unsigned char>(2)}};

// As few figures as leave the step what was typed: results count in units of the last one, in 32 bits.
int FiguresOf(double step) {
  constexpr int kMost = 9;
  int figures = 1;
  while (figures < kMost && std::abs(QXVDoubleMakeSigFigure(step, figures, kModes.at("zero")) - step) > step * 1e-9) {
    ++figures;
  }
  return figures;
}

double Rounded(const Request& request, double value) {
  if (request.decimals && (request.direction.empty() || request.direction == "nearest")) {
    return QXVDoubleMakeShed(value, *request.decimals);
  }
  const unsigned char mode = kModes.at(request.direction.empty() ? "zero" : request.direction);
  if (request.decimals) {
    return QXVDoubleMakeShed(value, *request.decimals, mode);
  }
  return request.figures ? QXVDoubleMakeSigFigure(value, *request.figures, mode)
                         : QXVDoubleMakeShed(value, *request.step, FiguresOf(*request.step), mode);
}

void Run(const Request& request, tool::Context& context) {
  if (request.figures.has_value() + request.decimals.has_value() + request.step.has_value() != 1) {
    throw tool::WrongUse("say with one of --figures, --decimals and --step what to round to");
  }
  if (request.direction == "nearest" && !request.decimals) {
    throw tool::WrongUse("--to nearest goes with --decimals only; figures and steps are cut: down, up or zero");
  }
  Value::List list;
  std::string lines;
  for (const std::string& number : request.numbers) {
    double value = 0;
    if (QXVString2Double(tool::Wide(number), value) != 0 || tool::Trimmed(number).empty()) {
      throw tool::WrongUse(number + ": no number; write it as -12.5, without an exponent");
    }
    const double rounded = Rounded(request, value);
    list.emplace_back(Value::Record{{"value", value}, {"rounded", rounded}, {"exponent", QXVDoubleGetPowerCount(value)}});
    CQXString text;
    QXVDouble2String(rounded, 9, text);
    lines += tool::Narrow(text) + '\n';
  }
  context.Answer(list, lines);
}

}  // namespace

void tool::AddRound(CLI::App& app, Context& context) {
  const auto request = std::make_shared<Request>();
  CLI::App* command = NewCommand(app, "round", "Numbers cut to significant figures, to decimals or to steps",
                                 "  qxvtool round 1234.5 --figures 2              1200\n"
                                 "  qxvtool round 1234.5 --figures 2 --to up      1300\n"
                                 "  qxvtool round 12.345 0.005 --decimals 2       12.35 and 0.01\n"
                                 "  qxvtool round 17.3 --step 0.25 --to down      17.25");
  command->add_option("NUMBER", request->numbers, "Numbers as -12.5")->required();
  command->add_option("--figures", request->figures, "Significant figures, 1 to 9")->check(CLI::Range(1, 9));
  command->add_option("--decimals", request->decimals, "Digits behind the point, -9 to 9; below 0 tens, hundreds ...")
      ->check(CLI::Range(-9, 9));
  command->add_option("--step", request->step, "Multiples of this")->check(CLI::PositiveNumber);
  command->add_option("--to", request->direction, "down, up, zero (what figures and steps do without it) or nearest (decimals)")
      ->check(CLI::IsMember({"down", "up", "zero", "nearest"}));
  AddJson(command, context);
  OnCall(command, request, context, Run);
}

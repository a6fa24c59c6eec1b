// conversion_runtime.cpp - the C run-time's conversions, taking and giving CQXString.

#include "qxv/conversion.h"

#include "numerics/integer_text.h"
#include "os/c_runtime.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>

namespace {

CQXString IntegerText(std::int64_t value) {
  QXChar units[qxv::kIntegerUnits + 1];
  units[qxv::kIntegerUnits] = 0;
  return CQXString(qxv::WriteIntegerBefore(units + qxv::kIntegerUnits, value));
}

}  // namespace

int QXVAtoI(CQXString text) { return qxv::os::ToInt32(text); }

// A long has 32 bits where these numbers come from, so that is its range everywhere.
long QXVAtoL(CQXString text) { return qxv::os::ToInt32(text); }

double QXVAtoF(CQXString text) { return qxv::os::ParseDouble(text, nullptr /*end*/); }

QXInt64 QXVAtoLLong(CQXString text) { return qxv::os::ToInt64(text); }

CQXString QXVItoA(int value) { return IntegerText(value); }

CQXString QXVLtoA(long value) {
  using Limits = std::numeric_limits<std::int32_t>;
  return IntegerText(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

CQXString QXVLLongtoA(QXInt64 value) { return IntegerText(value); }

// KEPT: the digits come without their point, whose position is dropped; the reference receives the sign.
//   Callers that need the point know how many digits they asked for. Pinned by RuntimeNumbersKept.FtoATellsTheSignAndNotThePoint.
CQXString QXVFtoA(double value, int count, int& sign) {
  const qxv::os::FixedDigitText fixed = qxv::os::FixedDigits(value, count);
  sign = fixed.negative ? 1 : 0;
  QXChar units[std::size(decltype(fixed.digits){})];
  std::copy(std::begin(fixed.digits), std::end(fixed.digits), units);
  return CQXString(units);
}

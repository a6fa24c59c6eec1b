// rounding.cpp - significant figures, decimals and steps.

#include "parity/trial.h"

#include "qxv/rounding.h"

namespace parity {

void RunRounding(Trial& t) {
  for (int i = 0; i < 20000; ++i) {
    t.Next();
    const double value = t.Double();
    const float single = t.Float();
    const QXInt64 whole = t.Long();
    const int digits = t.Between(-20, 20);
    const auto mode = static_cast<unsigned char>(t.Below(5));
    t << QXVDoubleMakeSigFigure(value, digits, mode) << QXVFloatMakeSigFigure(single, digits, mode)
      << QXVLonglongMakeSigFigure(whole, digits, mode);
    t << QXVDoubleGetPowerCount(value) << QXVFloatGetPowerCount(single) << QXVLonglongGetPowerCount(whole);
    t << QXVDoubleMakeShed(value, digits, mode) << QXVFloatMakeShed(single, digits, mode)
      << QXVLonglongMakeShed(whole, digits, mode);
    t << QXVDoubleMakeShed(value, digits) << QXVFloatMakeShed(single, digits) << QXVLonglongMakeShed(whole, digits);
    t << QXVDoubleMakeShed(value, t.Double(), digits, mode) << QXVFloatMakeShed(single, t.Float(), digits, mode)
      << QXVLonglongMakeShed(whole, t.Long(), digits, mode);
    CQXString text;
    QXVDouble2String(value, digits, text);
    t << text;
    QXVFloat2String(single, digits, text);
    t << text;
  }
}

}  // namespace parity

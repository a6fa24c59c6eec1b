// conversion.cpp - numbers from text, text from numbers, texts split and joined.

#include "parity/trial.h"

#include "qxv/conversion.h"

namespace parity {

namespace {

Text NumberWord(Trial& t) {
  static const Text kSome = QXT("0123456789012345678901234567890123456789..-+eE x,\uFF11");
  Text word;
  for (int i = t.Below(24); i > 0; --i) {
    word += kSome[static_cast<std::size_t>(t.Below(static_cast<int>(kSome.size())))];
  }
  return word;
}

void FromText(Trial& t) {
  t.Next();
  const CQXString text(t.Below(8) == 0 ? t.Word(10).c_str() : NumberWord(t).c_str());
  float single = 7;
  double twofold = 7;
  int whole = 7;
  t << QXVString2Float(text, single) << single << QXVString2Double(text, twofold) << twofold << QXVString2Int(text, whole)
    << whole;
  t << QXVAtoI(text) << QXVAtoL(text) << QXVAtoF(text) << QXVAtoLLong(text);
}

void FromNumbers(Trial& t) {
  t.Next();
  CQXString text;
  QXVFloat2String(t.Float(), text);
  t << text;
  QXVDouble2String(t.Double(), text);
  t << text;
  QXVInt2String(t.Whole(), text);
  t << text << QXVItoA(t.Whole()) << QXVLtoA(t.Whole()) << QXVLLongtoA(t.Long());
  int sign = 0;
  const double value = t.Double();
  t << QXVFtoA(value, t.Between(-3, 40), sign) << (sign != 0);
}

void Lists(Trial& t) {
  t.Next();
  CQXArray<CQXString, CQXString&> parts;
  const Text separator = t.Word(2);
  t << QXVStrtoStrArr(separator.c_str(), t.Word(60).c_str(), parts) << parts.GetSize();
  for (QXInt64 i = 0; i < parts.GetSize(); ++i) {
    t << parts[i];
  }
  t << QXVStrArrtoStr(t.Word(2).c_str(), parts);
}

}  // namespace

void RunConversion(Trial& t) {
  for (int i = 0; i < 8000; ++i) {
    FromText(t);
    FromNumbers(t);
  }
  for (int i = 0; i < 2000; ++i) {
    Lists(t);
  }
}

}  // namespace parity

// fuzz_conversion.cpp - number parsing, printing, split and join over texts of any units.
// The first byte chooses the separator's length; the rest are 16-bit units: separator, then text. What must hold: a printed
// number parses, parsed integers print to the same number, and the joined parts of a split are the text again.

#include "qxv/conversion.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using Text = std::basic_string<QXChar>;

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

void ParseAndPrint(const Text& text) {
  const CQXString string(text.c_str());
  double real = 0;
  float single = 0;
  int integer = 0;
  if (QXVString2Double(string, real) == 0) {
    Require(QXVString2Float(string, single) == 0 || std::isinf(single));  // further digits fail once it is infinite
    Require(!std::isnan(real) && !std::isnan(single));
  }
  if (QXVString2Int(string, integer) == 0) {
    Require(real == integer);
    Require(QXVAtoI(QXVItoA(integer)) == integer);
    CQXString printed;
    QXVInt2String(integer, printed);
    int again = 0;
    Require(QXVString2Int(printed, again) == 0 && again == integer);
  }
  Require(QXVAtoLLong(QXVLLongtoA(QXVAtoLLong(string))) == QXVAtoLLong(string));
  Require(QXVAtoL(string) == QXVAtoI(string));
  (void)QXVAtoF(string);
}

void PrintBits(const Text& text) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, text.data(), std::min(sizeof bits, text.size() * sizeof(QXChar)));
  double value = 0;
  std::memcpy(&value, &bits, sizeof value);
  CQXString printed;
  QXVDouble2String(value, printed);
  double again = 0;
  const int parsed = QXVString2Double(printed, again);
  Require(parsed == (std::isfinite(value) ? 0 : -1));
  if (parsed == 0 && std::isfinite(again)) {  // the largest may be rounded to infinity
    // Half of the last decimal, and the rounding of each digit.
    Require(std::fabs(again - value) <= 0.51e-6 + std::fabs(value) * 1e-13);
  }
  int sign = 0;
  const CQXString digits = QXVFtoA(value, static_cast<int>(bits % 400), sign);
  Require(digits.GetLength() <= 309 + 350 && (sign != 0) == std::signbit(value));
}

void SplitAndJoin(const Text& separator, const Text& text) {
  CQXArray<CQXString, CQXString&> parts;
  Require(QXVStrtoStrArr(separator.c_str(), text.c_str(), parts) == 1);
  const CQXString joined = QXVStrArrtoStr(separator.c_str(), parts);
  Require(joined == text.c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  Text units((size - 1) / sizeof(QXChar), 0);
  if (!units.empty()) {
    std::memcpy(units.data(), data + 1, units.size() * sizeof(QXChar));
  }
  const std::size_t separatorLength = std::min<std::size_t>(data[0] % 8, units.size());
  const Text text = units.substr(separatorLength);
  ParseAndPrint(text);
  PrintBits(text);
  SplitAndJoin(units.substr(0, separatorLength), text);
  // The same bytes as narrow text: most units of the plain form are no digits.
  const Text narrow(data + 1, data + size);
  ParseAndPrint(narrow);
  SplitAndJoin(narrow.substr(0, separatorLength), narrow);
  return 0;
}

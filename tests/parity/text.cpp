// text.cpp - CQXString and CQXArray.

#include "parity/trial.h"

#include "qxv/array.h"

#include <cstdarg>

namespace parity {

namespace {

void FormatList(CQXString& text, const QXChar* format, ...) {
  va_list args;
  va_start(args, format);
  text.FormatV(format, args);
  va_end(args);
}

void Strings(Trial& t) {
  t.Next();
  const Text first = t.Word(t.Below(30) == 0 ? 700 : 20);
  const Text second = t.Word(t.Below(30) == 0 ? 700 : 6);
  CQXString a(first.c_str());
  CQXString b(second.c_str(), t.Between(-2, 20));
  CQXString copy(a);
  CQXString assigned;
  assigned = b;
  t << a << b << copy << assigned << a.GetLength() << CQXString::Length(second.c_str());
  t << (a.Compare(b) > 0) << (a.Compare(b) < 0) << a.CompareNoCase(second.c_str()) << a.CompareNoCase(first.c_str());
  t << (a == b) << (a == first.c_str()) << (second.c_str() == a) << (a != b);
  const int range[] = {t.Between(-3, 25), t.Between(-3, 25)};
  t << a.Find(second.c_str(), t.Between(-1, 25)) << a.Mid(range[0], range[1]) << a.Right(t.Between(-3, 25));
  t << (a + b) << (a + second.c_str());
  a += b;
  a += first.c_str();
  t << a;
  copy = second.c_str();
  t << copy;
  copy.Empty();
  t << copy;
}

void Formats(Trial& t) {
  t.Next();
  CQXString text;
  const Text word = t.Word(12);
  const int width = t.Between(-20, 20);
  const int precision = t.Between(0, 30);
  const int whole[] = {t.Whole(), t.Whole(), t.Whole()};
  text.Format(QXT("%d|%*d|%-8u|%x|%I64d|%08X"), whole[0], width, whole[1], static_cast<unsigned>(whole[2]),
              static_cast<unsigned>(whole[0]), t.Long(), static_cast<unsigned>(whole[1]));
  t << text;
  text.Format(QXT("%s|%*.*s|%c|%hs"), word.c_str(), width, precision, word.c_str(), static_cast<int>('q'), "narrow");
  t << text;
  const double twofold[] = {t.Double(), t.Double(), t.Double(), t.Double()};
  FormatList(text, QXT("%f|%.*e|%*g|%+.3f"), twofold[0], precision, twofold[1], width, twofold[2], twofold[3]);
  t << text;
}

void Arrays(Trial& t) {
  t.Next();
  CQXArray<int, int&> numbers;
  for (int i = t.Below(40); i > 0; --i) {
    int value = t.Whole();
    numbers.Add(value);
  }
  t << numbers.GetSize() << numbers[t.Between(-2, 45)];  // which gives an empty array one element
  CQXArray<int, int&> copy(numbers);
  copy.SetSize(t.Below(50));
  t << copy.GetSize();
  for (QXInt64 i = 0; i < copy.GetSize(); ++i) {
    t << copy[i];
  }
}

}  // namespace

void RunText(Trial& t) {
  for (int i = 0; i < 4000; ++i) {
    Strings(t);
  }
  for (int i = 0; i < 4000; ++i) {
    Formats(t);
  }
  for (int i = 0; i < 500; ++i) {
    Arrays(t);
  }
}

}  // namespace parity

// printer_subject.cpp - values for gdb_printers_test.py to look at; gdb stops in Stop().

#include "qxv/array.h"
#include "qxv/guid.h"
#include "qxv/string.h"

namespace {

[[gnu::noinline]] void Stop(const CQXString& text, const CQXString& reused, const CQXString& cut,
                            const CQXArray<CQXString, CQXString&>& texts, const CQXArray<int, int>& numbers, const QX_GUID& id) {
  asm volatile("" : : "g"(&text), "g"(&reused), "g"(&cut), "g"(&texts), "g"(&numbers), "g"(&id) : "memory");
}

}  // namespace

int main() {
  const CQXString text(QXT("say \"h\u00E9\""));
  CQXString reused;
  for (int i = 0; i < 1000; ++i) {
    reused += QXT("x");
  }
  reused = QXT("short");
  CQXString cut(QXT("abcdef"));
  const_cast<QXChar*>(static_cast<const QXChar*>(cut))[3] = 0;
  CQXArray<CQXString, CQXString&> texts;
  CQXString element(QXT("one"));
  texts.Add(element);
  element = QXT("two");
  texts.Add(element);
  CQXArray<int, int> numbers;
  numbers.SetGrowBy(10);
  numbers.Add(7);
  const QX_GUID id = {0x0123ABCD, 0x4567, 0x89EF, {0x51, 0x58, 1, 2, 3, 4, 5, 0xFE}};
  Stop(text, reused, cut, texts, numbers, id);
  return 0;
}

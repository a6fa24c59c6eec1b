// host_text.cpp - the stand-ins of the host framework's text and list of texts.

#include "parity/trial.h"

#include <cstdarg>
#include <utility>

namespace parity {

namespace {

void FormatList(CString& text, const QXChar* format, ...) {
  va_list args;
  va_start(args, format);
  text.FormatV(format, args);
  va_end(args);
}

void AppendList(CString& text, const QXChar* format, ...) {
  va_list args;
  va_start(args, format);
  text.AppendFormatV(format, args);
  va_end(args);
}

void Making(Trial& t) {
  t.Next();
  const Text word = t.Word(20);
  CString a(word.c_str());
  CString b(a);
  CString c(std::move(b));
  b = c;
  CString d(word.c_str(), t.Below(static_cast<int>(word.size()) + 1));
  const CString e(QXT('x'), t.Below(5));
  const CString f("narrow");
  d = CString(a);
  t << a << b << c << d << e << f;
  d = word.c_str();
  d = QXT('q');
  d.SetString(word.c_str());
  d.SetString(word.c_str(), t.Below(static_cast<int>(word.size()) + 1));
  t << d << d.GetLength() << d.IsEmpty() << static_cast<const QXChar*>(d);
  t << a + c << a + word.c_str() << word.c_str() + a << a + QXT('y') << QXT('z') + a << (a == c) << (a < d);
  a += c;
  a += word.c_str();
  a += QXT('w');
  a.Append(QXT("tail"));
  a.Append(QXT("tail"), t.Below(5));
  t << a << a.GetAt(t.Below(a.GetLength())) << a[t.Below(a.GetLength())];
  a.SetAt(t.Below(a.GetLength()), QXT('!'));
  t << a;
  a.Empty();
  t << a;
}

void Searching(Trial& t) {
  t.Next();
  const CString a(t.Word(30).c_str());
  const Text needle = t.Word(2);
  t << (a.Compare(needle.c_str()) < 0) << (a.CompareNoCase(needle.c_str()) < 0) << a.Find(QXT('c'), t.Below(10))
    << a.Find(needle.c_str(), t.Below(10)) << a.FindOneOf(needle.c_str()) << a.ReverseFind(QXT('d'));
  const int range[] = {t.Between(-2, 35), t.Between(-2, 35)};
  t << a.Mid(range[0]) << a.Mid(range[0], range[1]) << a.Left(range[0]) << a.Right(range[1]);
}

void Changing(Trial& t) {
  t.Next();
  CString a(t.Word(30).c_str());
  t << CString(a).MakeUpper() << CString(a).MakeLower() << CString(a).MakeReverse();
  t << CString(a).TrimLeft() << CString(a).TrimLeft(QXT('a')) << CString(a).TrimLeft(QXT("abc"));
  t << CString(a).TrimRight() << CString(a).TrimRight(QXT('a')) << CString(a).TrimRight(QXT("abc"));
  t << CString(a).Trim() << CString(a).Trim(QXT('a')) << CString(a).Trim(QXT("abc"));
  t << a.Replace(QXT('a'), QXT('b')) << a.Replace(QXT("bc"), t.Word(4).c_str()) << a.Remove(QXT('f'));
  t << a.Insert(t.Between(0, 30), QXT('I')) << a.Insert(t.Between(0, 30), t.Word(5).c_str()) << a;
  const int range[] = {t.Between(0, 30), t.Between(0, 5)};
  t << a.Delete(range[0], range[1]) << a;
  a.Truncate(t.Below(a.GetLength() + 1));
  t << a;
  const Text word = t.Word(8);
  a.Format(QXT("%s-%d"), word.c_str(), t.Between(-99, 99));
  a.AppendFormat(QXT("%5.2f"), t.Coarse());
  AppendList(a, QXT("|%x"), 255u);
  t << a;
  FormatList(a, QXT("%08I64d"), t.Long());
  t << a;
  QXChar* buffer = a.GetBuffer(20);
  buffer[0] = QXT('B');
  a.ReleaseBuffer();
  t << a;
  buffer = a.GetBufferSetLength(3);
  buffer[0] = buffer[1] = buffer[2] = QXT('C');
  a.ReleaseBufferSetLength(2);
  a.Preallocate(50);
  a.FreeExtra();
  t << a << a.GetString();
}

void TakeList(Trial& t, const CStringList& list) {
  t << list.GetCount() << list.GetSize() << list.IsEmpty();
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
    t << list.GetAt(at) << list.GetNext(at);
  }
  for (POSITION at = list.GetTailPosition(); at != nullptr;) {
    t << list.GetPrev(at);
  }
}

void Lists(Trial& t) {
  t.Next();
  CStringList list;
  for (int i = t.Between(2, 10); i > 0; --i) {
    if (t.Below(2) == 0) {
      list.AddHead(CString(t.Word(5).c_str()));
    } else {
      list.AddTail(CString(t.Word(5).c_str()));
    }
  }
  const CStringList& fixed = list;
  t << list.GetHead() << list.GetTail() << fixed.GetHead() << fixed.GetTail();
  POSITION at = list.FindIndex(t.Below(static_cast<int>(list.GetCount())));
  list.SetAt(at, CString(QXT("set")));
  list.InsertBefore(at, CString(QXT("before")));
  list.InsertAfter(at, CString(QXT("after")));
  t << (list.Find(QXT("after")) != nullptr) << list.GetAt(at);
  POSITION head = list.GetHeadPosition();
  t << list.GetNext(head);
  POSITION tail = list.GetTailPosition();
  t << list.GetPrev(tail);
  list.RemoveAt(at);
  TakeList(t, list);
  CStringList both;
  both.AddTail(&list);
  both.AddHead(&list);
  t << both.RemoveHead() << both.RemoveTail();
  TakeList(t, both);
  both.RemoveAll();
  TakeList(t, both);
}

}  // namespace

void RunHostText(Trial& t) {
  for (int i = 0; i < 2000; ++i) {
    Making(t);
    Searching(t);
    Changing(t);
    Lists(t);
  }
}

}  // namespace parity

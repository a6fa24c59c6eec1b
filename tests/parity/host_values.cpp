// host_values.cpp - the stand-ins of the host framework's date, point and rectangle.

#include "parity/trial.h"

namespace parity {

namespace {

void Take(Trial& t, const COleDateTime& date) {
  t << date.m_dt << date.GetStatus() << date.GetYear() << date.GetMonth() << date.GetDay() << date.GetHour() << date.GetMinute()
    << date.GetSecond() << date.GetDayOfWeek() << date.GetDayOfYear();
  SYSTEMTIME time{};
  t << date.GetAsSystemTime(time) << time.wYear << time.wMonth << time.wDay << time.wDayOfWeek << time.wHour << time.wMinute
    << time.wSecond << time.wMilliseconds;
}

void Dates(Trial& t) {
  t.Next();
  COleDateTime a(t.Below(4) == 0 ? t.Double() : t.Between(-700000, 3000000) + t.Between(0, 86399) / 86400.0);
  Take(t, a);
  const int f[] = {t.Between(90, 10010), t.Between(0, 13),  t.Between(0, 32),
                   t.Between(-1, 24),    t.Between(-1, 60), t.Between(-1, 60)};
  COleDateTime b(f[0], f[1], f[2], f[3], f[4], f[5]);
  Take(t, b);
  t << (a == b) << (a != b) << (a < b) << (a > b) << (a <= b) << (a >= b);
  t << a.SetDateTime(f[0], f[1], f[2], f[3], f[4], f[5]) << a.SetDate(f[0], f[1], f[2]) << b.SetTime(f[3], f[4], f[5]);
  Take(t, a);
  Take(t, b);
  const SYSTEMTIME time{static_cast<WORD>(f[0]), static_cast<WORD>(f[1]), 0, static_cast<WORD>(f[2]), 5, 6, 7, 8};
  COleDateTime c(time);
  Take(t, c);
  c = t.Coarse();
  Take(t, c);
  c = time;
  c.SetStatus(COleDateTime::null);
  Take(t, c);
  Take(t, COleDateTime());
}

Trial& operator<<(Trial& t, const RECT& r) { return t << r.left << r.top << r.right << r.bottom; }
Trial& operator<<(Trial& t, const POINT& p) { return t << p.x << p.y; }

void Shapes(Trial& t) {
  t.Next();
  const int n[] = {t.Between(-50, 50), t.Between(-50, 50), t.Between(-50, 50), t.Between(-50, 50)};
  CPoint p(n[0], n[1]);
  const CPoint q(POINT{n[2], n[3]});
  CPoint r;
  r.SetPoint(n[3], n[0]);
  r.Offset(n[1], 1);
  r.Offset(q);
  p += q;
  t << p << (p == q) << (p != r);
  p -= r;
  t << p << r;
  const CRect plain(n[0], n[1], n[2], n[3]);
  CRect a(static_cast<const RECT&>(plain));
  const CRect b(p, q);
  CRect c;
  t << a.Width() << a.Height() << a.TopLeft() << a.BottomRight() << a.CenterPoint() << a.IsRectEmpty() << a.IsRectNull()
    << a.PtInRect(q) << a.EqualRect(&b) << (a == b) << (a != b);
  t << c.IntersectRect(&a, &b) << c << c.UnionRect(&a, &b) << c;
  a.NormalizeRect();
  a.OffsetRect(n[2], n[3]);
  a.OffsetRect(q);
  a.InflateRect(n[0], n[1]);
  a.InflateRect(1, 2, 3, 4);
  a.DeflateRect(n[3], n[2]);
  t << a;
  c.SetRect(n[3], n[2], n[1], n[0]);
  t << c;
  c.SetRectEmpty();
  t << c;
}

}  // namespace

void RunHostValues(Trial& t) {
  for (int i = 0; i < 5000; ++i) {
    Dates(t);
    Shapes(t);
  }
}

}  // namespace parity

// host_geometry_test.cpp - CPoint and CRect.

#include "host_test.h"

#include <climits>
#include <ostream>
#include <type_traits>

static_assert(sizeof(CPoint) == 8 && alignof(CPoint) == 4);
static_assert(sizeof(CRect) == 16 && alignof(CRect) == 4);
static_assert(std::is_trivially_copyable_v<CPoint> && std::is_trivially_copyable_v<CRect>);

void PrintTo(const CPoint& point, std::ostream* out) { *out << '(' << point.x << ", " << point.y << ')'; }
void PrintTo(const CRect& rect, std::ostream* out) {
  *out << '(' << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom << ')';
}

namespace {

TEST(HostPoint, StartsAtTheOrigin) {
  const CPoint point;
  EXPECT_EQ(point.x, 0);
  EXPECT_EQ(point.y, 0);
}

TEST(HostPoint, MovesAndCompares) {
  CPoint point(3, -4);
  point.Offset(1, 2);
  EXPECT_EQ(point, CPoint(4, -2));
  point += CPoint(10, 10);
  EXPECT_EQ(point, CPoint(14, 8));
  point -= CPoint(4, 9);
  EXPECT_EQ(point, CPoint(10, -1));
  const CPoint& same = point;
  point += same;
  EXPECT_EQ(point, CPoint(20, -2));
  point -= same;
  EXPECT_EQ(point, CPoint(0, 0));
  point.SetPoint(5, 6);
  EXPECT_NE(point, CPoint(5, 7));
  EXPECT_NE(point, CPoint(4, 6));
  const POINT record = point;
  EXPECT_EQ(record.y, 6);
}

TEST(HostPoint, WrapsAtTheEndOfTheRange) {
  CPoint point(INT_MAX, INT_MIN);
  point.Offset(1, -1);
  EXPECT_EQ(point, CPoint(INT_MIN, INT_MAX));
}

TEST(HostRect, HasFourSides) {
  EXPECT_TRUE(CRect().IsRectNull());
  const CRect rect(1, 2, 30, 40);
  EXPECT_EQ(rect.left, 1);
  EXPECT_EQ(rect.top, 2);
  EXPECT_EQ(rect.right, 30);
  EXPECT_EQ(rect.bottom, 40);
  EXPECT_EQ(rect.Width(), 29);
  EXPECT_EQ(rect.Height(), 38);
  EXPECT_EQ(rect.TopLeft(), CPoint(1, 2));
  EXPECT_EQ(rect.BottomRight(), CPoint(30, 40));
  EXPECT_EQ(rect.CenterPoint(), CPoint(15, 21));
  EXPECT_EQ(CRect(CPoint(1, 2), CPoint(30, 40)), rect);
  EXPECT_EQ(CRect(INT_MIN, 0, INT_MAX, INT_MAX).Width(), -1);
  EXPECT_EQ(CRect(INT_MAX, INT_MAX, INT_MAX, INT_MAX).CenterPoint(), CPoint(INT_MAX, INT_MAX));
}

TEST(HostRect, IsEmptyWithoutAnArea) {
  EXPECT_FALSE(CRect(0, 0, 1, 1).IsRectEmpty());
  EXPECT_TRUE(CRect(0, 0, 0, 1).IsRectEmpty());
  EXPECT_TRUE(CRect(0, 0, 1, 0).IsRectEmpty());
  EXPECT_TRUE(CRect(5, 0, 1, 9).IsRectEmpty());
  EXPECT_FALSE(CRect(5, 5, 5, 5).IsRectNull());
}

TEST(HostRect, HoldsLeftAndTopButNotRightAndBottom) {
  const CRect rect(10, 20, 30, 40);
  EXPECT_TRUE(rect.PtInRect(CPoint(10, 20)));
  EXPECT_TRUE(rect.PtInRect(CPoint(29, 39)));
  EXPECT_FALSE(rect.PtInRect(CPoint(30, 39)));
  EXPECT_FALSE(rect.PtInRect(CPoint(29, 40)));
  EXPECT_FALSE(rect.PtInRect(CPoint(9, 20)));
  EXPECT_FALSE(CRect(30, 40, 10, 20).PtInRect(CPoint(15, 25)));
}

TEST(HostRect, NormalizesEachDirection) {
  CRect rect(30, 2, 1, 40);
  rect.NormalizeRect();
  EXPECT_EQ(rect, CRect(1, 2, 30, 40));
  rect.SetRect(1, 40, 30, 2);
  rect.NormalizeRect();
  EXPECT_EQ(rect, CRect(1, 2, 30, 40));
}

TEST(HostRect, MovesAndGrows) {
  CRect rect(10, 20, 30, 40);
  rect.OffsetRect(1, -2);
  EXPECT_EQ(rect, CRect(11, 18, 31, 38));
  rect.OffsetRect(CPoint(-1, 2));
  EXPECT_EQ(rect, CRect(10, 20, 30, 40));
  rect.InflateRect(1, 2);
  EXPECT_EQ(rect, CRect(9, 18, 31, 42));
  rect.DeflateRect(1, 2);
  EXPECT_EQ(rect, CRect(10, 20, 30, 40));
  rect.InflateRect(1, 2, 3, 4);
  EXPECT_EQ(rect, CRect(9, 18, 33, 44));
  rect.InflateRect(-100, -100);  // inside out
  EXPECT_EQ(rect, CRect(109, 118, -67, -56));
  rect.SetRect(INT_MAX, INT_MIN, INT_MAX, INT_MIN);
  rect.OffsetRect(1, -1);
  EXPECT_EQ(rect, CRect(INT_MIN, INT_MAX, INT_MIN, INT_MAX));
  rect.SetRectEmpty();
  rect.DeflateRect(INT_MIN, INT_MIN);
  EXPECT_EQ(rect, CRect(INT_MIN, INT_MIN, INT_MIN, INT_MIN));
}

TEST(HostRect, IntersectsAndUnites) {
  const struct {
    CRect first, second, common, around;
    bool meets, any;
  } rows[] = {
      {{0, 0, 10, 10}, {5, 6, 15, 16}, {5, 6, 10, 10}, {0, 0, 15, 16}, true, true},
      {{0, 0, 10, 10}, {2, 3, 4, 5}, {2, 3, 4, 5}, {0, 0, 10, 10}, true, true},
      {{0, 0, 10, 10}, {10, 0, 20, 10}, {0, 0, 0, 0}, {0, 0, 20, 10}, false, true},  // edges that touch
      {{0, 0, 10, 10}, {30, 30, 40, 40}, {0, 0, 0, 0}, {0, 0, 40, 40}, false, true},
      {{0, 0, 10, 10}, {5, 5, 5, 9}, {0, 0, 0, 0}, {0, 0, 10, 10}, false, true},  // an empty one
      {{3, 3, 3, 3}, {1, 2, 3, 4}, {0, 0, 0, 0}, {1, 2, 3, 4}, false, true},
      {{3, 3, 3, 3}, {9, 9, 1, 1}, {0, 0, 0, 0}, {0, 0, 0, 0}, false, false},
      {{INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {-1, -1, 1, 1}, {-1, -1, 1, 1}, {INT_MIN, INT_MIN, INT_MAX, INT_MAX}, true, true},
  };
  int number = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(number++);
    CRect result(7, 7, 7, 7);
    EXPECT_EQ(result.IntersectRect(&row.first, &row.second), row.meets);
    EXPECT_EQ(result, row.common);
    EXPECT_EQ(result.IntersectRect(&row.second, &row.first), row.meets);
    EXPECT_EQ(result, row.common);
    EXPECT_EQ(result.UnionRect(&row.first, &row.second), row.any);
    EXPECT_EQ(result, row.around);
    result = row.first;
    EXPECT_EQ(result.UnionRect(&result, &row.second), row.any);  // into one of the two
    EXPECT_EQ(result, row.around);
    result = row.second;
    EXPECT_EQ(result.IntersectRect(&row.first, &result), row.meets);
    EXPECT_EQ(result, row.common);
  }
}

TEST(HostRect, NullRectanglesAreEmpty) {
  const CRect one(1, 2, 3, 4);
  CRect result(7, 7, 7, 7);
  EXPECT_FALSE(result.IntersectRect(nullptr, &one));
  EXPECT_EQ(result, CRect(0, 0, 0, 0));
  EXPECT_TRUE(result.UnionRect(&one, nullptr));
  EXPECT_EQ(result, one);
  EXPECT_FALSE(result.EqualRect(nullptr));
  EXPECT_TRUE(result.EqualRect(&one));
}

TEST(HostRect, DiffersByEachSide) {
  const CRect rect(1, 2, 3, 4);
  EXPECT_NE(rect, CRect(0, 2, 3, 4));
  EXPECT_NE(rect, CRect(1, 0, 3, 4));
  EXPECT_NE(rect, CRect(1, 2, 0, 4));
  EXPECT_NE(rect, CRect(1, 2, 3, 0));
}

}  // namespace

// host_geometry.cpp - CPoint and CRect.

#include "qxv/host.h"

#include "foundation/numeric.h"

#include <algorithm>
#include <utility>

using qxv::WrapAdd;
using qxv::WrapNegate;
using qxv::WrapSubtract;

namespace {

bool IsEmpty(const RECT& rect) noexcept { return rect.left >= rect.right || rect.top >= rect.bottom; }

}  // namespace

CPoint::CPoint() noexcept : POINT{0, 0} {}

CPoint::CPoint(int initialX, int initialY) noexcept : POINT{initialX, initialY} {}

CPoint::CPoint(const POINT& point) noexcept : POINT(point) {}

void CPoint::SetPoint(int newX, int newY) noexcept {
  x = newX;
  y = newY;
}

void CPoint::Offset(int byX, int byY) noexcept { SetPoint(WrapAdd(x, byX), WrapAdd(y, byY)); }

void CPoint::Offset(const POINT& by) noexcept { Offset(by.x, by.y); }

CPoint& CPoint::operator+=(const POINT& by) noexcept {
  Offset(by.x, by.y);
  return *this;
}

CPoint& CPoint::operator-=(const POINT& by) noexcept {
  SetPoint(WrapSubtract(x, by.x), WrapSubtract(y, by.y));
  return *this;
}

bool CPoint::operator==(const POINT& other) const noexcept { return x == other.x && y == other.y; }

bool CPoint::operator!=(const POINT& other) const noexcept { return !(*this == other); }

CRect::CRect() noexcept : RECT{0, 0, 0, 0} {}

CRect::CRect(int initialLeft, int initialTop, int initialRight, int initialBottom) noexcept
    : RECT{initialLeft, initialTop, initialRight, initialBottom} {}

CRect::CRect(const RECT& rect) noexcept : RECT(rect) {}

CRect::CRect(const POINT& topLeft, const POINT& bottomRight) noexcept
    : RECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

int CRect::Width() const noexcept { return WrapSubtract(right, left); }

int CRect::Height() const noexcept { return WrapSubtract(bottom, top); }

CPoint CRect::TopLeft() const noexcept { return {static_cast<int>(left), static_cast<int>(top)}; }

CPoint CRect::BottomRight() const noexcept { return {static_cast<int>(right), static_cast<int>(bottom)}; }

CPoint CRect::CenterPoint() const noexcept {
  return {static_cast<int>((QXInt64{left} + right) / 2), static_cast<int>((QXInt64{top} + bottom) / 2)};
}

bool CRect::IsRectEmpty() const noexcept { return IsEmpty(*this); }

bool CRect::IsRectNull() const noexcept { return left == 0 && top == 0 && right == 0 && bottom == 0; }

bool CRect::PtInRect(const POINT& point) const noexcept {
  return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
}

void CRect::SetRect(int newLeft, int newTop, int newRight, int newBottom) noexcept {
  left = newLeft;
  top = newTop;
  right = newRight;
  bottom = newBottom;
}

void CRect::SetRectEmpty() noexcept { SetRect(0, 0, 0, 0); }

void CRect::NormalizeRect() noexcept {
  if (left > right) {
    std::swap(left, right);
  }
  if (top > bottom) {
    std::swap(top, bottom);
  }
}

void CRect::OffsetRect(int byX, int byY) noexcept {
  SetRect(WrapAdd(left, byX), WrapAdd(top, byY), WrapAdd(right, byX), WrapAdd(bottom, byY));
}

void CRect::OffsetRect(const POINT& by) noexcept { OffsetRect(by.x, by.y); }

void CRect::InflateRect(int byX, int byY) noexcept { InflateRect(byX, byY, byX, byY); }

void CRect::InflateRect(int byLeft, int byTop, int byRight, int byBottom) noexcept {
  SetRect(WrapSubtract(left, byLeft), WrapSubtract(top, byTop), WrapAdd(right, byRight), WrapAdd(bottom, byBottom));
}

void CRect::DeflateRect(int byX, int byY) noexcept { InflateRect(WrapNegate(byX), WrapNegate(byY)); }

bool CRect::IntersectRect(const RECT* first, const RECT* second) noexcept {
  CRect common;  // either argument may be this rectangle
  if (first != nullptr && second != nullptr && !IsEmpty(*first) && !IsEmpty(*second)) {
    common.left = std::max(first->left, second->left);
    common.top = std::max(first->top, second->top);
    common.right = std::min(first->right, second->right);
    common.bottom = std::min(first->bottom, second->bottom);
  }
  if (IsEmpty(common)) {
    common.SetRectEmpty();
  }
  *this = common;
  return !IsEmpty(common);
}

bool CRect::UnionRect(const RECT* first, const RECT* second) noexcept {
  const bool firstCounts = first != nullptr && !IsEmpty(*first);
  const bool secondCounts = second != nullptr && !IsEmpty(*second);
  CRect around;
  if (firstCounts && secondCounts) {
    around.left = std::min(first->left, second->left);
    around.top = std::min(first->top, second->top);
    around.right = std::max(first->right, second->right);
    around.bottom = std::max(first->bottom, second->bottom);
  } else if (firstCounts || secondCounts) {
    around = firstCounts ? *first : *second;
  }
  *this = around;
  return firstCounts || secondCounts;
}

bool CRect::EqualRect(const RECT* other) const noexcept {
  return other != nullptr && left == other->left && top == other->top && right == other->right && bottom == other->bottom;
}

bool CRect::operator==(const RECT& other) const noexcept { return EqualRect(&other); }

bool CRect::operator!=(const RECT& other) const noexcept { return !EqualRect(&other); }

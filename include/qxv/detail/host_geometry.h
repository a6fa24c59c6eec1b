// host_geometry.h - CPoint and CRect, the host framework's point and rectangle. Included through host.h.
// They are the system's records with operations: 32-bit integers, which wrap.
#pragma once

#include "qxv/export.h"
#include "qxv/types.h"

class QXV_API CPoint : public POINT {
 public:
  CPoint() noexcept;
  CPoint(int initialX, int initialY) noexcept;
  CPoint(const POINT& point) noexcept;  // NOLINT(google-explicit-constructor): as the framework's

  void SetPoint(int newX, int newY) noexcept;
  void Offset(int byX, int byY) noexcept;
  void Offset(const POINT& by) noexcept;
  CPoint& operator+=(const POINT& by) noexcept;
  CPoint& operator-=(const POINT& by) noexcept;

  bool operator==(const POINT& other) const noexcept;
  bool operator!=(const POINT& other) const noexcept;
};

/// Left and top lie inside, right and bottom just outside. Normalised: left <= right and top <= bottom.
class QXV_API CRect : public RECT {
 public:
  CRect() noexcept;
  CRect(int initialLeft, int initialTop, int initialRight, int initialBottom) noexcept;
  CRect(const RECT& rect) noexcept;  // NOLINT(google-explicit-constructor): as the framework's
  CRect(const POINT& topLeft, const POINT& bottomRight) noexcept;

  int Width() const noexcept;
  int Height() const noexcept;
  CPoint TopLeft() const noexcept;
  CPoint BottomRight() const noexcept;
  CPoint CenterPoint() const noexcept;

  /// Whether width or height is 0 or negative.
  bool IsRectEmpty() const noexcept;
  /// Whether all four are 0.
  bool IsRectNull() const noexcept;
  /// False for every point when the rectangle is not normalised.
  bool PtInRect(const POINT& point) const noexcept;

  void SetRect(int newLeft, int newTop, int newRight, int newBottom) noexcept;
  void SetRectEmpty() noexcept;
  void NormalizeRect() noexcept;
  void OffsetRect(int byX, int byY) noexcept;
  void OffsetRect(const POINT& by) noexcept;
  /// Moves each side outwards; negative values inwards.
  void InflateRect(int byX, int byY) noexcept;
  void InflateRect(int byLeft, int byTop, int byRight, int byBottom) noexcept;
  void DeflateRect(int byX, int byY) noexcept;

  /// The part that both have; all 0 when there is none. @return whether there is one
  bool IntersectRect(const RECT* first, const RECT* second) noexcept;
  /// The smallest rectangle around both; an empty one does not count. @return whether the result is not empty
  bool UnionRect(const RECT* first, const RECT* second) noexcept;

  bool EqualRect(const RECT* other) const noexcept;
  bool operator==(const RECT& other) const noexcept;
  bool operator!=(const RECT& other) const noexcept;
};

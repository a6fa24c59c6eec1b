// line_meeting.h - where two lines meet, as far as plane and space share it.
#pragma once

namespace qxv {

/// Of two intersecting lines the first of the points q0, q1, p0, p1 that lies on the other line; null where none does.
template <class Vector>
const Vector* PointOnOtherLine(const Vector& p0, const Vector& p1, const Vector& q0, const Vector& q1) {
  if (QXVIs3PointInLine(p0, p1, q0) != 0) {
    return &q0;
  }
  if (QXVIs3PointInLine(p0, p1, q1) != 0) {
    return &q1;
  }
  if (QXVIs3PointInLine(q0, q1, p0) != 0) {
    return &p0;
  }
  return QXVIs3PointInLine(q0, q1, p1) != 0 ? &p1 : nullptr;
}

}  // namespace qxv

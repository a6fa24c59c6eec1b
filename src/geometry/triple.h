// triple.h - three coordinates without the virtual table of CQXVVector3, for what is computed between them.
#pragma once

#include "geometry/tolerance.h"
#include "qxv/vector3.h"

#include <cmath>

namespace qxv {

struct Triple {
  double x, y, z;

  Triple(double newX, double newY, double newZ) noexcept : x(newX), y(newY), z(newZ) {}
  Triple(const CQXVVector3& v) noexcept : x(v.x), y(v.y), z(v.z) {}  // NOLINT(google-explicit-constructor): same coordinates
};

inline Triple operator+(const Triple& a, const Triple& b) noexcept { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Triple operator-(const Triple& a, const Triple& b) noexcept { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Triple operator*(const Triple& a, double factor) noexcept { return {a.x * factor, a.y * factor, a.z * factor}; }
inline Triple operator/(const Triple& a, double divisor) noexcept { return {a.x / divisor, a.y / divisor, a.z / divisor}; }

inline double Dot(const Triple& a, const Triple& b) noexcept { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Triple Cross(const Triple& a, const Triple& b) noexcept {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Mixed(const Triple& a, const Triple& b, const Triple& c) noexcept { return Dot(a, Cross(b, c)); }

inline double Length(const Triple& a) noexcept { return std::sqrt(Dot(a, a)); }
inline double Norm1(const Triple& a) noexcept { return std::fabs(a.x) + std::fabs(a.y) + std::fabs(a.z); }
inline Triple Normalized(const Triple& a) noexcept { return a / Length(a); }

inline bool IsZeroInclusive(const Triple& a) noexcept {
  return IsZeroInclusive(a.x) && IsZeroInclusive(a.y) && IsZeroInclusive(a.z);
}
inline bool IsZeroStrict(const Triple& a) noexcept { return IsZeroStrict(a.x) && IsZeroStrict(a.y) && IsZeroStrict(a.z); }

/// Points of a line too close to give it a direction.
inline bool IsDegenerate(const Triple& p0, const Triple& p1) noexcept { return Norm1(p1 - p0) < kTolerance; }

/// The normal of a plane by three of its points; zero (inclusive) when they give none.
inline Triple Normal(const Triple& a, const Triple& b, const Triple& c) noexcept { return Cross(b - a, c - a); }

/// Foot of the perpendicular from c on a line that is not degenerate.
inline Triple Foot(const Triple& p0, const Triple& p1, const Triple& c) noexcept {
  const Triple direction = Normalized(p1 - p0);
  return p0 + direction * Dot(c - p0, direction);
}

/// Orthogonal projection on the plane through a with this unit normal.
inline Triple Projection(const Triple& a, const Triple& unitNormal, const Triple& p) noexcept {
  return p - unitNormal * Dot(unitNormal, p - a);
}

inline void Assign(CQXVVector3& to, const Triple& from) { to.Set(from.x, from.y, from.z); }

}  // namespace qxv

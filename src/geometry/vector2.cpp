// vector2.cpp - arithmetic of plane vectors.

#include "qxv/vector2.h"

#include "geometry/tolerance.h"

#include <cmath>

int CQXVVector2::operator==(const CQXVVector2& other) const {
  return qxv::IsZeroInclusive(x - other.x) && qxv::IsZeroInclusive(y - other.y) ? 1 : 0;
}

CQXVVector2 CQXVVector2::operator+(const CQXVVector2& other) const { return {x + other.x, y + other.y}; }

CQXVVector2& CQXVVector2::operator+=(const CQXVVector2& other) { return *this = *this + other; }

CQXVVector2 CQXVVector2::operator-(const CQXVVector2& other) const { return {x - other.x, y - other.y}; }

CQXVVector2& CQXVVector2::operator-=(const CQXVVector2& other) { return *this = *this - other; }

CQXVVector2 CQXVVector2::operator*(const CQXVVector2& other) const {
  return {x * other.x - y * other.y, x * other.y + y * other.x};
}

CQXVVector2& CQXVVector2::operator*=(const CQXVVector2& other) { return *this = *this * other; }

CQXVVector2 CQXVVector2::operator*(double factor) const { return {x * factor, y * factor}; }

CQXVVector2& CQXVVector2::operator*=(double factor) { return *this = *this * factor; }

CQXVVector2 CQXVVector2::operator/(double divisor) const { return {x / divisor, y / divisor}; }

CQXVVector2& CQXVVector2::operator/=(double divisor) { return *this = *this / divisor; }

double CQXVVector2::GetModel() const { return std::sqrt(x * x + y * y); }

double CQXVVector2::GetNorm1() const { return std::fabs(x) + std::fabs(y); }

double CQXVVector2::GetAngle() const { return std::atan2(y, x); }

int CQXVVector2::IsZero() const { return qxv::IsZeroInclusive(x) && qxv::IsZeroInclusive(y) ? 1 : 0; }

void CQXVVector2::Rotate(double angle) {
  const double cosine = std::cos(angle), sine = std::sin(angle);
  *this = {x * cosine - y * sine, x * sine + y * cosine};
}

void CQXVVector2::Normalize() { *this /= GetModel(); }

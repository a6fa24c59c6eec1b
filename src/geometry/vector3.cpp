// vector3.cpp - arithmetic of space vectors.

#include "qxv/vector3.h"

#include "geometry/tolerance.h"
#include "geometry/triple.h"

#include <algorithm>
#include <cmath>

CQXVVector3::~CQXVVector3() = default;

void CQXVVector3::Set(double newX, double newY, double newZ) {
  x = newX;
  y = newY;
  z = newZ;
}

int CQXVVector3::operator==(const CQXVVector3& other) const { return qxv::IsZeroInclusive(qxv::Triple(*this) - other) ? 1 : 0; }

int CQXVVector3::operator!=(const CQXVVector3& other) const { return *this == other ? 0 : 1; }

CQXVVector3 CQXVVector3::operator+(const CQXVVector3& other) const { return {x + other.x, y + other.y, z + other.z}; }

CQXVVector3& CQXVVector3::operator+=(const CQXVVector3& other) {
  Set(x + other.x, y + other.y, z + other.z);
  return *this;
}

CQXVVector3 CQXVVector3::operator-(const CQXVVector3& other) const { return {x - other.x, y - other.y, z - other.z}; }

CQXVVector3& CQXVVector3::operator-=(const CQXVVector3& other) {
  Set(x - other.x, y - other.y, z - other.z);
  return *this;
}

CQXVVector3 CQXVVector3::operator*(double factor) const { return {x * factor, y * factor, z * factor}; }

CQXVVector3& CQXVVector3::operator*=(double factor) {
  Set(x * factor, y * factor, z * factor);
  return *this;
}

CQXVVector3 CQXVVector3::operator/(double divisor) const { return {x / divisor, y / divisor, z / divisor}; }

CQXVVector3& CQXVVector3::operator/=(double divisor) {
  Set(x / divisor, y / divisor, z / divisor);
  return *this;
}

CQXVVector3 CQXVVector3::operator*(const CQXVVector3& other) const { return QXVOuterProduct(*this, other); }

unsigned char CQXVVector3::IsZero() const { return qxv::IsZeroInclusive(qxv::Triple(*this)) ? 1 : 0; }

double CQXVVector3::GetModel() const { return qxv::Length(*this); }

double CQXVVector3::GetNorm1() const { return qxv::Norm1(*this); }

double CQXVVector3::GetAngle(const CQXVVector3& a, const CQXVVector3& b) {
  const qxv::Triple difference = qxv::Triple(a) - b;
  const double cosine =
      (qxv::Dot(a, a) + qxv::Dot(b, b) - qxv::Dot(difference, difference)) / (2 * qxv::Length(a) * qxv::Length(b));
  return std::acos(std::clamp(cosine, -1.0, 1.0));  // NaN stays
}

void CQXVVector3::Normalize() { *this /= GetModel(); }

double QXVInnerProduct(const CQXVVector3& a, const CQXVVector3& b) { return qxv::Dot(a, b); }

CQXVVector3 QXVOuterProduct(const CQXVVector3& a, const CQXVVector3& b) {
  const qxv::Triple product = qxv::Cross(a, b);
  return {product.x, product.y, product.z};
}

double QXVMixedProduct(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c) { return qxv::Mixed(a, b, c); }

double QXVDeterminant3v(const CQXVVector3& a, const CQXVVector3& b, const CQXVVector3& c) { return QXVMixedProduct(a, b, c); }

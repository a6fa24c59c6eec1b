// scene.h - random points and directions with a fixed seed, and comparison of space vectors with a named tolerance.
#pragma once

#include "qxv/vector3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>

namespace scene {

inline void ExpectNear(const CQXVVector3& actual, const CQXVVector3& expected, double tolerance = 1e-12) {
  EXPECT_NEAR(actual.x, expected.x, tolerance);
  EXPECT_NEAR(actual.y, expected.y, tolerance);
  EXPECT_NEAR(actual.z, expected.z, tolerance);
}

class Random {
 public:
  explicit Random(std::uint64_t seed) : m_engine(seed) {}

  double Between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_engine); }

  CQXVVector3 Point() { return {Between(-50, 50), Between(-50, 50), Between(-50, 50)}; }

  /// Of length 1.
  CQXVVector3 Direction() {
    const double z = Between(-1, 1), angle = Between(0, 6.283185307179586), radius = std::sqrt(1 - z * z);
    return {radius * std::cos(angle), radius * std::sin(angle), z};
  }

  /// Of length 1 and perpendicular to a direction.
  CQXVVector3 DirectionAcross(const CQXVVector3& direction) {
    for (;;) {
      const CQXVVector3 other = Direction();
      const CQXVVector3 across(direction.y * other.z - direction.z * other.y, direction.z * other.x - direction.x * other.z,
                               direction.x * other.y - direction.y * other.x);
      const double length = std::sqrt(across.x * across.x + across.y * across.y + across.z * across.z);
      if (length > 0.1) {
        return {across.x / length, across.y / length, across.z / length};
      }
    }
  }

 private:
  std::mt19937_64 m_engine;
};

}  // namespace scene

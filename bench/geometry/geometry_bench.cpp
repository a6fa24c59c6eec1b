// geometry_bench.cpp - a rotation about an axis and a line through a plane beside Eigen's, each over a real call.

#include "bench/support/ratio.h"
#include "qxv/vector3.h"

#include <Eigen/Geometry>

#include <memory>
#include <random>
#include <vector>

namespace {

constexpr std::size_t kPoints = 1000;

// Out of line, as our functions are for an application.
[[gnu::noinline]] void EigenRotate(const Eigen::Vector3d& a, const Eigen::Vector3d& b, const Eigen::Vector3d& p, double angle,
                                   Eigen::Vector3d& image) {
  image = a + Eigen::AngleAxisd(angle, (b - a).normalized()).toRotationMatrix() * (p - a);
}

[[gnu::noinline]] bool EigenCross(const Eigen::Vector3d& p0, const Eigen::Vector3d& p1, const Eigen::Vector3d& a,
                                  const Eigen::Vector3d& b, const Eigen::Vector3d& c, Eigen::Vector3d& point) {
  const auto plane = Eigen::Hyperplane<double, 3>::Through(a, b, c);
  point = Eigen::ParametrizedLine<double, 3>::Through(p0, p1).intersectionPoint(plane);
  return true;
}

struct Scene {
  std::vector<CQXVVector3> points;
  std::vector<Eigen::Vector3d> eigen;
};

std::shared_ptr<const Scene> MakeScene() {
  auto scene = std::make_shared<Scene>();
  std::mt19937_64 random(4);
  std::uniform_real_distribution<double> any(-10, 10);
  for (std::size_t i = 0; i < kPoints + 4; ++i) {
    const double x = any(random), y = any(random), z = any(random);
    scene->points.emplace_back(x, y, z);
    scene->eigen.emplace_back(x, y, z);
  }
  return scene;
}

bench::Job RotateJob() {
  const auto scene = MakeScene();
  const auto ours = [scene] {
    CQXVVector3 image;
    for (std::size_t i = 0; i < kPoints; ++i) {
      QXVRotate(scene->points[i], scene->points[i + 1], scene->points[i + 2], scene->points[i + 3].x, image);
      benchmark::DoNotOptimize(image.x);
    }
  };
  const auto eigen = [scene] {
    Eigen::Vector3d image;
    for (std::size_t i = 0; i < kPoints; ++i) {
      EigenRotate(scene->eigen[i], scene->eigen[i + 1], scene->eigen[i + 2], scene->eigen[i + 3].x(), image);
      benchmark::DoNotOptimize(image.x());
    }
  };
  return {"geometry/rotate", "1000 points", ours, {{"Eigen", eigen, 0.9}}};
}

bench::Job CrossJob() {
  const auto scene = MakeScene();
  const auto ours = [scene] {
    CQXVVector3 point;
    for (std::size_t i = 0; i < kPoints; ++i) {
      const CQXVVector3* const p = &scene->points[i];
      benchmark::DoNotOptimize(QXVGetLineFaceCrossPoint(p[0], p[1], p[2], p[3], p[4], point));
      benchmark::DoNotOptimize(point.x);
    }
  };
  const auto eigen = [scene] {
    Eigen::Vector3d point;
    for (std::size_t i = 0; i < kPoints; ++i) {
      const Eigen::Vector3d* const p = &scene->eigen[i];
      benchmark::DoNotOptimize(EigenCross(p[0], p[1], p[2], p[3], p[4], point));
      benchmark::DoNotOptimize(point.x());
    }
  };
  return {"geometry/line-plane", "1000 lines", ours, {{"Eigen", eigen, 0.9}}};
}

const bench::Register kRegistered([] { return std::vector<bench::Job>{RotateJob(), CrossJob()}; });

}  // namespace

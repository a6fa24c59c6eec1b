// resample_bench.cpp - pictures of four bytes a pixel at another size, beside the bilinear filters of libyuv (fixed point),
// FreeImage and swscale.

#include "bench/support/ratio.h"
#include "image/pixel_layout_frame.h"

#include <FreeImage.h>
#include <libyuv/scale_argb.h>
extern "C" {
#include <libswscale/swscale.h>
}

#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>

namespace {

using qxv::os::CpuTier;

struct Size {
  const char* name;
  int width, height;
  std::size_t Bytes() const { return 4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
};
constexpr Size k720p{"720p", 1280, 720};
constexpr Size k1080p{"1080p", 1920, 1080};
constexpr Size k4K{"4K", 3840, 2160};

using Buffer = std::vector<unsigned char>;

const Buffer& Source() {
  static const Buffer bytes = [] {
    Buffer made(k4K.Bytes());
    std::mt19937 random(1);
    for (unsigned char& byte : made) {
      byte = static_cast<unsigned char>(random());
    }
    return made;
  }();
  return bytes;
}

unsigned char* Result() {
  static Buffer bytes(k4K.Bytes());
  return bytes.data();
}

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// Opaque B, G, R, A becomes the working layout, so that the turning round is part of the work; or, without it, of three bytes.
bench::Turn Ours(const Size& from, const Size& to, std::uint32_t layout) {
  return [=] {
    Require(qxv::ConvertFrame({layout, from.width, from.height, 0}, Source().data(), {layout, to.width, to.height, 0},
                              Result()) == 0);
    benchmark::DoNotOptimize(Result());
  };
}

bench::Turn LibYuv(const Size& from, const Size& to) {
  return [=] {
    libyuv::ARGBScale(Source().data(), 4 * from.width, from.width, from.height, Result(), 4 * to.width, to.width, to.height,
                      libyuv::kFilterBilinear);
    benchmark::DoNotOptimize(Result());
  };
}

bench::Turn FreeImage(const Size& from, const Size& to) {
  return [from, to, source = std::shared_ptr<FIBITMAP>()]() mutable {
    if (!source) {
      source.reset(FreeImage_ConvertFromRawBits(const_cast<unsigned char*>(Source().data()), from.width, from.height,
                                                4 * from.width, 32, 0xFF0000, 0xFF00, 0xFF, TRUE),
                   &FreeImage_Unload);
      Require(source != nullptr);
    }
    FIBITMAP* const scaled = FreeImage_Rescale(source.get(), to.width, to.height, FILTER_BILINEAR);
    benchmark::DoNotOptimize(FreeImage_GetBits(scaled));
    FreeImage_Unload(scaled);
  };
}

bench::Turn Swscale(const Size& from, const Size& to) {
  return [from, to, context = std::shared_ptr<SwsContext>()]() mutable {
    if (!context) {
      context.reset(::sws_getContext(from.width, from.height, AV_PIX_FMT_BGRA, to.width, to.height, AV_PIX_FMT_BGRA,
                                     SWS_FAST_BILINEAR, nullptr, nullptr, nullptr),
                    &::sws_freeContext);
      Require(context != nullptr);
    }
    const unsigned char* const in[] = {Source().data(), nullptr, nullptr, nullptr};
    unsigned char* const out[] = {Result(), nullptr, nullptr, nullptr};
    const int inStrides[] = {4 * from.width, 0, 0, 0}, outStrides[] = {4 * to.width, 0, 0, 0};
    ::sws_scale(context.get(), in, inStrides, 0, from.height, out, outStrides);
    benchmark::DoNotOptimize(Result());
  };
}

struct Scaling {
  Size from, to;
  double libyuvAvx2, libyuvAvx512, freeImage;
};
constexpr Scaling kScalings[] = {
    {k4K, k1080p, 2, 2, 50}, {k1080p, k720p, 1.1, 1.1, 0}, {k720p, k1080p, 0.38, 0.75, 0}, {k1080p, k4K, 0.85, 0.85, 0}};

const bench::Register kRegistered([] {
  std::vector<bench::Job> jobs;
  for (const CpuTier tier : {CpuTier::Baseline, CpuTier::Avx2, CpuTier::Avx512}) {
    const bool wide = tier != CpuTier::Baseline;
    for (const Scaling& way : kScalings) {
      const double libyuv = tier == CpuTier::Avx512 ? way.libyuvAvx512 : way.libyuvAvx2;
      jobs.push_back({"bilinear",
                      std::string(way.from.name) + " to " + way.to.name,
                      Ours(way.from, way.to, 1),
                      {{"libyuv ARGBScale", LibYuv(way.from, way.to), wide ? libyuv : 0},
                       {"FreeImage_Rescale", FreeImage(way.from, way.to), wide ? way.freeImage : 0},
                       {"swscale fast bilinear", Swscale(way.from, way.to)}},
                      tier});
    }
  }
  return jobs;
});

}  // namespace

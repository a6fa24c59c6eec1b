// pixel_layout_bench.cpp - pictures between the layouts and the working layout beside libyuv, which reckons colours in 8-bit
// fixed point, zimg, which takes floats as we do, swscale and a plain copy. Peers keep Y, U and V in planes, we in pixels.

#include "bench/support/ratio.h"
#include "image/layout_codes.h"
#include "image/pixel_layout.h"
#include "image/pixel_layout_frame.h"

#include <libyuv/convert_argb.h>
#include <libyuv/convert_from_argb.h>
#include <zimg.h>
extern "C" {
#include <libswscale/swscale.h>
}

#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>

namespace {

using qxv::os::CpuTier;

constexpr std::uint32_t kWorking = 32;  // a layout without a converter: the working layout stays

struct Size {
  const char* name;
  int width, height;
  std::size_t Pixels() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
};
constexpr Size k1080p{"1080p", 1920, 1080};
constexpr Size k4K{"4K", 3840, 2160};

using Buffer = std::vector<unsigned char>;

const Buffer& Source() {
  static const Buffer bytes = [] {
    Buffer made(4 * k4K.Pixels());
    std::mt19937 random(1);
    for (unsigned char& byte : made) {
      byte = static_cast<unsigned char>(random());
    }
    return made;
  }();
  return bytes;
}

unsigned char* Result() {
  static Buffer bytes(4 * k4K.Pixels());
  return bytes.data();
}

void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// A whole picture, as a reader or a writer converts it.
bench::Turn Ours(const Size& size, std::uint32_t from) {
  return [size, from] {
    Require(qxv::ConvertFrame({from, size.width, size.height, 0}, Source().data(), {kWorking, size.width, size.height, 0},
                              Result()) == 0);
    benchmark::DoNotOptimize(Result());
  };
}

bench::Turn OursFromWorking(const Size& size, std::uint32_t to) {
  return [size, to] {
    const auto width = static_cast<std::size_t>(size.width);
    for (std::size_t pixel = 0; pixel < size.Pixels(); pixel += width) {
      qxv::FromWorking(to)(Source().data() + 4 * pixel, width, Result() + qxv::LayoutBytes(to) * pixel);
    }
    benchmark::DoNotOptimize(Result());
  };
}

// libyuv's functions from and to packed pixels.
using Packed = int (*)(const std::uint8_t*, int, std::uint8_t*, int, int, int);
bench::Turn LibYuv(Packed convert, const Size& size, int bytesIn, int bytesOut) {
  return [=] {
    convert(Source().data(), bytesIn * size.width, Result(), bytesOut * size.width, size.width, size.height);
    benchmark::DoNotOptimize(Result());
  };
}

void LibYuvFromPlanes() {
  const std::uint8_t* const y = Source().data();
  const int stride = k1080p.width;
  libyuv::I444ToARGB(y, stride, y + k1080p.Pixels(), stride, y + 2 * k1080p.Pixels(), stride, Result(), 4 * stride, stride,
                     k1080p.height);
  benchmark::DoNotOptimize(Result());
}

void LibYuvToPlanes() {
  const int stride = k1080p.width;
  libyuv::ARGBToI444(Source().data(), 4 * stride, Result(), stride, Result() + k1080p.Pixels(), stride,
                     Result() + 2 * k1080p.Pixels(), stride, stride, k1080p.height);
  benchmark::DoNotOptimize(Result());
}

// zimg between planes of Y, U, V and of R, G, B. Its own choice of a processor leaves AVX-512 out unless it is asked for.
class Zimg {
 public:
  Zimg(bool toColours, bool avx512) {
    zimg_image_format yuv, colours;
    ::zimg_image_format_default(&yuv, ZIMG_API_VERSION);
    yuv.width = static_cast<unsigned>(k1080p.width);
    yuv.height = static_cast<unsigned>(k1080p.height);
    yuv.pixel_type = ZIMG_PIXEL_BYTE;
    colours = yuv;
    yuv.color_family = ZIMG_COLOR_YUV;
    yuv.matrix_coefficients = ZIMG_MATRIX_BT470_BG;
    yuv.pixel_range = ZIMG_RANGE_LIMITED;
    colours.color_family = ZIMG_COLOR_RGB;
    colours.matrix_coefficients = ZIMG_MATRIX_RGB;
    colours.pixel_range = ZIMG_RANGE_FULL;
    zimg_graph_builder_params parameters;
    ::zimg_graph_builder_params_default(&parameters, ZIMG_API_VERSION);
    parameters.cpu_type = avx512 ? ZIMG_CPU_AUTO_64B : ZIMG_CPU_AUTO;
    m_graph.reset(::zimg_filter_graph_build(toColours ? &yuv : &colours, toColours ? &colours : &yuv, &parameters));
    std::size_t bytes = 0;
    Require(m_graph && ::zimg_filter_graph_get_tmp_size(m_graph.get(), &bytes) == ZIMG_ERROR_SUCCESS);
    m_strip.reset(std::aligned_alloc(64, (bytes + 63) / 64 * 64));
    Require(m_strip != nullptr);
  }

  void Run() const {
    zimg_image_buffer_const in{};
    zimg_image_buffer out{};
    in.version = out.version = ZIMG_API_VERSION;
    for (std::size_t n = 0; n < 3; ++n) {
      in.plane[n] = {Aligned(Source().data()) + n * k1080p.Pixels(), k1080p.width, ZIMG_BUFFER_MAX};
      out.plane[n] = {const_cast<unsigned char*>(Aligned(Result())) + n * k1080p.Pixels(), k1080p.width, ZIMG_BUFFER_MAX};
    }
    Require(::zimg_filter_graph_process(m_graph.get(), &in, &out, m_strip.get(), nullptr, nullptr, nullptr, nullptr) ==
            ZIMG_ERROR_SUCCESS);
    benchmark::DoNotOptimize(Result());
  }

 private:
  static const unsigned char* Aligned(const unsigned char* bytes) {
    return bytes + (64 - reinterpret_cast<std::uintptr_t>(bytes) % 64) % 64;
  }
  struct Release {
    void operator()(zimg_filter_graph* graph) const noexcept { ::zimg_filter_graph_free(graph); }
    void operator()(void* bytes) const noexcept { std::free(bytes); }
  };
  std::unique_ptr<zimg_filter_graph, Release> m_graph;
  std::unique_ptr<void, Release> m_strip;
};

bench::Turn ZimgTurn(bool toColours, CpuTier tier) {
  return [toColours, tier, zimg = std::shared_ptr<const Zimg>()]() mutable {
    if (!zimg) {
      zimg = std::make_shared<const Zimg>(toColours, tier == CpuTier::Avx512);
    }
    zimg->Run();
  };
}

// swscale between planes of Y, U, V and pixels A, R, G, B.
bench::Turn SwscaleTurn(bool toColours) {
  return [toColours, context = std::shared_ptr<SwsContext>()]() mutable {
    constexpr int kStride = k1080p.width;
    if (!context) {
      const auto from = toColours ? AV_PIX_FMT_YUV444P : AV_PIX_FMT_ARGB, to = toColours ? AV_PIX_FMT_ARGB : AV_PIX_FMT_YUV444P;
      context.reset(
          ::sws_getContext(kStride, k1080p.height, from, kStride, k1080p.height, to, SWS_POINT, nullptr, nullptr, nullptr),
          &::sws_freeContext);
      Require(context != nullptr);
    }
    const std::size_t plane = k1080p.Pixels();
    const unsigned char* const in = Source().data();
    const unsigned char* const planesIn[] = {in, in + plane, in + 2 * plane, nullptr};
    unsigned char* const planesOut[] = {Result(), Result() + plane, Result() + 2 * plane, nullptr};
    const unsigned char* const pixelsIn[] = {in, nullptr, nullptr, nullptr};
    unsigned char* const pixelsOut[] = {Result(), nullptr, nullptr, nullptr};
    const int planeStrides[] = {kStride, kStride, kStride, 0}, pixelStrides[] = {4 * kStride, 0, 0, 0};
    ::sws_scale(context.get(), toColours ? planesIn : pixelsIn, toColours ? planeStrides : pixelStrides, 0, k1080p.height,
                toColours ? pixelsOut : planesOut, toColours ? pixelStrides : planeStrides);
    benchmark::DoNotOptimize(Result());
  };
}

void Copy() {
  std::memcpy(Result(), Source().data(), Source().size());
  benchmark::DoNotOptimize(Result());
}

void AddJobs(CpuTier tier, std::vector<bench::Job>& jobs) {
  const auto must = [tier](double avx2, double avx512) {
    return tier == CpuTier::Avx512 ? avx512 : tier == CpuTier::Avx2 ? avx2 : 0;
  };
  const double copy = must(0.95, 0.95), there = must(1.0, 1.0), back = must(0.9, 0.9);
  const double zimg = must(1.15, 1.15), libyuv = must(0.36, 0.65);
  jobs.push_back({"pixels/BGRA to ARGB",
                  "4K",
                  Ours(k4K, qxv::kLayoutBgra),
                  {{"memcpy", &Copy, copy}, {"libyuv ARGBToBGRA", LibYuv(&libyuv::ARGBToBGRA, k4K, 4, 4)}},
                  tier});
  jobs.push_back({"pixels/ARGB to BGRA",
                  "4K",
                  OursFromWorking(k4K, qxv::kLayoutBgra),
                  {{"memcpy", &Copy, copy}, {"libyuv BGRAToARGB", LibYuv(&libyuv::BGRAToARGB, k4K, 4, 4)}},
                  tier});
  for (const Size& size : {k1080p, k4K}) {
    jobs.push_back({"pixels/BGR to ARGB",
                    size.name,
                    Ours(size, qxv::kLayoutBgr),
                    {{"libyuv RGB24ToARGB", LibYuv(&libyuv::RGB24ToARGB, size, 3, 4), there}},
                    tier});
    jobs.push_back({"pixels/ARGB to BGR",
                    size.name,
                    OursFromWorking(size, qxv::kLayoutBgr),
                    {{"libyuv ARGBToRGB24", LibYuv(&libyuv::ARGBToRGB24, size, 4, 3), back}},
                    tier});
  }
  jobs.push_back(
      {"pixels/YUV to ARGB",
       "1080p",
       Ours(k1080p, qxv::kLayoutYuv),
       {{"zimg", ZimgTurn(true, tier), zimg}, {"libyuv I444ToARGB", &LibYuvFromPlanes, libyuv}, {"swscale", SwscaleTurn(true)}},
       tier});
  jobs.push_back(
      {"pixels/ARGB to YUV",
       "1080p",
       OursFromWorking(k1080p, qxv::kLayoutYuv),
       {{"zimg", ZimgTurn(false, tier), zimg}, {"libyuv ARGBToI444", &LibYuvToPlanes, libyuv}, {"swscale", SwscaleTurn(false)}},
       tier});
}

const bench::Register kRegistered([] {
  std::vector<bench::Job> jobs;
  for (const CpuTier tier : {CpuTier::Baseline, CpuTier::Avx2, CpuTier::Avx512}) {
    AddJobs(tier, jobs);
  }
  return jobs;
});

}  // namespace

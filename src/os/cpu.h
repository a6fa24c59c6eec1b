// cpu.h - which vector instructions this processor has, and how the kernels of a family are chosen by them.
//
// A kernel family is one operation written once a tier. The whole pattern, for an operation Sum:
//
//   int SumBaseline(const int* p, std::size_t n) noexcept;                    // SSE2, on every x86-64 processor
//   QXV_TARGET_AVX2 int SumAvx2(const int* p, std::size_t n) noexcept;        // each function names its instruction set
//   QXV_TARGET_AVX512 int SumAvx512(const int* p, std::size_t n) noexcept;
//   constexpr os::KernelTable<int (*)(const int*, std::size_t) noexcept> kSum{{&SumBaseline, &SumAvx2, &SumAvx512}};
//   int Sum(const int* p, std::size_t n) noexcept { return kSum.Active()(p, n); }
//
// Rules for the kernels:
// - The intrinsics come from os/intrinsics.h.
// - Table entries are out-of-line functions of one translation unit, and a caller never names a tier itself. A family without
//   an own kernel for a tier puts the next lower one there.
// - Helpers that take or return vectors are QXV_INLINE_AVX2 / QXV_INLINE_AVX512: a __m256i or __m512i by value across a real
//   call differs between compilers, and on Windows its stack slot is aligned to 16 bytes only.
// - No lambdas around intrinsics: a lambda does not inherit the target of its function.
// - Results are the same bit for bit in all tiers (no fused multiply-add). The test runs support::ForEachCpuTier over a scalar
//   reference that stands in the same source.
// - No masked unaligned 512-bit loads in a hot loop: they take three times a plain load. For tails they are fine.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#if defined(_MSC_VER) && !defined(__clang__)
#define QXV_TARGET_AVX2
#define QXV_TARGET_AVX512
#define QXV_ALWAYS_INLINE __forceinline
#define QXV_READS_WHOLE_LINES
#else
#define QXV_TARGET_AVX2 __attribute__((target("sse4.2,popcnt,pclmul,avx2,bmi,bmi2")))
#define QXV_TARGET_AVX512 \
  __attribute__((         \
      target("sse4.2,popcnt,pclmul,avx2,bmi,bmi2,avx512f,avx512bw,avx512dq,avx512vl,avx512vbmi,avx512vbmi2,vpclmulqdq")))
#define QXV_ALWAYS_INLINE __attribute__((always_inline)) inline
/// For a kernel that reads inside aligned lines but outside the object: no page is crossed, yet a sanitizer would object.
#define QXV_READS_WHOLE_LINES __attribute__((no_sanitize("address", "thread")))
#endif
#define QXV_INLINE_AVX2 QXV_TARGET_AVX2 QXV_ALWAYS_INLINE
#define QXV_INLINE_AVX512 QXV_TARGET_AVX512 QXV_ALWAYS_INLINE

namespace qxv::os {

/// The value, as computed so far: the compiler may not regroup a sum over this place, so that a late term stays the last one. No
/// instruction; without it clang 14 takes a fifth longer for MD5.
QXV_ALWAYS_INLINE std::uint32_t KeepOrder(std::uint32_t value) noexcept {
#if defined(__GNUC__)
  __asm__("" : "+r"(value));
#endif
  return value;
}

/// Each tier contains the ones before it.
enum class CpuTier : unsigned char {
  Baseline,  ///< SSE2
  Avx2,      ///< AVX2, PCLMULQDQ, SSE4.2, POPCNT, BMI1, BMI2
  Avx512,    ///< AVX-512 F, BW, DQ, VL, VBMI, VBMI2 and VPCLMULQDQ
};
inline constexpr std::size_t kCpuTierCount = 3;

/// "SSE2", "AVX2" or "AVX-512".
[[nodiscard]] const char* CpuTierName(CpuTier tier) noexcept;

/// The highest tier that the processor and the operating system both support.
[[nodiscard]] CpuTier DetectCpuTier() noexcept;

/// For tests and benchmarks: from now on kernels of this tier run in the whole process, at most the detected one. Kernels that
/// run meanwhile in other threads finish in their tier.
void ForceCpuTier(CpuTier tier) noexcept;

namespace detail {
inline constexpr unsigned char kTierUnknown = 0xFF;
extern std::atomic<unsigned char> activeTier;  // constant-initialised: usable before any constructor has run
CpuTier InitialiseActiveTier() noexcept;
}  // namespace detail

/// The tier that kernels run in: the detected one unless a test forces a lower one. Detected once; costs one load.
[[nodiscard]] inline CpuTier ActiveCpuTier() noexcept {
  const unsigned char tier = detail::activeTier.load(std::memory_order_relaxed);
  return tier != detail::kTierUnknown ? static_cast<CpuTier>(tier) : detail::InitialiseActiveTier();
}

/// The functions of one kernel family, in the order of CpuTier.
template <typename Function>
struct KernelTable {
  Function kernels[kCpuTierCount];

  [[nodiscard]] Function Active() const noexcept { return kernels[static_cast<std::size_t>(ActiveCpuTier())]; }
};

}  // namespace qxv::os

// cpu.cpp - detection of the processor's vector instructions, the same on both systems.

#include "os/cpu.h"

#include <algorithm>
#include <initializer_list>

#if defined(_MSC_VER) && !defined(__clang__)
#include "os/intrinsics.h"

#include <intrin.h>
#endif

namespace qxv::os {

namespace detail {
constinit std::atomic<unsigned char> activeTier{kTierUnknown};

CpuTier InitialiseActiveTier() noexcept {
  unsigned char tier = kTierUnknown;
  const auto detected = static_cast<unsigned char>(DetectCpuTier());
  // Only from unknown: a tier that another thread has forced meanwhile stays.
  return activeTier.compare_exchange_strong(tier, detected) ? static_cast<CpuTier>(detected) : static_cast<CpuTier>(tier);
}
}  // namespace detail

const char* CpuTierName(CpuTier tier) noexcept {
  switch (tier) {
    case CpuTier::Avx512:
      return "AVX-512";
    case CpuTier::Avx2:
      return "AVX2";
    case CpuTier::Baseline:
      break;
  }
  return "SSE2";
}

#if defined(_MSC_VER) && !defined(__clang__)

CpuTier DetectCpuTier() noexcept {
  int leaf0[4], leaf1[4], leaf7[4];
  __cpuid(leaf0, 0);
  if (leaf0[0] < 7) {
    return CpuTier::Baseline;
  }
  __cpuid(leaf1, 1);
  __cpuidex(leaf7, 7, 0);
  const auto has = [](int word, std::initializer_list<int> bits) {
    return std::all_of(bits.begin(), bits.end(), [word](int bit) { return (static_cast<unsigned>(word) >> bit & 1) != 0; });
  };
  if (!has(leaf1[2], {1, 20, 23, 27, 28})) {  // PCLMULQDQ, SSE4.2, POPCNT, OSXSAVE, AVX
    return CpuTier::Baseline;
  }
  const auto savedByTheSystem = _xgetbv(0);
  if ((savedByTheSystem & 0x06) != 0x06 || !has(leaf7[1], {3, 5, 8})) {  // XMM and YMM; BMI1, AVX2, BMI2
    return CpuTier::Baseline;
  }
  const bool avx512 = (savedByTheSystem & 0xE0) == 0xE0   // opmask, upper ZMM halves, ZMM16 to 31
                      && has(leaf7[1], {16, 17, 30, 31})  // F, DQ, BW, VL
                      && has(leaf7[2], {1, 6, 10});       // VBMI, VBMI2, VPCLMULQDQ
  return avx512 ? CpuTier::Avx512 : CpuTier::Avx2;
}

#else

CpuTier DetectCpuTier() noexcept {
  __builtin_cpu_init();  // a caller may be a constructor that runs before the run-time's own
  const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.2") &&
                    __builtin_cpu_supports("popcnt") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2");
  if (!avx2) {
    return CpuTier::Baseline;
  }
  const bool avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
                      __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2") &&
                      __builtin_cpu_supports("vpclmulqdq");
  return avx512 ? CpuTier::Avx512 : CpuTier::Avx2;
}

#endif

void ForceCpuTier(CpuTier tier) noexcept {
  detail::activeTier.store(static_cast<unsigned char>(std::min(tier, DetectCpuTier())));
}

}  // namespace qxv::os

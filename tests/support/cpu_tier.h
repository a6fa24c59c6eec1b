// cpu_tier.h - runs tests in each tier of kernels that this processor has, and says which it lacks.
#pragma once

#include "os/cpu.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <type_traits>

namespace support {

/// While it lives, kernels of this tier run (at most the processor's own).
class ForcedCpuTier {
 public:
  explicit ForcedCpuTier(qxv::os::CpuTier tier) noexcept : m_before(qxv::os::ActiveCpuTier()) { qxv::os::ForceCpuTier(tier); }
  ForcedCpuTier(const ForcedCpuTier&) = delete;
  ForcedCpuTier& operator=(const ForcedCpuTier&) = delete;
  ~ForcedCpuTier() { qxv::os::ForceCpuTier(m_before); }

 private:
  qxv::os::CpuTier m_before;
};

/// body() once in each tier; failures name the tier, a tier that the machine lacks is printed. The body may take the tier.
template <typename Body>
void ForEachCpuTier(Body body) {
  for (std::size_t i = 0; i < qxv::os::kCpuTierCount; ++i) {
    const auto tier = static_cast<qxv::os::CpuTier>(i);
    if (tier > qxv::os::DetectCpuTier()) {
      std::printf("[ LACKING  ] this machine has no %s: its kernels are not tested here\n", qxv::os::CpuTierName(tier));
      continue;
    }
    const ForcedCpuTier forced(tier);
    SCOPED_TRACE(qxv::os::CpuTierName(tier));
    if constexpr (std::is_invocable_v<Body, qxv::os::CpuTier>) {
      body(tier);
    } else {
      body();
    }
  }
}

}  // namespace support

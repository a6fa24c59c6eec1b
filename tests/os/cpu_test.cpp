// cpu_test.cpp - the choice of kernels by processor.

#include "os/cpu.h"

#include "support/cpu_tier.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using qxv::os::ActiveCpuTier;
using qxv::os::CpuTier;
using qxv::os::DetectCpuTier;

int Nothing() { return 0; }
int One() { return 1; }
int Two() { return 2; }
constexpr qxv::os::KernelTable<int (*)()> kNumbers{{&Nothing, &One, &Two}};

TEST(Cpu, DetectedTierIsActiveUnlessForced) { EXPECT_EQ(ActiveCpuTier(), DetectCpuTier()); }

TEST(Cpu, TableGivesTheKernelOfTheActiveTier) {
  support::ForEachCpuTier([](CpuTier tier) { EXPECT_EQ(kNumbers.Active()(), static_cast<int>(tier)); });
}

TEST(Cpu, ForcedTierEndsWithItsGuard) {
  {
    const support::ForcedCpuTier forced(CpuTier::Baseline);
    EXPECT_EQ(ActiveCpuTier(), CpuTier::Baseline);
  }
  EXPECT_EQ(ActiveCpuTier(), DetectCpuTier());
}

TEST(Cpu, ForcingNeverRaisesAboveTheProcessor) {
  const support::ForcedCpuTier forced(CpuTier::Avx512);
  EXPECT_LE(ActiveCpuTier(), DetectCpuTier());
}

TEST(Cpu, AllThreadsSeeOneTierFromTheFirstCall) {
  std::vector<CpuTier> seen(8, CpuTier::Baseline);
  std::vector<std::thread> threads;
  for (CpuTier& tier : seen) {
    threads.emplace_back([&tier] { tier = ActiveCpuTier(); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (const CpuTier tier : seen) {
    EXPECT_EQ(tier, DetectCpuTier());
  }
}

TEST(Cpu, TierNames) {
  EXPECT_STREQ(qxv::os::CpuTierName(CpuTier::Baseline), "SSE2");
  EXPECT_STREQ(qxv::os::CpuTierName(CpuTier::Avx2), "AVX2");
  EXPECT_STREQ(qxv::os::CpuTierName(CpuTier::Avx512), "AVX-512");
}

}  // namespace

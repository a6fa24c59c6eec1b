// crc_bench.cpp - QXVCalculateCRC beside ISA-L (the same CRC), libdeflate and zlib (the reflected one) and one bit at a time.

#include "bench/support/ratio.h"
#include "foundation/crc_bit_serial.h"
#include "qxv/crc.h"

#include <isa-l/crc.h>
#include <libdeflate.h>
#include <zlib.h>

#include <random>

namespace {

using qxv::os::CpuTier;

const std::vector<unsigned char>& Data() {
  static const std::vector<unsigned char> data = [] {
    std::vector<unsigned char> bytes(std::size_t{64} << 20);
    std::mt19937 random(1);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      bytes[i] = static_cast<unsigned char>(random());
    }
    return bytes;
  }();
  return data;
}

struct Size {
  const char* name;
  std::size_t bytes;
  double mustIsal;        // on AVX-512
  double mustLibdeflate;  // on AVX2 and above
};
constexpr Size kSizes[] = {
    {"64 B", 64, 0, 0}, {"1 KiB", 1024, 0.6, 0}, {"64 KiB", 65536, 0, 0}, {"64 MiB", std::size_t{64} << 20, 0.95, 1.0}};

bench::Job CrcJob(CpuTier tier, const Size& size) {
  const std::size_t n = size.bytes;
  const auto ours = [n] { benchmark::DoNotOptimize(QXVCalculateCRC(Data().data(), Data().data() + n)); };
  const auto isal = [n] { benchmark::DoNotOptimize(~::crc32_ieee(0, Data().data(), n)); };
  const auto deflate = [n] { benchmark::DoNotOptimize(::libdeflate_crc32(0, Data().data(), n)); };
  const auto zlib = [n] { benchmark::DoNotOptimize(::crc32_z(0, Data().data(), n)); };
  const auto bitSerial = [n] { benchmark::DoNotOptimize(support::UpdateCrcBitSerial(0xFFFFFFFF, Data().data(), n)); };
  bench::Job job{"crc", size.name, ours, {}, tier};
  job.peers.push_back({"ISA-L crc32_ieee", isal, tier == CpuTier::Avx512 ? size.mustIsal : 0});
  job.peers.push_back({"libdeflate crc32", deflate, tier == CpuTier::Avx2 ? size.mustLibdeflate : 0});
  job.peers.push_back({"zlib crc32_z", zlib});
  if (n <= 65536) {  // 64 MiB take it half a second; its speed is the same from 1 KiB on
    job.peers.push_back({"bit-serial", bitSerial, tier == CpuTier::Baseline && n >= 1024 ? 15.0 : 0});
  }
  return job;
}

const bench::Register kRegistered([] {
  std::vector<bench::Job> jobs;
  for (const CpuTier tier : {CpuTier::Baseline, CpuTier::Avx2, CpuTier::Avx512}) {
    for (const Size& size : kSizes) {
      jobs.push_back(CrcJob(tier, size));
    }
  }
  return jobs;
});

}  // namespace

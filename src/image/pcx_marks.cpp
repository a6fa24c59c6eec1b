// pcx_marks.cpp - where runs begin, as bits.

#include "image/pcx_marks.h"

#include "os/cpu.h"
#include "os/intrinsics.h"

namespace qxv {
namespace {

void MarkRunsBaseline(const unsigned char* bytes, std::size_t blocks, std::uint64_t* runs) noexcept {
  const __m128i least = _mm_set1_epi8(static_cast<char>(kPcxRun));
  for (; blocks > 0; --blocks, ++runs) {
    *runs = 0;
    for (unsigned i = 0; i < kPcxBlock; i += sizeof(__m128i), bytes += sizeof(__m128i)) {
      const __m128i values = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
      const int marks = _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_max_epu8(values, least), values));
      *runs |= std::uint64_t{static_cast<unsigned>(marks)} << i;
    }
  }
}

QXV_TARGET_AVX2 void MarkRunsAvx2(const unsigned char* bytes, std::size_t blocks, std::uint64_t* runs) noexcept {
  const __m256i least = _mm256_set1_epi8(static_cast<char>(kPcxRun));
  for (; blocks > 0; --blocks, ++runs, bytes += kPcxBlock) {
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + sizeof low));
    const auto lowMarks = static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(_mm256_max_epu8(low, least), low)));
    const auto highMarks = static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(_mm256_max_epu8(high, least), high)));
    *runs = std::uint64_t{highMarks} << 32 | lowMarks;
  }
}

QXV_TARGET_AVX512 void MarkRunsAvx512(const unsigned char* bytes, std::size_t blocks, std::uint64_t* runs) noexcept {
  const __m512i least = _mm512_set1_epi8(static_cast<char>(kPcxRun));
  for (; blocks > 0; --blocks, ++runs, bytes += kPcxBlock) {
    *runs = _mm512_cmpge_epu8_mask(_mm512_loadu_si512(bytes), least);
  }
}

void MarkEqualBaseline(const unsigned char* values, std::size_t blocks, std::uint64_t* equal) noexcept {
  for (; blocks > 0; --blocks, ++equal) {
    *equal = 0;
    for (unsigned i = 0; i < kPcxBlock; i += sizeof(__m128i), values += sizeof(__m128i)) {
      const __m128i these = _mm_loadu_si128(reinterpret_cast<const __m128i*>(values));
      const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(values + 1));
      *equal |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(these, next)))} << i;
    }
  }
}

QXV_INLINE_AVX2 std::uint64_t EqualMarks(const unsigned char* values) noexcept {
  const __m256i these = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(values));
  const __m256i next = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(values + 1));
  return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(these, next)));
}

QXV_TARGET_AVX2 void MarkEqualAvx2(const unsigned char* values, std::size_t blocks, std::uint64_t* equal) noexcept {
  for (; blocks > 0; --blocks, ++equal, values += kPcxBlock) {
    *equal = EqualMarks(values) | EqualMarks(values + sizeof(__m256i)) << 32;
  }
}

using Mark = void (*)(const unsigned char*, std::size_t, std::uint64_t*) noexcept;
constexpr os::KernelTable<Mark> kMarkRuns{{&MarkRunsBaseline, &MarkRunsAvx2, &MarkRunsAvx512}};
constexpr os::KernelTable<Mark> kMarkEqual{{&MarkEqualBaseline, &MarkEqualAvx2, &MarkEqualAvx2}};

}  // namespace

void MarkPcxRuns(const unsigned char* bytes, std::size_t blocks, std::uint64_t* runs) noexcept {
  kMarkRuns.Active()(bytes, blocks, runs);
}

void MarkPcxEqual(const unsigned char* values, std::size_t blocks, std::uint64_t* equal) noexcept {
  kMarkEqual.Active()(values, blocks, equal);
}

}  // namespace qxv

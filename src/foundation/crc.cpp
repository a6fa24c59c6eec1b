// crc.cpp - QXVCalculateCRC: the byte count and the choice of the kernel.

#include "qxv/crc.h"

#include "foundation/crc_kernels.h"
#include "os/cpu.h"

#include <cstdint>
#include <functional>

namespace {

constexpr std::uint32_t kPreset = 0xFFFFFFFF;

constexpr qxv::os::KernelTable<decltype(&qxv::UpdateCrcBaseline)> kUpdateCrc{
    {&qxv::UpdateCrcBaseline, &qxv::UpdateCrcAvx2, &qxv::UpdateCrcAvx512}};

}  // namespace

unsigned int QXVCalculateCRC(const unsigned char* pBegin, const unsigned char* pEnd) {
  if (pBegin == nullptr || std::less_equal<>()(pEnd, pBegin)) {
    return kPreset;
  }
  // KEPT: the byte count is a signed 32-bit number, so a range of 2 GiB or more is read as its low 32 bits say: not at all, or
  //   only its first bytes (checksums stored earlier must stay valid). Pinned by CrcKept.CountIsASigned32BitNumber.
  const auto bytes = reinterpret_cast<std::uintptr_t>(pEnd) - reinterpret_cast<std::uintptr_t>(pBegin);
  const auto count = static_cast<std::int32_t>(static_cast<std::uint32_t>(bytes));
  return count > 0 ? kUpdateCrc.Active()(kPreset, pBegin, static_cast<std::size_t>(count)) : kPreset;
}

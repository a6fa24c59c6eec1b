// crc_test.cpp - QXVCalculateCRC in each tier of kernels.

#include "qxv/crc.h"

#include "foundation/crc_bit_serial.h"
#include "foundation/crc_kernels.h"
#include "support/cpu_tier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

Bytes RandomBytes(std::size_t count) {
  std::mt19937 random(20240607);
  Bytes bytes(count);
  for (unsigned char& byte : bytes) {
    byte = static_cast<unsigned char>(random());
  }
  return bytes;
}

// The registers after 0, 1, 2, ... of the bytes, in one bit-serial pass.
std::vector<std::uint32_t> BitSerialPrefixes(const Bytes& bytes) {
  std::vector<std::uint32_t> crcs{0xFFFFFFFF};
  for (const unsigned char& byte : bytes) {
    crcs.push_back(support::UpdateCrcBitSerial(crcs.back(), &byte, 1));
  }
  return crcs;
}

unsigned char* PointerAt(std::uintptr_t address) { return reinterpret_cast<unsigned char*>(address); }

TEST(Crc, CheckValueOfTheNineDigits) {
  const unsigned char digits[] = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
  support::ForEachCpuTier([&] { EXPECT_EQ(QXVCalculateCRC(digits, digits + 9), 0x0376E6E7u); });
}

// Made with Python: crc = ~int(f"{zlib.crc32(bits reversed in each byte):032b}"[::-1], 2)
TEST(Crc, ValuesOfAnIndependentProgram) {
  struct Row {
    const char* name;
    Bytes bytes;
    unsigned int crc;
  };
  Bytes counting(4096);
  for (std::size_t i = 0; i < counting.size(); ++i) {
    counting[i] = static_cast<unsigned char>(i * 7 + i / 256);
  }
  const Row rows[] = {
      {"one zero byte", Bytes(1, 0), 0x4E08BFB4},
      {"100 bytes FF", Bytes(100, 0xFF), 0x7E9EB43F},
      {"1000 zero bytes", Bytes(1000, 0), 0xFE172F9F},
      {"4096 counting bytes", counting, 0x97C436E2},
  };
  support::ForEachCpuTier([&] {
    for (const Row& row : rows) {
      EXPECT_EQ(QXVCalculateCRC(row.bytes.data(), row.bytes.data() + row.bytes.size()), row.crc) << row.name;
    }
  });
}

TEST(Crc, EmptyRangeGivesThePreset) {
  const unsigned char byte = 'x';
  support::ForEachCpuTier([&] { EXPECT_EQ(QXVCalculateCRC(&byte, &byte), 0xFFFFFFFFu); });
}

TEST(Crc, ReversedRangeGivesThePreset) {
  const unsigned char bytes[] = {1, 2, 3};
  EXPECT_EQ(QXVCalculateCRC(bytes + 3, bytes), 0xFFFFFFFFu);
  // Its difference modulo 2^32 is 9.
  EXPECT_EQ(QXVCalculateCRC(PointerAt(0x500000000), PointerAt(0x400000009)), 0xFFFFFFFFu);
}

TEST(Crc, NullPointersGiveThePreset) {
  unsigned char byte = 1;
  EXPECT_EQ(QXVCalculateCRC(nullptr, nullptr), 0xFFFFFFFFu);
  EXPECT_EQ(QXVCalculateCRC(nullptr, &byte), 0xFFFFFFFFu);
  EXPECT_EQ(QXVCalculateCRC(&byte, nullptr), 0xFFFFFFFFu);
}

TEST(Crc, EveryLengthTo4095AtEveryAlignmentEqualsBitSerial) {
  constexpr std::size_t kLengths = 4096;
  const Bytes bytes = RandomBytes(kLengths - 1);
  const std::vector<std::uint32_t> expected = BitSerialPrefixes(bytes);
  alignas(64) static unsigned char room[kLengths + 64];
  support::ForEachCpuTier([&] {
    for (std::size_t alignment = 0; alignment < 64; ++alignment) {
      unsigned char* begin = std::copy(bytes.begin(), bytes.end(), room + alignment) - bytes.size();
      for (std::size_t length = 0; length < kLengths; ++length) {
        ASSERT_EQ(QXVCalculateCRC(begin, begin + length), expected[length]) << length << " bytes at alignment " << alignment;
      }
    }
  });
}

TEST(Crc, LongRangesEqualBitSerial) {
  const Bytes bytes = RandomBytes((std::size_t{1} << 20) + 9000);  // from 1 MiB on the kernels read ahead
  const std::vector<std::uint32_t> expected = BitSerialPrefixes(bytes);
  support::ForEachCpuTier([&] {
    for (std::size_t length = 4096; length <= bytes.size(); length += length < 1'048'000 ? 40'093 : 301) {
      ASSERT_EQ(QXVCalculateCRC(bytes.data(), bytes.data() + length), expected[length]) << length;
    }
  });
}

TEST(Crc, KernelsContinueAnyRegister) {
  const Bytes bytes = RandomBytes(1024);
  support::ForEachCpuTier([&](qxv::os::CpuTier tier) {
    const qxv::os::KernelTable<decltype(&qxv::UpdateCrcBaseline)> kernels{
        {&qxv::UpdateCrcBaseline, &qxv::UpdateCrcAvx2, &qxv::UpdateCrcAvx512}};
    const auto update = kernels.kernels[static_cast<std::size_t>(tier)];
    for (const std::uint32_t crc : {0x00000000u, 0x00000001u, 0x80000000u, 0x0376E6E7u}) {
      for (const std::size_t length : {0u, 1u, 3u, 15u, 16u, 17u, 64u, 127u, 128u, 257u, 1024u}) {
        ASSERT_EQ(update(crc, bytes.data(), length), support::UpdateCrcBitSerial(crc, bytes.data(), length))
            << length << " bytes from " << crc;
      }
    }
  });
}

TEST(Crc, NothingOutsideTheRangeIsRead) {  // behind each block lies an inaccessible page; before it, bytes that must not count
  const Bytes bytes = RandomBytes(700);
  const std::vector<std::uint32_t> expected = BitSerialPrefixes(bytes);
  support::ForEachCpuTier([&] {
    for (std::size_t length = 1; length <= bytes.size(); ++length) {
      const std::unique_ptr<unsigned char[]> block(new unsigned char[length]);
      std::copy_n(bytes.begin(), length, block.get());
      ASSERT_EQ(QXVCalculateCRC(block.get(), block.get() + length), expected[length]) << length;
    }
  });
}

TEST(Crc, LongRangeAtTheEndOfItsMemory) {
  constexpr std::size_t kLength = (std::size_t{1} << 20) + 77;
  const Bytes bytes = RandomBytes(kLength);
  const std::unique_ptr<unsigned char[]> block(new unsigned char[kLength]);
  std::copy(bytes.begin(), bytes.end(), block.get());
  const std::uint32_t expected = support::UpdateCrcBitSerial(0xFFFFFFFF, bytes.data(), kLength);
  support::ForEachCpuTier([&] { EXPECT_EQ(QXVCalculateCRC(block.get(), block.get() + kLength), expected); });
}

TEST(CrcKept, CountIsASigned32BitNumber) {
  // No memory lies at these addresses: a read would end the program.
  unsigned char* const nowhere = PointerAt(0x10);
  constexpr std::size_t k2GiB = 0x80000000;
  support::ForEachCpuTier([&] {
    EXPECT_EQ(QXVCalculateCRC(nowhere, nowhere + k2GiB), 0xFFFFFFFFu);
    EXPECT_EQ(QXVCalculateCRC(nowhere, nowhere + k2GiB + 9), 0xFFFFFFFFu);
    EXPECT_EQ(QXVCalculateCRC(nowhere, nowhere + 2 * k2GiB - 1), 0xFFFFFFFFu);
    EXPECT_EQ(QXVCalculateCRC(nowhere, nowhere + 2 * k2GiB), 0xFFFFFFFFu);
    const unsigned char digits[] = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    const auto behind = PointerAt(reinterpret_cast<std::uintptr_t>(digits) + 2 * k2GiB + 9);
    EXPECT_EQ(QXVCalculateCRC(digits, behind), 0x0376E6E7u);
  });
}

}  // namespace

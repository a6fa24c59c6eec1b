// md5_test.cpp - the algorithm: known digests, every length, every cut, every alignment, counts beyond 32 bits.

#include "digest/md5.h"

#include "digest/md5_reference.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>

namespace {

using digest_test::DigestReference;

const unsigned char* BytesOf(std::string_view text) { return reinterpret_cast<const unsigned char*>(text.data()); }

std::string Hex(const unsigned char (&digest)[16]) {
  std::string text;
  for (const unsigned char byte : digest) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return text;
}

std::string Finish(qxv::Md5& md5) {
  unsigned char digest[16];
  md5.Finish(digest);
  return Hex(digest);
}

std::string Digest(std::string_view message) {
  qxv::Md5 md5;
  md5.Start();
  md5.Update(BytesOf(message), message.size());
  return Finish(md5);
}

std::string RandomBytes(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  std::string bytes(size, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(random());
  }
  return bytes;
}

TEST(Md5, TheDigestsOfItsStandard) {
  const struct {
    const char* message;
    const char* digest;
  } rows[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
      {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "d174ab98d277d9f5a5611c2c9f419d9f"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890", "57edf4a22be3c955ac49da2e2107b67a"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Digest(row.message), row.digest) << row.message;
    EXPECT_EQ(DigestReference(row.message), row.digest) << "the reference itself: " << row.message;
  }
}

TEST(Md5, AMillionTimesA) { EXPECT_EQ(Digest(std::string(1'000'000, 'a')), "7707d6ae4e027c70eea2a935c2296f21"); }

TEST(Md5, EveryLengthUpToSixBlocks) {
  const std::string bytes = RandomBytes(384, 1);
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    const std::string_view message = std::string_view(bytes).substr(0, size);
    EXPECT_EQ(Digest(message), DigestReference(message)) << size;
  }
}

TEST(Md5, WhereTheInputIsCutDoesNotMatter) {
  const std::string bytes = RandomBytes(200, 2);
  const std::string expected = DigestReference(bytes);
  for (std::size_t first = 0; first <= bytes.size(); ++first) {
    for (std::size_t second = first; second <= bytes.size(); second += 7) {
      qxv::Md5 md5;
      md5.Start();
      md5.Update(BytesOf(bytes), first);
      md5.Update(BytesOf(bytes) + first, second - first);
      md5.Update(BytesOf(bytes) + second, bytes.size() - second);
      ASSERT_EQ(Finish(md5), expected) << first << " " << second;
    }
  }
}

TEST(Md5, RandomPiecesOfRandomMessages) {
  std::mt19937 random(3);
  for (unsigned round = 0; round < 200; ++round) {
    const std::string bytes = RandomBytes(random() % 5000, round);
    qxv::Md5 md5;
    md5.Start();
    for (std::size_t at = 0; at < bytes.size();) {
      const std::size_t piece = std::min<std::size_t>(random() % 300, bytes.size() - at);
      md5.Update(BytesOf(bytes) + at, piece);
      at += piece;
    }
    ASSERT_EQ(Finish(md5), DigestReference(bytes)) << round;
  }
}

TEST(Md5, InputMayStandAnywhereAndNothingBehindItIsRead) {
  const std::string bytes = RandomBytes(256, 4);
  for (std::size_t size = 1; size <= bytes.size(); ++size) {
    const std::unique_ptr<unsigned char[]> block(new unsigned char[size]);  // ends at an inaccessible page
    std::memcpy(block.get(), bytes.data(), size);
    qxv::Md5 md5;
    md5.Start();
    md5.Update(block.get(), size);
    ASSERT_EQ(Finish(md5), DigestReference(std::string_view(bytes).substr(0, size))) << size;
  }
}

TEST(Md5, ACountBeyond32BitsCarries) {
  // 536,870,904 bytes in front, whatever they were; 8 of them wait in the block.
  qxv::Md5 md5;
  md5.Start();
  md5.bitCount[0] = 0xFFFFFFC0;
  md5.Update(BytesOf("0123456789ABCDEF"), 16);
  EXPECT_EQ(md5.bitCount[0], 0x40u);
  EXPECT_EQ(md5.bitCount[1], 1u);
}

TEST(Md5, ALongInputCountsItsHighBits) {
  constexpr std::size_t kSize = (std::size_t{1} << 29) + 64;  // more than 2^32 bits at once; the pages of a fresh block are zero
  const std::unique_ptr<unsigned char, void (*)(void*)> zeros(static_cast<unsigned char*>(std::calloc(kSize, 1)), &std::free);
  ASSERT_NE(zeros, nullptr);
  qxv::Md5 md5;
  md5.Start();
  md5.Update(zeros.get(), kSize);
  EXPECT_EQ(md5.bitCount[0], 512u);
  EXPECT_EQ(md5.bitCount[1], 1u);
  EXPECT_EQ(Finish(md5), "86d6d3e2fba02caee5d80c9d0246acf5");
}

TEST(Md5, TheCountWrapsAt64Bits) {
  qxv::Md5 md5;
  md5.Start();
  md5.bitCount[0] = md5.bitCount[1] = 0xFFFFFFFF;
  md5.Update(BytesOf("a"), 1);
  EXPECT_EQ(md5.bitCount[0], 7u);
  EXPECT_EQ(md5.bitCount[1], 0u);
}

TEST(Md5, AFreshBlockIsZero) {
  qxv::Md5 md5;
  std::memset(static_cast<void*>(&md5), 0xEE, sizeof md5);
  md5.Start();
  const unsigned char zeros[64] = {};
  EXPECT_EQ(std::memcmp(md5.block, zeros, sizeof zeros), 0);
  EXPECT_EQ(md5.padding[0], 0x80);
  EXPECT_EQ(std::memcmp(md5.padding + 1, zeros, 63), 0);
}

}  // namespace

// memory_test.cpp - advice about large blocks: it is safe for every size and place, and changes no byte.

#include "os/memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <vector>

namespace {

TEST(Memory, AdviceChangesNoByteInsideOrBesideTheBlock) {
  constexpr std::size_t kMiB = std::size_t{1} << 20;
  std::vector<unsigned char> bytes(40 * kMiB, 0x5A);
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, 4 * kMiB - 1, 4 * kMiB, 4 * kMiB + 4095, 33 * kMiB}) {
    SCOPED_TRACE(size);
    for (const std::size_t before : {std::size_t{0}, std::size_t{1}, std::size_t{4096}, std::size_t{5000}}) {
      qxv::os::PreferLargePages(bytes.data() + before, size);
    }
    EXPECT_EQ(static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), 0x5A)), bytes.size());
  }
}

TEST(Memory, AdviceLeavesTheErrorNumber) {
  std::vector<unsigned char> bytes(std::size_t{20} << 20);
  errno = 77;
  qxv::os::PreferLargePages(bytes.data(), bytes.size());
  EXPECT_EQ(errno, 77);
}

}  // namespace

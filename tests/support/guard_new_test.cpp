// guard_new_test.cpp - the test programs' allocator itself: it really stops what it promises to stop.

#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <new>

namespace {

TEST(GuardNew, TellsTheRequestedSizeOfAnArray) {
  auto* block = new unsigned char[266];
  EXPECT_EQ(support::AllocationSize(block), 266u);
  delete[] block;
}

TEST(GuardNew, RefusesTheChosenAllocationOnly) {
  support::FailAllocation second(1);
  int* first = new int(1);
  EXPECT_THROW(::operator delete(::operator new(8)), std::bad_alloc);
  EXPECT_TRUE(second.Refused());
  int* third = new int(3);
  EXPECT_EQ(*first + *third, 4);
  delete first;
  delete third;
}

TEST(GuardNew, TheFormsThatGiveNullAreRefusedToo) {
  int* volatile plain = new (std::nothrow) int(1);
  int* volatile array = new (std::nothrow) int[2];
  EXPECT_NE(plain, nullptr);
  EXPECT_EQ(support::AllocationSize(array), 2 * sizeof(int));
  delete plain;
  delete[] array;
  const support::FailAllocation next(0);
  int* volatile refused = new (std::nothrow) int[2];
  EXPECT_EQ(refused, nullptr);
  delete[] refused;
}

TEST(GuardNew, CountsLiveArrays) {
  const std::size_t before = support::LiveArrays();
  int* volatile block = new int[3];  // volatile: a compiler may drop a new that nobody sees
  EXPECT_EQ(support::LiveArrays(), before + 1);
  delete[] block;
  EXPECT_EQ(support::LiveArrays(), before);
}

TEST(GuardNewDeathTest, OneByteBehindAnArrayEndsTheProgram) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  auto* block = new unsigned char[266];
  volatile std::size_t behind = 266;  // not known to the compiler, which would refuse the line
  EXPECT_DEATH(static_cast<volatile unsigned char*>(block)[behind] = 1, "");
  delete[] block;
}

}  // namespace

// float_buffer_test.cpp - CQXVFloatBuffer: order, wrapping, growth in steps of 1024, wrong use.

#include "qxv/float_buffer.h"

#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstring>
#include <deque>
#include <new>
#include <numeric>
#include <random>
#include <vector>

namespace {

// The fields behind the virtual table, as applications see them.
struct Fields {
  void* virtualTable;
  float* data;
  int read, count, capacity;
};
static_assert(sizeof(CQXVFloatBuffer) == 32);

Fields FieldsOf(const CQXVFloatBuffer& buffer) {
  Fields fields;
  std::memcpy(&fields, static_cast<const void*>(&buffer), offsetof(Fields, capacity) + sizeof fields.capacity);
  return fields;
}

std::vector<float> Sequence(int n, float first = 0) {
  std::vector<float> values(static_cast<std::size_t>(n));
  std::iota(values.begin(), values.end(), first);
  return values;
}

void Put(CQXVFloatBuffer& buffer, int n, float first) { buffer.PutData(Sequence(n, first).data(), n); }

std::vector<float> Get(CQXVFloatBuffer& buffer, int n) {
  std::vector<float> values(static_cast<std::size_t>(n), -1.0f);
  values.resize(static_cast<std::size_t>(buffer.GetData(values.data(), n)));
  return values;
}

TEST(FloatBuffer, StartsEmptyWith1024Slots) {
  const CQXVFloatBuffer buffer;
  const Fields fields = FieldsOf(buffer);
  EXPECT_EQ(fields.read, 0);
  EXPECT_EQ(fields.count, 0);
  EXPECT_EQ(fields.capacity, 1024);
  EXPECT_EQ(support::AllocationSize(fields.data), 4096u);
}

TEST(FloatBuffer, Putting1025ValuesGrowsOnceTo2048) {
  CQXVFloatBuffer buffer;
  const auto values = Sequence(1025);
  const std::size_t before = support::AllocationsOfThisThread();
  buffer.PutData(values.data(), 1025);
  EXPECT_EQ(support::AllocationsOfThisThread() - before, 1u);
  EXPECT_EQ(FieldsOf(buffer).capacity, 2048);
  EXPECT_EQ(Get(buffer, 2000), values);
}

TEST(FloatBuffer, GrowthMovesTheRemainingValuesToTheStart) {
  CQXVFloatBuffer buffer;
  Put(buffer, 100, 0);
  EXPECT_EQ(Get(buffer, 60), Sequence(60, 0));
  Put(buffer, 1000, 100);  // 984 are free
  const Fields fields = FieldsOf(buffer);
  EXPECT_EQ(fields.capacity, 2048);
  EXPECT_EQ(fields.read, 0);
  EXPECT_EQ(fields.count, 1040);
  EXPECT_EQ(fields.data[0], 60.0f);
  EXPECT_EQ(fields.data[39], 99.0f);
  EXPECT_EQ(fields.data[40], 100.0f);
  EXPECT_EQ(fields.data[1039], 1099.0f);
}

TEST(FloatBuffer, ReadsAcrossTheEndOfTheRing) {
  CQXVFloatBuffer buffer;
  Put(buffer, 1000, 0);
  EXPECT_EQ(Get(buffer, 1000), Sequence(1000, 0));
  Put(buffer, 500, 1000);
  EXPECT_EQ(FieldsOf(buffer).capacity, 1024);
  EXPECT_EQ(Get(buffer, 500), Sequence(500, 1000));
  EXPECT_EQ(FieldsOf(buffer).read, 476);  // 1000 + 500 - 1024
}

TEST(FloatBuffer, GrowthOfAWrappedRingKeepsTheOrder) {
  CQXVFloatBuffer buffer;
  Put(buffer, 1000, 0);
  EXPECT_EQ(Get(buffer, 900).size(), 900u);
  Put(buffer, 800, 1000);  // wraps
  Put(buffer, 200, 1800);  // grows
  EXPECT_EQ(FieldsOf(buffer).capacity, 2048);
  EXPECT_EQ(Get(buffer, 5000), Sequence(1100, 900));
}

TEST(FloatBuffer, ReadIndexMayStandAtTheCapacity) {
  CQXVFloatBuffer buffer;
  Put(buffer, 1024, 0);
  EXPECT_EQ(Get(buffer, 1024), Sequence(1024, 0));
  EXPECT_EQ(FieldsOf(buffer).read, 1024);
  Put(buffer, 3, 7);
  EXPECT_EQ(Get(buffer, 3), Sequence(3, 7));
  Put(buffer, 1021, 0);
  EXPECT_EQ(Get(buffer, 1021).size(), 1021u);
  ASSERT_EQ(FieldsOf(buffer).read, 1024);
  Put(buffer, 1025, 5);  // grows with the read index at the end
  EXPECT_EQ(Get(buffer, 2000), Sequence(1025, 5));
}

TEST(FloatBuffer, GettingFromAnEmptyBufferCopiesNothing) {
  CQXVFloatBuffer buffer;
  float value = 42.0f;
  EXPECT_EQ(buffer.GetData(&value, 1), 0);
  EXPECT_EQ(value, 42.0f);
}

TEST(FloatBuffer, RemoveAllKeepsTheRing) {
  CQXVFloatBuffer buffer;
  Put(buffer, 3000, 0);
  const Fields before = FieldsOf(buffer);
  buffer.RemoveAll();
  const Fields after = FieldsOf(buffer);
  EXPECT_EQ(buffer.GetDataLen(), 0);
  EXPECT_EQ(after.capacity, before.capacity);
  EXPECT_EQ(after.data, before.data);
  EXPECT_EQ(after.read, 0);
}

TEST(FloatBuffer, RandomRunsComeOutInTheOrderPutIn) {
  std::mt19937 random(7);
  CQXVFloatBuffer buffer;
  std::deque<float> model;
  float next = 0;
  for (int step = 0; step < 3000; ++step) {
    const int n = static_cast<int>(random() % 1500);
    if (random() % 2 == 0) {
      Put(buffer, n, next);
      for (int i = 0; i < n; ++i) {
        model.push_back(next + static_cast<float>(i));
      }
      next = static_cast<float>(static_cast<int>(next + static_cast<float>(n)) % 8000000);  // stays exact
    } else {
      const auto got = Get(buffer, n);
      ASSERT_EQ(got.size(), std::min(model.size(), static_cast<std::size_t>(n)));
      for (const float value : got) {
        ASSERT_EQ(value, model.front()) << "step " << step;
        model.pop_front();
      }
    }
    ASSERT_EQ(static_cast<std::size_t>(buffer.GetDataLen()), model.size());
  }
}

TEST(FloatBuffer, WrongUseIsANoOp) {
  CQXVFloatBuffer buffer;
  Put(buffer, 5, 1);
  float value = 42.0f;
  buffer.PutData(nullptr, 5);
  buffer.PutData(&value, 0);
  buffer.PutData(&value, -1);
  buffer.PutData(&value, INT_MIN);
  EXPECT_EQ(buffer.GetDataLen(), 5);
  EXPECT_EQ(buffer.GetData(nullptr, 5), 0);
  EXPECT_EQ(buffer.GetData(&value, 0), 0);
  EXPECT_EQ(buffer.GetData(&value, INT_MIN), 0);
  EXPECT_EQ(value, 42.0f);
  EXPECT_EQ(buffer.GetDataLen(), 5);
}

TEST(FloatBuffer, ARefusedGrowthLeavesTheQueueAsItWas) {
  CQXVFloatBuffer buffer;
  Put(buffer, 1000, 0);
  const auto more = Sequence(100, 1000);
  {
    support::FailAllocation failure(0);
    EXPECT_THROW(buffer.PutData(more.data(), 100), std::bad_alloc);
  }
  EXPECT_THROW(buffer.PutData(more.data(), INT_MAX), std::bad_alloc) << "more slots than an int counts";
  EXPECT_EQ(Get(buffer, 2000), Sequence(1000, 0));
}

TEST(FloatBuffer, GrowCanBeReachedByADerivedClass) {
  struct Reach : CQXVFloatBuffer {
    using CQXVFloatBuffer::Grow;
  } buffer;
  Put(buffer, 10, 0);
  buffer.Grow(5);
  EXPECT_EQ(FieldsOf(buffer).capacity, 1029);
  buffer.Grow(0);
  buffer.Grow(-5);
  EXPECT_EQ(FieldsOf(buffer).capacity, 1029);
  EXPECT_THROW(buffer.Grow(INT_MAX), std::bad_alloc);
  EXPECT_EQ(Get(buffer, 10), Sequence(10, 0));
}

TEST(FloatBufferKept, CopyAndAssignmentShareTheRing) {
  auto* original = new CQXVFloatBuffer;
  alignas(CQXVFloatBuffer) unsigned char storage[2][sizeof(CQXVFloatBuffer)];  // never destroyed: only one owner may be
  Put(*original, 10, 0);
  auto* copy = new (storage[0]) CQXVFloatBuffer(*original);
  EXPECT_EQ(FieldsOf(*copy).data, FieldsOf(*original).data);
  EXPECT_EQ(FieldsOf(*copy).count, 10);
  auto* assigned = new (storage[1]) CQXVFloatBuffer;
  delete[] FieldsOf(*assigned).data;  // assignment drops its own ring without freeing it
  *assigned = *original;
  EXPECT_EQ(FieldsOf(*assigned).data, FieldsOf(*original).data);
  EXPECT_EQ(Get(*assigned, 10), Sequence(10, 0));
  EXPECT_EQ(original->GetDataLen(), 10) << "counts are each object's own";
  delete original;
}

}  // namespace

// array_test.cpp - CQXArray: sizing, growth, access, copies, refused allocations.

#include "qxv/array.h"

#include "support/guard_new.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <new>

namespace {

using support::TextOf;
using IntArray = CQXArray<int, int>;
using TextArray = CQXArray<CQXString, CQXString&>;

constexpr QXInt64 kMost = std::numeric_limits<QXInt64>::max();

template <class Array>
std::size_t BlockBytes(Array& array) {
  return support::AllocationSize(array.GetData());
}

void Fill(TextArray& array, std::initializer_list<const QXChar*> texts) {
  for (const QXChar* text : texts) {
    CQXString element(text);
    array.Add(element);
  }
}

struct Record16 {
  std::uint64_t low, high;
};

TEST(Array, IsAPointerAndThreeCounts) {
  EXPECT_EQ(sizeof(IntArray), 32u);
  EXPECT_EQ(sizeof(TextArray), 32u);
}

TEST(Array, StartsWithoutABlock) {
  const IntArray array;
  EXPECT_EQ(array.GetSize(), 0);
  EXPECT_EQ(array.GetData(), nullptr);
}

TEST(Array, FirstSizingToTenAllocatesTenElements) {
  IntArray array;
  array.SetSize(10);
  EXPECT_EQ(array.GetSize(), 10);
  EXPECT_EQ(BlockBytes(array), 10 * sizeof(int));
}

TEST(Array, FirstSizingAllocatesTheGrowByIfThatIsMore) {
  IntArray array;
  array.SetGrowBy(50);
  array.SetSize(10);
  EXPECT_EQ(array.GetSize(), 10);
  EXPECT_EQ(BlockBytes(array), 50 * sizeof(int));
}

TEST(Array, AutomaticGrowthIsAnEighthBetween4And1024) {
  const struct {
    QXInt64 from, to, allocated;
  } rows[] = {
      {100, 101, 112},        // step 100 / 8 = 12
      {20, 21, 24},           // 2 is below 4
      {32, 33, 36},           // exactly 4
      {8192, 8193, 9216},     // exactly 1024
      {16000, 16001, 17024},  // 2000 is above 1024
      {100, 500, 500},        // more than one step
  };
  for (const auto& row : rows) {
    IntArray array;
    array.SetSize(row.from);
    array.SetSize(row.to);
    EXPECT_EQ(BlockBytes(array), static_cast<std::size_t>(row.allocated) * sizeof(int)) << row.from << " to " << row.to;
    EXPECT_EQ(array.GetSize(), row.to);
  }
}

TEST(Array, GrowByIsTheStepOfAFullBlock) {
  IntArray array;
  array.SetSize(10);
  array.SetGrowBy(7);
  array.SetSize(11);
  EXPECT_EQ(BlockBytes(array), 17 * sizeof(int));
  array.SetSize(30);
  EXPECT_EQ(BlockBytes(array), 30 * sizeof(int));
}

TEST(Array, NegativeGrowByNeverShrinks) {
  IntArray array;
  array.SetGrowBy(-100);
  array.SetSize(10);
  EXPECT_EQ(BlockBytes(array), 10 * sizeof(int));
  array.SetSize(12);
  EXPECT_EQ(BlockBytes(array), 12 * sizeof(int));
}

TEST(Array, ShrinkingKeepsTheBlockAndGrowingWithinItClears) {
  IntArray array;
  array.SetSize(10);
  for (int i = 0; i < 10; ++i) {
    array[i] = i + 1;
  }
  const int* block = array.GetData();
  array.SetSize(4);
  EXPECT_EQ(array.GetSize(), 4);
  array.SetSize(10);
  EXPECT_EQ(array.GetData(), block);
  EXPECT_EQ(array[3], 4);
  for (int i = 4; i < 10; ++i) {
    EXPECT_EQ(array[i], 0) << i;
  }
}

TEST(Array, SizeZeroOrBelowFreesTheBlock) {
  for (const QXInt64 size : {QXInt64{0}, QXInt64{-1}, std::numeric_limits<QXInt64>::min()}) {
    TextArray array;
    array.SetSize(3);
    const std::size_t live = support::LiveArrays();
    array.SetSize(size);
    EXPECT_EQ(array.GetSize(), 0) << size;
    EXPECT_EQ(array.GetData(), nullptr) << size;
    EXPECT_EQ(support::LiveArrays(), live - 4) << "three texts and the block";
  }
}

TEST(Array, RemoveAllFreesEverything) {
  const std::size_t live = support::LiveArrays();
  TextArray array;
  Fill(array, {QXT("a"), QXT("b")});
  array.RemoveAll();
  EXPECT_EQ(array.GetSize(), 0);
  EXPECT_EQ(support::LiveArrays(), live);
}

TEST(Array, DestructorFreesEverything) {
  const std::size_t live = support::LiveArrays();
  {
    TextArray array;
    Fill(array, {QXT("a"), QXT("b"), QXT("c")});
  }
  EXPECT_EQ(support::LiveArrays(), live);
}

TEST(Array, PlainElementsOfEveryWidthStartAsZeroBytes) {
  const auto allZero = [](auto& array) {
    array.SetSize(5);
    const auto* bytes = reinterpret_cast<const unsigned char*>(array.GetData());
    for (std::size_t i = 0; i < 5 * sizeof(array[0]); ++i) {
      ASSERT_EQ(bytes[i], 0) << "width " << sizeof(array[0]) << ", byte " << i;
    }
  };
  CQXArray<unsigned char, unsigned char> bytes;
  CQXArray<short, short> words;
  CQXArray<float, float> floats;
  CQXArray<double, double> doubles;
  CQXArray<Record16, const Record16&> records;
  allZero(bytes);
  allZero(words);
  allZero(floats);
  allZero(doubles);
  allZero(records);
}

TEST(Array, TextElementsStartAsEmptyTextsOfTheirOwn) {
  TextArray array;
  array.SetSize(2);
  EXPECT_EQ(TextOf(array[0]), QXT(""));
  array[0] = QXT("first");
  EXPECT_EQ(TextOf(array[1]), QXT(""));
}

TEST(Array, GrowingMovesTextsWithoutCopyingThem) {
  TextArray array;
  Fill(array, {QXT("a"), QXT("b")});
  array.SetSize(array.GetSize());
  const QXChar* buffer = array[0];
  array.SetSize(1000);
  EXPECT_EQ(static_cast<const QXChar*>(array[0]), buffer);
  EXPECT_EQ(TextOf(array[1]), QXT("b"));
  EXPECT_EQ(TextOf(array[999]), QXT(""));
}

TEST(Array, AddReturnsTheIndex) {
  IntArray array;
  EXPECT_EQ(array.Add(7), 0);
  EXPECT_EQ(array.Add(8), 1);
  EXPECT_EQ(array[0], 7);
  EXPECT_EQ(array[1], 8);
}

TEST(Array, AddTakesAnElementOfTheArrayItself) {
  TextArray array;
  Fill(array, {QXT("text")});
  for (int i = 0; i < 40; ++i) {  // through several reallocations
    array.Add(array[0]);
  }
  for (int i = 0; i < 41; ++i) {
    EXPECT_EQ(TextOf(array[i]), QXT("text")) << i;
  }
}

TEST(Array, CopiesAreDeepAndKeepTheGrowBy) {
  TextArray array;
  array.SetGrowBy(5);
  Fill(array, {QXT("a"), QXT("b")});
  TextArray copy(array);
  TextArray assigned;
  Fill(assigned, {QXT("x"), QXT("y"), QXT("z")});
  assigned = array;
  array[0] = QXT("changed");
  for (TextArray* other : {&copy, &assigned}) {
    ASSERT_EQ(other->GetSize(), 2);
    EXPECT_EQ(TextOf((*other)[0]), QXT("a"));
    EXPECT_EQ(TextOf((*other)[1]), QXT("b"));
    EXPECT_EQ(BlockBytes(*other), 5 * sizeof(CQXString));
  }
  const TextArray& same = assigned;
  assigned = same;
  EXPECT_EQ(assigned.GetSize(), 2);
}

TEST(Array, CopyOfAnEmptyArrayHasNoBlock) {
  const IntArray empty;
  const IntArray copy(empty);
  EXPECT_EQ(copy.GetData(), nullptr);
}

TEST(Array, MoreBytesThanThereCanBeAreRefused) {
  TextArray texts;
  EXPECT_THROW(texts.SetSize(kMost), std::bad_array_new_length);
  EXPECT_THROW(texts.SetSize(kMost / 8), std::bad_alloc);
  IntArray array;
  array.SetSize(3);
  array.SetGrowBy(kMost);
  EXPECT_THROW(array.SetSize(4), std::bad_array_new_length);
  EXPECT_EQ(array.GetSize(), 3);
  EXPECT_EQ(array[2], 0);
}

TEST(ArrayKept, IndexBehindTheEndMeansTheLastElement) {
  TextArray array;
  Fill(array, {QXT("0"), QXT("1"), QXT("2")});
  EXPECT_EQ(&array[7], &array[2]);
  EXPECT_EQ(&array[kMost], &array[2]);
  const TextArray& constant = array;
  EXPECT_EQ(&constant[3], &constant[2]);
}

TEST(ArrayKept, NegativeIndexMeansTheFirstElement) {
  TextArray array;
  Fill(array, {QXT("0"), QXT("1")});
  EXPECT_EQ(&array[-1], &array[0]);
  EXPECT_EQ(&array[std::numeric_limits<QXInt64>::min()], &array[0]);
}

TEST(ArrayKept, AccessGrowsAnEmptyArrayToOneElement) {
  TextArray array;
  EXPECT_EQ(TextOf(array[5]), QXT(""));
  EXPECT_EQ(array.GetSize(), 1);
  const TextArray constant;
  EXPECT_EQ(TextOf(constant[5]), QXT("")) << "a constant array answers without growing";
  EXPECT_EQ(constant.GetSize(), 0);
}

// Every allocation of an operation is refused in turn: the array stays as it was and nothing is lost.
template <class Operation>
void RefuseEachAllocation(const char* name, QXInt64 size, QXInt64 allocated, Operation operation) {
  for (std::size_t index = 0;; ++index) {
    TextArray array;
    array.SetSize(allocated);
    if (size > 0) {
      array.SetSize(size);
    }
    for (QXInt64 i = 0; i < size; ++i) {
      array[i].Format(QXT("text %d"), static_cast<int>(i));
    }
    const std::size_t live = support::LiveArrays();
    bool refused = false;
    bool thrown = false;
    {
      support::FailAllocation failure(index);
      try {
        operation(array);
      } catch (const std::bad_alloc&) {
        thrown = true;
      }
      refused = failure.Refused();
    }
    ASSERT_EQ(thrown, refused) << name << ", allocation " << index;
    if (!refused) {
      ASSERT_GT(index, 0u) << name << " allocates";
      return;
    }
    ASSERT_EQ(support::LiveArrays(), live) << name << ", allocation " << index;
    ASSERT_EQ(array.GetSize(), size) << name << ", allocation " << index;
    for (QXInt64 i = 0; i < size; ++i) {
      CQXString expected;
      expected.Format(QXT("text %d"), static_cast<int>(i));
      ASSERT_TRUE(array[i] == expected) << name << ", allocation " << index;
    }
  }
}

TEST(Array, ARefusedAllocationLeavesItAsItWas) {
  RefuseEachAllocation("first block", 0, 0, [](TextArray& array) { array.SetSize(4); });
  RefuseEachAllocation("growth", 6, 6, [](TextArray& array) { array.SetSize(10); });
  RefuseEachAllocation("growth within the block", 5, 9, [](TextArray& array) { array.SetSize(8); });
  RefuseEachAllocation("copy", 6, 6, [](TextArray& array) { TextArray copy(array); });
  RefuseEachAllocation("assignment", 3, 3, [](TextArray& array) {
    TextArray other;
    other.SetSize(5);
    array = other;
  });
  CQXString value(support::Repeat('x', 500).c_str());
  RefuseEachAllocation("add", 6, 6, [&](TextArray& array) { array.Add(value); });
  RefuseEachAllocation("add within the block", 6, 8, [&](TextArray& array) { array.Add(value); });
  RefuseEachAllocation("add an own element", 4, 4, [&](TextArray& array) { array.Add(array[1]); });
}

}  // namespace

// host_array_test.cpp - CArray and the arrays of plain values.

#include "host_test.h"
#include "support/guard_new.h"

#include <climits>
#include <cstring>
#include <new>
#include <set>
#include <utility>
#include <vector>

namespace {

using host_test::Throws;

constexpr QXInt64 kHuge = 0x7FFFFFFFFFFFFFFF;

// An element that knows where it was built, so that a raw copy or a missed destructor shows.
class Tracked {
 public:
  Tracked() : Tracked(0) {}
  Tracked(int value) : m_value(value) { Register(); }  // NOLINT(google-explicit-constructor)
  Tracked(const Tracked& other) : m_value(other.m_value) { Register(); }
  Tracked& operator=(const Tracked& other) {
    EXPECT_EQ(Alive().count(this), 1u);
    m_value = other.m_value;
    return *this;
  }
  ~Tracked() { EXPECT_EQ(Alive().erase(this), 1u); }

  int Value() const {
    EXPECT_EQ(Alive().count(this), 1u);
    return m_value;
  }
  static std::set<const Tracked*>& Alive() {
    static std::set<const Tracked*> alive;
    return alive;
  }
  static int throwIn;  // constructions until one throws; negative: none

 private:
  void Register() {
    if (throwIn == 0) {
      throw 1;
    }
    --throwIn;
    EXPECT_TRUE(Alive().insert(this).second);
  }
  int m_value;
};
int Tracked::throwIn = -1;

using TrackedArray = CArray<Tracked>;

std::vector<int> Values(const TrackedArray& array) {
  std::vector<int> values;
  for (QXInt64 i = 0; i < array.GetSize(); ++i) {
    values.push_back(array[i].Value());
  }
  return values;
}

template <class ARRAY>
auto Elements(const ARRAY& array) {
  using Element = std::remove_cv_t<std::remove_reference_t<decltype(array[0])>>;
  return std::vector<Element>(array.GetData(), array.GetData() + array.GetSize());
}

void Fill(TrackedArray& array, int count) {
  for (int i = 1; i <= count; ++i) {
    array.Add(i);
  }
}

TEST(HostArray, StartsEmpty) {
  const CDWordArray array;
  EXPECT_EQ(array.GetSize(), 0);
  EXPECT_EQ(array.GetCount(), 0);
  EXPECT_EQ(array.GetUpperBound(), -1);
  EXPECT_TRUE(array.IsEmpty());
  EXPECT_EQ(array.GetData(), nullptr);
}

TEST(HostArray, NewNumbersAreZero) {
  CDWordArray array;
  array.SetSize(3);
  EXPECT_EQ(Elements(array), (std::vector<DWORD>{0, 0, 0}));
  array[1] = 0xFFFFFFFF;
  array.SetSize(1);
  array.SetSize(4, 100);
  EXPECT_EQ(Elements(array), (std::vector<DWORD>{0, 0, 0, 0}));  // no rest of what was there
}

TEST(HostArray, EndsWhereItsBlockEnds) {
  CByteArray array;
  array.SetSize(13);
  EXPECT_EQ(support::AllocationSize(array.GetData()), 13u);
  array.Add(1);
  array.FreeExtra();
  EXPECT_EQ(support::AllocationSize(array.GetData()), 14u);
  EXPECT_EQ(array[13], 1);
}

TEST(HostArray, AddsOneAfterTheOther) {
  CWordArray array;
  for (int i = 0; i < 1000; ++i) {
    EXPECT_EQ(array.Add(static_cast<WORD>(i * 3)), i);
  }
  EXPECT_EQ(array.GetSize(), 1000);
  EXPECT_EQ(array.GetUpperBound(), 999);
  EXPECT_EQ(array[999], 2997);
  EXPECT_EQ(array.GetAt(500), 1500);
}

TEST(HostArray, GrowsInTheStepsAskedFor) {
  CByteArray array;
  array.SetSize(0, 50);
  array.Add(1);
  EXPECT_EQ(support::AllocationSize(array.GetData()), 50u);
  array.SetSize(50);
  const std::size_t before = support::AllocationsOfThisThread();
  array.Add(2);
  EXPECT_EQ(support::AllocationSize(array.GetData()), 100u);
  array.SetSize(100);
  EXPECT_EQ(support::AllocationsOfThisThread(), before + 1);
}

TEST(HostArray, RefusesEveryIndexOutside) {
  CDWordArray array;
  array.SetSize(2);
  const auto& constArray = std::as_const(array);
  for (const QXInt64 index : {QXInt64{-1}, QXInt64{2}, kHuge, -kHuge - 1}) {
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)array[index]; })) << index;
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)constArray[index]; })) << index;
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)array.GetAt(index); })) << index;
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)constArray.GetAt(index); })) << index;
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)array.ElementAt(index); })) << index;
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { array.SetAt(index, 1); })) << index;
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { array.RemoveAt(index); })) << index;
  }
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)CStringArray().GetAt(0); }));
  EXPECT_EQ(Elements(array), (std::vector<DWORD>{0, 0}));
}

TEST(HostArray, RefusesNegativeSizes) {
  CByteArray array;
  array.Add(7);
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { array.SetSize(-1); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { array.SetAtGrow(-1, 0); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { array.InsertAt(-1, BYTE{1}); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { array.InsertAt(-1, &array); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { array.RemoveAt(0, -1); }));
  EXPECT_EQ(Elements(array), (std::vector<BYTE>{7}));
}

TEST(HostArray, RefusesHugeSizes) {
  CDWordArray array;
  array.Add(7);
  EXPECT_THROW(array.SetSize(kHuge), std::bad_array_new_length);
  EXPECT_THROW(array.SetSize(kHuge / 4 + 1), std::bad_array_new_length);
  EXPECT_THROW(array.SetAtGrow(kHuge, 1), std::bad_array_new_length);
  EXPECT_THROW(array.InsertAt(kHuge, 1, kHuge), std::bad_array_new_length);
  EXPECT_THROW(array.InsertAt(0, 1, kHuge), std::bad_array_new_length);
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { array.RemoveAt(1, kHuge); }));
  EXPECT_EQ(Elements(array), (std::vector<DWORD>{7}));
}

TEST(HostArray, SetAtGrowMakesRoom) {
  CWordArray array;
  array.SetAtGrow(3, 9);
  EXPECT_EQ(Elements(array), (std::vector<WORD>{0, 0, 0, 9}));
  array.SetAtGrow(1, 8);
  EXPECT_EQ(Elements(array), (std::vector<WORD>{0, 8, 0, 9}));
}

TEST(HostArray, InsertsInsideAndBehindTheEnd) {
  CByteArray array;
  array.InsertAt(2, 5, 2);
  EXPECT_EQ(Elements(array), (std::vector<BYTE>{0, 0, 5, 5}));
  array.InsertAt(0, 1);
  array.InsertAt(2, 9, 3);
  EXPECT_EQ(Elements(array), (std::vector<BYTE>{1, 0, 9, 9, 9, 0, 5, 5}));
  array.InsertAt(8, 4);
  array.InsertAt(0, 4, 0);
  array.InsertAt(0, 4, -5);
  EXPECT_EQ(Elements(array), (std::vector<BYTE>{1, 0, 9, 9, 9, 0, 5, 5, 4}));
  CByteArray other;
  other.Add(100);
  other.Add(101);
  array.SetSize(2);
  array.InsertAt(1, &other);
  EXPECT_EQ(Elements(array), (std::vector<BYTE>{1, 100, 101, 0}));
  array.InsertAt(1, &array);
  EXPECT_EQ(Elements(array), (std::vector<BYTE>{1, 1, 100, 101, 0, 100, 101, 0}));
  array.InsertAt(0, static_cast<const CByteArray*>(nullptr));
  EXPECT_EQ(array.GetSize(), 8);
}

TEST(HostArray, RemovesARange) {
  CByteArray array;
  for (BYTE i = 0; i < 8; ++i) {
    array.Add(i);
  }
  array.RemoveAt(0);
  array.RemoveAt(2, 3);
  EXPECT_EQ(Elements(array), (std::vector<BYTE>{1, 2, 6, 7}));
  array.RemoveAt(4, 0);
  array.RemoveAt(3);
  array.RemoveAt(0, 3);
  EXPECT_TRUE(array.IsEmpty());
}

TEST(HostArray, CopiesAndAppends) {
  CStringArray array;
  array.Add(QXT("a"));
  array.Add(QXT("b"));
  CStringArray other;
  other.Add(QXT("old"));
  other.Copy(array);
  array[0] = QXT("changed");
  EXPECT_EQ(other.GetSize(), 2);
  EXPECT_EQ(other[0], QXT("a"));
  EXPECT_EQ(other.Append(array), 2);
  EXPECT_EQ(other.GetSize(), 4);
  EXPECT_EQ(other[2], QXT("changed"));
  EXPECT_EQ(other.Append(other), 4);
  EXPECT_EQ(other.GetSize(), 8);
  EXPECT_EQ(other[7], QXT("b"));
  other.Copy(other);
  EXPECT_EQ(other.GetSize(), 8);
  EXPECT_EQ(other.Append(CStringArray()), 8);
}

TEST(HostArray, ElementsAreGoodArguments) {
  TrackedArray array;
  array.Add(1);
  for (int i = 0; i < 20; ++i) {
    array.Add(array[0]);  // often while the block moves
    array.SetAtGrow(array.GetSize(), array[0]);
    array.InsertAt(0, array[array.GetUpperBound()], 2);
  }
  EXPECT_EQ(Values(array), std::vector<int>(81, 1));
}

TEST(HostArray, BuildsAndDestroysRealElements) {
  {
    TrackedArray array;
    Fill(array, 10);
    array.RemoveAt(2, 3);
    array.InsertAt(1, 99, 2);
    array.SetSize(20);
    array.SetSize(6);
    array.FreeExtra();
    EXPECT_EQ(Values(array), (std::vector<int>{1, 99, 99, 2, 6, 7}));
    EXPECT_EQ(Tracked::Alive().size(), 6u);
    TrackedArray other;
    other.Copy(array);
    EXPECT_EQ(Tracked::Alive().size(), 12u);
    array.SetSize(0);
    EXPECT_EQ(Tracked::Alive().size(), 6u);
    EXPECT_EQ(array.GetData(), nullptr);
  }
  EXPECT_TRUE(Tracked::Alive().empty());
}

TEST(HostArray, DestroysThroughItsBase) {
  CArray<CString, const CString&>* array = new CStringArray;
  const std::size_t before = support::LiveArrays();
  array->Add(QXT("a"));
  EXPECT_EQ(support::LiveArrays(), before + 2);
  delete array;
  EXPECT_EQ(support::LiveArrays(), before);
}

TEST(HostArray, ThrowingElementsLeaveTheArrayAsItWas) {
  const auto changes = {
      +[](TrackedArray& array) { array.SetSize(9); },
      +[](TrackedArray& array) { array.Add(array[0]); },
      +[](TrackedArray& array) { array.Append(array); },
      +[](TrackedArray& array) { array.FreeExtra(); },
  };
  for (const auto change : changes) {
    int failures = 0;
    for (const bool roomAhead : {false, true}) {
      for (int at = 0;; ++at) {
        TrackedArray array;
        array.SetSize(4, roomAhead ? 8 : 0);
        array.SetAt(3, 7);
        if (roomAhead) {
          array.SetSize(5);
          array.SetSize(4);
        }
        Tracked::throwIn = at;
        bool thrown = false;
        try {
          change(array);
        } catch (int) {
          thrown = true;
        }
        Tracked::throwIn = -1;
        if (!thrown) {
          break;
        }
        ++failures;
        ASSERT_EQ(Values(array), (std::vector<int>{0, 0, 0, 7})) << at;
        ASSERT_EQ(Tracked::Alive().size(), 4u) << at;
      }
    }
    EXPECT_GT(failures, 0);
    EXPECT_TRUE(Tracked::Alive().empty());
  }
}

TEST(HostArray, FailedAllocationLeavesTheArrayAsItWas) {
  CStringArray array;
  array.Add(QXT("a"));
  array.Add(QXT("b"));
  array.FreeExtra();
  const CString text(QXT("new"));
  const auto refused = [&](std::size_t index, auto change) {
    support::FailAllocation one(index);
    EXPECT_THROW(change(), std::bad_alloc);
    EXPECT_TRUE(one.Refused());
    ASSERT_EQ(array.GetSize(), 2);
    EXPECT_EQ(array[0], QXT("a"));
    EXPECT_EQ(array[1], QXT("b"));
  };
  refused(0, [&] { array.SetSize(3); });
  refused(0, [&] { array.Add(text); });
  refused(1, [&] { array.Add(text); });
  refused(0, [&] { array.Append(array); });
  refused(1, [&] { array.Append(array); });
  refused(2, [&] { array.Append(array); });
  refused(0, [&] { array.SetAtGrow(5, text); });
  refused(1, [&] { array.SetAtGrow(5, text); });
}

TEST(HostArray, RecordsOfAnyKindFit) {
  struct Record {
    SYSTEMTIME time;
    int number;
  };
  CArray<Record> array;
  array.SetSize(2);
  EXPECT_EQ(array[1].time.wYear, 0);
  EXPECT_EQ(array[1].number, 0);
  CArray<SYSTEMTIME, const SYSTEMTIME&> times;
  SYSTEMTIME time{};
  time.wYear = 2024;
  times.Add(time);
  EXPECT_EQ(times.GetAt(0).wYear, 2024);
}

}  // namespace

// factories_test.cpp - the pattern of factory objects: one polymorphic base, copies that copy nothing, one release routine.

#include "qxv/factories.h"

#include "support/guard_new.h"

#include <gtest/gtest.h>

namespace {

class Counter : public CQXVObject {  // an interface as the library's are
 public:
  virtual int Value() const = 0;
};

class CounterImpl : public Counter {
 public:
  CounterImpl(int value, int& destroyed) : m_value(value), m_destroyed(destroyed), m_block(new int[4]) {}
  ~CounterImpl() override {
    delete[] m_block;
    ++m_destroyed;
  }
  int Value() const override { return m_value; }

 private:
  int m_value;
  int& m_destroyed;
  int* m_block;
};

TEST(Factories, ReleaseDestroysThroughTheVirtualDestructor) {
  int destroyed = 0;
  const std::size_t live = support::LiveArrays();
  QXV_DeleteMD5(new CounterImpl(1, destroyed));
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(support::LiveArrays(), live);
}

TEST(Factories, ReleaseIgnoresNull) {
  QXV_DeleteBufferFileRW(nullptr);
  QXV_DeleteMD5(nullptr);
  QXV_DeleteTxtRW(nullptr);
  QXV_DeleteUnicodeAnsiFile(nullptr);
}

TEST(FactoriesKept, AnyReleaseNameTakesAnyObject) {
  int destroyed = 0;
  for (auto* release : {&QXV_DeleteBufferFileRW, &QXV_DeleteMD5, &QXV_DeleteTxtRW, &QXV_DeleteUnicodeAnsiFile}) {
    release(new CounterImpl(1, destroyed));
  }
  EXPECT_EQ(destroyed, 4);
}

TEST(FactoriesKept, AssigningThroughTheInterfaceCopiesNothing) {
  int destroyed = 0;
  {
    CounterImpl one(1, destroyed);
    CounterImpl two(2, destroyed);
    Counter& first = one;
    Counter& second = two;
    EXPECT_EQ(&(first = second), &first);
    EXPECT_EQ(first.Value(), 1);
    EXPECT_EQ(second.Value(), 2);
  }
  EXPECT_EQ(destroyed, 2);
}

}  // namespace

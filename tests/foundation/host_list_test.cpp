// host_list_test.cpp - CStringList.

#include "host_test.h"
#include "support/guard_new.h"

#include <new>
#include <string>
#include <utility>

namespace {

using host_test::Throws;
using support::Text;

// The texts in order, each behind a bar; walked in both directions.
Text Joined(const CStringList& list) {
  Text forwards;
  for (POSITION position = list.GetHeadPosition(); position != nullptr;) {
    forwards += QXT("|");
    forwards += list.GetNext(position).GetString();
  }
  Text backwards;
  for (POSITION position = list.GetTailPosition(); position != nullptr;) {
    backwards.insert(0, Text(QXT("|")) + list.GetPrev(position).GetString());
  }
  EXPECT_EQ(forwards, backwards);
  return forwards;
}

void Fill(CStringList& list) {
  list.AddTail(QXT("b"));
  list.AddTail(QXT("c"));
  list.AddHead(QXT("a"));
}

TEST(HostStringList, KeepsTheOrder) {
  CStringList list;
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.GetHeadPosition(), nullptr);
  Fill(list);
  EXPECT_EQ(Joined(list), QXT("|a|b|c"));
  EXPECT_EQ(list.GetCount(), 3);
  EXPECT_EQ(list.GetSize(), 3);
  EXPECT_EQ(list.GetHead(), QXT("a"));
  EXPECT_EQ(list.GetTail(), QXT("c"));
  EXPECT_EQ(std::as_const(list).GetHead(), QXT("a"));
  EXPECT_EQ(std::as_const(list).GetTail(), QXT("c"));
}

TEST(HostStringList, RemovesFromBothEnds) {
  CStringList list;
  Fill(list);
  EXPECT_EQ(list.RemoveHead(), QXT("a"));
  EXPECT_EQ(list.RemoveTail(), QXT("c"));
  EXPECT_EQ(Joined(list), QXT("|b"));
  EXPECT_EQ(list.RemoveTail(), QXT("b"));
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.GetTailPosition(), nullptr);
}

TEST(HostStringList, EmptyListRefusesItsEnds) {
  CStringList list;
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)list.GetHead(); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)list.GetTail(); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)list.RemoveHead(); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)list.RemoveTail(); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)std::as_const(list).GetHead(); }));
}

TEST(HostStringList, NullPositionIsRefused) {
  CStringList list;
  Fill(list);
  POSITION none = nullptr;
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)list.GetNext(none); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)list.GetPrev(none); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)list.GetAt(none); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { list.SetAt(none, QXT("x")); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { list.RemoveAt(none); }));
  EXPECT_EQ(Joined(list), QXT("|a|b|c"));
}

TEST(HostStringList, WorksAtAPosition) {
  CStringList list;
  Fill(list);
  const POSITION middle = list.FindIndex(1);
  EXPECT_EQ(list.GetAt(middle), QXT("b"));
  list.SetAt(middle, QXT("B"));
  list.InsertBefore(middle, QXT("1"));
  list.InsertAfter(middle, QXT("2"));
  EXPECT_EQ(Joined(list), QXT("|a|1|B|2|c"));
  list.RemoveAt(middle);
  EXPECT_EQ(Joined(list), QXT("|a|1|2|c"));
  list.RemoveAt(list.GetHeadPosition());
  list.RemoveAt(list.GetTailPosition());
  EXPECT_EQ(Joined(list), QXT("|1|2"));
  list.InsertBefore(nullptr, QXT("first"));
  list.InsertAfter(nullptr, QXT("last"));
  EXPECT_EQ(Joined(list), QXT("|first|1|2|last"));
  EXPECT_EQ(list.GetCount(), 4);
}

TEST(HostStringList, FindsByTextAndIndex) {
  CStringList list;
  Fill(list);
  list.AddTail(QXT("b"));
  const POSITION first = list.Find(QXT("b"));
  EXPECT_EQ(first, list.FindIndex(1));
  EXPECT_EQ(list.Find(QXT("b"), first), list.FindIndex(3));
  EXPECT_EQ(list.Find(QXT("b"), list.FindIndex(3)), nullptr);
  EXPECT_EQ(list.Find(QXT("B")), nullptr);
  EXPECT_EQ(list.Find(nullptr), nullptr);
  EXPECT_EQ(list.FindIndex(4), nullptr);
  EXPECT_EQ(list.FindIndex(-1), nullptr);
}

TEST(HostStringList, TakesTheTextsOfAnotherList) {
  CStringList list;
  CStringList other;
  Fill(list);
  other.AddTail(QXT("x"));
  other.AddTail(QXT("y"));
  list.AddTail(&other);
  list.AddHead(&other);
  EXPECT_EQ(Joined(list), QXT("|x|y|a|b|c|x|y"));
  EXPECT_EQ(Joined(other), QXT("|x|y"));
  other.AddTail(&other);
  EXPECT_EQ(Joined(other), QXT("|x|y|x|y"));
  CStringList self;
  Fill(self);
  self.AddHead(&self);
  EXPECT_EQ(Joined(self), QXT("|a|b|c|a|b|c"));
  EXPECT_EQ(self.GetCount(), 6);
  self.AddTail(static_cast<const CStringList*>(nullptr));
  self.AddHead(static_cast<const CStringList*>(nullptr));
  EXPECT_EQ(self.GetCount(), 6);
  CStringList empty;
  empty.AddHead(&other);
  EXPECT_EQ(Joined(empty), QXT("|x|y|x|y"));
}

TEST(HostStringList, ElementsOfTheListAreGoodArguments) {
  CStringList list;
  list.AddTail(QXT("a"));
  for (int i = 0; i < 3; ++i) {
    list.AddTail(list.GetHead());
    list.AddHead(list.GetTail());
  }
  EXPECT_EQ(Joined(list), QXT("|a|a|a|a|a|a|a"));
}

TEST(HostStringList, RemoveAllFreesEverything) {
  const std::size_t before = support::LiveArrays();
  CStringList list;
  Fill(list);
  EXPECT_EQ(support::LiveArrays(), before + 3);
  list.RemoveAll();
  EXPECT_EQ(support::LiveArrays(), before);
  EXPECT_EQ(list.GetCount(), 0);
  list.AddTail(QXT("again"));
  EXPECT_EQ(Joined(list), QXT("|again"));
}

TEST(HostStringList, FailedAllocationLeavesTheListAsItWas) {
  CStringList list;
  Fill(list);
  const CString text(QXT("new"));
  for (std::size_t index = 0; index < 2; ++index) {  // the node, then its text
    support::FailAllocation one(index);
    EXPECT_THROW(list.AddTail(text), std::bad_alloc) << index;
    EXPECT_TRUE(one.Refused());
  }
  EXPECT_EQ(Joined(list), QXT("|a|b|c"));
}

TEST(HostStringList, HoldsManyTexts) {
  CStringList list;
  for (int i = 0; i < 20000; ++i) {
    list.AddTail(CString(static_cast<QXChar>('a' + i % 26)));
  }
  EXPECT_EQ(list.GetCount(), 20000);
  EXPECT_EQ(list.GetAt(list.FindIndex(27)), QXT("b"));
}

}  // namespace

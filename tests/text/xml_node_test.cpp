// xml_node_test.cpp - trees: what copies hold, who is freed when, and depths that no stack would bear.

#include "qxv/xml.h"

#include "support/guard_new.h"
#include "support/string_words.h"
#include "xml_tree_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

using support::NewNode;
using support::Shown;

// (a x=[1] y=[2](b z=[3](d))(c))
std::unique_ptr<CQXVXmlNode> Family() {
  std::unique_ptr<CQXVXmlNode> root(NewNode(QXT("a"), {{QXT("x"), QXT("1")}, {QXT("y"), QXT("2")}}));
  root->m_arrNode.Add(NewNode(QXT("b"), {{QXT("z"), QXT("3")}}));
  root->m_arrNode.Add(NewNode(QXT("c")));
  root->m_arrNode[0]->m_arrNode.Add(NewNode(QXT("d")));
  return root;
}

constexpr const char* kFamily = "(a x=[1] y=[2](b z=[3](d))(c))";

std::unique_ptr<CQXVXmlNode> Chain(int depth) {
  auto root = std::make_unique<CQXVXmlNode>(CQXString(QXT("n")));
  for (CQXVXmlNode* last = root.get(); --depth > 0; last = last->m_arrNode[0]) {
    last->m_arrNode.Add(NewNode(QXT("n")));
  }
  return root;
}

int DepthOf(const CQXVXmlNode& root) {
  int depth = 1;
  for (const CQXVXmlNode* node = &root; node->m_arrNode.GetSize() > 0; node = node->m_arrNode[0]) {
    ++depth;
  }
  return depth;
}

// The allocated count: the third field of an array.
template <class Array>
QXInt64 BlockOf(const Array& array) {
  QXInt64 words[4];
  static_assert(sizeof words == sizeof array);
  std::memcpy(words, static_cast<const void*>(&array), sizeof words);
  return words[2];
}

std::string g_freed;

class NamedNode final : public CQXVXmlNode {
 public:
  explicit NamedNode(char name) : m_name(name) {}
  NamedNode(const NamedNode&) = delete;
  NamedNode& operator=(const NamedNode&) = delete;
  ~NamedNode() override { g_freed += m_name; }

 private:
  char m_name;
};

class NamedAttribute final : public CQXVXmlAtt {
 public:
  explicit NamedAttribute(char name) : m_name(name) {}
  NamedAttribute(const NamedAttribute&) = delete;
  NamedAttribute& operator=(const NamedAttribute&) = delete;
  ~NamedAttribute() override { g_freed += m_name; }

 private:
  char m_name;
};

TEST(XmlNode, ANewAttributeHasTwoEmptyTexts) {
  const CQXVXmlAtt attribute;
  EXPECT_EQ(attribute.m_strName.GetLength(), 0);
  EXPECT_EQ(attribute.m_strValue.GetLength(), 0);
}

TEST(XmlNode, AnAttributeIsMadeOfNameAndValue) {
  const CQXVXmlAtt attribute(QXT("name"), QXT("value"));
  EXPECT_TRUE(attribute.m_strName == QXT("name"));
  EXPECT_TRUE(attribute.m_strValue == QXT("value"));
}

TEST(XmlNode, CopiedAndAssignedAttributesAreIndependent) {
  CQXVXmlAtt source(QXT("name"), QXT("value"));
  const CQXVXmlAtt copy(source);
  CQXVXmlAtt assigned;
  assigned = source;
  source.m_strName = QXT("other");
  source.m_strValue = QXT("other");
  EXPECT_TRUE(copy.m_strName == QXT("name") && copy.m_strValue == QXT("value"));
  EXPECT_TRUE(assigned.m_strName == QXT("name") && assigned.m_strValue == QXT("value"));
}

TEST(XmlNode, AnAttributeAssignedToItselfIsUnchanged) {
  CQXVXmlAtt attribute(QXT("name"), QXT("value"));
  const CQXVXmlAtt& same = attribute;
  attribute = same;
  EXPECT_TRUE(attribute.m_strName == QXT("name") && attribute.m_strValue == QXT("value"));
}

TEST(XmlNode, ANewNodeIsEmpty) {
  EXPECT_EQ(Shown(CQXVXmlNode()), "()");
  EXPECT_EQ(Shown(CQXVXmlNode(CQXString(QXT("a")))), "(a)");
}

TEST(XmlNode, ANameStandsForANodeWithoutAttributesAndChildren) {
  const CQXString name(QXT("a"));
  const CQXVXmlNode node = name;
  EXPECT_EQ(Shown(node), "(a)");
  CQXVXmlNode target(CQXString(QXT("old")));
  target.m_arrNode.Add(NewNode(QXT("gone")));
  target = name;
  EXPECT_EQ(Shown(target), "(a)");
}

TEST(XmlNode, ACopyHoldsTheWholeTreeAndSharesNothing) {
  auto source = Family();
  const CQXVXmlNode copy(*source);
  CQXVXmlNode assigned;
  assigned = *source;
  source->m_arrNode[0]->m_arrNode[0]->m_strName = QXT("changed");
  source->m_arrAtt[0]->m_strValue = QXT("changed");
  EXPECT_EQ(Shown(copy), kFamily);
  EXPECT_EQ(Shown(assigned), kFamily);
}

TEST(XmlNode, ACopysArraysHaveExactlyTheSourcesSizes) {
  const auto source = Family();
  const CQXVXmlNode copy(*source);
  EXPECT_EQ(copy.m_arrAtt.GetSize(), 2);
  EXPECT_EQ(BlockOf(copy.m_arrAtt), 2);
  EXPECT_EQ(copy.m_arrNode.GetSize(), 2);
  EXPECT_EQ(BlockOf(copy.m_arrNode), 2);
}

TEST(XmlNode, ANodeAssignedToItselfIsUnchanged) {
  const auto node = Family();
  const CQXVXmlNode& same = *node;
  const CQXVXmlNode* child = node->m_arrNode[0];
  *node = same;
  EXPECT_EQ(Shown(*node), kFamily);
  EXPECT_EQ(node->m_arrNode[0], child);
}

TEST(XmlNode, AssigningASmallTreeOverALargeOneFreesTheLargeOne) {
  const std::size_t before = support::LiveArrays();
  {
    CQXVXmlNode target(CQXString(QXT("large")));
    g_freed.clear();
    for (char name = 'a'; name < 'f'; ++name) {
      target.m_arrNode.Add(new NamedNode(name));
      target.m_arrAtt.Add(new NamedAttribute(static_cast<char>(name - 'a' + 'A')));
    }
    target = *Family();
    EXPECT_EQ(g_freed, "ABCDEabcde");
    EXPECT_EQ(Shown(target), kFamily);
    EXPECT_EQ(target.m_arrNode.GetSize(), 2);
    EXPECT_EQ(target.m_arrAtt.GetSize(), 2);
  }
  EXPECT_EQ(support::LiveArrays(), before);
}

TEST(XmlNode, AssigningAnEmptyNodeFreesTheBlocks) {
  const auto target = Family();
  *target = CQXVXmlNode();
  EXPECT_EQ(Shown(*target), "()");
  EXPECT_EQ(target->m_arrNode.GetData(), nullptr);
  EXPECT_EQ(target->m_arrAtt.GetData(), nullptr);
}

TEST(XmlNode, AssigningALargeTreeOverASmallOneGrowsIt) {
  CQXVXmlNode target(CQXString(QXT("small")));
  target.m_arrNode.Add(NewNode(QXT("old")));
  target = *Family();
  EXPECT_EQ(Shown(target), kFamily);
}

TEST(XmlNode, ANodeTakesTheTreeOfItsOwnChild) {
  const auto root = Family();
  *root = *root->m_arrNode[0];
  EXPECT_EQ(Shown(*root), "(b z=[3](d))");
}

TEST(XmlNode, AChildTakesTheTreeOfItsParent) {
  const auto root = Family();
  *root->m_arrNode[0] = *root;
  EXPECT_EQ(Shown(*root), "(a x=[1] y=[2](a x=[1] y=[2](b z=[3](d))(c))(c))");
}

TEST(XmlNode, NullEntriesAreSkippedWhenFreeing) {
  const std::size_t before = support::LiveArrays();
  {
    CQXVXmlNode node;
    node.m_arrAtt.SetSize(3);
    node.m_arrNode.SetSize(3);
    node.m_arrAtt[1] = new CQXVXmlAtt(QXT("x"), QXT("1"));
    node.m_arrNode[1] = NewNode(QXT("b"));
    node.m_arrNode[1]->m_arrNode.SetSize(2);
  }
  EXPECT_EQ(support::LiveArrays(), before);
}

TEST(XmlNode, NullEntriesOfATargetAreSkippedWhenItIsCleared) {
  CQXVXmlNode target;
  target.m_arrAtt.SetSize(5);
  target.m_arrNode.SetSize(5);
  target = *Family();
  EXPECT_EQ(Shown(target), kFamily);
}

TEST(XmlNode, NullEntriesOfASourceAreCopiedAsNull) {
  CQXVXmlNode source(CQXString(QXT("a")));
  source.m_arrAtt.SetSize(2);
  source.m_arrNode.SetSize(2);
  source.m_arrNode[1] = NewNode(QXT("b"));
  EXPECT_EQ(Shown(CQXVXmlNode(source)), "(a null nullnull(b))");
}

TEST(XmlNode, AttributesThenChildrenAreFreedInIndexOrderAndEachOnce) {
  g_freed.clear();
  {
    CQXVXmlNode root;
    root.m_arrNode.Add(new NamedNode('1'));
    root.m_arrNode.Add(new NamedNode('2'));
    root.m_arrNode.Add(new NamedNode('3'));
    root.m_arrNode[1]->m_arrNode.Add(new NamedNode('4'));
    root.m_arrNode[1]->m_arrNode.Add(new NamedNode('5'));
    root.m_arrNode[1]->m_arrAtt.Add(new NamedAttribute('c'));
    root.m_arrAtt.Add(new NamedAttribute('a'));
    root.m_arrAtt.Add(new NamedAttribute('b'));
  }
  EXPECT_EQ(g_freed, "ab1c4523");
}

TEST(XmlNode, ADeepTreeIsCopiedAndFreed) {
  const std::size_t before = support::LiveArrays();
  {
    const auto root = Chain(support::kManyNodes);
    const CQXVXmlNode copy(*root);
    EXPECT_EQ(DepthOf(copy), support::kManyNodes);
    CQXVXmlNode assigned(CQXString(QXT("old")));
    assigned = copy;
    EXPECT_EQ(DepthOf(assigned), support::kManyNodes);
  }
  EXPECT_EQ(support::LiveArrays(), before);
}

TEST(XmlNode, FreeingTakesNoMemory) {
  auto root = Chain(1000);
  root->m_arrNode.Add(NewNode(QXT("x"), {{QXT("y"), QXT("z")}}));
  const std::size_t before = support::AllocationsOfThisThread();
  root.reset();
  EXPECT_EQ(support::AllocationsOfThisThread(), before);
}

// Where in the stack its destructor ran.
class StackProbe final : public CQXVXmlNode {
 public:
  explicit StackProbe(std::uintptr_t& place) : m_place(place) {}
  StackProbe(const StackProbe&) = delete;
  StackProbe& operator=(const StackProbe&) = delete;
  ~StackProbe() override {
    const volatile char here = 0;
    m_place = reinterpret_cast<std::uintptr_t>(&here);
  }

 private:
  std::uintptr_t& m_place;
};

TEST(XmlNode, TheDeepestNodeIsFreedAsHighInTheStackAsTheFirst) {
  std::uintptr_t first = 0;
  std::uintptr_t deepest = 0;
  {
    const auto root = Chain(3000);
    CQXVXmlNode* last = root.get();
    while (last->m_arrNode.GetSize() > 0) {
      last = last->m_arrNode[0];
    }
    last->m_arrNode.Add(new StackProbe(deepest));
    root->m_arrNode.Add(new StackProbe(first));
  }
  EXPECT_LT(first > deepest ? first - deepest : deepest - first, 256u);
}

TEST(XmlNode, AWideTreeIsCopied) {
  CQXVXmlNode root;
  for (int i = 0; i < support::kManyNodes; ++i) {
    root.m_arrNode.Add(NewNode(QXT("b")));
  }
  EXPECT_EQ(CQXVXmlNode(root).m_arrNode.GetSize(), support::kManyNodes);
}

TEST(XmlNode, EveryRefusedAllocationOfACopyLeavesTheTargetsTreeAndLosesNothing) {
  const auto source = Family();
  const std::size_t before = support::LiveArrays();
  bool refused = true;
  std::size_t index = 0;
  for (; refused; ++index) {
    CQXVXmlNode target(CQXString(QXT("t")));
    target.m_arrNode.Add(NewNode(QXT("old")));
    support::FailAllocation failing(index);
    try {
      target = *source;
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(target.m_strName == QXT("t")) << index;
      EXPECT_TRUE(target.m_arrNode[0] != nullptr && target.m_arrNode[0]->m_strName == QXT("old")) << index;
    }
    refused = failing.Refused();
  }
  EXPECT_GT(index, 20u);
  EXPECT_EQ(support::LiveArrays(), before);
}

TEST(XmlNode, TheNameOfACopyIsSizedAnew) {
  CQXVXmlNode source(CQXString(support::Repeat(QXT('n'), 129).c_str()));
  const CQXVXmlNode copy(source);
  EXPECT_EQ(support::LengthWord(copy.m_strName), 129u);
  EXPECT_EQ(support::CapacityWord(copy.m_strName), 256u);
}

}  // namespace

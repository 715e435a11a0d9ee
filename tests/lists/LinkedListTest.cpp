#include "show/lists/LinkedList.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdint>
#include <iterator>
#include <limits>
#include <list>
#include <memory>
#include <utility>
#include <vector>

#include "show/lists/LinkedListFunctions.h"
#include "tests/basic/Raises.h"

namespace vex::test {

namespace {

using List = LinkedList<int>;
using Numbers = std::vector<int>;

std::shared_ptr<List> Make(int number) {
  return NewLinkedList(std::make_shared<int>(number));
}

void AddLast(List& list, int number) {
  list.InsertAfter(list.LastNode(), std::make_shared<int>(number));
}

/// What the list holds, read forwards; reading it backwards and its count must agree.
Numbers Walk(const List& list) {
  Numbers forwards;
  const Node<int>* last = nullptr;
  for (const Node<int>* node = list.FirstNode(); node; node = node->NextNode()) {
    EXPECT_EQ(node->PreviousNode(), last);
    forwards.push_back(*node->Obj());
    last = node;
  }
  EXPECT_EQ(list.LastNode(), last);
  EXPECT_EQ(list.Count(), static_cast<int32_t>(forwards.size()));
  return forwards;
}

template <class Action>
void ExpectAbsentNode(Action action) {
  ExpectPlatformError(
      [&] {
        action();
        return 0;
      },
      ErrorObjectNotSet);
}

}  // namespace

TEST(Node, IsEmptyAndUnlinkedAtFirst) {
  Node<int> node;
  EXPECT_FALSE(node.Obj());
  EXPECT_FALSE(node.NextNode());
  EXPECT_FALSE(node.PreviousNode());
}

TEST(Node, LinksAndObjectAreReadAndAssigned) {
  Node<int> one;
  Node<int> two;
  const auto number = std::make_shared<int>(5);
  one.NextNode(&two);
  two.PreviousNode(&one);
  one.Obj(number);
  EXPECT_EQ(one.NextNode(), &two);
  EXPECT_EQ(two.PreviousNode(), &one);
  EXPECT_EQ(one.Obj(), number);
}

TEST(LinkedList, AFreshOneHasNoNode) {
  const List list;
  EXPECT_FALSE(list.FirstNode());
  EXPECT_FALSE(list.LastNode());
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(list.Nodes().Count(), 0);
}

TEST(LinkedList, EndsAndCountAreAssigned) {
  List list;
  Node<int> node;
  list.FirstNode(&node);
  list.LastNode(&node);
  list.Count(7);
  EXPECT_EQ(list.FirstNode(), &node);
  EXPECT_EQ(list.LastNode(), &node);
  EXPECT_EQ(list.Count(), 7);
}

TEST(LinkedList, ANewOneHoldsItsFirstObject) {
  const auto number = std::make_shared<int>(1);
  const auto list = NewLinkedList(number);
  EXPECT_EQ(list->Count(), 1);
  EXPECT_EQ(list->FirstNode(), list->LastNode());
  EXPECT_EQ(list->FirstNode()->Obj(), number);
  EXPECT_FALSE(list->FirstNode()->NextNode());
  EXPECT_FALSE(list->FirstNode()->PreviousNode());
  EXPECT_EQ(list->Nodes().Count(), 1);
  EXPECT_EQ(list->Nodes().Item(1).get(), list->FirstNode());
}

TEST(LinkedList, InsertingAfterTheLastMakesTheTail) {
  const auto list = Make(1);
  AddLast(*list, 2);
  EXPECT_EQ(Walk(*list), (Numbers{1, 2}));
  EXPECT_EQ(*list->LastNode()->Obj(), 2);
}

TEST(LinkedList, InsertingBeforeTheFirstMakesTheHead) {
  const auto list = Make(1);
  list->InsertBefore(list->FirstNode(), std::make_shared<int>(0));
  EXPECT_EQ(Walk(*list), (Numbers{0, 1}));
  EXPECT_EQ(*list->FirstNode()->Obj(), 0);
}

TEST(LinkedList, InsertingInTheMiddleMovesNeitherEnd) {
  const auto list = Make(1);
  AddLast(*list, 4);
  Node<int>* const first = list->FirstNode();
  Node<int>* const last = list->LastNode();
  list->InsertAfter(first, std::make_shared<int>(2));
  list->InsertBefore(last, std::make_shared<int>(3));
  EXPECT_EQ(Walk(*list), (Numbers{1, 2, 3, 4}));
  EXPECT_EQ(list->FirstNode(), first);
  EXPECT_EQ(list->LastNode(), last);
}

TEST(LinkedList, DeletingTheHead) {
  const auto list = Make(1);
  AddLast(*list, 2);
  list->DeleteNode(list->FirstNode());
  EXPECT_EQ(Walk(*list), Numbers{2});
  EXPECT_EQ(list->FirstNode(), list->LastNode());
}

TEST(LinkedList, DeletingTheTail) {
  const auto list = Make(1);
  AddLast(*list, 2);
  list->DeleteNode(list->LastNode());
  EXPECT_EQ(Walk(*list), Numbers{1});
}

TEST(LinkedList, DeletingInTheMiddle) {
  const auto list = Make(1);
  AddLast(*list, 2);
  AddLast(*list, 3);
  list->DeleteNode(list->FirstNode()->NextNode());
  EXPECT_EQ(Walk(*list), (Numbers{1, 3}));
}

TEST(LinkedList, TheOnlyNodeIsNotDeleted) {
  const auto list = Make(1);
  const auto refuse = [&] {
    list->DeleteNode(list->FirstNode());
    return 0;
  };
  ExpectError(refuse, 1, "LinkedList.DeleteNode", "Can't delete only node");
  EXPECT_EQ(Walk(*list), Numbers{1});
  AddLast(*list, 2);
  list->DeleteNode(list->FirstNode());
  ExpectError(refuse, 1, "LinkedList.DeleteNode", "Can't delete only node");
  EXPECT_EQ(Walk(*list), Numbers{2});
}

TEST(LinkedList, ADeletedNodeKeepsItsLinksAndObject) {
  const auto list = Make(1);
  AddLast(*list, 2);
  AddLast(*list, 3);
  Node<int>* const middle = list->FirstNode()->NextNode();
  list->DeleteNode(middle);
  EXPECT_EQ(*middle->Obj(), 2);
  EXPECT_EQ(middle->PreviousNode(), list->FirstNode());
  EXPECT_EQ(middle->NextNode(), list->LastNode());
}

TEST(LinkedList, NodesHoldsEveryNodeEverInserted) {
  const auto list = Make(1);
  AddLast(*list, 2);
  list->InsertBefore(list->FirstNode(), std::make_shared<int>(0));
  list->DeleteNode(list->LastNode());
  list->DeleteNode(list->LastNode());
  EXPECT_EQ(list->Count(), 1);
  ASSERT_EQ(list->Nodes().Count(), 3);
  EXPECT_EQ(*list->Nodes().Item(1)->Obj(), 1);
  EXPECT_EQ(*list->Nodes().Item(2)->Obj(), 2);
  EXPECT_EQ(*list->Nodes().Item(3)->Obj(), 0);
}

TEST(LinkedList, TheListLetsGoOfItsObjectsAtTheEnd) {
  const auto number = std::make_shared<int>(1);
  auto list = NewLinkedList(number);
  AddLast(*list, 2);
  list->DeleteNode(list->FirstNode());
  EXPECT_EQ(number.use_count(), 2);
  list.reset();
  EXPECT_EQ(number.use_count(), 1);
}

TEST(LinkedList, AnAbsentNodeIsTheCallersError) {
  const auto list = Make(1);
  AddLast(*list, 2);
  const auto number = std::make_shared<int>(3);
  ExpectAbsentNode([&] { list->InsertAfter(nullptr, number); });
  ExpectAbsentNode([&] { list->InsertBefore(nullptr, number); });
  ExpectAbsentNode([&] { list->DeleteNode(nullptr); });
  EXPECT_EQ(Walk(*list), (Numbers{1, 2}));
}

TEST(LinkedList, TheCountOverflows) {
  const auto list = Make(1);
  list->Count(std::numeric_limits<int32_t>::max());
  ExpectPlatformError(
      [&] {
        AddLast(*list, 2);
        return 0;
      },
      ErrorOverflow);
}

TEST(LinkedListProperty, BehavesAsAnyListDoes) {
  EXPECT_TRUE(rc::check("as a list", [] {
    const auto list = Make(0);
    std::list<int> model{0};
    const auto steps = *rc::gen::container<std::vector<std::pair<unsigned, unsigned>>>(
        rc::gen::arbitrary<std::pair<unsigned, unsigned>>());
    int number = 0;
    for (const auto& [action, place] : steps) {
      const size_t index = place % model.size();
      const auto at = std::next(model.begin(), static_cast<std::ptrdiff_t>(index));
      Node<int>* node = list->FirstNode();
      for (size_t i = 0; i < index; ++i) node = node->NextNode();
      ++number;
      if (action % 3 == 0) {
        list->InsertAfter(node, std::make_shared<int>(number));
        model.insert(std::next(at), number);
      } else if (action % 3 == 1) {
        list->InsertBefore(node, std::make_shared<int>(number));
        model.insert(at, number);
      } else if (model.size() > 1) {
        list->DeleteNode(node);
        model.erase(at);
      }
      RC_ASSERT(Walk(*list) == Numbers(model.begin(), model.end()));
    }
  }));
}

}  // namespace vex::test

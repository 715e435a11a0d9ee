#include "monitor/Queue.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <deque>
#include <string>

#include "basic/Error.h"
#include "monitor/VexMessage.h"

namespace vex {
namespace {

TEST(Queue, GivesItemsInTheOrderInWhichTheyCame) {
  Queue<std::string> queue;
  queue.Enqueue("first");
  queue.Enqueue("second");
  EXPECT_EQ(queue.Dequeue(), "first");
  EXPECT_EQ(queue.Dequeue(), "second");
}

TEST(Queue, PeekLeavesTheHeadWhereItIs) {
  Queue<int> queue;
  queue.Enqueue(7);
  EXPECT_EQ(queue.Peek(), 7);
  EXPECT_EQ(queue.Count(), 1);
}

TEST(Queue, CountsItsItems) {
  Queue<int> queue;
  EXPECT_EQ(queue.Count(), 0);
  queue.Enqueue(1);
  queue.Enqueue(2);
  EXPECT_EQ(queue.Count(), 2);
  (void)queue.Dequeue();
  EXPECT_EQ(queue.Count(), 1);
}

TEST(Queue, ClearDropsAllItems) {
  Queue<int> queue;
  queue.Enqueue(1);
  queue.Enqueue(2);
  queue.Clear();
  EXPECT_EQ(queue.Count(), 0);
  queue.Enqueue(3);
  EXPECT_EQ(queue.Dequeue(), 3);
}

template <class Call>
int32_t NumberOf(Call call) {
  try {
    call();
  } catch (const Error& error) {
    EXPECT_EQ(error.Source, "");
    EXPECT_EQ(error.Description, "Subscript out of range");
    return error.Number;
  }
  return 0;
}

TEST(Queue, DequeueOfAnEmptyQueueRaisesTheIndexError) {
  Queue<int> queue;
  EXPECT_EQ(NumberOf([&] { (void)queue.Dequeue(); }), ErrorSubscript);
}

TEST(Queue, PeekOfAnEmptyQueueRaisesTheIndexError) {
  Queue<int> queue;
  EXPECT_EQ(NumberOf([&] { (void)queue.Peek(); }), ErrorSubscript);
}

TEST(Queue, BehavesAsAListThatIsReadFromItsHead) {
  EXPECT_TRUE(rc::check([](const std::vector<int>& steps) {
    Queue<int> queue;
    std::deque<int> model;
    for (const int step : steps) {
      if (step % 7 == 0) {
        queue.Clear();
        model.clear();
      } else if (step % 3 == 0 && !model.empty()) {
        RC_ASSERT(queue.Peek() == model.front());
        RC_ASSERT(queue.Dequeue() == model.front());
        model.pop_front();
      } else {
        queue.Enqueue(step);
        model.push_back(step);
      }
      RC_ASSERT(queue.Count() == static_cast<int32_t>(model.size()));
    }
  }));
}

TEST(VexMessage, IsNewWithoutTypeSenderAndText) {
  const VexMessage message;
  EXPECT_EQ(message.MessageType(), 0);
  EXPECT_EQ(message.SenderHwnd(), 0);
  EXPECT_EQ(message.Text(), "");
}

TEST(VexMessage, KeepsWhatItIsGiven) {
  VexMessage message;
  message.MessageType(9);
  message.SenderHwnd(4711);
  message.Text("(eve.shw,(F,,F,),2,F)");
  EXPECT_EQ(message.MessageType(), 9);
  EXPECT_EQ(message.SenderHwnd(), 4711);
  EXPECT_EQ(message.Text(), "(eve.shw,(F,,F,),2,F)");
}

}  // namespace
}  // namespace vex
